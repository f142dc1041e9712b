#include "platform/vbscript/objects/FileItems.h"

#include "platform/vbscript/objects/FileOps.h"
#include "platform/vbscript/objects/PathText.h"
#include "platform/vbscript/objects/TextStream.h"

#include <QFileInfo>
#include <span>

using namespace Qt::StringLiterals;

namespace vbs::objects {

namespace {

using files::Kind;

enum Attribute { ReadOnly = 1, Hidden = 2, System = 4, Directory = 16, Archive = 32, Alias = 1024 };

/** What File and Folder have in common. */
template <class T>
class Item : public NativeObject<T>
{
public:
    explicit Item(const QString &path) : m_path(path) {}

protected:
    static constexpr bool kIsFolder = T::kKind == Kind::Folder;

    QFileInfo info() const
    {
        const QFileInfo found(m_path);
        if (!found.exists())
            throw ScriptError(kIsFolder ? err::kPathNotFound : err::kFileNotFound);
        return found;
    }
    Value path(Args &) { return Value::string(m_path); }
    Value name(Args &) { return Value::string(path::fileName(m_path)); }
    void putName(Args &args)
    {
        const QString name = toText(args.host(), args.newValue());
        if (name.isEmpty() || name.contains(u'/') || name.contains(u'\\'))
            throw ScriptError(err::kBadFileName);
        moveTo(args.host(), QFileInfo(m_path).path() + u'/' + name);
    }
    Value type(Args &)
    {
        const QString extension = path::extension(m_path).toUpper();
        if (kIsFolder)
            return Value::string(u"File folder"_s);
        return Value::string(extension.isEmpty() ? u"File"_s : extension + u" File"_s);
    }
    Value attributes(Args &)
    {
        const QFileInfo found = info();
        int flags = kIsFolder ? Directory : Archive;
        if (files::isReadOnly(m_path))
            flags |= ReadOnly;
        if (found.isHidden())
            flags |= Hidden;
        if (found.isSymLink())
            flags |= Alias;
        return Value::longInteger(flags);
    }
    /** Only the read-only bit has a counterpart here; the others are accepted and change nothing. */
    void putAttributes(Args &args)
    {
        const qint32 flags = toLong(args.host(), args.newValue());
        info();
        files::setReadOnly(m_path, flags & ReadOnly);
    }
    Value dateCreated(Args &)
    {
        const QDateTime birth = info().birthTime();
        return dateValue(birth.isValid() ? birth : info().lastModified());
    }
    Value dateLastModified(Args &) { return dateValue(info().lastModified()); }
    Value dateLastAccessed(Args &) { return dateValue(info().lastRead()); }
    Value drive(Args &) { return Value::object(makeDrive(m_path)); }
    Value parentFolder(Args &)
    {
        return Value::object(m_path == "/"_L1 ? nullptr : makeFolder(QFileInfo(m_path).path()));
    }
    Value move(Args &args)
    {
        moveTo(args.host(), targetOf(args));
        return {};
    }
    void moveTo(ScriptHost &host, const QString &place)
    {
        info();
        files::moveItem(host, m_path, place);
        m_path = place;
    }
    QString targetOf(Args &args) const
    {
        const QString target = args.text(0);
        const QString native = nativePath(target);
        return path::endsWithSeparator(target) ? native + u'/' + path::fileName(m_path) : native;
    }

