#include "notify/options/OptionTable.h"

#include "notify/options/FilePicker.h"
#include "notify/options/ValueChecks.h"

namespace options {

namespace {

using enum Editor;

constexpr char kRoot[] = "Root";
constexpr char kAgentPage[] = "MSAgent";
constexpr char kCharacters[] = "MSAgentCharacters";
constexpr char kLogging[] = "Logging";
constexpr char kFailure[] = "FailureNotification";
constexpr char kSmtp[] = "SMTP";
constexpr char kTemplate[] = "EmailTemplate";
constexpr char kHtml[] = "HTMLOutput";
constexpr char kDatabase[] = "DBOptions";
constexpr char kMonitor[] = "Monitor";
constexpr char kTcp[] = "TCP";
constexpr char kPing[] = "Ping";
constexpr char kCreation[] = "DefaultOptions";
constexpr char kScripting[] = "EventScripting";

constexpr Page kPages[] = {
    { kRoot, nullptr, "Options", "Everything here is saved when you press OK and used from then on." },
    { kAgentPage, kRoot, "Microsoft Agent", "What the character says aloud, and how." },
    { kCharacters, kAgentPage, "Characters", "Who speaks to you." },
    { kLogging, kRoot, "Logging Options", "Where events are written, and how long they are kept." },
    { kFailure, kRoot, "Failure Notification", "Whether failures and recoveries are mailed, and when." },
    { kSmtp, kFailure, "SMTP Properties", "The servers that take the mail, and its sender." },
    { kTemplate, kFailure, "Email Template", "What a mail says when a check has no template of its own." },
    { kHtml, kRoot, "HTML Output", "The status page that is written after every check." },
    { kDatabase, kRoot, "Database Options", "How the database is opened." },
    { kMonitor, kRoot, "Monitoring Options", "How often devices are checked, and what the window shows." },
    { kTcp, kMonitor, "TCP Port", "How the ports of devices are checked." },
    { kPing, kMonitor, "ICMP Ping", "How devices are pinged." },
    { kCreation, kRoot, "Object Creation", "What new devices and ports begin with." },
    { kScripting, kRoot, "Event Scripting", "A script of your own at the end of every check." },
};

constexpr char kOptions[] = "Options";
constexpr char kMail[] = "Mail Options";
constexpr char kAgent[] = "MSAgent";
constexpr char kBalloon[] = "MSAgentBalloon";

constexpr char kBalloonGroup[] = "Word balloon";
constexpr char kTreeGroup[] = "Device tree";
constexpr char kProgramGroup[] = "Program";
constexpr char kDeviceGroup[] = "New devices";
constexpr char kPortGroup[] = "New ports";

constexpr Row kRows[] = {
    { kAgentPage, kAgent, "ShowCharacter", Check, "&Announce failures and recoveries",
        "The character tells after each check which devices have failed or recovered." },
    { kAgentPage, kAgent, "AnnounceDate", Check, "Say &date and time first",
        "Announcements begin with the date and the time of day.", { .needs = "ShowCharacter" } },
    { kAgentPage, kAgent, "MaxFailAnnounce", Number, "Most &failures named:",
        "With more failures than this the character only says that there are many. One more is still named.",
        { .low = 0, .high = 9999, .needs = "ShowCharacter" } },
    { kAgentPage, kAgent, "MaxRecoverAnnounce", Number, "Most re&coveries named:",
        "With more recoveries than this the character only says that there are many. One more is still named.",
        { .low = 0, .high = 9999, .needs = "ShowCharacter" } },
    { kAgentPage, kAgent, "AnnounceEmail", Check, "Tell when &mail is sent",
        "The character says that notification mails are on their way." },
    { kAgentPage, kAgent, "AnnounceSMTPErrors", Check, "Tell when mail could &not be sent",
        "The character says which mail was not delivered and why." },
    { kAgentPage, kAgent, "HideCharacterOnIdle", Check, "Hide the character when &it has nothing to do",
        "The character leaves the screen after a while and comes back to speak." },
    { kAgentPage, kBalloon, "BalloonShow", Check, "Show the word &balloon",
        "What the character says can be read beside it.", { .group = kBalloonGroup } },
    { kAgentPage, kBalloon, "AutoHide", Check, "Hide it after spea&king",
        "Otherwise the balloon stays until the character hides.",
        { .group = kBalloonGroup, .needs = "BalloonShow" } },
    { kAgentPage, kBalloon, "AutoPace", Check, "Show words as they are s&poken",
        "Otherwise the whole text stands in the balloon at once.",
        { .group = kBalloonGroup, .needs = "BalloonShow" } },
    { kAgentPage, kBalloon, "SizeToText", Check, "Fit its si&ze to the text",
        "Otherwise the balloon has a fixed size and longer texts scroll.",
        { .group = kBalloonGroup, .needs = "BalloonShow" } },

    { kCharacters, kAgent, "Character", Character, "&Character:", "Choosing a character lets it introduce itself." },

    { kLogging, kOptions, "LogFailures", Check, "&Write events to the log file",
        "Every event gets one line: date and time, kind, text." },
    { kLogging, kOptions, "LogFile", File, "&Log file:", "The text file that takes the events.",
        { .check = &logFileProblem, .picker = &kLogFilePicker } },
    { kLogging, kOptions, "EventLogHistory", Number, "Days to &keep events:",
        "Older events are deleted from the database. The log file is not touched.",
        { .low = 0, .high = 36500,
            .hint = "Older events leave the event viewer when the program starts and every other day." } },

    { kFailure, kMail, "SendOnFailure", Check, "&Send mail about failures and recoveries",
        "The main switch of mail. It goes off by itself when there is no server to send with." },
    { kFailure, kMail, "SendUsingSMTP", Check, "&Deliver it by SMTP",
        "Otherwise mails are noted in the event log only.", { .needs = "SendOnFailure" } },
    { kFailure, kMail, "SendOnConsecutiveFailure", Number, "Failed checks in a ro&w:",
        "A mail is sent when a check has failed so many times in a row.",
        { .low = 1, .high = 9999,
            .hint = "A failure is mailed once it has lasted so many checks, and its recovery after that." } },

    { kSmtp, kMail, "MailServer", Servers, "Ser&vers:",
        "The servers are tried from top to bottom until one has taken the mail." },
    { kSmtp, kMail, "MailTimeOut", Number, "&Time-out:",
        "The longest that one attempt may take, looking up the server's name included.",
        { .low = 1, .high = 3600000, .unit = " ms", .hint = "For one mail with one server. 1000 ms are one second." } },
    { kSmtp, kMail, "MailFrom", Line, "Se&nder:", "The address that mails come from.",
        { .check = &senderProblem } },

    { kTemplate, kMail, "MailTo", Line, "&To:", "One or more addresses; a semicolon stands between two of them.",
        { .check = &recipientsProblem } },
    { kTemplate, kMail, "MailSubject", Template, "&Subject:", "The subject of every mail.",
        { .check = &templateProblem, .reason = "connection timed out" } },
    { kTemplate, kMail, "MailFailedMask", Template, "&Failure:", "The text of a mail about a failure.",
        { .check = &templateProblem, .lines = 3, .reason = "connection timed out" } },
    { kTemplate, kMail, "MailRecoveredMask", Template, "Re&covery:", "The text of a mail about a recovery.",
        { .check = &templateProblem, .lines = 3, .reason = "device recovered" } },

    { kHtml, kOptions, "HTMLOutput", Check, "&Write a status page after every check",
        "The page goes off by itself when its template cannot be found." },
    { kHtml, kOptions, "HTMLFile", File, "&Page:", "The file that is written.",
        { .check = &pageFileProblem, .picker = &kPageFilePicker } },
    { kHtml, kOptions, "HTMLTemplateFile", File, "&Template:", "The file that the page is made from.",
        { .check = &templateFileProblem, .picker = &kTemplateFilePicker } },
    { kHtml, kOptions, "HTMLRefresh", Number, "Minutes until re&load:",
        "How often a browser that shows the page loads it again.",
        { .low = 0.1, .high = 10080, .decimals = 2 } },

    { kDatabase, kOptions, "DBExclusive", Check, "Open the database &exclusively",
        "Nobody else can open the database as long as the program has it open.",
        { .hint = "Exclusive access is faster and keeps every other program out. Switch it off if another program"
                  " is to read the results meanwhile. It takes effect when a database is opened the next time." } },

    { kMonitor, kOptions, "Min_Between_Checks", Number, "Minutes &between checks:",
        "The next check begins so many minutes after the last one has ended.",
        { .low = 1, .high = 32767 } },
    { kMonitor, kOptions, "ResetIcon", Number, "Checks to show a re&covery:",
        "After more successful checks than this a recovered port looks normal again.",
        { .low = 0, .high = 32767 } },
    { kMonitor, kOptions, "ExpandOnFailure", Check, "Open the branch of a &failed device",
        "What has failed can be seen at once.", { .group = kTreeGroup } },
    { kMonitor, kOptions, "CollapseOnRecovery", Check, "Close the branch of a device without &problems",
        "Only what needs attention stays open.", { .group = kTreeGroup } },
    { kMonitor, kOptions, "ShowSplash", Check, "&Show the splash screen at the start",
        "Takes effect at the next start.", { .group = kProgramGroup } },
    { kMonitor, kOptions, "ShowShutDown", Check, "&Ask before closing",
        "The question answers itself after three seconds.", { .group = kProgramGroup } },

    { kTcp, kOptions, "HostTimeOut", Number, "&Time-out:", "A port that has not answered by then has failed.",
        { .low = 1, .high = 86400, .unit = " s" } },
    { kTcp, kOptions, "PortSockets", Number, "&Simultaneous connections:",
        "How many ports are tried at the same time.",
        { .low = 1, .high = 4096,
            .hint = "More of them make the checks of a large network faster. Used from the next check on." } },

    { kPing, kOptions, "PingTimeOut", Number, "&Time-out:", "A request that was not answered by then is lost.",
        { .low = 1, .high = 600000, .unit = " ms" } },
    { kPing, kOptions, "PingCount", Number, "Requests per &device:",
        "The device is there when one of its requests is answered.", { .low = 1, .high = 1000 } },
    { kPing, kOptions, "PingControls", Number, "&Simultaneous pings:",
        "How many devices are pinged at the same time.",
        { .low = 1, .high = 4096,
            .hint = "More of them make the checks of a large network faster; at most 128 requests are under way at"
                    " once. Used from the next check on." } },

    { kCreation, kOptions, "UseDeviceAlias", Check, "Call them by their &alias",
        "Lists and announcements use the alias instead of the name.", { .group = kDeviceGroup } },
    { kCreation, kOptions, "MSAgentPronounce", Check, "&Pronounce their name",
        "Otherwise the character spells it.", { .group = kDeviceGroup } },
    { kCreation, kOptions, "IncludeInHTML", Check, "Show them on the &status page",
        "The status page lists them.", { .group = kDeviceGroup } },
    { kCreation, kOptions, "EmailNotify", Check, "Send &mail when they fail or recover",
        "Mail has to be on as well.", { .group = kPortGroup } },

    { kScripting, kOptions, "MonitorFinish", Check, "Run the script at the &end of every check",
        "The script of the event CheckFinish, after results, page, announcements and mail." },
};

} // namespace

std::span<const Page> pages() { return kPages; }

std::span<const Row> rows() { return kRows; }

} // namespace options
