#pragma once

#include <QIcon>
#include <QString>

/** The program's pictures by their database codes. Each is loaded once; SVG, so sharp at every size and
 * density. */
class ImageList
{
public:
    /** Tree, list and tray images (StatusCodes.h); an unknown code has no picture. */
    static const QIcon &image(int code);
    /** Small icons of the event viewer. */
    static const QIcon &eventImage(int code);
    /** Pictures of commands, by the name of their file without "tool_". */
    static QIcon tool(const char *name);
    static QIcon application();
    static QIcon splash();

    /** "icon 4: …" in words, for screen readers. */
    static QString describe(int code);
    static QString describeEvent(int code);
};
