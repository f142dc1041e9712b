#pragma once

#include <QString>

/** Paths as text only: nothing here looks at the disk. Slashes and backslashes both separate. */
namespace vbs::objects::path {

bool isSeparator(QChar c);
bool endsWithSeparator(const QString &path);
/** `name` behind `folder`, with the separator that `folder` uses. */
QString build(const QString &folder, const QString &name);
/** "C:" of "C:\x", "\\server\share" of a network path, "/" of an absolute path; else empty. */
QString driveName(const QString &path);
/** Without the last component; empty for a drive or root. */
QString parent(const QString &path);
QString fileName(const QString &path);
QString baseName(const QString &path);
QString extension(const QString &path);
/** Clean absolute form; keeps a drive letter and then uses backslashes. */
QString absolute(const QString &path);
/** A name for a temporary file: rad and five hexadecimal digits. */
QString temporaryName();
/** Pattern with * and ?, as they are understood for file names. */
bool matches(QStringView pattern, QStringView name);
bool hasWildcards(const QString &name);

}
