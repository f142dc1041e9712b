#include "platform/vbscript/objects/Environment.h"

#include <QStandardPaths>
#include <span>

using namespace Qt::StringLiterals;

namespace vbs::objects {

namespace {

class TextWalk : public Enumerator
{
public:
    explicit TextWalk(const QStringList &texts) : m_texts(texts) {}
    bool next(Value &item) override
    {
        if (m_at >= m_texts.size())
            return false;
        item = Value::string(m_texts[m_at++]);
        return true;
    }

private:
    QStringList m_texts;
    qsizetype m_at = 0;
};

class Environment : public NativeObject<Environment>
{
public:
    explicit Environment(bool writable) : m_writable(writable) {}
    QString typeName() const override { return u"IWshEnvironment"_s; }
    std::unique_ptr<Enumerator> enumerate(ScriptHost &) override
    {
        return std::make_unique<TextWalk>(environment().toStringList());
    }
    static std::span<const Member<Environment>> members()
    {
        using E = Environment;
        static constexpr Member<E> table[] = {
            { "Item", 1, 1, &E::item, &E::putItem, true },
            { "Count", 0, 0, &E::count },
            { "length", 0, 0, &E::count },
            { "Remove", 1, 1, &E::remove },
        };
        return table;
    }

private:
    Value item(Args &args) { return Value::string(environmentValue(args.text(0))); }
    void putItem(Args &args)
    {
        requireWritable();
        environment().insert(checkedName(args), toText(args.host(), args.newValue()).remove(QChar(0)));
    }
    Value count(Args &) { return Value::longInteger(qint32(environment().keys().size())); }
    Value remove(Args &args)
    {
        requireWritable();
        environment().remove(checkedName(args));
        return {};
    }
    /** Where the other kinds are kept for good there is no place for on this system. */
    void requireWritable() const
    {
        if (!m_writable)
            throw ScriptError(err::kPermissionDenied);
    }
    static QString checkedName(Args &args)
    {
        const QString name = args.text(0);
        if (name.isEmpty() || name.contains(u'=') || name.contains(QChar(0)))
            throw ScriptError(err::kInvalidCall);
        return name;
    }

    bool m_writable;
};

struct SpecialFolder
{
    const char *name;
    QStandardPaths::StandardLocation location;
    const char *below;
};
constexpr SpecialFolder kSpecialFolders[] = {
    { "AllUsersDesktop", QStandardPaths::DesktopLocation, "" },
    { "AllUsersStartMenu", QStandardPaths::ApplicationsLocation, "" },
    { "AllUsersPrograms", QStandardPaths::ApplicationsLocation, "" },
    { "AllUsersStartup", QStandardPaths::GenericConfigLocation, "/autostart" },
    { "Desktop", QStandardPaths::DesktopLocation, "" },
    { "Favorites", QStandardPaths::HomeLocation, "" },
    { "Fonts", QStandardPaths::FontsLocation, "" },
    { "MyDocuments", QStandardPaths::DocumentsLocation, "" },
    { "NetHood", QStandardPaths::HomeLocation, "" },
    { "PrintHood", QStandardPaths::HomeLocation, "" },
    { "Programs", QStandardPaths::ApplicationsLocation, "" },
    { "Recent", QStandardPaths::GenericDataLocation, "" },
    { "SendTo", QStandardPaths::HomeLocation, "" },
    { "StartMenu", QStandardPaths::ApplicationsLocation, "" },
    { "Startup", QStandardPaths::GenericConfigLocation, "/autostart" },
    { "Templates", QStandardPaths::HomeLocation, "/Templates" },
    { "AppData", QStandardPaths::GenericConfigLocation, "" },
};

QString folderOf(const SpecialFolder &row)
{
    return QStandardPaths::writableLocation(row.location) + QLatin1StringView(row.below);
}

class SpecialFolders : public NativeObject<SpecialFolders>
{
public:
    QString typeName() const override { return u"IWshCollection"_s; }
    std::unique_ptr<Enumerator> enumerate(ScriptHost &) override
    {
        QStringList folders;
        for (const SpecialFolder &row : kSpecialFolders)
            folders.append(folderOf(row));
        return std::make_unique<TextWalk>(folders);
    }
    static std::span<const Member<SpecialFolders>> members()
    {
        using S = SpecialFolders;
        static constexpr Member<S> table[] = {
            { "Item", 1, 1, &S::item, nullptr, true },
            { "Count", 0, 0, &S::count },
            { "length", 0, 0, &S::count },
        };
        return table;
    }

private:
    Value item(Args &args);
    Value count(Args &) { return Value::longInteger(qint32(std::size(kSpecialFolders))); }
};

Value SpecialFolders::item(Args &args)
{
    if (!args[0].is(Type::String)) {
        const qint32 index = args.integer(0);
        if (index < 0 || size_t(index) >= std::size(kSpecialFolders))
            throw ScriptError(err::kSubscript);
        return Value::string(folderOf(kSpecialFolders[index]));
    }
    const QString name = args.text(0);
    for (const SpecialFolder &row : kSpecialFolders) {
        if (name.compare(QLatin1StringView(row.name), Qt::CaseInsensitive) == 0)
            return Value::string(folderOf(row));
    }
    return Value::string(u""_s);
}

}

Value makeEnvironment(const QString &kind)
{
    const QString upper = kind.toUpper();
    const bool isProcess = upper == "PROCESS"_L1;
    if (!isProcess && upper != "SYSTEM"_L1 && upper != "USER"_L1 && upper != "VOLATILE"_L1)
        throw ScriptError(err::kInvalidCall);
    return Value::object(new Environment(isProcess));
}

Object *makeSpecialFolders() { return new SpecialFolders; }

}
