#include "notify/vbHTML.h"

#include "core/Announcer.h"
#include "core/Clock.h"
#include "core/MainWindow.h"
#include "core/Settings.h"
#include "core/StatusCodes.h"
#include "core/SpokenName.h"
#include "core/Trap.h"
#include "core/Waits.h"
#include "notify/HtmlTemplate.h"
#include "notify/PageFile.h"
#include "notify/vbMSAgent.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QUrl>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;
using dao::Recordset;

namespace {

constexpr QLatin1StringView kDetails = "<!--WRITEDETAILS-->"_L1;
constexpr QLatin1StringView kLineEnd = "\r\n"_L1;

struct Group {
    QString id;
    QString label;
    QString description;
};

struct Device {
    QString id;
    QString name; // as it is spoken
    QString status;
    QString description;
};

/** Sections of the template, ready for filling in. */
struct Sections {
    HtmlSection group;
    HtmlSection device;
    HtmlSection port;
};

const QStringList kGroupPlaceholders{ u"<!--GROUPNAME-->"_s, u"<!--GROUPDESC-->"_s };
const QStringList kDevicePlaceholders{ u"<!--DEVICENAME-->"_s, u"<!--DEVICESTATUS-->"_s, u"<!--DEVICETYPE-->"_s,
                                       u"<!--DEVICEDESC-->"_s, u"class=\"DevNormal\""_s };
const QStringList kPortPlaceholders{
    u"<!--PORTNAME-->"_s, u"<!--PORTTYPE-->"_s, u"<!--PORTDESC-->"_s, u"<!--PORTLASTERROR-->"_s,
    u"<!--PORTSTATUS-->"_s, u"<!--PORTFAILEDON-->"_s, u"<!--PORTRECON-->"_s, u"<!--PORTUPTIME-->"_s,
    u"<!--PORTSUMMARY-->"_s, u"<!--PINGDETAILS-->"_s, u"class=\"PortNormal\""_s, u"XXX"_s };

QString classOf(QLatin1StringView name) { return "class='"_L1 + name + u'\''; }

QString deviceClass(const QString &deviceStatus)
{
    static const std::pair<QLatin1StringView, QLatin1StringView> rows[] = {
        { "No Problems Detected"_L1, "DevOK"_L1 },
        { "Recovered"_L1, "DevRec"_L1 },
        { "Problems Detected"_L1, "DevFailed"_L1 },
        { "Disabled"_L1, "DevDis"_L1 },
    };
    for (const auto &[text, name] : rows) {
        if (deviceStatus == text)
            return classOf(name);
    }
    return classOf("DevNormal"_L1);
}

QString portClass(qint64 icon)
{
    switch (icon) {
    case status::PortFailed: return classOf("PortFailed"_L1);
    case status::PortRecoveredIcon: return classOf("PortRec"_L1);
    case status::PortOk: return classOf("PortOK"_L1);
    case status::PortDisabled: return classOf("PortDis"_L1);
    default: return classOf("PortNormal"_L1);
    }
}

QString textOr(const QString &text, QLatin1StringView replacement)
{
    return text.isEmpty() ? QString(replacement) : HtmlText(text);
}

qint64 count(const dao::Value &value) { return value.isNull() ? 0 : value.integer(); }

QString uptime(qint64 good, qint64 all)
{
    QLocale locale = QLocale::system();
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(all == 0 ? 0.0 : 100.0 * double(good) / double(all), 'f', 2) + u'%';
}

/** Milliseconds to the microsecond, which is what is measured. */
QString pingTime(const dao::Value &value)
{
    constexpr double kMicroseconds = 1000;
    const double ms = value.isNull() ? 0 : value.number();
    return dao::Value(std::round(ms * kMicroseconds) / kMicroseconds).text();
}

/** The label says TTL although the values are reply times; pages in use look for it. */
QString pingDetails(const Recordset &row)
{
    return HtmlText("[PING TTL: "_L1 + pingTime(row.Field(u"Ping_Min"_s)) + " min/"_L1
                    + pingTime(row.Field(u"Ping_Max"_s)) + " max/"_L1 + pingTime(row.Field(u"Ping_Avg"_s))
                    + " average]"_L1);
}

/** In the order of kPortPlaceholders. */
QStringList portValues(const Recordset &row)
{
    const QString port = row.Field(u"Port_Num"_s).text();
    const qint64 good = count(row.Field(u"Port_Success"_s));
    const qint64 all = good + count(row.Field(u"Port_Failure"_s));
    return { HtmlText(port),
             HtmlText(row.Field(u"Port_Type"_s).text()),
             textOr(row.Field(u"Port_Desc"_s).text(), "&nbsp;"_L1),
             textOr(row.Field(u"Port_Last_Error"_s).text(), "-"_L1),
             HtmlText(row.Field(u"Port_Status"_s).text()),
             textOr(row.Field(u"Port_Fail_Date"_s).text(), "-"_L1),
             textOr(row.Field(u"Port_Rec_Date"_s).text(), "-"_L1),
             uptime(good, all),
             QString::number(good) + " of "_L1 + QString::number(all) + " times."_L1,
             port == "Ping"_L1 ? pingDetails(row) : QString(),
             portClass(count(row.Field(u"Port_Icon"_s))),
             "ID"_L1 + row.Field(u"PORTID"_s).text() };
}

QList<Group> readGroups()
{
    QList<Group> groups;
    Recordset rows = db().OpenRecordset(u"Select * from tblGroup"_s);
    for (; !rows.Eof(); rows.MoveNext())
        groups.append({ rows.Field(u"Group_ID"_s).text(), rows.Field(u"Group_Label"_s).text(),
                        rows.Field(u"Group_Desc"_s).text() });
    return groups;
}

QList<Device> readDevices(const QString &group)
{
    QList<Device> devices;
    Recordset rows = db().OpenRecordset(
        "Select Device_ID, Device_Name, Device_Alias,  Device_Desc, Device_Status, MSAgent_Referr_Device,"_L1
        " HTML_Output FROM tblDevices WHERE HTML_Output = True and Group_ID = "_L1
        + group + " ORDER By Device_Name"_L1);
    for (; !rows.Eof(); rows.MoveNext())
        devices.append({ rows.Field(u"Device_ID"_s).text(),
                         SpokenDeviceName(rows),
                         rows.Field(u"Device_Status"_s).text(), rows.Field(u"Device_Desc"_s).text() });
    return devices;
}

void addDevice(const Device &device, const Sections &sections, QString &details)
{
    sections.device.expand({ HtmlText(device.name), HtmlText(device.status), u"Device"_s,
                             textOr(device.description, "&nbsp;"_L1), deviceClass(device.status) },
                           details);
    Recordset rows = db().OpenRecordset("Select *, tblPortMain.Port_ID as PORTID FROM tblPortMain, tblPortStatus"_L1
                                        " WHERE tblPortMain.Port_ID = tblPortStatus.Port_ID"_L1
                                        " AND tblPortMain.Device_ID = "_L1
                                        + device.id + " ORDER BY tblPortMain.Port_Num"_L1);
    for (; !rows.Eof(); rows.MoveNext())
        sections.port.expand(portValues(rows), details);
}

/** Stops when another database is opened meanwhile; whoever waits for the details looks at that, too. */
Task<QString> collectDetails(QString groupSection, QString deviceSection, QString portSection)
{
    const Sections sections{ HtmlSection(groupSection, kGroupPlaceholders),
                             HtmlSection(deviceSection, kDevicePlaceholders),
                             HtmlSection(portSection, kPortPlaceholders) };
    const int generation = vbMain().databaseGeneration;
    QString details;
    const QList<Group> groups = readGroups();
    for (const Group &group : groups) {
        sections.group.expand({ HtmlText(group.label), HtmlText(group.description) }, details);
        const QList<Device> devices = readDevices(group.id);
        for (const Device &device : devices) {
            co_await waits::Yield();
            if (vbMain().databaseGeneration != generation)
                co_return details;
            addDevice(device, sections, details);
        }
    }
    co_return details;
}

/** A text as an expression of the page's script language. What could end the text or the script element is put
    together at run time. */
QString quoted(const QString &text)
{
    QString literal;
    for (const QChar c : text) {
        if (c == u'"' || c == u'<')
            literal += "\" + Chr("_L1 + QString::number(c.unicode()) + ") + \""_L1;
        else
            literal += c.category() == QChar::Other_Control || c == QChar::LineSeparator
                    || c == QChar::ParagraphSeparator
                ? u' '
                : c;
    }
    return u'"' + literal + u'"';
}

QString speakLine(const QString &text) { return "AgentChar.Speak "_L1 + quoted(text) + kLineEnd; }

/** What was said of one kind of change. Both lists begin with name and port; only a failure has a reason. */
QString announcement(const ResultTable &changes, QLatin1StringView animation, QLatin1StringView opening,
                     int reasonColumn)
{
    if (!ArrayHasBounds(changes))
        return {};
    QString lines = "AgentChar.Play "_L1 + quoted(animation) + kLineEnd + speakLine(opening);
    for (int row = 0; row < changes.rows(); ++row) {
        const QString &name = changes.at(0, row);
        const QString spoken = QString(name).replace(u'.', "\\pau=50\\ dot \\pau=25\\"_L1);
        const QString reason = reasonColumn < 0 ? QString() : " because "_L1 + changes.at(reasonColumn, row);
        lines += speakLine("\\map=\""_L1 + spoken + "\"=\""_L1 + name + "\"\\ port "_L1 + changes.at(1, row) + reason
                           + ".\\pau=800\\"_L1);
    }
    return lines;
}

QString dateLines()
{
    const QDateTime now = Clock::now();
    const QLocale locale = QLocale::system();
    return speakLine("The date is "_L1 + locale.toString(now.date(), QLocale::LongFormat) + u'.')
        + speakLine("The time is "_L1 + locale.toString(now.time(), QLocale::ShortFormat) + u'.');
}

/** A file name as part of an address that stands in an attribute. */
QString addressOf(const QString &fileName)
{
    QString address;
    for (const QChar c : fileName) {
        if (QStringView(u"%#?'\"<>&").contains(c) || c.category() == QChar::Other_Control)
            address += QString::fromLatin1(QUrl::toPercentEncoding(QString(c)));
        else
            address += c;
    }
    return address;
}

/** Small placeholders of the page; they may stand in the sections, too. */
void fillInPage(QString &text, const ResultTable &failedNow, const ResultTable &recoveredNow)
{
    const QDateTime now = Clock::now();
    text.replace("<!--LASTCHECK-->"_L1, HtmlText(GeneralDate(now)));
    text.replace("<!--CURRDATE-->"_L1, now.toString(u"MM, dd, yyyy"_s));
    text.replace("<!--FAILEDDEVICES-->"_L1, QString::number(failedNow.rows()));
    text.replace("<!--RECOVEREDDEVICES-->"_L1, QString::number(recoveredNow.rows()));
    text.replace("<!--WRITEAGENT-->"_L1, HTML_Agent(failedNow, recoveredNow));
}

/** The details make the page long; everything else is replaced before they are put in. */
Task<void> writeOutput(QString outputPath, ResultTable failedNow, ResultTable recoveredNow)
{
    const QString templatePath = nativePath(GetSetting(u"Options"_s, u"HTMLTemplateFile"_s));
    if (!QFileInfo(templatePath).isFile()) {
        co_await HTML_Error(outputPath);
        co_return;
    }
    const int generation = vbMain().databaseGeneration;
    HtmlTemplate texts = SplitTemplate(ReadTemplate(templatePath));
    texts.page.replace("<!--WRITEHEADER-->"_L1, HTML_Header(outputPath));
    for (QString *text : { &texts.page, &texts.group, &texts.device, &texts.port })
        fillInPage(*text, failedNow, recoveredNow);
    QStringList parts = texts.page.split(kDetails);
    if (parts.size() > 1) {
        const QString details = co_await HTML_Details(texts.group, texts.device, texts.port);
        if (vbMain().databaseGeneration != generation)
            co_return;
        for (qsizetype i = parts.size() - 1; i > 0; --i)
            parts.insert(i, details);
    }
    co_await ReplaceFile(outputPath, parts);
}

Task<void> createOutput(ResultTable failedNow, ResultTable recoveredNow)
{
    const QString outputPath = nativePath(GetSetting(u"Options"_s, u"HTMLFile"_s));
    if (!GetSettingBool(u"Options"_s, u"HTMLOutput"_s))
        co_return;
    vbMain().window->setStatusText(u"Creating HTML Output..."_s);
    co_await WriteHTMLOutput(outputPath, failedNow, recoveredNow);
}

Task<void> reportError(QString outputPath)
{
    const QString message = u"An error occurred while writing the HTML output file because "_s
        + "the HTML template file you specified does not exist"_L1;
    const QStringList page{ u"<HTML><BODY><CENTER><H1>Kavro 2000 - Error Has Occured</H1></CENTER><HR>"_s + message
        + ".<BR>"_L1 + "<HR></BODY></HTML>"_L1 };
    QString reason = u"the HTML template file you specified does not exits"_s;
    if (QFileInfo(outputPath).isFile())
        co_await ReplaceFile(outputPath, page);
    else
        reason += " and the HTML output path is not valid"_L1;
    ResultTable lines = MSAgentSpeak(u"HTMLWriteError"_s);
    ReplaceInText(lines, u"<ERROR>"_s, reason);
    vbMain().announcer->speakLines(lines);
    WriteLog(u"Error writing HTML output file.  HTML output has been disabled"_s, u"Warning"_s, 0, 0);
    SaveSetting(u"Options"_s, u"HTMLOutput"_s, u"0"_s);
}

/** The file of that name, in whatever case its folder has it; the two readers of "HTMLFile" do not agree on it.
    Empty when there is none. */
QString existingFile(const QString &path)
{
    const QFileInfo wanted(path);
    if (wanted.isFile())
        return path;
    const QFileInfoList files = wanted.dir().entryInfoList(QDir::Files);
    for (const QFileInfo &file : files) {
        if (file.fileName().compare(wanted.fileName(), Qt::CaseInsensitive) == 0)
            return file.filePath();
    }
    return {};
}

} // namespace

