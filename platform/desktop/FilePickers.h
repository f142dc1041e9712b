#pragma once

#include <QString>

class QWidget;

namespace desktop {

struct FileQuestion {
    QString title;
    QString folder;
    QString name;   // proposed file name
    QString filter; // "Text (*.txt)|*.txt", further pairs after another "|"
};

/** Asks for a file to open; "" when cancelled. A missing file is returned too: the caller judges it. */
QString openFile(QWidget *parent, const FileQuestion &question);
/** Asks for a file to write; "" when cancelled. The caller asks before it overwrites. */
QString saveFile(QWidget *parent, const FileQuestion &question);

/** The filter text in Qt's form, "Text (*.txt);;…". */
QString qtFilter(const QString &filter);

} // namespace desktop