    QString m_path;
};

class File : public Item<File>
{
public:
    static constexpr Kind kKind = Kind::File;
    using Item::Item;
    QString typeName() const override { return u"File"_s; }
    static std::span<const Member<File>> members();

private:
    Value size(Args &) { return sizeValue(info().size()); }
    Value copy(Args &args)
    {
        files::copyFile(args.host(), m_path, targetOf(args), args.boolean(1, true));
        return {};
    }
    Value remove(Args &args)
    {
        info();
        files::deleteFile(m_path, args.boolean(0, false));
        return {};
    }
    Value openAsTextStream(Args &args)
    {
        info();
        return Value::object(
            openTextFile(args.host(), m_path, args.integer(0, 1), false, args.integer(1, 0)));
    }
};

class Folder : public Item<Folder>
{
public:
    static constexpr Kind kKind = Kind::Folder;
    using Item::Item;
    QString typeName() const override { return u"Folder"_s; }
    static std::span<const Member<Folder>> members();

private:
    Value size(Args &args)
    {
        info();
        return sizeValue(files::treeSize(args.host(), m_path));
    }
    Value copy(Args &args)
    {
        info();
        files::copyTree(args.host(), m_path, targetOf(args), args.boolean(1, true));
        return {};
    }
    Value remove(Args &args)
    {
        info();
        files::deleteTree(args.host(), m_path, args.boolean(0, false));
        return {};
    }
    Value isRootFolder(Args &) { return Value::boolean(m_path == "/"_L1); }
    Value createTextFile(Args &args)
    {
        const QString place = m_path + u'/' + args.text(0);
        return Value::object(
            vbs::objects::createTextFile(nativePath(place), args.boolean(1, true), args.boolean(2, false)));
    }
    Value files(Args &);
    Value subFolders(Args &);
};

template <class T>
class ItemWalk : public Enumerator
{
public:
    ItemWalk(const QString &folder, const QStringList &names) : m_folder(folder), m_names(names) {}
    bool next(Value &item) override
    {
        if (m_at >= m_names.size())
            return false;
        item = Value::object(new T(m_folder + u'/' + m_names[m_at++]));
        return true;
    }

private:
    QString m_folder;
    QStringList m_names;
    qsizetype m_at = 0;
};

/** Files of a folder, or its sub-folders (T says which), as they are at each look. */
template <class T>
class ItemList : public NativeObject<ItemList<T>>
{
public:
    explicit ItemList(const QString &folder) : m_folder(folder) {}
    QString typeName() const override { return T::kKind == Kind::File ? u"Files"_s : u"Folders"_s; }
    static std::span<const Member<ItemList<T>>> members()
    {
        static constexpr Member<ItemList<T>> table[] = {
            { "Item", 1, 1, &ItemList::item, nullptr, true },
            { "Count", 0, 0, &ItemList::count },
            { "Add", 1, 1, T::kKind == Kind::Folder ? &ItemList::add : nullptr },
        };
        return table;
    }
    std::unique_ptr<Enumerator> enumerate(ScriptHost &host) override
    {
        return std::make_unique<ItemWalk<T>>(m_folder, files::list(host, m_folder, T::kKind));
    }

private:
    Value item(Args &args)
    {
        const QString path = nativePath(m_folder + u'/' + args.text(0));
        return Value::object(T::kKind == Kind::File ? makeFile(path) : makeFolder(path));
    }
    Value count(Args &args)
    {
        return Value::longInteger(qint32(files::list(args.host(), m_folder, T::kKind).size()));
    }
    Value add(Args &args)
    {
        const QString path = nativePath(m_folder + u'/' + args.text(0));
        files::createFolder(path);
        return Value::object(makeFolder(path));
    }

    QString m_folder;
};

Value Folder::files(Args &)
{
    info();
    return Value::object(new ItemList<File>(m_path));
}

Value Folder::subFolders(Args &)
{
    info();
    return Value::object(new ItemList<Folder>(m_path));
}

std::span<const Member<File>> File::members()
{
    static constexpr Member<File> table[] = {
        { "Path", 0, 0, &File::path, nullptr, true },
        { "Name", 0, 0, &File::name, &File::putName },
        { "ShortPath", 0, 0, &File::path },
        { "ShortName", 0, 0, &File::name },
        { "Size", 0, 0, &File::size },
        { "Type", 0, 0, &File::type },
        { "Attributes", 0, 0, &File::attributes, &File::putAttributes },
        { "DateCreated", 0, 0, &File::dateCreated },
        { "DateLastModified", 0, 0, &File::dateLastModified },
        { "DateLastAccessed", 0, 0, &File::dateLastAccessed },
        { "Drive", 0, 0, &File::drive },
        { "ParentFolder", 0, 0, &File::parentFolder },
        { "Copy", 1, 2, &File::copy },
        { "Move", 1, 1, &File::move },
        { "Delete", 0, 1, &File::remove },
        { "OpenAsTextStream", 0, 2, &File::openAsTextStream },
    };
    return table;
}

std::span<const Member<Folder>> Folder::members()
{
    static constexpr Member<Folder> table[] = {
        { "Path", 0, 0, &Folder::path, nullptr, true },
        { "Name", 0, 0, &Folder::name, &Folder::putName },
        { "ShortPath", 0, 0, &Folder::path },
        { "ShortName", 0, 0, &Folder::name },
        { "Size", 0, 0, &Folder::size },
        { "Type", 0, 0, &Folder::type },
        { "Attributes", 0, 0, &Folder::attributes, &Folder::putAttributes },
        { "DateCreated", 0, 0, &Folder::dateCreated },
        { "DateLastModified", 0, 0, &Folder::dateLastModified },
        { "DateLastAccessed", 0, 0, &Folder::dateLastAccessed },
        { "Drive", 0, 0, &Folder::drive },
        { "ParentFolder", 0, 0, &Folder::parentFolder },
        { "IsRootFolder", 0, 0, &Folder::isRootFolder },
        { "Files", 0, 0, &Folder::files },
        { "SubFolders", 0, 0, &Folder::subFolders },
        { "CreateTextFile", 1, 3, &Folder::createTextFile },
        { "Copy", 1, 2, &Folder::copy },
        { "Move", 1, 1, &Folder::move },
        { "Delete", 0, 1, &Folder::remove },
    };
    return table;
}

}

Object *makeFile(const QString &path)
{
    if (!files::fileExists(path))
        throw ScriptError(err::kFileNotFound);
    return new File(path);
}

Object *makeFolder(const QString &path)
{
    if (!files::folderExists(path))
        throw ScriptError(err::kPathNotFound);
    return new Folder(path);
}

}
