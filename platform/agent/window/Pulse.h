#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <limits>

namespace agent {

/** A character's time in ms and its only timer. Nothing of a character measures time elsewhere, so that a
   test can let half a minute pass at once. */
class Pulse : public QObject
{
    Q_OBJECT
public:
    static constexpr qint64 kNever = std::numeric_limits<qint64>::max();

    using QObject::QObject;

    virtual qint64 now() const = 0;
    /** Asks for one beat at that time, instead of any asked for before; kNever asks for none. */
    virtual void wakeAt(qint64 due) = 0;

signals:
    void beat();
};

/** The machine's time. Without a beat asked for, no timer runs. */
class SystemPulse : public Pulse
{
    Q_OBJECT
public:
    explicit SystemPulse(QObject *parent = nullptr);
    qint64 now() const override;
    void wakeAt(qint64 due) override;

private:
    QElapsedTimer m_clock;
    QTimer m_timer;
};

} // namespace agent
