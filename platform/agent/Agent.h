#pragma once

// The agent control as its client sees it: characters, their queue of requests, commands and events. No window is
// needed to use it, so what only talks to a character can be tested with one that keeps a log.

#include <QList>
#include <QObject>
#include <QPoint>
#include <QString>

#include <memory>
#include <stdexcept>

namespace agent {

/** The control's own numbers, raised by a call or found in a request that failed. */
enum class ErrorNumber : quint32 {
    None = 0,
    FileNotFound = 0x80070002,
    BadData = 0x8007000D,
    UnknownCharacter = 0x80042002,
    UnknownAnimation = 0x80042003,
    NoAnimationForState = 0x80042004,
    UnknownCommand = 0x80042006,
    CommandExists = 0x80042007,
    Hidden = 0x8004200A,
    AlreadyLoaded = 0x8004200B,
    NoBalloon = 0x8004200C,
    DamagedAnimation = 0x8004200F,
    BeingDragged = 0x80042010,
    NoSpeechEngine = 0x80042013,
    Removed = 0x80042108,
    InterruptedByListening = 0x8004210A,
    HiddenMeanwhile = 0x8004210D,
    FileTooOld = 0x80042202,
    FileTooNew = 0x80042203,
    NotACharacterFile = 0x80042204,
    GrammarParenthesisOpen = 0x80042305,
    GrammarBracketOpen = 0x80042306,
    GrammarParenthesisMissing = 0x80042307,
    GrammarBracketMissing = 0x80042308,
    GrammarStrayBar = 0x80042309,
    CannotStart = 0x80042502,
};

/** What a call raises. The text needs no further explanation. */
class Error : public std::runtime_error
{
public:
    Error(ErrorNumber number, const QString &text)
        : std::runtime_error(text.toStdString())
        , m_number(number)
        , m_text(text)
    {
    }
    ErrorNumber number() const { return m_number; }
    QString text() const { return m_text; }

private:
    ErrorNumber m_number;
    QString m_text;
};

/** One entry of a character's menu and vocabulary. Without a voice grammar it can be chosen by the menu only. */
struct Command {
    QString name;
    QString caption; // "&" marks the access key; empty: not in the menu
    QString voice;   // grammar: words, [optional], (one|of|these), "*", "+", "..."
    bool enabled = true;
    bool visible = true;
};

/** A character's commands in the order of their adding. Names are compared without regard to case. */
class Commands
{
public:
    QString caption;
    QString defaultName; // shown bold

    /** Throws CommandExists, or one of the grammar errors. */
    void add(const Command &command);
    /** Throws UnknownCommand. */
    void remove(const QString &name);
    void removeAll() { m_all.clear(); }
    /** Null when there is none of that name. */
    const Command *find(const QString &name) const;
    const QList<Command> &all() const { return m_all; }

private:
    QList<Command> m_all;
};

/** A place in a character's queue; the control goes on writing to it. */
struct Request {
    enum class Status { Complete, Failed, Pending, Interrupted, InProgress };
    enum class Kind { Show, Hide, MoveTo, Play, Speak, Think, GestureAt };
    Kind kind = Kind::Show;
    Status status = Status::Pending;
    ErrorNumber number = ErrorNumber::None;
    QString description;
};
using RequestPtr = std::shared_ptr<const Request>;

enum class MoveCause { NeverMoved, User, Program, OtherProgram, System };
enum class VisibilityCause { NeverShown, UserHid, UserShowed, ProgramHid, ProgramShowed };

/** How words are shown; the sum is a balloon's style. */
enum BalloonStyle { BalloonOn = 1, SizeToText = 2, AutoHide = 4, AutoPace = 8 };

/** A loaded character. The queued methods (the ones that return a request) are worked strictly in order and never
    wait; what goes wrong meanwhile is told by the request, and the queue goes on. */
class Character
{
public:
    virtual ~Character() = default;

    virtual QString id() const = 0;
    /** The name that the character's maker gave it, for people. */
    virtual QString name() const = 0;

    virtual RequestPtr Show(bool fast = false) = 0;
    virtual RequestPtr Hide(bool fast = false) = 0;
    /** Screen position of the frame's top left corner in device-independent pixels; speed in ms, 0 jumps. */
    virtual RequestPtr MoveTo(int x, int y, int speed = 1000) = 0;
    /** Throws UnknownAnimation; names without regard to case. */
    virtual RequestPtr Play(const QString &animation) = 0;
    /** Speaks a text with speech tags and shows it in the balloon. "|" separates alternatives. */
    virtual RequestPtr Speak(const QString &text) = 0;
    /** Shows a text in a thought balloon, without voice. */
    virtual RequestPtr Think(const QString &text) = 0;
    virtual RequestPtr GestureAt(int x, int y) = 0;

    /** Ends what is going on and empties the queue; a Show or Hide that has begun is finished. */
    virtual void Stop() = 0;
    /** Takes one request out of the queue, or ends it when it is the current one. */
    virtual void Stop(const RequestPtr &request) = 0;

    virtual Commands &commands() = 0;
    virtual bool isVisible() const = 0;
    virtual QPoint position() const = 0;
    virtual MoveCause moveCause() const = 0;
    virtual VisibilityCause visibilityCause() const = 0;
    virtual void setIdleOn(bool on) = 0;
    /** Sum of BalloonStyle flags. */
    virtual void setBalloonStyle(int style) = 0;

    /** Push to talk: true starts to listen, false ends it and tells what was understood, in the balloon and by the
        Command event. Without a microphone or a recogniser the balloon says so. */
    virtual void Listen(bool on) = 0;
};

/** What the Command event carries. Confidence 0 to 100. */
struct UserInput {
    QString name;  // "" when nothing matched
    QString characterId;
    QString voice; // the words understood; "" when chosen by menu
    int confidence = 100;
};

/** Characters and events. Ids are compared without regard to case. */
class Control : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /** Loads a character file; a relative name is looked up in the character folder. Throws FileNotFound,
        AlreadyLoaded, NotACharacterFile, FileTooOld, FileTooNew, BadData, CannotStart. Shows nothing yet. */
    virtual Character &Load(const QString &id, const QString &file) = 0;
    /** Hides the character at once, drops its queue and frees it. Throws UnknownCharacter. */
    virtual void Unload(const QString &id) = 0;
    /** Null when none of that id is loaded. */
    virtual Character *find(const QString &id) = 0;

signals:
    void commandChosen(const agent::UserInput &input);
    /** Button 1 left, 2 right, 4 middle; shift 1, ctrl 2, alt 4; screen pixels. */
    void clicked(const QString &id, int button, int shift, int x, int y);
    void doubleClicked(const QString &id, int button, int shift, int x, int y);
    void dragStarted(const QString &id, int button, int shift, int x, int y);
    /** x and y are the pointer's, not the frame's. */
    void dragCompleted(const QString &id, int button, int shift, int x, int y);
    void shown(const QString &id, agent::VisibilityCause cause);
    void hidden(const QString &id, agent::VisibilityCause cause);
    void moved(const QString &id, int x, int y, agent::MoveCause cause);
    void balloonShown(const QString &id);
    void balloonHidden(const QString &id);
    void idleStarted(const QString &id);
    void idleCompleted(const QString &id);
    void bookmark(int number);
    void requestStarted(const agent::RequestPtr &request);
    void requestCompleted(const agent::RequestPtr &request);
    void listenStarted(const QString &id);
    void listenCompleted(const QString &id);
};

} // namespace agent
