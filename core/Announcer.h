#pragma once

#include "core/ResultTable.h"

#include <QString>

/** What the program says. Lines have four columns: text, animation, x, y. */
class Announcer
{
public:
    virtual ~Announcer() = default;

    /** LoadMSAgent: makes the character ready to speak. */
    virtual void LoadMSAgent() = 0;
    /** Performs every line: move, play, speak. Never fails. */
    virtual void speakLines(const ResultTable &lines) = 0;
    /** MSAgentSpeak: looks the saying up and speaks it. */
    virtual void speak(const QString &saying) = 0;
    /** MSAgentGreeting: has the character of that name introduce itself. */
    virtual void greet(const QString &character) = 0;
    /** The announcement after a cycle; six columns of failed and five of recovered checks. */
    virtual void AnnounceDevices(const ResultTable &failed, const ResultTable &recovered) = 0;
    /** Push to talk: on while the operator speaks. Only a character listens. */
    virtual void listen(bool /*on*/) {}
    virtual bool canListen() const { return false; }
    virtual bool isListening() const { return false; }
    /** Unloads the character named "Character". */
    virtual void unloadCharacter() = 0;
};
