#pragma once

#include "platform/agent/Agent.h"
#include "platform/agent/character/CharacterFile.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>

namespace agent {

class Pulse;

/** The voice of one character, with the words and the mouth in step. */
class Speaker : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /** Speaks a text with tags; words() is complete afterwards. */
    virtual void start(const QString &taggedText) = 0;
    virtual void stop() = 0;
    /** The written words of the text. */
    virtual QStringList words() const = 0;

signals:
    /** So many words are to be shown now. */
    void wordShown(int count);
    /** 0 closed to 6 narrow. */
    void mouthChanged(int shape);
    void bookmark(int number);
    void finished();
};

/** Push to talk: hears while it is held, then tells once what was understood. */
class Ear : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /** Fails before it returns when there is no microphone. */
    virtual void start(const Commands &commands) = 0;
    virtual void stop() = 0;

signals:
    /** The name is empty when the words are no command. */
    void understood(const agent::UserInput &input);
    void failed(const QString &text);
};

/** What a character is equipped with. Voice and ear are made when they are first needed. */
struct Engines {
    std::function<std::unique_ptr<Speaker>(const CharacterFile &)> speaker;
    std::function<std::unique_ptr<Ear>()> ear;
    std::function<std::unique_ptr<Pulse>()> pulse;

    /** espeak-ng, pocketsphinx and the machine's clock. */
    static Engines ofMachine();
};

} // namespace agent
