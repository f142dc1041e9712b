#include "tests/walk/OperatorWalk.h"

#include "core/Clock.h"
#include "core/Main.h"
#include "core/Settings.h"
#include "monitor/CheckCycle.h"
#include "notify/options/frmOptions.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPlainTextEdit>
#include <QScopeGuard>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

#include <iostream>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
using LeaksAreFine = __lsan::ScopedDisabler;
// Guards on the stack of Qt functions that an end of the program went through.
extern "C" const char *__lsan_default_suppressions();
extern "C" const char *__lsan_default_suppressions() { return "leak:ExternalRefCountData::getAndRef"; }
#else
struct [[maybe_unused]] LeaksAreFine {};
#endif

using namespace Qt::StringLiterals;

namespace {

constexpr int kRemembered = 20;
constexpr int kManyMails = 40;
constexpr int kFirstPort = 20001; // always the same, so that a seed repeats its walk
constexpr qint64 kChunk = 20000; // ms; shorter than the pause between two cycles, so that each end is seen

/** Starts the program as ever, without splash and without asking whether another copy runs. */
class WalkStart : public StartFactory
{
public:
    WalkStart(std::unique_ptr<frmMain> &window, Editors &editors)
        : m_window(window)
        , m_editors(editors)
    {
    }
    bool anotherCopyRuns() override { return false; }
    void showSplash() override { }
    void setSplashStatus(const QString &) override { }
    void unloadSplash() override { }
    void createMainWindow() override
    {
        m_window = std::make_unique<frmMain>(&m_editors);
        vbMain().window = m_window.get();
    }
    Task<void> loadMainWindow() override
    {
        return m_window->load([](const QString &) { });
    }
    void setCaption(const QString &caption) override { m_window->setWindowTitle(caption); }
    void placeMainWindow(float left, float top, float width, float height) override
    {
        m_window->place(left, top, width, height);
    }
    void showMainWindow() override { m_window->show(); }
    void startMonitoring() override { m_window->cycle().Monitor_Initialize(); }

private:
    std::unique_ptr<frmMain> &m_window;
    Editors &m_editors;
};

} // namespace

WalkDialogs::Answer WalkDialogs::messageBox(
    const QString &text, const QString &caption, Icon icon, Buttons buttons)
{
    if (icon == Critical) {
        if (fatal.isEmpty()) // what follows the end happens to nobody
            fatal = text;
        return AnswerOk;
    }
    if (meanwhile)
        meanwhile();
    return ScriptedDialogs::messageBox(text, caption, icon, buttons);
}

OperatorWalk::OperatorWalk()
    : m_editors({}, [](QWidget *parent) { frmOptions(parent).exec(); })
    , m_pickers([](const QString &fault) { ADD_FAILURE() << fault.toStdString(); })
{
    const QDateTime beginning = world.now;
    Clock::setSource([this, beginning] { return beginning.addMSecs(time->now()); });
    setEndProgramHook([this](int code) {
        m_ended = true;
        throw ProgramEnded { code };
    });
    time->onSuspension = [this](int) { observe(); };
    QFile::copy(QStringLiteral(KAVRO_TEMPLATE), world.path(u"HTML_Template_IE5.html"_s));
    EXPECT_TRUE(QDir(world.folder.path()).mkdir(u"help"_s));
    EXPECT_TRUE(QFile(world.path(u"help/index.html"_s)).open(QIODevice::WriteOnly));
    vbMain().dialogs = &m_dialogs;
    for (QTcpServer &server : m_servers) {
        QObject::connect(&server, &QTcpServer::newConnection, &server, [&server] {
            while (QTcpSocket *peer = server.nextPendingConnection())
                delete peer;
        });
        m_ports << QString::number(kFirstPort + m_ports.size());
        EXPECT_TRUE(server.listen(QHostAddress::Any, quint16(m_ports.last().toInt())));
    }
    SaveSetting(u"Mail Options"_s, u"MailServer"_s, QString::fromLatin1(kNoMailServer));
    SaveSetting(u"Mail Options"_s, u"SendOnConsecutiveFailure"_s, u"1"_s);
    SaveSetting(u"Mail Options"_s, u"SendOnFailure"_s, u"1"_s);
    for (const QString &name : { u"third.mdb"_s, u"second.mdb"_s, u"defaultDB.mdb"_s }) {
        const QString file = world.path(name);
        vbMain().db.reset();
        World::makeDatabase(file);
        UseDatabase(dao::OpenDatabase(file, true), file);
        fillCatalogue();
    }
    QFile garbage(world.path(u"garbage.mdb"_s));
    EXPECT_TRUE(garbage.open(QIODevice::WriteOnly) && garbage.write("no database at all\n") > 0);
}

