#pragma once

#include <QString>
#include <QStringList>

namespace vbs {
class ScriptHost;
}

/** The deeds of the file system object. Paths are this system's; all throw ScriptError and respect the
 * deadline. */
namespace vbs::objects::files {

enum class Kind { File, Folder };

bool fileExists(const QString &path);
bool folderExists(const QString &path);
/** Names in a folder, of files or of folders, in alphabetical order. Throws 76 when it is not there. */
QStringList list(ScriptHost &host, const QString &folder, Kind kind);
/** What a source with wildcards in its last component stands for; 53 or 76 when nothing matches. */
QStringList expand(ScriptHost &host, const QString &spec, Kind kind);

/** `spec` and `target` are as the script wrote them: a trailing separator of the target means into that
 * folder. */
void copyFiles(ScriptHost &host, const QString &spec, const QString &target, bool overwrite);
void copyFolders(ScriptHost &host, const QString &spec, const QString &target, bool overwrite);
void moveItems(ScriptHost &host, const QString &spec, const QString &target, Kind kind);
void deleteFiles(ScriptHost &host, const QString &spec, bool force);
void deleteFolders(ScriptHost &host, const QString &spec, bool force);
/** 58 when it is there already, 76 when its parent is not. */
void createFolder(const QString &path);

void copyFile(ScriptHost &host, const QString &from, const QString &to, bool overwrite);
void copyTree(ScriptHost &host, const QString &from, const QString &to, bool overwrite);
/** To another file system too; 58 when the target exists. */
void moveItem(ScriptHost &host, const QString &from, const QString &to);
/** 70 when it is read-only and not forced. */
void deleteFile(const QString &path, bool force);
void deleteTree(ScriptHost &host, const QString &path, bool force);

/** Bytes of all files below. */
qint64 treeSize(ScriptHost &host, const QString &folder);
bool isReadOnly(const QString &path);
void setReadOnly(const QString &path, bool readOnly);

}
