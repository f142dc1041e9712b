// The database file as a whole, and the options.
#include "tests/walk/OperatorWalk.h"

#include "core/Settings.h"
#include "notify/options/frmOptions.h"

#include <QAbstractSpinBox>
#include <QCheckBox>
#include <QFile>
#include <QFileInfo>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString contentOf(const QString &path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return QString::fromUtf8(file.readAll());
}

} // namespace

/** A file command to its end, with whatever cycle falls into it. */
bool OperatorWalk::fileCommand(const char *name)
{
    if (!change(name))
        return false;
    EXPECT_TRUE(runUntil([&] {
        emit window->commands().done();
        return action("mnuFileOpen").isEnabled();
    }));
    return true;
}

bool OperatorWalk::newDatabase()
{
    const Counts before = counts();
    if (!command("mnuFileNew"))
        return false;
    EXPECT_EQ(world.announcer.log.last(), u"speak CreateNewDB"_s);
    expectCounts(before, "new");
    return true;
}

bool OperatorWalk::openDatabase()
{
    const char *name = m_random.of({ "mnuFileOpen", "tbOpen" });
    if (!canBeHad(name))
        return false;
    const QString former = vbMain().databasePath;
    const QString file = m_random.of<QString>({ u"defaultDB.mdb"_s, u"second.mdb"_s, u"third.mdb"_s, u"garbage.mdb"_s,
        u"missing.mdb"_s, {} });
    const QString path = file.isEmpty() ? QString() : world.path(file);
    m_pickers.expectOpenFile(u"Kavro 2.0 - Open Database"_s, path);
    note(file);
    bool opens = QFileInfo::exists(path) && file != u"garbage.mdb";
    if (path == former) {
        opens = agrees(u"The file you specified is already loaded.  "
                       "Re-loading the database will reset the counters.  Continue with re-load."_s);
    } else if (file == u"garbage.mdb") {
        expectBox(u"The database garbage.mdb could not be opened."_s);
    } else if (!path.isEmpty() && !opens) {
        expectBox(u"The Database name you provided is not valid."_s);
    }
    fileCommand(name);
    if (m_ended)
        return true;
    EXPECT_EQ(vbMain().databasePath, opens ? path : former);
    if (!opens)
        return true;
    m_caption = u"Kavro_2000 - "_s + file;
    m_queued = 0;
    EXPECT_EQ(GetSetting(u"Startup"_s, u"Database"_s), path);
    EXPECT_EQ(tree().currentLevel(), NodeLevel::Root);
    EXPECT_EQ(world.rows(u"Select Port_ID FROM tblPortStatus WHERE Port_Mode <> 0 OR Port_Icon_Flag <> 0"_s),
        QStringList());
    return true;
}

bool OperatorWalk::saveDatabaseAs()
{
    const char *name = m_random.of({ "mnuFileSaveAs", "tbSaveAs" });
    if (!canBeHad(name))
        return false;
    const Counts before = counts();
    const QString former = vbMain().databasePath;
    const QString startUp = GetSetting(u"Startup"_s, u"Database"_s);
    const QString file = m_random.of<QString>({ u"defaultDB.mdb"_s, u"second.mdb"_s, u"third.mdb"_s, u"copy.mdb"_s, {} });
    const QString path = file.isEmpty() ? QString() : world.path(file);
    m_pickers.expectSaveFile(u"Kavro 2.0 - Save Database As..."_s, path);
    note(file);
    bool saves = !path.isEmpty();
    if (path == former) {
        expectBox(u"File in use.  Please specify a different file name."_s);
        saves = false;
    } else if (QFileInfo::exists(path)) {
        saves = agrees(u"Overwrite existing file?"_s);
    }
    fileCommand(name);
    if (m_ended)
        return true;
    EXPECT_EQ(vbMain().databasePath, saves ? path : former);
    EXPECT_EQ(GetSetting(u"Startup"_s, u"Database"_s), startUp);
    if (saves)
        m_caption = u"Kavro_2000 - "_s + file;
    expectCounts(before, "save as");
    return true;
}

bool OperatorWalk::compactDatabase()
{
    if (!canBeHad("mnuCompactDatabase"))
        return false;
    const Counts before = counts();
    const bool yes = agrees(u"You are about to compact the database.\r\nContinue with database compaction?"_s);
    fileCommand("mnuCompactDatabase");
    if (m_ended)
        return true;
    EXPECT_EQ(world.announcer.log.contains(u"speak CompactDatabase"_s), yes);
    EXPECT_FALSE(QFileInfo::exists(world.path(u"Temp.mdb"_s)));
    expectCounts(before, "compact");
    return true;
}

/** Turns a few pages and touches what lies on them. */
void OperatorWalk::touchOptions(QDialog &form)
{
    for (int i = 1 + m_random.below(5); i > 0; --i) {
        QTest::keyClick(&form, m_random.chance(70) ? Qt::Key_PageDown : Qt::Key_PageUp, Qt::ControlModifier);
        QList<QWidget *> touched;
        for (QWidget *each : form.findChildren<QWidget *>()) {
            const bool fits = qobject_cast<QAbstractSpinBox *>(each) || qobject_cast<QCheckBox *>(each);
            if (fits && each->isVisible() && each->isEnabled())
                touched << each;
        }
        if (touched.isEmpty() || m_random.chance(30))
            continue;
        QWidget *chosen = m_random.of(touched);
        note(chosen->objectName());
        chosen->setFocus();
        QTest::keyClick(chosen, qobject_cast<QCheckBox *>(chosen) ? Qt::Key_Space : m_random.of({ Qt::Key_Up, Qt::Key_Down }));
    }
}

bool OperatorWalk::changeOptions()
{
    const QString before = contentOf(SettingsFilePath());
    bool saved = false;
    const bool had = command(m_random.of({ "mnuViewOptions", "tbOptions" }), { { u"frmOptions"_s, [&](Driver &form) {
        touchOptions(form.form());
        meanwhile();
        saved = m_random.chance(70);
        // Enter follows a link of the overview that has the focus.
        if (saved && qobject_cast<QPushButton *>(form.form().focusWidget()))
            form.press(0);
        else
            QTest::keyClick(&form.form(), saved ? Qt::Key_Return : Qt::Key_Escape);
    } } });
    if (had && !saved) {
        EXPECT_EQ(contentOf(SettingsFilePath()), before);
    }
    return had;
}