void OperatorWalk::fillCatalogue()
{
    QStringList rows { u"'Echo request', 'ICMP', 0"_s, u"'Discard', 'TCP', 9"_s, u"'Web', 'tcp', 80"_s };
    for (const QString &port : std::as_const(m_ports))
        rows << u"'server', 'TCP', "_s + port;
    for (const QString &row : std::as_const(rows))
        world.sql(u"INSERT INTO tblTCPPorts (Port_Desc, Port_Type, Port_Num) VALUES ("_s + row + u')');
    for (const QString &saying : { u"PortListError-InvalidPortNum"_s, u"MonitorDecline"_s })
        world.sql(u"INSERT INTO tblAgentAnnounce (Saying, Speach, PlayOrder) VALUES ('"_s + saying + u"', 'x', 1)"_s);
}

OperatorWalk::~OperatorWalk()
{
    time->onSuspension = {};
    window.reset();
    vbMain().window = nullptr;
}

// The walk

void OperatorWalk::walk(quint32 seed, int steps)
{
    std::cout << "seed " << seed << ", " << steps << " steps" << std::endl;
    m_random = Random(seed);
    startProgram();
    for (m_step = 1; m_step <= steps && !HasFailure(); ++m_step)
        takeStep();
    if (HasFailure())
        report(seed);
}

const OperatorWalk::Action &OperatorWalk::chooseAction()
{
    int sum = 0;
    for (const Action &each : actions())
        sum += each.weight;
    int at = m_random.below(sum);
    for (const Action &each : actions()) {
        at -= each.weight;
        if (at < 0)
            return each;
    }
    return actions().last();
}

void OperatorWalk::takeStep()
{
    constexpr int attempts = 200; // many actions need an object that may be missing
    m_dialogs.meanwhile = [this] { meanwhile(); };
    for (int i = 0; i < attempts; ++i) {
        const Action &action = chooseAction();
        m_recent.push_back(u"%1 %2"_s.arg(m_step).arg(QString::fromLatin1(action.name)));
        if (m_recent.size() > kRemembered)
            m_recent.pop_front();
        bool possible = true;
        guarded([&] { possible = (this->*action.run)(); });
        if (possible) {
            ++m_done[QString::fromLatin1(action.name)];
            break;
        }
        m_recent.pop_back();
    }
    guarded([this] {
        settle();
        if (!HasFailure())
            checkInvariants();
    });
    // Every attempt at every mail takes its time, and whoever sees so many waiting leaves it.
    if (m_queued > kManyMails)
        SaveSetting(u"Mail Options"_s, u"SendOnFailure"_s, u"0"_s);
    m_dialogs.shown.clear();
    world.announcer.log.clear();
}

void OperatorWalk::report(quint32 seed) const
{
    std::cout << "The walk with seed " << seed << " failed at step " << m_step << "; repeat it with KAVRO_WALK_SEED="
              << seed << ". The last actions:\n";
    for (const QString &each : m_recent)
        std::cout << "  " << each.toStdString() << '\n';
}

void OperatorWalk::note(const QString &text) { m_recent.back() += u" | "_s + text.left(60); }

// Starting and ending

void OperatorWalk::startProgram()
{
    m_ended = m_closed = false;
    vbMain().db.reset();
    m_notifications = std::make_unique<Notifications>();
    vbMain().afterCheck = m_notifications.get();
    WalkStart factory(window, m_editors);
    m_startUp = Main(factory, QString());
    m_startUp.start();
    ASSERT_TRUE(time->runUntil([&] { return !m_startUp.isRunning() || m_ended; }));
    ASSERT_FALSE(m_ended) << m_dialogs.fatal.toStdString();
    m_startUp.result();
    QObject::connect(window.get(), &frmMain::closed, window.get(), [this] { m_closed = true; });
    m_caption = QFileInfo(vbMain().databasePath).fileName() + u" - Kavro_2000"_s;
    m_objects = m_queued = 0;
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
}

/** What the end of the process leaves behind. */
void OperatorWalk::endProgram()
{
    m_ledger.forget();
    window.reset();
    m_notifications.reset(); // with the mail that may be on its way
    VbMain &program = vbMain();
    program.window = nullptr;
    program.monitoring = false;
    program.minutesLeft = 0;
    program.startFlag = 0;
}

