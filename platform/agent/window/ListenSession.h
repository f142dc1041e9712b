#pragma once

#include "platform/agent/window/Actor.h"

#include <QObject>

#include <memory>

namespace agent {

/** Push to talk: the character listens while it is held, then says what it has understood. Other requests
   wait meanwhile. */
class ListenSession : public QObject
{
    Q_OBJECT
public:
    ListenSession(const QString &id, Actor &actor, Pulse &pulse, const Engines &engines);

    void begin(const Commands &commands);
    /** The key was let go: what was said is to be understood now. */
    void release();
    /** From pressing the key until the answer could be read. */
    bool isActive() const { return m_step != Step::Off; }
    void beat();
    qint64 due() const { return m_deadline; }

private:
    enum class Step { Off, Hearing, Deciding, Answering };
    Ear &ear();
    void answer(const QString &text);
    void understood(const UserInput &input);

    QString m_id;
    Actor &m_actor;
    Pulse &m_pulse;
    std::function<std::unique_ptr<Ear>()> m_makeEar;
    std::unique_ptr<Ear> m_ear;
    Step m_step = Step::Off;
    qint64 m_deadline = Pulse::kNever;
};

} // namespace agent
