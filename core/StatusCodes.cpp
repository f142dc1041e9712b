#include "core/StatusCodes.h"

#include <array>
#include <utility>

namespace status {

using namespace Qt::StringLiterals;

int eventIcon(const QString &eventType)
{
    static const std::array<std::pair<QLatin1StringView, int>, 7> icons{ {
        { "Message"_L1, 2 }, { "Email"_L1, 2 }, { "Warning"_L1, 6 }, { "SMTP Error"_L1, 6 },
        { "Information"_L1, 5 }, { "Failure"_L1, 4 }, { "Recovered"_L1, 3 },
    } };
    for (const auto &[type, icon] : icons) {
        if (eventType == type)
            return icon;
    }
    return 1;
}

QString imageWords(int image)
{
    static const std::array<QString, kImageCount + 1> words{
        QString(), u"monitored devices"_s, u"device without problems"_s, u"device recovered"_s,
        u"device with problems"_s, u"check normal"_s, u"check recovered"_s, u"check failed"_s,
        u"no problems"_s, u"monitoring off"_s, u"problems"_s, u"event log"_s, u"device disabled"_s,
        u"check disabled"_s, u"group without problems"_s, u"group recovered"_s, u"group with problems"_s,
    };
    return image >= 1 && image <= kImageCount ? words.at(size_t(image)) : u"unknown"_s;
}

QString eventIconWords(int icon)
{
    static const std::array<QString, kEventIconCount + 1> words{
        QString(), u"other event"_s, u"message"_s, u"recovered"_s, u"failure"_s, u"information"_s, u"warning"_s,
    };
    return icon >= 1 && icon <= kEventIconCount ? words.at(size_t(icon)) : u"other event"_s;
}

} // namespace status
