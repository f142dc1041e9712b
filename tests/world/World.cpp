#include "tests/world/World.h"

#include "core/Clock.h"
#include "core/Settings.h"
#include "core/Waits.h"

#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

void RecordingWindow::setStatusText(const QString &text)
{
    if (recordStatus)
        log << "status "_L1 + text;
}
void RecordingWindow::setReadyText(const QString &text) { log << "ready "_L1 + text; }
void RecordingWindow::setAnnouncement(const QString &text) { log << "say "_L1 + text; }
void RecordingWindow::setMonitoringState(MonitoringState state)
{
    static const QStringList names{ u"off"_s, u"on"_s, u"checking"_s };
    log << "state "_L1 + names.at(int(state));
}
void RecordingWindow::setTrayTip(const QString &tip) { log << "tip "_L1 + tip; }
void RecordingWindow::setTrayImage(int image) { log << "tray "_L1 + QString::number(image); }
void RecordingWindow::addEventRow(int icon, const QDateTime &, const QString &type, const QString &message)
{
    log << u"event %1 %2: %3"_s.arg(QString::number(icon), type, message);
}
void RecordingWindow::Load_EventLog() { log << u"load events"_s; }
Task<void> RecordingWindow::Refresh_TreeView_Icons()
{
    co_await waits::Yield();
    log << u"refresh tree"_s;
}
void RecordingWindow::reselectNode() { log << u"reselect"_s; }
void RecordingWindow::carryOut(OperatorCommand command) { log << u"command %1"_s.arg(int(command)); }
void RecordingWindow::unload()
{
    log << u"unload"_s;
    if (onUnload)
        onUnload();
}
QStringList RecordingWindow::take() { return std::exchange(log, {}); }

ScriptedDialogs::~ScriptedDialogs()
{
    for (const auto &[text, answer] : m_expected)
        ADD_FAILURE() << "box was not shown: " << text.toStdString();
}
void ScriptedDialogs::expect(const QString &textPart, Answer answer) { m_expected.emplace_back(textPart, answer); }
Dialogs::Answer ScriptedDialogs::messageBox(const QString &text, const QString &caption, Icon icon, Buttons buttons)
{
    shown.append({ text, caption, icon, buttons });
    if (m_expected.empty() || !text.contains(m_expected.front().first)) {
        ADD_FAILURE() << "unexpected box: " << text.toStdString();
        return AnswerCancel;
    }
    const Answer answer = m_expected.front().second;
    m_expected.pop_front();
    return answer;
}
bool ScriptedDialogs::shellOpen(const QString &target)
{
    opened << target;
    return canOpen;
}

void RecordingAnnouncer::speakLines(const ResultTable &lines)
{
    for (int row = 0; row < lines.rows(); ++row)
        log << "line "_L1 + lines.row(row).join(u'|');
}
void RecordingAnnouncer::AnnounceDevices(const ResultTable &failedNow, const ResultTable &recoveredNow)
{
    log << u"announce %1 failed, %2 recovered"_s.arg(failedNow.rows()).arg(recoveredNow.rows());
}

namespace {

QStringList schemaStatements()
{
    QFile file(QStringLiteral(KAVRO_SCHEMA));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("schema missing");
    QString text = QString::fromUtf8(file.readAll());
    text.remove(QRegularExpression(u"--[^\n]*"_s));
    QStringList statements;
    for (const QString &part : text.split(u';')) {
        if (!part.trimmed().isEmpty())
            statements << part.trimmed();
    }
    return statements;
}

/** Made once a process; every test works on a copy. */
const QString &emptyDatabase()
{
    static const QTemporaryDir folder;
    static const QString path = [] {
        const QString file = folder.filePath(u"empty.mdb"_s);
        dao::CreateDatabase(file, schemaStatements());
        return file;
    }();
    return path;
}

} // namespace

void World::makeDatabase(const QString &path)
{
    QFile::remove(path);
    if (!QFile::copy(emptyDatabase(), path))
        qFatal("cannot copy the empty database");
}

