#pragma once

#include <QString>

/** The numeric codes of the database; the icon codes are copied straight into tree and list images. */
namespace status {

enum PortMode { PortNormal = 0, PortFailing = -1, PortRecovered = 1, PortRecoveredMailed = 2 };

enum Image {
    ImageRoot = 1,
    DeviceOk = 2,
    DeviceRecovered = 3,
    DeviceProblems = 4,
    PortOk = 5,
    PortRecoveredIcon = 6,
    PortFailed = 7,
    TrayOk = 8,
    TrayOff = 9,
    TrayProblems = 10,
    ImageEventLog = 11,
    DeviceDisabled = 12,
    PortDisabled = 13,
    GroupOk = 14,
    GroupRecovered = 15,
    GroupProblems = 16
};

inline constexpr int kImageCount = 16;
inline constexpr int kEventIconCount = 6;

/** Event type to Event_Icon, exact and case-sensitive; any other text is 1. */
int eventIcon(const QString &eventType);

/** What an image says in words, for accessible descriptions ("icon 4: problems detected"). */
QString imageWords(int image);
QString eventIconWords(int icon);

} // namespace status