void OperatorWalk::settle()
{
    if (m_ended)
        judgeEnd();
    m_dialogs.fatal.clear();
    m_expectedEnds.clear();
    if (m_ended || m_closed) {
        endProgram();
        startProgram();
    }
    if (!m_dialogs.nothingPending())
        ADD_FAILURE() << "a box was not shown";
    m_dialogs.expectNothingMore();
}

/** Statements break on an apostrophe; what has one in its name ends the program when it is written about. */
void OperatorWalk::judgeEnd()
{
    const QString procedure
        = m_dialogs.fatal.section(u"error has occured in the "_s, 1).section(u" subroutine"_s, 0, 0);
    note(u"ended by "_s + procedure);
    if (m_expectedEnds.contains(procedure))
        return;
    const QString file = vbMain().databasePath;
    vbMain().db.reset();
    UseDatabase(dao::OpenDatabase(file, true), file);
    const auto quoted = [&](const QString &select) { return world.rows(select).filter(u"'"_s).size() > 0; };
    const bool named = quoted(u"Select Device_Alias FROM tblDevices"_s);
    const bool templated = quoted(u"Select Email_Subject, Email_Failure, Email_Recovery FROM tblPortEmailTemplate"_s);
    const bool excused
        = (named && (procedure == u"DBRecordEvent" || procedure == u"QueMail")) || (templated && procedure == u"QueMail");
    EXPECT_TRUE(excused) << "the program ended: " << m_dialogs.fatal.toStdString();
    // Whoever has seen that takes the apostrophes out.
    for (auto rows = db().OpenRecordset(u"Select Device_Alias FROM tblDevices"_s); !rows.Eof(); rows.MoveNext()) {
        if (!rows.Field(0).text().contains(u'\''))
            continue;
        rows.Edit();
        rows.Set(u"Device_Alias"_s, u"mended"_s);
        rows.Update();
    }
    world.sql(u"DELETE * FROM tblPortEmailTemplate"_s);
}

// Time

bool OperatorWalk::checking() const { return window && window->cycle().checkInProgress(); }

void OperatorWalk::observe()
{
    if (m_ended || !window)
        return;
    m_ledger.observe(checking());
    for (const QString &fault : m_ledger.takeFaults())
        ADD_FAILURE() << fault.toStdString();
}

void OperatorWalk::passTime(qint64 ms)
{
    const qint64 end = time->now() + ms;
    while (time->now() < end && !m_ended) {
        guarded([&] { time->runFor(qMin(end - time->now(), kChunk)); });
        observe();
    }
}

void OperatorWalk::passSuspensions(int count)
{
    const int last = time->suspensions() + count;
    const qint64 limit = time->now() + kChunk;
    runUntil([&] { return time->suspensions() >= last || time->now() > limit; });
}

bool OperatorWalk::runUntil(const std::function<bool()> &done)
{
    bool reached = true;
    guarded([&] {
        reached = time->runUntil([&] {
            observe();
            return m_ended || done();
        });
    });
    return reached;
}

void OperatorWalk::meanwhile()
{
    if (m_random.chance(60))
        return;
    if (m_random.chance(70))
        passSuspensions(1 + m_random.below(40));
    else
        passTime(m_random.below(90000));
}

// Doing

/** The end of the program is judged by the step; what the walk still asks of a closed database is no fault. */
void OperatorWalk::guarded(const std::function<void()> &act)
{
    try {
        act();
    } catch (const ProgramEnded &) {
        EXPECT_TRUE(m_ended);
    } catch (const VbError &error) {
        EXPECT_TRUE(m_ended) << error.description().toStdString();
    }
}

bool OperatorWalk::canBeHad(const char *name) { return action(name).isEnabled() && action(name).isVisible(); }

bool OperatorWalk::command(const char *name, const Forms &forms)
{
    if (!canBeHad(name))
        return false;
    note(QString::fromLatin1(name));
    withForms(forms, [&] { triggerOrKey(name); });
    return true;
}

/** Does something, and drives the forms that come up meanwhile. */
void OperatorWalk::withForms(const Forms &forms, const std::function<void()> &act)
{
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        auto *form = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!form || !form->isVisible())
            return;
        timer.stop(); // an act waits, too
        driveForm(*form, forms);
        timer.start();
    });
    timer.start(0);
    guarded(act);
    observe();
}

