#pragma once

#include "platform/agent/window/Actor.h"

#include <QPoint>

#include <memory>

namespace agent {

/** How one request is carried out. begin() and advance() throw agent::Error when it cannot be; the request
   then fails. */
class Act
{
public:
    virtual ~Act() = default;
    /** Called once, when its turn has come. */
    virtual void begin(Actor &actor) = 0;
    /** Carries it on; true when it is done. */
    virtual bool advance(Actor &actor) = 0;
    /** Ends it before its time. */
    virtual void stop(Actor &actor) = 0;
    /** A request that is finished once it has begun, also when everything else is stopped. */
    virtual bool mustFinish() const { return false; }
    /** When it wants to be carried on although nothing moves. */
    virtual qint64 due() const { return Pulse::kNever; }
};

std::unique_ptr<Act> showAct(bool fast, VisibilityCause cause);
std::unique_ptr<Act> hideAct(bool fast, VisibilityCause cause);
/** Speed in ms for the whole way; 0 jumps. */
std::unique_ptr<Act> moveAct(const QPoint &target, int speed);
/** The animation must live as long as the character. */
std::unique_ptr<Act> playAct(const Animation &animation);
std::unique_ptr<Act> speakAct(const QString &taggedText);
std::unique_ptr<Act> thinkAct(const QString &taggedText);
/** Points to a place of the screen. */
std::unique_ptr<Act> gestureAct(const QPoint &at);

} // namespace agent
