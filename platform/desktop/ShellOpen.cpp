#include "platform/desktop/ShellOpen.h"

#include "platform/desktop/ScriptedBoxes.h"

#include <QDesktopServices>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace desktop {

namespace {

constexpr QLatin1StringView kFilePrefix("file://");

QUrl urlOf(const QString &target)
{
    // The path behind "file://" comes unescaped, so blanks, "#" and "%" in it are parts of the name.
    if (target.startsWith(kFilePrefix, Qt::CaseInsensitive))
        return QUrl::fromLocalFile(target.mid(kFilePrefix.size()));
    if (target.contains("://"_L1) || target.startsWith("mailto:"_L1, Qt::CaseInsensitive))
        return QUrl(target);
    return QUrl::fromLocalFile(target);
}

} // namespace

bool shellOpen(const QString &target)
{
    if (ScriptedBoxes *script = ScriptedBoxes::active()) {
        script->noteShellOpen(target);
        return true;
    }
    return QDesktopServices::openUrl(urlOf(target));
}

} // namespace desktop