Task<void> CreateHTMLOutput(ResultTable failedNow, ResultTable recoveredNow)
{
    return Trap("CreateHTMLOutput", createOutput(failedNow, recoveredNow));
}

Task<void> WriteHTMLOutput(QString outputPath, ResultTable failedNow, ResultTable recoveredNow)
{
    return Trap("WriteHTMLOutput", writeOutput(outputPath, failedNow, recoveredNow));
}

QString HTML_Header(const QString &outputPath)
{
    return Trap("HTML_Header", [&] {
        constexpr double kSecondsAMinute = 60;
        const double seconds = std::nearbyint(GetSettingNumber(u"Options"_s, u"HTMLRefresh"_s) * kSecondsAMinute);
        if (!(std::abs(seconds) <= std::numeric_limits<qint32>::max()))
            throw VbError(6, u"Overflow"_s);
        const QString fileName = nativePath(outputPath).section(u'/', -1);
        return "<meta HTTP-EQUIV='Refresh' CONTENT='"_L1 + QString::number(qint32(seconds)) + u','
            + addressOf(fileName) + "'>"_L1;
    });
}

Task<QString> HTML_Details(QString groupSection, QString deviceSection, QString portSection)
{
    return Trap("HTML_Details", collectDetails(groupSection, deviceSection, portSection));
}

