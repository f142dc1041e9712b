#pragma once

#include "notify/Notifications.h"
#include "platform/desktop/ScriptedBoxes.h"
#include "tests/editors/EditorWorld.h"
#include "tests/walk/CycleLedger.h"
#include "tests/walk/Random.h"

#include <QHash>
#include <QTcpServer>

#include <deque>

/** Refuses, so that every mail stays in the queue. */
inline constexpr const char *kNoMailServer = "127.0.0.1:9";

/** Boxes of a walk: the expected ones, as ever; the box of the one door is kept for the walk to judge. While a
    question stands there, time goes on. */
class WalkDialogs : public ScriptedDialogs
{
public:
    std::function<void()> meanwhile;
    QString fatal;
    Answer messageBox(const QString &text, const QString &caption, Icon icon, Buttons buttons) override;
};

/** An operator who does anything that can be reached, in any order, with cycles running meanwhile; after every step
    window and database must agree. Everything is real but time: window, forms, commands, database file, sockets. */
class OperatorWalk : public WindowWorld
{
protected:
    OperatorWalk();
    ~OperatorWalk() override;

    /** Walks; on a fault tells the seed, the step and the last actions. */
    void walk(quint32 seed, int steps);

    using Act = std::function<void(Driver &)>;
    /** What to do in the forms that may open, by their object names. */
    using Forms = QHash<QString, Act>;
    /** An action: false when there is nothing to do it with right now. */
    struct Action {
        const char *name;
        int weight;
        bool (OperatorWalk::*run)();
    };

    static const QList<Action> &actions();
    int mostQueued() const { return m_mostQueued; }
    const CycleLedger &ledger() const { return m_ledger; }
    const QHash<QString, int> &done() const { return m_done; }

private:

    const Action &chooseAction();
    void takeStep();
    void fillCatalogue();
    void startProgram();
    void endProgram();
    /** Ends and starts the program again when it has ended; an end must be one that the walk expects. */
    void settle();
    void judgeEnd();
    void report(quint32 seed) const;

    // Time
    void observe();
    /** Turns until something holds or the program ends. */
    bool runUntil(const std::function<bool()> &done);
    void passTime(qint64 ms);
    void passSuspensions(int count);
    /** Now and then lets time pass: whatever stands open stays open meanwhile. */
    void meanwhile();
    bool checking() const;

    // Doing
    /** Remembers what an action is about, for the report. */
    void note(const QString &text);
    /** Triggers a command that can be had, and drives the forms that it opens. */
    bool command(const char *name, const Forms &forms = {});
    void withForms(const Forms &forms, const std::function<void()> &act);
    /** The same for a command that may change rows. */
    bool change(const char *name, const Forms &forms = {});
    void guarded(const std::function<void()> &act);
    bool canBeHad(const char *name);
    void triggerOrKey(const char *name);
    void driveForm(QDialog &form, const Forms &forms);
    /** Presses a button of cmdArray and catches the end of the program. */
    void press(Driver &form, int index);
    void pressFatally(Driver &form, int index, const QString &procedure);
    /** Types or pastes; returns what the box then holds. */
    QString enter(Driver &form, const char *array, int index, const QString &text);
    /** Expects a box; an answer of the walk's choice. */
    bool agrees(const QString &question);
    void expectBox(const QString &text, Dialogs::Answer answer = Dialogs::AnswerOk) { m_dialogs.expect(text, answer); }

    // Looking
    struct Counts {
        int groups = 0, devices = 0, checks = 0, templates = 0;
        bool operator==(const Counts &) const = default;
    };
    Counts counts();
    void expectCounts(const Counts &expected, const char *what);
    QString field(const QString &select);
    QList<std::pair<NodeLevel, QString>> nodesOf(NodeLevel level);
    /** Makes a node of that level current; false when there is none. */
    bool goTo(NodeLevel level);
    /** Opens the properties of the current object, through the tree or through the list. */
    bool properties(const Forms &forms);
    void fillTemplate(Driver &form);

    // Invariants
    void checkInvariants();
    void checkRows();
    void checkTree();
    void checkList();
    void checkEvents();
    void checkMails();
    void checkCommands();
    void checkWindow();
    void checkObjects();

    // Actions: the world
    bool letTimePass();
    bool partOfCycle();
    bool finishCycle();
    bool togglePort();
    bool changeSetting();
    // Actions: the desk
    bool selectNode();
    bool walkByKeys();
    bool openRow();
    bool selectRow();
    bool sortList();
    bool changeView();
    bool resizeWindow();
    bool viewFile();
    bool refreshViews();
    bool monitoringOn();
    bool monitoringOff();
    bool pressDisabled();
    bool exitProgram();
    // Actions: objects
    bool deleteGroup();
    bool deleteDevice();
    bool deletePort();
    bool disableDevice();
    bool resetCounters();
    bool clearEventLog();
    bool clearRegistry();
    // Actions: the file and the options
    bool newDatabase();
    bool openDatabase();
    bool saveDatabaseAs();
    bool compactDatabase();
    bool changeOptions();
    bool fileCommand(const char *name);
    void touchOptions(QDialog &form);
    // Actions: editors
    bool addGroup();
    bool addDevice();
    bool addPort();
    bool groupProperties();
    bool deviceProperties();
    bool portProperties();
    bool portDetails();
    Forms detailsOf(const QString &key);
    bool portList();
    bool about();
    void changeCatalogue(Driver &form);
    Act portWizard(QStringList &chosen, bool &finished);

    OperatorEditors m_editors;
    desktop::ScriptedBoxes m_pickers;
    std::unique_ptr<Notifications> m_notifications;
    WalkDialogs m_dialogs;
    Random m_random { 0 };
    CycleLedger m_ledger;
    QTcpServer m_servers[4];
    QStringList m_ports; // theirs, open or not
    Task<void> m_startUp;
    QHash<QString, int> m_done;
    std::deque<QString> m_recent;
    QStringList m_expectedEnds; // procedures
    QString m_caption;
    int m_step = 0;
    int m_queued = 0; // mails
    int m_mostQueued = 0;
    bool m_ended = false; // through the one door
    bool m_closed = false; // by the operator
    int m_objects = 0;
    qint64 m_memory = 0;
};
