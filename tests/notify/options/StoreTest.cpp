#include "notify/options/OptionTable.h"
#include "tests/notify/options/OptionsWorld.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QFile>
#include <QListWidget>
#include <QMap>
#include <QTest>

using namespace Qt::StringLiterals;
using options::Editor;
using Settings::Kind;

namespace {

QString latin(const char *text) { return QString::fromLatin1(text); }
QString sectionOf(const options::Row &row) { return latin(row.section); }
QString keyOf(const options::Row &row) { return latin(row.key); }

QByteArray storeBytes()
{
    QFile file(SettingsFilePath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class OptionsStore : public OptionsWorld
{
protected:
    /** Changes a control as an operator would; returns the text that is to be stored. */
    QString change(const options::Row &row)
    {
        const QString key = keyOf(row);
        if (row.editor == Editor::Check) {
            auto &box = at<QCheckBox>(key);
            QTest::keyClick(&box, Qt::Key_Space);
            return box.isChecked() ? u"1"_s : u"0"_s;
        }
        if (row.editor == Editor::Number) {
            const QString text = QString::number(row.more.low + 3);
            type(key, text);
            return text;
        }
        if (row.editor == Editor::Servers) {
            drive([&] { press(key + "Add"_L1); }, [](QDialog &server) {
                QTest::keyClicks(server.findChild<QWidget *>(u"host"_s), u"relay"_s);
                QTest::keyClick(&server, Qt::Key_Return);
            });
            return u"relay"_s;
        }
        if (row.editor == Editor::Character) {
            at<QListWidget>(key).setCurrentRow(1);
            return u"peedy"_s;
        }
        type(key, u"changed <DEVICE>"_s);
        return u"changed <DEVICE>"_s;
    }
    /** Switches on what other rows need. */
    void enableAll()
    {
        for (const options::Row &row : options::rows()) {
            if (row.more.needs)
                SaveSetting(sectionOf(row), latin(row.more.needs), u"1"_s);
        }
    }
};

TEST_F(OptionsStore, EveryKeyIsBoundOnceToAControlOfItsKind)
{
    open();
    const QMap<Kind, QList<Editor>> fitting { { Kind::Flag, { Editor::Check } }, { Kind::Number, { Editor::Number } },
        { Kind::Path, { Editor::File } },
        { Kind::Text, { Editor::Line, Editor::Template, Editor::Servers, Editor::Character } } };
    QMap<QString, int> bound;
    for (const options::Row &row : options::rows()) {
        const Settings::Key *key = Settings::find(sectionOf(row), keyOf(row));
        ASSERT_TRUE(key) << row.key;
        EXPECT_TRUE(fitting.value(key->kind).contains(row.editor)) << row.key;
        EXPECT_EQ(form->findChildren<QWidget *>(keyOf(row)).size(), 1) << row.key;
        ++bound[sectionOf(row) + u'/' + keyOf(row)];
    }
    for (const Settings::Key &key : Settings::catalogue())
        EXPECT_EQ(bound.value(latin(key.section) + u'/' + latin(key.name)), key.hidden ? 0 : 1) << key.name;
}

TEST_F(OptionsStore, AnEmptyStoreShowsTheDefaultsAndOkStoresThem)
{
    SaveSetting(u"Options"_s, u"PingPacketSize"_s, u"64"_s);
    open();
    cancel();
    for (const options::Row &row : options::rows())
        EXPECT_EQ(stored(sectionOf(row), keyOf(row)), u"absent"_s) << row.key;
    open();
    ok();
    EXPECT_FALSE(form->isVisible());
    for (const options::Row &row : options::rows()) {
        EXPECT_EQ(stored(sectionOf(row), keyOf(row)),
            Settings::dialogDefaultOf(*Settings::find(sectionOf(row), keyOf(row))))
            << row.key;
    }
    EXPECT_EQ(stored(u"Mail Options"_s, u"MailTo"_s), u"monitor@example.com"_s);
    EXPECT_EQ(stored(u"MSAgent"_s, u"Character"_s), u"Merlin"_s);
    EXPECT_EQ(stored(u"Options"_s, u"PingPacketSize"_s), u"64"_s) << "not this dialog's";
    EXPECT_EQ(stored(u"Startup"_s, u"Database"_s), u"absent"_s);
}

TEST_F(OptionsStore, EveryChangeIsStoredByOkAndDroppedByCancel)
{
    enableAll();
    const QByteArray before = storeBytes();
    QMap<const options::Row *, QString> former;
    for (const options::Row &row : options::rows())
        former[&row] = GetSetting(sectionOf(row), keyOf(row));
    QMap<const options::Row *, QString> wanted;
    for (const bool keep : { false, true }) {
        open();
        // From the last to the first: a row goes before the flag that it needs.
        const auto rows = options::rows();
        for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
            form->showPage(latin(row->page));
            wanted[&*row] = change(*row);
        }
        if (keep)
            ok();
        else
            QTest::keyClick(form.get(), Qt::Key_Escape);
        EXPECT_FALSE(form->isVisible());
        if (!keep) {
            EXPECT_EQ(storeBytes(), before);
        }
    }
    for (const auto &[row, text] : wanted.asKeyValueRange()) {
        EXPECT_EQ(stored(sectionOf(*row), keyOf(*row)), text) << row->key;
        EXPECT_NE(text, former.value(row)) << row->key;
    }
    const QByteArray after = storeBytes();
    open();
    ok();
    EXPECT_EQ(storeBytes(), after) << "what was stored is shown and stored again as it was";
}

TEST_F(OptionsStore, WhatAnAdministratorHasTypedIsKeptOrTold)
{
    struct Row {
        const char16_t *section;
        const char16_t *key;
        const char16_t *stored;
        const char16_t *note; // part of it
        const char16_t *afterOk;
    };
    const Row rows[] = {
        { u"Options", u"PingTimeOut", u"soon", u"“soon” is stored here, which cannot be used.", u"1000" },
        { u"Options", u"DBExclusive", u"maybe", u"“maybe” is stored here", u"1" },
        { u"Options", u"PingCount", u"5000", u"not from 1 to 1000. It stays until you change it.", u"5000" },
        { u"Options", u"Min_Between_Checks", u"-3", u"not from 1 to 32767", u"-3" },
        { u"Options", u"HostTimeOut", u" 5 ", u"", u"5" },
        { u"Options", u"HTMLRefresh", u"0.5", u"", u"0.5" },
        { u"Options", u"HTMLRefresh", u"0.3333", u"It stays until you change it", u"0.3333" },
        { u"Options", u"ShowSplash", u"True", u"", u"1" },
        { u"Options", u"LogFailures", u"", u"cannot be used", u"1" },
        { u"Mail Options", u"MailServer", u" one :: ::two:26", u"", u" one :: ::two:26" },
        { u"Mail Options", u"MailFailedMask", u"two\r\nlines, commas", u"", u"two\r\nlines, commas" },
        { u"MSAgent", u"Character", u"MERLIN", u"", u"MERLIN" },
        { u"MSAgent", u"Character", u"Clippit", u"The character Clippit is not installed.", u"Clippit" },
    };
    for (const Row &row : rows) {
        const QString section = QString::fromUtf16(row.section);
        const QString key = QString::fromUtf16(row.key);
        SaveSetting(section, key, QString::fromUtf16(row.stored));
        open();
        EXPECT_TRUE(note(key).contains(QString::fromUtf16(row.note)) && note(key).isEmpty() == (*row.note == 0))
            << note(key).toStdString();
        cancel();
        EXPECT_EQ(stored(section, key), QString::fromUtf16(row.stored)) << "Cancel";
        open();
        ok();
        EXPECT_EQ(stored(section, key), QString::fromUtf16(row.afterOk));
        DeleteSetting(section);
    }
    SaveSetting(u"Options"_s, u"PingCount"_s, u"5000"_s);
    open();
    type(u"PingCount"_s, u"1000"_s); // what the box shows already
    EXPECT_EQ(note(u"PingCount"_s), QString());
    ok();
    EXPECT_EQ(stored(u"Options"_s, u"PingCount"_s), u"1000"_s);
}

TEST_F(OptionsStore, NumbersOutOfTheirLimitsCannotBeTyped)
{
    struct Row {
        const char16_t *key;
        const char16_t *typed;
        const char16_t *stored;
    };
    for (const Row &row : { Row { u"PingTimeOut", u"abc-2x50", u"250" }, Row { u"PortSockets", u"99999", u"9999" },
             Row { u"PingCount", u"0", u"1" }, Row { u"HostTimeOut", u"2.5", u"25" } }) {
        open();
        const QString key = QString::fromUtf16(row.key);
        type(key, QString::fromUtf16(row.typed));
        ok();
        const double number = stored(u"Options"_s, key).toDouble();
        const auto &box = at<QDoubleSpinBox>(key);
        EXPECT_GE(number, box.minimum()) << key.toStdString();
        EXPECT_LE(number, box.maximum()) << key.toStdString();
        EXPECT_EQ(number, std::floor(number)) << key.toStdString();
        DeleteSetting(u"Options"_s);
    }
}

TEST_F(OptionsStore, RestoreDefaultsIsForThePageShown)
{
    for (const char16_t *key : { u"PingCount", u"PingTimeOut", u"HostTimeOut" })
        SaveSetting(u"Options"_s, QString::fromUtf16(key), u"7"_s);
    open();
    form->showPage(u"Ping"_s);
    press(u"cmdRestore"_s);
    EXPECT_EQ(stored(u"Options"_s, u"PingCount"_s), u"7"_s) << "not before OK";
    ok();
    EXPECT_EQ(stored(u"Options"_s, u"PingCount"_s), u"1"_s);
    EXPECT_EQ(stored(u"Options"_s, u"PingTimeOut"_s), u"1000"_s);
    EXPECT_EQ(stored(u"Options"_s, u"HostTimeOut"_s), u"7"_s);
}

TEST_F(OptionsStore, AStoreThatCannotBeWrittenIsReportedUnderTheProceduresName)
{
    open();
    SetSettingsFilePath(u"/dev/null/settings.ini"_s);
    world.dialogs.expect(u"An error has occured in the Options_Save subroutine."_s);
    EXPECT_THROW(ok(), ProgramEnded);
}
