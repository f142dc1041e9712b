#include "platform/vbscript/objects/Shortcut.h"

#include "platform/vbscript/objects/PathText.h"

#include <QFile>
#include <QSaveFile>
#include <span>

using namespace Qt::StringLiterals;

namespace vbs::objects {

namespace {

class Shortcut : public NativeObject<Shortcut>
{
public:
    Shortcut(const QString &path, bool isLink) : m_path(path), m_isLink(isLink) {}
    QString typeName() const override { return m_isLink ? u"IWshURLShortcut"_s : u"IWshShortcut"_s; }
    static std::span<const Member<Shortcut>> members();

private:
    template <QString Shortcut::*field>
    Value get(Args &) { return Value::string(this->*field); }
    template <QString Shortcut::*field>
    void put(Args &args) { this->*field = toText(args.host(), args.newValue()); }
    Value windowStyle(Args &) { return Value::longInteger(m_windowStyle); }
    void putWindowStyle(Args &args) { m_windowStyle = toLong(args.host(), args.newValue()); }
    Value save(Args &args);
    QString entry() const;

    QString m_path;
    bool m_isLink;
    QString m_target;
    QString m_arguments;
    QString m_folder;
    QString m_description;
    QString m_icon;
    QString m_hotkey;
    qint32 m_windowStyle = 1;
};

/** A value of a desktop entry stands on one line. */
QString escaped(QString text)
{
    return text.replace(u'\\', u"\\\\"_s).replace(u'\n', u"\\n"_s).replace(u'\r', u"\\r"_s);
}

QString Shortcut::entry() const
{
    QString text = u"[Desktop Entry]\nVersion=1.0\nName="_s + escaped(path::baseName(m_path)) + u'\n';
    if (m_isLink)
        return text + u"Type=Link\nURL="_s + escaped(m_target) + u'\n';
    QString program = m_target;
    if (program.contains(u' '))
        program = u'"' + program + u'"';
    text += u"Type=Application\nExec="_s + escaped((program + u' ' + m_arguments).trimmed()) + u'\n';
    if (!m_folder.isEmpty())
        text += u"Path="_s + escaped(m_folder) + u'\n';
    if (!m_description.isEmpty())
        text += u"Comment="_s + escaped(m_description) + u'\n';
    if (!m_icon.isEmpty())
        text += u"Icon="_s + escaped(m_icon.section(u',', 0, 0)) + u'\n';
    return text;
}

Value Shortcut::save(Args &)
{
    QSaveFile file(m_path);
    const QByteArray bytes = entry().toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw ScriptError(err::kPermissionDenied);
    file.setPermissions(file.permissions() | QFile::ExeOwner | QFile::ExeUser);
    if (!file.commit())
        throw ScriptError(err::kPermissionDenied);
    return {};
}

std::span<const Member<Shortcut>> Shortcut::members()
{
    using S = Shortcut;
    static constexpr Member<S> table[] = {
        { "FullName", 0, 0, &S::get<&S::m_path>, nullptr, true },
        { "TargetPath", 0, 0, &S::get<&S::m_target>, &S::put<&S::m_target> },
        { "Arguments", 0, 0, &S::get<&S::m_arguments>, &S::put<&S::m_arguments> },
        { "WorkingDirectory", 0, 0, &S::get<&S::m_folder>, &S::put<&S::m_folder> },
        { "Description", 0, 0, &S::get<&S::m_description>, &S::put<&S::m_description> },
        { "IconLocation", 0, 0, &S::get<&S::m_icon>, &S::put<&S::m_icon> },
        { "Hotkey", 0, 0, &S::get<&S::m_hotkey>, &S::put<&S::m_hotkey> },
        { "WindowStyle", 0, 0, &S::windowStyle, &S::putWindowStyle },
        { "Save", 0, 0, &S::save },
    };
    return table;
}

}

Object *makeShortcut(const QString &path)
{
    QString place = nativePath(path);
    const QString kind = path::extension(place).toLower();
    if (kind != "lnk"_L1 && kind != "url"_L1)
        throw ScriptError(err::kInvalidCall);
    place.chop(3);
    return new Shortcut(place + u"desktop"_s, kind == "url"_L1);
}

}
