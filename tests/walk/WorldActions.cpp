// What happens around the operator: time, hosts, settings.
#include "tests/walk/OperatorWalk.h"

#include "core/Settings.h"

using namespace Qt::StringLiterals;

namespace {
constexpr qint64 kLongestPause = 6 * 60000; // ms between two cycles
}

bool OperatorWalk::letTimePass()
{
    passTime(1000 + m_random.below(150000));
    return true;
}

/** Leaves a cycle somewhere in its middle, so that the next actions fall into it. */
bool OperatorWalk::partOfCycle()
{
    if (!vbMain().monitoring)
        return false;
    const qint64 limit = time->now() + kLongestPause;
    runUntil([&] { return checking() || time->now() > limit; });
    const int suspensions = m_random.below(60);
    passSuspensions(suspensions);
    note(u"%1 suspensions"_s.arg(suspensions));
    return true;
}

bool OperatorWalk::finishCycle()
{
    if (!checking())
        return false;
    EXPECT_TRUE(runUntil([&] { return !checking(); })) << "a cycle does not end";
    return true;
}

bool OperatorWalk::togglePort()
{
    const int which = m_random.below(int(std::size(m_servers)));
    QTcpServer &server = m_servers[which];
    if (server.isListening())
        server.close();
    else
        server.listen(QHostAddress::Any, quint16(m_ports.at(which).toInt()));
    note(m_ports.at(which));
    return true;
}

/** The store is open to whoever edits it while the program runs. */
bool OperatorWalk::changeSetting()
{
    struct Setting {
        const char *section;
        const char *key;
        std::initializer_list<const char *> values;
    };
    static const Setting settings[] = {
        { "Options", "Min_Between_Checks", { "1", "2", "5", "0" } },
        { "Options", "PingControls", { "1", "3", "64" } },
        { "Options", "PortSockets", { "1", "5", "31" } },
        { "Options", "PingCount", { "1", "3" } },
        { "Options", "ResetIcon", { "0", "1", "10" } },
        { "Options", "ExpandOnFailure", { "0", "1" } },
        { "Options", "CollapseOnRecovery", { "0", "1" } },
        { "Options", "HTMLOutput", { "0", "1" } },
        { "Options", "MonitorFinish", { "0", "1" } },
        { "Options", "LogFailures", { "0", "1" } },
        { "Options", "ShowShutDown", { "0", "1" } },
        { "Options", "EventLogHistory", { "0", "1", "10" } },
        { "Options", "DBExclusive", { "0", "1" } },
        { "Options", "EmailNotify", { "0", "1" } },
        { "Options", "UseDeviceAlias", { "0", "1" } },
        { "Mail Options", "SendOnFailure", { "0", "1" } },
        { "Mail Options", "SendUsingSMTP", { "0", "1" } },
        { "Mail Options", "SendOnConsecutiveFailure", { "1", "1", "2" } },
        { "Mail Options", "MailServer", { kNoMailServer, kNoMailServer, "" } },
        { "Startup", "ShowIntro", { "0", "1" } },
        { "Startup", "ShowPortScanIntro", { "0", "1" } },
    };
    const Setting &setting = settings[m_random.below(int(std::size(settings)))];
    const QString value = QString::fromLatin1(m_random.of(setting.values));
    const QString key = QString::fromLatin1(setting.key);
    SaveSetting(QString::fromLatin1(setting.section), key, value);
    note(key + u'=' + value);
    return true;
}
