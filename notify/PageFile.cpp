#include "notify/PageFile.h"

#include "core/Waits.h"
#include "platform/dao/VbError.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>

#include <sys/stat.h>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kSlice = 128 * 1024; // characters

[[noreturn]] void fail(const QString &path, const QString &reason)
{
    throw VbError(QFileInfo(path).dir().exists() ? 75 : 76, reason + ": "_L1 + path);
}

/** A page is for everybody who may read what this user makes. */
void setUsualPermissions(const QFile &file)
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    ::fchmod(file.handle(), 0666 & ~mask);
}

} // namespace

Task<void> ReplaceFile(QString path, QStringList texts)
{
    // A link stays one; what it points to is replaced.
    const QString target = QFileInfo(path).isSymLink() ? QFileInfo(path).symLinkTarget() : path;
    QTemporaryFile file(target + ".XXXXXX"_L1); // removes itself when this is cancelled
    if (!file.open())
        fail(target, file.errorString());
    waits::Slice slice;
    for (const QString &text : std::as_const(texts)) {
        for (qsizetype from = 0; from < text.size();) {
            co_await slice.breathe();
            qsizetype length = std::min(kSlice, text.size() - from);
            if (from + length < text.size() && text.at(from + length).isLowSurrogate())
                ++length;
            const QByteArray bytes = QStringView(text).mid(from, length).toUtf8();
            if (file.write(bytes) != bytes.size())
                fail(target, file.errorString());
            from += length;
        }
    }
    setUsualPermissions(file);
    const QByteArray from = QFile::encodeName(file.fileName());
    if (!file.flush() || std::rename(from.constData(), QFile::encodeName(target).constData()) != 0)
        fail(target, u"cannot be replaced"_s);
    file.setAutoRemove(false);
}