QString HTML_Agent(const ResultTable &failedNow, const ResultTable &recoveredNow)
{
    return Trap("HTML_Agent", [&]() -> QString {
        const bool changes = ArrayHasBounds(failedNow) || ArrayHasBounds(recoveredNow);
        if (!changes || !GetSettingBool(u"MSAgent"_s, u"ShowCharacter"_s))
            return u"'' No Activity To Announce"_s;
        QString lines = "On Error Resume Next"_L1 + kLineEnd + "AgentChar.Show"_L1 + kLineEnd
            + "AgentChar.Play "_L1 + quoted(u"Explain"_s) + kLineEnd;
        if (GetSettingBool(u"MSAgent"_s, u"AnnounceDate"_s))
            lines += dateLines();
        constexpr int kReason = 2;
        lines += announcement(failedNow, "Surprised"_L1,
                              "There was a problem connecting to the following devices:  "_L1, kReason);
        lines += announcement(recoveredNow, "Pleased"_L1, "The following devices have recovered:  "_L1, -1);
        return lines + "AgentChar.Hide"_L1 + kLineEnd;
    });
}

Task<void> HTML_Error(QString outputPath) { return Trap("HTML_Error", reportError(outputPath)); }

void ViewHTML()
{
    Trap("mnuViewHTML_Click", [] {
        const Settings::Key *key = Settings::find(u"Options"_s, u"HTMLFile"_s);
        const QString fallback = ProgramFolder() + QLatin1StringView(key->otherDefault);
        const QString page = existingFile(nativePath(GetSetting(u"Options"_s, u"HTMLFile"_s, fallback)));
        if (page.isEmpty())
            vbMain().announcer->speak(u"HTMLOutputFileDoesNotExist"_s);
        else
            ShellOpen(page);
    });
}
