#include "notify/vbMSAgent.h"

#include "core/Clock.h"
#include "core/MainWindow.h"
#include "core/ProgramFolder.h"
#include "core/Settings.h"
#include "core/Trap.h"
#include "platform/agent/SpeechTags.h"

#include <QDir>
#include <QLocale>

using namespace Qt::StringLiterals;
using dao::Recordset;

namespace {

constexpr int kText = 0; // column of a saying line

/** What differs between announcing failures and recoveries. Both lists begin with name and port and end with
    the two ids; only a failure has a reason between them. */
struct ChangeKind {
    QLatin1StringView limitKey;
    QLatin1StringView opening;
    QLatin1StringView list;
    QLatin1StringView exceeded;
    int reasonColumn;
    int pronounceColumn;
};
constexpr ChangeKind kFailures{ "MaxFailAnnounce"_L1, "DevicesFailed"_L1, "FailedDeviceList"_L1,
                                "MaxFailedExceeded"_L1, 2, 3 };
constexpr ChangeKind kRecoveries{ "MaxRecoverAnnounce"_L1, "DevicesRecovered"_L1, "RecoveredDeviceList"_L1,
                                  "MaxRecoveredExceeded"_L1, -1, 2 };

ResultTable missingSaying(const QString &saying)
{
    ResultTable line(4);
    line.addRow({ "Oh crap.  I can not find what I am suppose to say from the database."_L1
                      "  Please tell the author of the program at support@kavro.example that the value for the"
                      " saying was not found: "_L1
                      + saying + u'!',
                  u"GetAttention"_s, QString(), QString() });
    return line;
}

/** The spoken form of a device: spelled out (upper case) unless it is to be pronounced, dots as words, mapped to
    the written name for the balloon. */
QString spokenItem(const ResultTable &changes, int row, const ChangeKind &kind)
{
    // A quote would end the mapped text, a bar would make alternatives of the announcement.
    const QString name = QString(changes.at(0, row)).replace(u'"', u'\'').replace(u'|', u'/');
    QString spoken = dao::Value(changes.at(kind.pronounceColumn, row)).boolean() ? name.toLower() : name.toUpper();
    spoken.replace(u'.', "\\pau=50\\ dot \\pau=25\\"_L1);
    QString item = "\\map=\""_L1 + spoken + "\"=\""_L1 + name + "\"\\ port "_L1 + changes.at(1, row);
    if (kind.reasonColumn >= 0)
        item += " because "_L1 + changes.at(kind.reasonColumn, row);
    return item + ".\\pau=800\\"_L1;
}

void addChanges(QList<ResultTable> &announcement, const ResultTable &changes, const ChangeKind &kind)
{
    if (!ArrayHasBounds(changes))
        return;
    // The limit is compared with the upper row index, so one more than its value is still named.
    if (changes.rows() - 1 > GetSettingInt(u"MSAgent"_s, kind.limitKey)) {
        announcement.append(MSAgentSpeak(kind.exceeded));
        return;
    }
    announcement.append(MSAgentSpeak(kind.opening));
    QString list;
    for (int row = 0; row < changes.rows(); ++row)
        list += spokenItem(changes, row, kind);
    ResultTable lines = MSAgentSpeak(kind.list);
    ReplaceInText(lines, u"<DEVICELIST>"_s, list);
    announcement.append(lines);
}

ResultTable dateAndTime()
{
    const QDateTime now = Clock::now();
    ResultTable lines = MSAgentSpeak(u"AnnounceDateTime"_s);
    ReplaceInText(lines, u"<DATE>"_s, QLocale::system().toString(now.date(), QLocale::LongFormat));
    ReplaceInText(lines, u"<TIME>"_s, QLocale::system().toString(now.time(), QLocale::ShortFormat));
    return lines;
}

} // namespace

ResultTable MSAgentSpeak(const QString &saying)
{
    return Trap("MSAgentSpeak", [&] {
        Recordset rows = db().OpenRecordset("Select Speach, PlayOrder, Animation, Agent_X, Agent_Y"_L1
                                            " FROM tblAgentAnnounce WHERE Saying = '"_L1
                                            + saying + "' ORDER BY PlayOrder"_L1);
        CheckDatabaseErrors();
        if (rows.Eof())
            return missingSaying(saying);
        ResultTable lines(4);
        for (; !rows.Eof(); rows.MoveNext())
            lines.addRow({ rows.Field(u"Speach"_s).text(), rows.Field(u"Animation"_s).text(),
                           rows.Field(u"Agent_X"_s).text(), rows.Field(u"Agent_Y"_s).text() });
        return lines;
    });
}

void ReplaceInText(ResultTable &lines, const QString &token, const QString &text)
{
    for (int row = 0; row < lines.rows(); ++row)
        lines.set(kText, row, QString(lines.at(kText, row)).replace(token, text));
}

QString CharacterTitle(const QString &file) { return file.left(1).toUpper() + file.mid(1); }

ResultTable GreetingLines(const QString &character)
{
    ResultTable lines = MSAgentSpeak(u"MSAgentGreeting"_s);
    ReplaceInText(lines, u"<CHARACTER>"_s, CharacterTitle(character));
    return lines;
}

QString CharacterFolder() { return SharedDataFolder() + "/msagent/chars"_L1; }

QStringList CharacterNames()
{
    // The pattern takes every case: such files were made where names had none.
    const QFileInfoList files
        = QDir(CharacterFolder()).entryInfoList({ u"*.acs"_s }, QDir::Files | QDir::Readable, QDir::Name | QDir::IgnoreCase);
    QStringList names;
    for (const QFileInfo &file : files)
        names << file.completeBaseName();
    return names;
}

QList<ResultTable> AnnouncementLines(const ResultTable &failedNow, const ResultTable &recoveredNow)
{
    QList<ResultTable> announcement;
    if (!GetSettingBool(u"MSAgent"_s, u"ShowCharacter"_s))
        return announcement;
    vbMain().window->setStatusText(u"Agent Announce..."_s);
    if (!ArrayHasBounds(failedNow) && !ArrayHasBounds(recoveredNow))
        return announcement;
    if (GetSettingBool(u"MSAgent"_s, u"AnnounceDate"_s))
        announcement.append(dateAndTime());
    addChanges(announcement, failedNow, kFailures);
    addChanges(announcement, recoveredNow, kRecoveries);
    return announcement;
}

void StatusBarAnnouncer::LoadMSAgent() {} // there is no character to load

void StatusBarAnnouncer::speakLines(const ResultTable &lines)
{
    QStringList texts;
    for (int row = 0; row < lines.rows(); ++row)
        texts.append(agent::writtenForm(lines.at(kText, row)));
    if (vbMain().window)
        vbMain().window->setAnnouncement(texts.join(u' '));
}

void StatusBarAnnouncer::speak(const QString &saying) { speakLines(MSAgentSpeak(saying)); }

void StatusBarAnnouncer::greet(const QString &character)
{
    Trap("MSAgentGreeting", [&] { speakLines(GreetingLines(character)); });
}

void StatusBarAnnouncer::AnnounceDevices(const ResultTable &failedNow, const ResultTable &recoveredNow)
{
    Trap("AnnounceDevices", [&] {
        ResultTable all(4);
        for (const ResultTable &lines : AnnouncementLines(failedNow, recoveredNow)) {
            for (int row = 0; row < lines.rows(); ++row)
                all.addRow(lines.row(row));
        }
        if (ArrayHasBounds(all))
            speakLines(all);
    });
}

void StatusBarAnnouncer::unloadCharacter() {} // there is none
