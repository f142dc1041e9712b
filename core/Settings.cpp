#include "core/Settings.h"

#include "core/vbMain.h"
#include "platform/dao/Value.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

namespace Settings {

namespace {

using enum Kind;

constexpr char kOptions[] = "Options";
constexpr char kMail[] = "Mail Options";
constexpr char kAgent[] = "MSAgent";
constexpr char kBalloon[] = "MSAgentBalloon";
constexpr char kStartup[] = "Startup";
constexpr char kWindow[] = "Settings";

// The address that the options dialog shows until the user types one.
constexpr char kPlaceholderAddress[] = "monitor@example.com";

constexpr Key kCatalogue[] = {
    { kOptions, "Min_Between_Checks", Number, "5" },
    { kOptions, "HostTimeOut", Number, "60" },
    { kOptions, "PingTimeOut", Number, "1000" },
    { kOptions, "PingCount", Number, "1" },
    { kOptions, "PingPacketSize", Number, "32", nullptr, true },
    { kOptions, "PingControls", Number, "1" },
    { kOptions, "PortSockets", Number, "31" },
    { kOptions, "ResetIcon", Number, "10" },
    { kOptions, "LogFile", Path, "\\log.txt" },
    { kOptions, "LogFailures", Flag, "1" },
    { kOptions, "EventLogHistory", Number, "10" },
    { kOptions, "HTMLOutput", Flag, "0" },
    { kOptions, "HTMLFile", Path, "\\KavroMonitor.html", "\\kavromonitor.html" },
    { kOptions, "HTMLTemplateFile", Path, "\\HTML_Template_IE5.html" },
    { kOptions, "HTMLRefresh", Number, "5" },
    { kOptions, "DBExclusive", Flag, "1" },
    { kOptions, "ExpandOnFailure", Flag, "1" },
    { kOptions, "CollapseOnRecovery", Flag, "1" },
    { kOptions, "MonitorFinish", Flag, "0" },
    { kOptions, "ShowSplash", Flag, "1" },
    { kOptions, "ShowShutDown", Flag, "1" },
    { kOptions, "EmailNotify", Flag, "1" },
    { kOptions, "UseDeviceAlias", Flag, "1" },
    { kOptions, "MSAgentPronounce", Flag, "1" },
    { kOptions, "IncludeInHTML", Flag, "1" },

    { kMail, "SendOnFailure", Flag, "0" },
    { kMail, "SendUsingSMTP", Flag, "1" },
    { kMail, "SendOnConsecutiveFailure", Number, "5" },
    { kMail, "MailServer", Text, "" },
    { kMail, "MailTimeOut", Number, "20000" },
    { kMail, "MailFrom", Text, "", nullptr, false, kPlaceholderAddress },
    { kMail, "MailTo", Text, "", nullptr, false, kPlaceholderAddress },
    { kMail, "MailSubject", Text, "<DEVICE>:<PORT>" },
    { kMail, "MailFailedMask", Text, "<DEVICE> port <PORT> failed on <DATE> because <REASON>." },
    { kMail, "MailRecoveredMask", Text, "<DEVICE> port <PORT> recovered on <DATE>." },

    { kAgent, "Character", Text, "merlin", nullptr, false, "Merlin" },
    { kAgent, "ShowCharacter", Flag, "1" },
    { kAgent, "HideCharacterOnIdle", Flag, "1" },
    { kAgent, "AnnounceDate", Flag, "0" },
    { kAgent, "MaxFailAnnounce", Number, "5" },
    { kAgent, "MaxRecoverAnnounce", Number, "5" },
    { kAgent, "AnnounceEmail", Flag, "1" },
    { kAgent, "AnnounceSMTPErrors", Flag, "1" },
    { kAgent, "Agent-X", Number, "", nullptr, true },
    { kAgent, "Agent-Y", Number, "", nullptr, true },

    { kBalloon, "BalloonShow", Flag, "1" },
    { kBalloon, "AutoHide", Flag, "1" },
    { kBalloon, "AutoPace", Flag, "1" },
    { kBalloon, "SizeToText", Flag, "1" },

    { kStartup, "Database", Path, "\\defaultDB.mdb", nullptr, true },
    { kStartup, "ShowIntro", Flag, "0", nullptr, true },
    { kStartup, "ShowPortScanIntro", Flag, "0", nullptr, true },

    { kWindow, "MainLeft", Number, "1000", nullptr, true },
    { kWindow, "MainTop", Number, "1000", nullptr, true },
    { kWindow, "MainWidth", Number, "6500", nullptr, true },
    { kWindow, "MainHeight", Number, "6500", nullptr, true },
    { kWindow, "Splitter", Number, "2500", nullptr, true },
    { kWindow, "ViewMode", Text, "0", nullptr, true },
};

constexpr const char *kSections[] = { kOptions, kMail, kAgent, kBalloon, kStartup, kWindow };

bool sameName(const QString &text, const char *name)
{
    return text.compare(QLatin1StringView(name), Qt::CaseInsensitive) == 0;
}

/** The INI file. It may hold a mail password, so it is made readable by its owner only before anything is written. */
class Store
{
public:
    static Store &instance()
    {
        static Store store;
        return store;
    }