/** By its key where it has one that is listened to where the operator is. */
void OperatorWalk::triggerOrKey(const char *name)
{
    QAction &chosen = action(name);
    QWidget *where = window.get();
    if (chosen.shortcutContext() == Qt::WidgetWithChildrenShortcut)
        where = chosen.associatedObjects().contains(&tree()) ? static_cast<QWidget *>(&tree()) : list().view();
    if (chosen.shortcut().isEmpty() || !where->isVisible() || m_random.chance(60)) {
        chosen.trigger();
        return;
    }
    note(chosen.shortcut().toString());
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    where->setFocus();
    const QKeyCombination key = chosen.shortcut()[0];
    QTest::keyClick(where, key.key(), key.keyboardModifiers());
}

bool OperatorWalk::change(const char *name, const Forms &forms)
{
    m_ledger.setEditing(true);
    const bool done = command(name, forms);
    m_ledger.setEditing(false);
    return done;
}

void OperatorWalk::driveForm(QDialog &form, const Forms &forms)
{
    const auto act = forms.constFind(form.objectName());
    if (act == forms.cend()) {
        ADD_FAILURE() << "unexpected form " << form.objectName().toStdString();
        form.done(QDialog::Rejected);
        return;
    }
    form.activateWindow();
    QApplication::processEvents(); // mostly enough, and qWaitFor sleeps
    EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == &form; }));
    Driver driver(form);
    guarded([&] { (*act)(driver); });
    if (!form.isVisible())
        return;
    EXPECT_TRUE(m_ended) << "still open: " << form.objectName().toStdString();
    form.done(QDialog::Rejected);
}

void OperatorWalk::press(Driver &form, int index)
{
    QAbstractButton &button = form.command(index);
    EXPECT_TRUE(button.isEnabled()) << button.text().toStdString();
    guarded([&] {
        button.setFocus();
        QTest::keyClick(&button, Qt::Key_Space);
    });
}

void OperatorWalk::pressFatally(Driver &form, int index, const QString &procedure)
{
    // What ends the process in earnest is an exception here, and Qt's widgets let go of nothing for one.
    [[maybe_unused]] const LeaksAreFine scope;
    m_expectedEnds << procedure;
    press(form, index);
    EXPECT_TRUE(m_ended) << "an apostrophe went through " << procedure.toStdString();
}

QString OperatorWalk::enter(Driver &form, const char *array, int index, const QString &text)
{
    QWidget &box = form.at(array, index);
    const bool hasKeys = std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u' ' && c <= u'~'; });
    if (hasKeys && m_random.chance(50)) {
        form.type(array, index, text);
    } else {
        box.setFocus();
        QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&box, Qt::Key_Delete);
        QApplication::clipboard()->setText(text);
        QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
    }
    const QString entered = form.text(array, index);
    note(entered);
    return entered;
}

bool OperatorWalk::agrees(const QString &question)
{
    const bool yes = m_random.chance(70);
    expectBox(question, yes ? Dialogs::AnswerYes : Dialogs::AnswerNo);
    note(yes ? u"yes"_s : u"no"_s);
    return yes;
}

// Looking

OperatorWalk::Counts OperatorWalk::counts()
{
    const auto rows = [&](const QString &table) {
        return int(world.rows(u"Select * FROM "_s + table).size());
    };
    return { rows(u"tblGroup"_s), rows(u"tblDevices"_s), rows(u"tblPortMain"_s), rows(u"tblPortEmailTemplate"_s) };
}

void OperatorWalk::expectCounts(const Counts &expected, const char *what)
{
    if (m_ended)
        return;
    const Counts now = counts();
    EXPECT_TRUE(now == expected) << what << ": groups " << now.groups << " for " << expected.groups << ", devices "
                                 << now.devices << " for " << expected.devices << ", checks " << now.checks << " for "
                                 << expected.checks << ", templates " << now.templates << " for "
                                 << expected.templates;
}

QString OperatorWalk::field(const QString &select) { return world.rows(select).value(0, u"(no row)"_s); }

QList<std::pair<NodeLevel, QString>> OperatorWalk::nodesOf(NodeLevel level)
{
    QList<std::pair<NodeLevel, QString>> found;
    for (QTreeWidgetItemIterator it(&tree()); *it; ++it) {
        int depth = 0;
        for (const QTreeWidgetItem *item = *it; item; item = item->parent())
            ++depth;
        if (level == NodeLevel::None || NodeLevel(depth) == level)
            found.append({ NodeLevel(depth), (*it)->data(0, Qt::UserRole).toString() });
    }
    return found;
}

bool OperatorWalk::goTo(NodeLevel level)
{
    const auto nodes = nodesOf(level);
    if (nodes.isEmpty())
        return false;
    const auto &[found, key] = nodes.at(m_random.below(int(nodes.size())));
    select(found, key);
    note(key);
    return true;
}