World::World() : now(QDate(2026, 3, 14), QTime(15, 9, 26))
{
    SetSettingsFilePath(path(u"settings.ini"_s));
    setProgramFolder(folder.path());
    Clock::setSource([this] { return now; });
    setEndProgramHook([](int code) { throw ProgramEnded{ code }; });
    const QString file = path(u"defaultDB.mdb"_s);
    makeDatabase(file);
    QFile log(logFile());
    log.open(QIODevice::WriteOnly);
    VbMain &program = vbMain();
    UseDatabase(dao::OpenDatabase(file, true), file);
    program.window = &window;
    program.announcer = &announcer;
    program.dialogs = &dialogs;
    program.afterCheck = &afterCheck;
    waits::setAboutToWait([] {
        if (vbMain().db)
            vbMain().db->CommitPending();
    });
}

World::~World()
{
    dao::SetAccessHook({});
    Clock::setSource({});
    setEndProgramHook({});
    waits::setAboutToWait({});
    VbMain &program = vbMain();
    const int generation = program.databaseGeneration;
    program = VbMain();
    program.databaseGeneration = generation;
}

QString World::logFile() const { return path(u"log.txt"_s); }

void World::sql(const QString &statement) { db().Execute(statement, dao::dbFailOnError); }

QStringList World::rows(const QString &select)
{
    QStringList result;
    dao::Recordset rows = db().OpenRecordset(select);
    const int columns = int(rows.FieldNames().size());
    for (; !rows.Eof(); rows.MoveNext()) {
        QStringList cells;
        for (int i = 0; i < columns; ++i)
            cells << (rows.Field(i).isNull() ? u"Null"_s : rows.Field(i).text());
        result << cells.join(u'|');
    }
    return result;
}

qint64 World::number(const QString &select) { return db().OpenRecordset(select).Field(0).integer(); }

namespace {
int addRow(const QString &select, const QList<std::pair<QString, dao::Value>> &fields, const QString &key)
{
    dao::Recordset rows = db().OpenRecordset(select);
    rows.AddNew();
    for (const auto &[name, value] : fields)
        rows.Set(name, value);
    rows.Update();
    rows.Requery();
    rows.MoveLast();
    return int(rows.Field(key).integer());
}
} // namespace

int World::addGroup(const QString &label)
{
    return addRow(u"SELECT * FROM tblGroup WHERE Group_Label = '"_s + label + u'\'',
                  { { u"Group_Label"_s, label }, { u"Group_Desc"_s, label + " description"_L1 },
                    { u"Group_Icon"_s, 14 } },
                  u"Group_ID"_s);
}

int World::addDevice(int group, const QString &name, const QString &alias)
{
    return addRow(u"SELECT * FROM tblDevices WHERE Device_Name = '"_s + name + u'\'',
                  { { u"Group_ID"_s, group }, { u"Device_Name"_s, name }, { u"Device_Alias"_s, alias },
                    { u"Device_Desc"_s, name + " description"_L1 }, { u"HTML_Output"_s, true } },
                  u"Device_ID"_s);
}

int World::addCheck(int device, const QString &port)
{
    const QString select = "Select tblPortMain.Port_Num, tblPortMain.Port_Type, tblPortMain.Port_Desc,"_L1
        " tblPortMain.Port_Email_Notify, tblPortMain.Port_ID as PortID,"_L1
        " tblPortMain.Device_ID as MainID, tblPortStatus.Device_ID as StatusID"_L1
        " FROM tblPortMain LEFT JOIN tblPortStatus ON tblPortMain.Port_ID = tblPortStatus.Port_ID"_L1
        " WHERE tblPortMain.Device_ID = "_L1 + QString::number(device) + " AND tblPortMain.Port_Num like '"_L1 + port
        + u'\'';
    return addRow(select,
                  { { u"MainID"_s, device }, { u"StatusID"_s, device }, { u"Port_Num"_s, port },
                    { u"Port_Type"_s, port == "Ping"_L1 ? port : u"Port"_s }, { u"Port_Desc"_s, u"test check"_s },
                    { u"Port_Email_Notify"_s, true } },
                  u"PortID"_s);
}
