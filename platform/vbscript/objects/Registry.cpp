#include "platform/vbscript/objects/Registry.h"

#include <QSettings>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace vbs::objects::registry {

namespace {

struct Root
{
    const char *shortName;
    const char *longName;
};
constexpr Root kRoots[] = {
    { "HKCU", "HKEY_CURRENT_USER" }, { "HKLM", "HKEY_LOCAL_MACHINE" }, { "HKCR", "HKEY_CLASSES_ROOT" },
    { "HKEY_USERS", "HKEY_USERS" }, { "HKEY_CURRENT_CONFIG", "HKEY_CURRENT_CONFIG" },
};

QString storePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + u"/kavro2000/script-registry.ini"_s;
}

/** The settings key of a path: names do not differ by case, a key's own value has the name "@". */
QString settingsKey(const QString &path)
{
    const QString root = path.section(u'\\', 0, 0);
    for (const Root &row : kRoots) {
        const bool named = root.compare(QLatin1StringView(row.shortName), Qt::CaseInsensitive) == 0
            || root.compare(QLatin1StringView(row.longName), Qt::CaseInsensitive) == 0;
        if (!named || root.size() == path.size())
            continue;
        QString rest = path.mid(root.size() + 1).toLower();
        rest.replace(u'/', u'|').replace(u'\\', u'/');
        const QString key = QLatin1StringView(row.shortName) + u'/' + rest;
        return key.endsWith(u'/') ? key + u'@' : key;
    }
    throw ScriptError(err::kInvalidCall);
}

ScriptError missing(const QString &path)
{
    const QString what = path.endsWith(u'\\') ? u"registry key"_s : u"registry value"_s;
    return ScriptError::fromComponent(kFileMissing,
        u"Unable to open "_s + what + u" \""_s + path + u"\" for reading."_s, u"WshShell.RegRead"_s);
}

Value decoded(const QString &type, const QString &text)
{
    if (type == "REG_DWORD"_L1)
        return Value::longInteger(text.toInt());
    if (type == "REG_EXPAND_SZ"_L1)
        return Value::string(expandEnvironment(text));
    if (type != "REG_BINARY"_L1)
        return Value::string(text);
    QList<Value> bytes;
    for (char c : QByteArray::fromHex(text.toLatin1()))
        bytes.append(Value::byte(quint8(c)));
    return Value::array(bytes);
}

}

Value read(const QString &path)
{
    const QSettings store(storePath(), QSettings::IniFormat);
    const QStringList entry = store.value(settingsKey(path)).toStringList();
    if (entry.size() != 2)
        throw missing(path);
    return decoded(entry[0], entry[1]);
}

void write(const QString &path, const Value &value, const QString &type, ScriptHost &host)
{
    const QString kind = type.toUpper();
    QString text;
    if (kind == "REG_DWORD"_L1)
        text = QString::number(toLong(host, value));
    else if (kind == "REG_BINARY"_L1)
        text = QString::number(quint32(toLong(host, value)), 16).rightJustified(8, u'0');
    else if (kind == "REG_SZ"_L1 || kind == "REG_EXPAND_SZ"_L1)
        text = toText(host, value);
    else
        throw ScriptError(err::kTypeMismatch);
    QSettings store(storePath(), QSettings::IniFormat);
    store.setValue(settingsKey(path), QStringList { kind, text });
    store.sync();
    if (store.status() != QSettings::NoError)
        throw ScriptError(err::kPermissionDenied);
}

void remove(const QString &path)
{
    QSettings store(storePath(), QSettings::IniFormat);
    QString key = settingsKey(path);
    if (key.endsWith("/@"_L1)) {
        key.chop(2);
        store.beginGroup(key);
        const bool empty = store.allKeys().isEmpty();
        store.endGroup();
        if (empty)
            throw missing(path);
    } else if (!store.contains(key)) {
        throw missing(path);
    }
    store.remove(key);
}

}