    void setPath(const QString &path)
    {
        m_path = path;
        m_ini.reset();
    }
    QString path() const { return m_path; }

    QVariant value(const QString &key)
    {
        return fresh().value(key);
    }
    void setValues(const QList<std::pair<QString, QString>> &values)
    {
        QSettings &ini = fresh();
        for (const auto &[key, text] : values)
            ini.setValue(key, text);
        flush();
    }
    void removeSection(const QString &section)
    {
        fresh().remove(section);
        flush();
    }

private:
    Store()
    {
        const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
        m_path = folder + "/kavro2000/"_L1 + AppTitle() + ".ini"_L1;
    }

    /** The settings as they stand in the file: an administrator may have edited it meanwhile. */
    QSettings &fresh()
    {
        if (!m_ini)
            m_ini = std::make_unique<QSettings>(m_path, QSettings::IniFormat);
        const QFileInfo file(m_path);
        const QDateTime changed = file.exists() ? file.lastModified() : QDateTime();
        if (changed != m_seen) {
            m_ini->sync();
            m_seen = changed;
        }
        return *m_ini;
    }

    void flush()
    {
        makePrivate();
        m_ini->sync();
        m_seen = QFileInfo(m_path).lastModified();
        if (m_ini->status() != QSettings::NoError)
            throw VbError(75, u"Path/File access error: "_s + m_path);
    }

    void makePrivate() const
    {
        QDir().mkpath(QFileInfo(m_path).path());
        QFile file(m_path);
        if (!file.exists() && !file.open(QIODevice::WriteOnly))
            return;
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    }

    QString m_path;
    std::unique_ptr<QSettings> m_ini;
    QDateTime m_seen;
};

/** The store's own spelling of a key, so that every spelling of a reader finds the same value. */
QString storeKey(const QString &section, const QString &key)
{
    if (const Key *known = find(section, key))
        return QLatin1StringView(known->section) + u'/' + QLatin1StringView(known->name);
    return section + u'/' + key;
}

/** A comma typed by hand makes the INI reader see a list; the text is meant. */
QString asText(const QVariant &value)
{
    return value.typeId() == QMetaType::QStringList ? value.toStringList().join(", "_L1) : value.toString();
}

} // namespace

std::span<const Key> catalogue() { return kCatalogue; }

std::span<const char *const> sections() { return kSections; }

const Key *find(const QString &section, const QString &key)
{
    for (const Key &row : kCatalogue) {
        if (sameName(section, row.section) && sameName(key, row.name))
            return &row;
    }
    return nullptr;
}

QString defaultOf(const Key &key)
{
    const QString text = QString::fromLatin1(key.fallback);
    return key.kind == Path ? ProgramFolder() + nativePath(text) : text;
}

QString dialogDefaultOf(const Key &key)
{
    return key.dialogDefault ? QString::fromLatin1(key.dialogDefault) : defaultOf(key);
}

} // namespace Settings

QString GetSetting(const QString &section, const QString &key, const QString &fallback)
{
    const QVariant value = Settings::Store::instance().value(Settings::storeKey(section, key));
    return value.isValid() ? Settings::asText(value) : fallback;
}

QString GetSetting(const QString &section, const QString &key)
{
    const Settings::Key *known = Settings::find(section, key);
    Q_ASSERT(known);
    const QVariant value = Settings::Store::instance().value(Settings::storeKey(section, key));
    return value.isValid() ? Settings::asText(value) : Settings::defaultOf(*known);
}

void SaveSetting(const QString &section, const QString &key, const QString &value)
{
    SaveSettings({ { section, key, value } });
}

void SaveSettings(const QList<SettingValue> &values)
{
    QList<std::pair<QString, QString>> stored;
    for (const SettingValue &each : values)
        stored.append({ Settings::storeKey(each.section, each.key), each.value });
    Settings::Store::instance().setValues(stored);
}

void DeleteSetting(const QString &section) { Settings::Store::instance().removeSection(section); }

int GetSettingInt(const QString &section, const QString &key)
{
    const qint64 number = dao::Value(GetSetting(section, key)).integer();
    if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max())
        throw VbError(6, u"Overflow"_s);
    return int(number);
}

double GetSettingNumber(const QString &section, const QString &key)
{
    return dao::Value(GetSetting(section, key)).number();
}

bool GetSettingBool(const QString &section, const QString &key)
{
    return dao::Value(GetSetting(section, key)).boolean();
}

QString SettingsFilePath() { return Settings::Store::instance().path(); }

void SetSettingsFilePath(const QString &path) { Settings::Store::instance().setPath(path); }
