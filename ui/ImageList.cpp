#include "ui/ImageList.h"

#include "core/StatusCodes.h"

#include <QHash>

using namespace Qt::StringLiterals;

// A static library's resources are dropped by the linker unless somebody names them; must stand outside
// namespaces.
static void initImages() { Q_INIT_RESOURCE(images); }

namespace {

const QIcon &cached(const QString &file)
{
    static QHash<QString, QIcon> icons;
    if (icons.isEmpty())
        initImages();
    const auto found = icons.constFind(file);
    if (found != icons.constEnd())
        return *found;
    const QString path = u":/images/"_s + file;
    QIcon icon(path);
    icon.addFile(
        path, {}, QIcon::Selected); // a tinted picture would hide the state of the very row that is selected
    return *icons.insert(file, icon);
}

const QIcon &nothing()
{
    static const QIcon icon;
    return icon;
}

} // namespace

const QIcon &ImageList::image(int code)
{
    if (code < 1 || code > status::kImageCount)
        return nothing();
    return cached(u"image%1.svg"_s.arg(code, 2, 10, QLatin1Char('0')));
}

const QIcon &ImageList::eventImage(int code)
{
    if (code < 1 || code > status::kEventIconCount)
        return nothing();
    return cached(u"event%1.svg"_s.arg(code));
}

QIcon ImageList::tool(const char *name)
{
    return name ? cached(u"tool_%1.svg"_s.arg(QLatin1StringView(name))) : QIcon();
}

QIcon ImageList::application() { return cached(u"kavro2000.svg"_s); }

QString ImageList::describe(int code)
{
    return u"icon %1: %2"_s.arg(QString::number(code), status::imageWords(code));
}

QString ImageList::describeEvent(int code)
{
    return u"icon %1: %2"_s.arg(QString::number(code), status::eventIconWords(code));
}

QIcon ImageList::splash() { return cached(u"splash.svg"_s); }
