#pragma once

#include "core/AfterCheck.h"
#include "core/Dialogs.h"
#include "core/MainWindow.h"
#include "core/vbMain.h"
#include "notify/vbMSAgent.h"

#include <QStringList>
#include <QTemporaryDir>

#include <deque>
#include <functional>
#include <memory>

/** A window that records what it is told, in order. */
class RecordingWindow : public MainWindow
{
public:
    QStringList log;
    /** Status texts are many; off, they are not recorded. */
    bool recordStatus = true;
    std::function<void()> onUnload;
    int problems = 0;

    void setStatusText(const QString &text) override;
    void setReadyText(const QString &text) override;
    void setAnnouncement(const QString &text) override;
    void setMonitoringState(MonitoringState state) override;
    void setTrayTip(const QString &tip) override;
    void setTrayImage(int image) override;
    void addEventRow(int icon, const QDateTime &when, const QString &type, const QString &message) override;
    void Load_EventLog() override;
    Task<void> Refresh_TreeView_Icons() override;
    void reselectNode() override;
    void carryOut(OperatorCommand command) override;
    int problemCount() const override { return problems; }
    void unload() override;

    /** Takes the log and empties it. */
    QStringList take();
};

/** Message boxes that a test expects, with their answers; an unexpected one fails the test. */
class ScriptedDialogs : public Dialogs
{
public:
    ~ScriptedDialogs() override;
    void expect(const QString &textPart, Answer answer = AnswerOk);
    void expectNothingMore() { m_expected.clear(); }
    bool nothingPending() const { return m_expected.empty(); }
    Answer messageBox(const QString &text, const QString &caption, Icon icon, Buttons buttons) override;
    bool shellOpen(const QString &target) override;
    bool hasProgramFor(const QString &) override { return hasProgram; }

    struct Box {
        QString text;
        QString caption;
        Icon icon;
        Buttons buttons;
    };
    QList<Box> shown;
    QStringList opened;
    bool canOpen = true;    // whether opening anything succeeds
    bool hasProgram = true; // whether there is a program for a file

private:
    std::deque<std::pair<QString, Answer>> m_expected;
};

/** An announcer that records sayings and announcements instead of showing them. */
class RecordingAnnouncer : public Announcer
{
public:
    QStringList log;
    void LoadMSAgent() override { log << QStringLiteral("load"); }
    void speakLines(const ResultTable &lines) override;
    void speak(const QString &saying) override { log << QStringLiteral("speak ") + saying; }
    void greet(const QString &character) override { log << QStringLiteral("greet ") + character; }
    void AnnounceDevices(const ResultTable &failedNow, const ResultTable &recoveredNow) override;
    void unloadCharacter() override { log << QStringLiteral("unload"); }
};

/** The shared test world: an own folder, settings file and database, recorded seams, a clock that stands still
    until a test sets it, and a program end that throws. */
class World
{
public:
    World();
    ~World();

    QTemporaryDir folder;
    RecordingWindow window;
    RecordingAnnouncer announcer;
    ScriptedDialogs dialogs;
    AfterCheck afterCheck;
    QDateTime now;

    QString path(const QString &name) const { return folder.filePath(name); }
    /** Runs one statement on the open database. */
    void sql(const QString &statement);
    /** Every row of a SELECT, fields joined by "|" (Null as "Null"). */
    QStringList rows(const QString &select);
    qint64 number(const QString &select);
    /** Adds a group, device or check with its status row; returns the key. */
    int addGroup(const QString &label);
    int addDevice(int group, const QString &name, const QString &alias = {});
    int addCheck(int device, const QString &port);
    QString logFile() const;

    /** Copies an empty database (schema only) to the path. */
    static void makeDatabase(const QString &path);
};
