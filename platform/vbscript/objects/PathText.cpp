#include "platform/vbscript/objects/PathText.h"

#include "platform/vbscript/objects/Support.h"

#include <QDir>
#include <QRandomGenerator>

using namespace Qt::StringLiterals;

namespace vbs::objects::path {

namespace {

bool hasDriveLetter(const QString &path) { return path.size() >= 2 && path[1] == u':' && path[0].isLetter(); }

QString withoutTrailingSeparators(const QString &path)
{
    const qsizetype root = driveName(path).size();
    QString result = path;
    while (result.size() > root && endsWithSeparator(result))
        result.chop(1);
    return result;
}

qsizetype lastSeparator(const QString &path) { return qMax(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\')); }

}

bool isSeparator(QChar c) { return c == u'/' || c == u'\\'; }

bool endsWithSeparator(const QString &path) { return !path.isEmpty() && isSeparator(path.back()); }

QString build(const QString &folder, const QString &name)
{
    if (folder.isEmpty() || endsWithSeparator(folder) || name.isEmpty())
        return folder
            + (endsWithSeparator(folder) && !name.isEmpty() && isSeparator(name[0]) ? name.mid(1) : name);
    if (isSeparator(name[0]))
        return folder + name;
    const bool windows = hasDriveLetter(folder) || (folder.contains(u'\\') && !folder.contains(u'/'));
    return folder + (windows ? u'\\' : u'/') + name;
}

QString driveName(const QString &path)
{
    if (hasDriveLetter(path))
        return path.left(2);
    if (path.startsWith("\\\\"_L1)) {
        const qsizetype server = path.indexOf(u'\\', 2);
        const qsizetype share = server < 0 ? -1 : path.indexOf(u'\\', server + 1);
        return path.left(share < 0 ? path.size() : share);
    }
    return path.startsWith(u'/') ? u"/"_s : QString();
}

QString parent(const QString &path)
{
    const QString clean = withoutTrailingSeparators(path);
    const QString root = driveName(clean);
    if (clean.size() <= root.size())
        return {};
    const qsizetype cut = lastSeparator(clean);
    if (cut < 0)
        return {};
    const bool atRoot = cut <= root.size();
    return clean.left(atRoot && cut < root.size() ? root.size() : atRoot ? cut + 1 : cut);
}

QString fileName(const QString &path)
{
    const QString clean = withoutTrailingSeparators(path);
    const qsizetype root = driveName(clean).size();
    return clean.mid(qMax(root, lastSeparator(clean) + 1));
}

QString baseName(const QString &path)
{
    const QString name = fileName(path);
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot < 0 ? name : name.left(dot);
}

QString extension(const QString &path)
{
    const QString name = fileName(path);
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot < 0 ? QString() : name.mid(dot + 1);
}

QString absolute(const QString &path)
{
    if (!hasDriveLetter(path))
        return path.isEmpty() ? workingFolder() : nativePath(path);
    QString rest = path.mid(2);
    rest.replace(u'\\', u'/');
    const QString base = rest.startsWith(u'/') ? rest : workingFolder() + u'/' + rest;
    return path.left(2) + QDir::cleanPath(base).replace(u'/', u'\\');
}

QString temporaryName()
{
    const quint32 number = QRandomGenerator::global()->bounded(0x100000u);
    return u"rad%1.tmp"_s.arg(QString::number(number, 16).toUpper(), 5, u'0');
}

bool hasWildcards(const QString &name) { return name.contains(u'*') || name.contains(u'?'); }

bool matches(QStringView pattern, QStringView name)
{
    qsizetype p = 0;
    qsizetype n = 0;
    qsizetype star = -1;
    qsizetype retry = 0;
    if (pattern == u"*.*")
        return true; // means all files, those without an extension too
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == u'*') {
            star = p++;
            retry = n;
        } else if (p < pattern.size() && (pattern[p] == u'?' || pattern[p] == name[n])) {
            ++p;
            ++n;
        } else if (star >= 0) {
            p = star + 1;
            n = ++retry;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == u'*')
        ++p;
    return p == pattern.size();
}

}
