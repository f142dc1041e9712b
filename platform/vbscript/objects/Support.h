#pragma once

#include "platform/vbscript/Memory.h"
#include "platform/vbscript/Object.h"

#include <QByteArray>
#include <QDateTime>
#include <QProcessEnvironment>
#include <QString>

namespace vbs::objects {

/** Numbers that only components raise. */
constexpr int kDiskFullNumber = 61;
constexpr int kTooManyFiles = 67;
constexpr int kDeviceUnavailable = 68;
constexpr qint32 kFileMissing = -2147024894;  // 0x80070002
constexpr qint32 kAccessDenied = -2147024891; // 0x80070005
constexpr qint32 kBadProgram = -2147024703;   // 0x800700C1

/** Folder that relative paths of scripts start from; the process's own at first. Changing it moves scripts
 * only. */
const QString &workingFolder();
void setWorkingFolder(const QString &folder);

/** Environment that scripts see and their commands get; changing it leaves the program's own alone. */
QProcessEnvironment &environment();
/** A variable; without regard to case, with the usual Windows names answered from this system. Null: unknown.
 */
QString environmentValue(const QString &name);
/** Replaces %NAME%; unknown names stay as they are. */
QString expandEnvironment(const QString &text);

/**
 * Absolute, clean path on this system of a path as scripts write it: with slashes or backslashes, with or
 * without the letter C, which stands for the root. Throws 5 for an empty path, 52 for one with a NUL, 76 for
 * other drives.
 */
QString nativePath(const QString &path);

/** What the script language says for an errno. */
ScriptError systemError(int code);
/** Like systemError, but a missing folder on the way to `path` is 76 instead of 53. */
ScriptError openError(int code, const QString &path);

Value dateValue(const QDateTime &when);
/** Long where it fits, else Double: how sizes come. */
Value sizeValue(qint64 size);

/** Milliseconds that a wait may sleep before it looks at the deadline again; throws ScriptTimeout when it is
 * over. */
int waitSlice(ScriptHost &host);

/** Text of an argument without a copy where it is a string already. Valid while the argument is. */
class TextView
{
public:
    TextView(Args &args, int index);
    QStringView view() const { return m_view; }

private:
    QString m_own;
    QStringView m_view;
};

/** Bytes that a script fills; every growth is charged before it happens. */
class ByteBuffer
{
public:
    const QByteArray &bytes() const { return m_bytes; }
    qint64 size() const { return m_bytes.size(); }
    void append(QByteArrayView bytes) { write(size(), bytes); }
    /** Writes at `position`, which is at most size(). */
    void write(qint64 position, QByteArrayView bytes);
    /** Cuts, or fills up with zeros. */
    void resize(qint64 size);
    void dropFront(qint64 count);
    void clear();

private:
    void reserve(qint64 size);

    QByteArray m_bytes;
    memory::Charge m_charge;
};

/** Keeps the process alive when a peer closed the pipe or connection that is written to. */
class SigpipeBlock
{
public:
    SigpipeBlock();
    ~SigpipeBlock();
    Q_DISABLE_COPY_MOVE(SigpipeBlock)

private:
    bool m_blockedHere = false;
};

/** A file descriptor that closes itself. */
class Descriptor
{
public:
    explicit Descriptor(int fd = -1) : m_fd(fd) {}
    ~Descriptor() { reset(); }
    Q_DISABLE_COPY_MOVE(Descriptor)
    int get() const { return m_fd; }
    explicit operator bool() const { return m_fd >= 0; }
    void reset(int fd = -1);

private:
    int m_fd;
};

}
