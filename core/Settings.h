#pragma once

#include <QList>
#include <QString>
#include <span>

/** The per-user settings store: application, section, key; every value is text, every read goes to the store. */
namespace Settings {

enum class Kind { Text, Path, Number, Flag };

/** One row of the catalogue. A path default starts with a backslash: the program folder is put before it.
    otherDefault is what a second reader passes where two readers differ, dialogDefault what the options dialog shows
    where it differs from all readers (else null). */
struct Key {
    const char *section;
    const char *name;
    Kind kind;
    const char *fallback;
    const char *otherDefault = nullptr;
    bool hidden = false; // for administrators only; no dialog shows it
    const char *dialogDefault = nullptr;
};

/** All keys of all sections, in catalogue order. */
std::span<const Key> catalogue();
/** The sections in the order in which "clear registry" deletes them. */
std::span<const char *const> sections();
/** The catalogue row of a key, without regard to case; null when there is none. */
const Key *find(const QString &section, const QString &key);
/** The declared default; paths with the program folder in front. */
QString defaultOf(const Key &key);
/** The default that the options dialog shows. */
QString dialogDefaultOf(const Key &key);

} // namespace Settings

/** The stored text, or the reader's default when the key is absent. Key names without regard to case. */
QString GetSetting(const QString &section, const QString &key, const QString &fallback);
/** The same with the catalogue's default. */
QString GetSetting(const QString &section, const QString &key);
void SaveSetting(const QString &section, const QString &key, const QString &value);
void DeleteSetting(const QString &section);

struct SettingValue {
    QString section;
    QString key;
    QString value;
};
/** Saves several settings in one write: all of them reach the store or none. */
void SaveSettings(const QList<SettingValue> &values);

/** Readers with the ordinary conversions; a text that does not convert throws VbError 13, out of range 6. */
int GetSettingInt(const QString &section, const QString &key);
double GetSettingNumber(const QString &section, const QString &key);
bool GetSettingBool(const QString &section, const QString &key);

/** The store's file, for people and tests. */
QString SettingsFilePath();
/** Puts the store elsewhere. For tests. */
void SetSettingsFilePath(const QString &path);
