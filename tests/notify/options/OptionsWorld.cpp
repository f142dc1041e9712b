#include "tests/notify/options/OptionsWorld.h"

#include "core/ProgramFolder.h"
#include "notify/options/NoteLabel.h"
#include "notify/vbMSAgent.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

OptionsWorld::OptionsWorld()
{
    setSharedDataFolder(world.folder.path());
    makeCharacters({ u"merlin.acs"_s, u"peedy.acs"_s, u"Robby.ACS"_s, u"readme.txt"_s });
}

OptionsWorld::~OptionsWorld()
{
    form.reset();
    setSharedDataFolder({});
}

void OptionsWorld::makeCharacters(const QStringList &files)
{
    QDir(CharacterFolder()).removeRecursively();
    QDir().mkpath(CharacterFolder());
    for (const QString &file : files)
        EXPECT_TRUE(QFile(CharacterFolder() + u'/' + file).open(QIODevice::WriteOnly));
}

void OptionsWorld::open(frmOptions::Helpers helpers)
{
    form.reset();
    form = std::make_unique<frmOptions>(nullptr, std::move(helpers));
    form->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
    ASSERT_TRUE(QTest::qWaitFor([&] { return form->isComplete(); }));
    QCoreApplication::processEvents(); // what the last page brings about
}

void OptionsWorld::press(const QString &button) { at<QAbstractButton>(button).click(); }

void OptionsWorld::type(const QString &name, const QString &text)
{
    QWidget &box = at(name);
    QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&box, Qt::Key_Delete);
    typeInto(box, text);
}

void OptionsWorld::typeInto(QWidget &box, const QString &text)
{
    for (const QChar letter : text)
        QTest::sendKeyEvent(QTest::Click, &box, Qt::Key_unknown, QString(letter), Qt::NoModifier);
}

QString OptionsWorld::note(const QString &key) { return at<NoteLabel>(key + "Note"_L1).text(); }

void OptionsWorld::drive(const std::function<void()> &opens, const std::function<void(QDialog &)> &act)
{
    bool acted = false;
    QTimer::singleShot(0, form.get(), [&] {
        auto *modal = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        ASSERT_TRUE(modal);
        acted = true;
        act(*modal);
        if (modal->isVisible()) {
            ADD_FAILURE() << "still open: " << modal->objectName().toStdString();
            modal->reject();
        }
    });
    opens();
    EXPECT_TRUE(acted);
    form->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(form.get()));
}

QString OptionsWorld::stored(const QString &section, const QString &key)
{
    return GetSetting(section, key, u"absent"_s);
}
