#include "core/Settings.h"

#include "tests/world/World.h"

#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(Settings, CatalogueIsSound)
{
    World world;
    QSet<QString> seen;
    QSet<QString> sections;
    for (const char *section : Settings::sections())
        sections.insert(QString::fromLatin1(section));
    for (const Settings::Key &key : Settings::catalogue()) {
        const QString name = QString::fromLatin1(key.section) + u'/' + QString::fromLatin1(key.name).toLower();
        EXPECT_FALSE(seen.contains(name)) << name.toStdString() << " is declared twice";
        seen.insert(name);
        EXPECT_TRUE(sections.contains(QString::fromLatin1(key.section))) << name.toStdString();
        const QString value = GetSetting(QString::fromLatin1(key.section), QString::fromLatin1(key.name));
        EXPECT_EQ(value, Settings::defaultOf(key)) << "an empty store gives the default of " << name.toStdString();
        if (key.kind == Settings::Kind::Number && *key.fallback) {
            EXPECT_NO_THROW(GetSettingNumber(QString::fromLatin1(key.section), QString::fromLatin1(key.name)));
        }
        if (key.kind == Settings::Kind::Path) {
            EXPECT_TRUE(value.startsWith(ProgramFolder() + u'/')) << value.toStdString();
        }
    }
    EXPECT_EQ(GetSetting(u"Mail Options"_s, u"MailTo"_s), QString());
}

TEST(Settings, StoredValuesSurviveAndKeysHaveNoCase)
{
    World world;
    const QStringList values{ u"plain"_s, QString(), u"a,b; c"_s, u"\"quoted\""_s, u"C:\\dir\\new.txt"_s,
                              u"<DEVICE> ünïcödé"_s, u"line\nbreak"_s, u"  blanks  "_s, u"@Invalid()"_s };
    for (const QString &value : values) {
        SaveSetting(u"Mail Options"_s, u"MailSubject"_s, value);
        SetSettingsFilePath(SettingsFilePath()); // reopens the file
        EXPECT_EQ(GetSetting(u"Mail Options"_s, u"mailsubject"_s), value);
    }
    SaveSetting(u"Startup"_s, u"DataBase"_s, u"/x.mdb"_s);
    EXPECT_EQ(GetSetting(u"startup"_s, u"Database"_s), u"/x.mdb"_s);
    EXPECT_EQ(QFileInfo(SettingsFilePath()).permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());

    DeleteSetting(u"Mail Options"_s);
    EXPECT_EQ(GetSetting(u"Mail Options"_s, u"MailSubject"_s), u"<DEVICE>:<PORT>"_s);
    EXPECT_EQ(GetSetting(u"Startup"_s, u"Database"_s), u"/x.mdb"_s);
}

TEST(Settings, WhatAnAdministratorTypesIsReadAtTheNextUse)
{
    World world;
    EXPECT_EQ(GetSettingInt(u"Options"_s, u"PingPacketSize"_s), 32);
    QFile file(SettingsFilePath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[Options]\nPingPacketSize=64\nDBExclusive=True\nExpandOnFailure=no idea\n"
               "[Mail%20Options]\nMailTo=a@example.com, b@example.com\n");
    file.close();
    EXPECT_EQ(GetSettingInt(u"Options"_s, u"PingPacketSize"_s), 64);
    EXPECT_TRUE(GetSettingBool(u"Options"_s, u"DBExclusive"_s));
    EXPECT_EQ(GetSetting(u"Mail Options"_s, u"MailTo"_s), u"a@example.com, b@example.com"_s);
    try {
        GetSettingBool(u"Options"_s, u"ExpandOnFailure"_s);
        ADD_FAILURE() << "a text that is no flag was accepted";
    } catch (const VbError &error) {
        EXPECT_EQ(error.number(), 13);
    }
}

TEST(Settings, Conversions)
{
    struct Case {
        const char *text;
        int number; // -1: error
        int flag;   // -1: error
    };
    const Case cases[] = { { "1", 1, 1 },    { "0", 0, 0 },      { "True", -1, 1 }, { "false", -1, 0 },
                           { "-5", -5, 1 },  { " 12 ", 12, 1 },  { "2.5", 2, 1 },   { "3.5", 4, 1 },
                           { "", -1, -1 },   { "abc", -1, -1 },  { "99999999999", -1, 1 } };
    World world;
    for (const Case &c : cases) {
        SaveSetting(u"Options"_s, u"ResetIcon"_s, QString::fromLatin1(c.text));
        const auto value = [](auto read) {
            try {
                return int(read(u"Options"_s, u"ResetIcon"_s));
            } catch (const VbError &) {
                return -1;
            }
        };
        EXPECT_EQ(value(GetSettingInt), c.number) << '"' << c.text << '"';
        EXPECT_EQ(value(GetSettingBool), c.flag) << '"' << c.text << '"';
    }
}
