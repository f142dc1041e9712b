#include "platform/desktop/DefaultPrograms.h"
#include "platform/desktop/FilePickers.h"
#include "platform/desktop/MessageBoxes.h"
#include "platform/desktop/ScriptedBoxes.h"
#include "platform/desktop/ShellOpen.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QHash>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTimer>
#include <QUrl>
#include <gtest/gtest.h>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using namespace desktop;

namespace {

/** What to do to the dialog as soon as it is open. A test that would hang is ended by its own time limit. */
void whenOpen(std::function<void(QWidget *)> act)
{
    QTimer::singleShot(0, qApp, [act = std::move(act)] {
        QWidget *modal = QApplication::activeModalWidget();
        ASSERT_NE(modal, nullptr);
        act(modal);
    });
}

void press(QWidget *window, int key)
{
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
    QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier);
    QWidget *target = window->focusWidget() ? window->focusWidget() : window;
    QApplication::sendEvent(target, &down);
    QApplication::sendEvent(target, &up);
}

QMessageBox *asBox(QWidget *window) { return qobject_cast<QMessageBox *>(window); }

int visibleWindows()
{
    int count = 0;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget *window : windows)
        count += window->isVisible();
    return count;
}

class UrlCatcher : public QObject
{
    Q_OBJECT

public slots:
    void take(const QUrl &url) { caught += url; }

public:
    QList<QUrl> caught;
};

} // namespace

TEST(MessageBox, AnswersByButtonByKeyAndByClosing)
{
    using Act = std::function<void(QWidget *)>;
    const auto click = [](QMessageBox::StandardButton button) -> Act {
        return [button](QWidget *w) { asBox(w)->button(button)->click(); };
    };
    const Act enter = [](QWidget *w) { press(w, Qt::Key_Return); };
    const Act escape = [](QWidget *w) { press(w, Qt::Key_Escape); };
    const Act close = [](QWidget *w) { w->close(); };
    struct Row {
        const char *name;
        Buttons buttons;
        Act act;
        Answer answer;
    };
    const Row rows[] = {
        { "ok", Ok, click(QMessageBox::Ok), AnswerOk },
        { "ok closed", Ok, close, AnswerOk },
        { "yes", YesNo, click(QMessageBox::Yes), AnswerYes },
        { "no", YesNo, click(QMessageBox::No), AnswerNo },
        { "yes/no entered", YesNo, enter, AnswerYes },
        { "yes/no escaped", YesNo, escape, AnswerNo },
        { "yes/no closed", YesNo, close, AnswerNo },
        { "no of three", YesNoCancel, click(QMessageBox::No), AnswerNo },
        { "cancel", YesNoCancel, click(QMessageBox::Cancel), AnswerCancel },
        { "three entered", YesNoCancel, enter, AnswerYes },
        { "three escaped", YesNoCancel, escape, AnswerCancel },
        { "three closed", YesNoCancel, close, AnswerCancel },
    };
    for (const Row &row : rows) {
        whenOpen(row.act);
        EXPECT_EQ(messageBox(nullptr, u"text"_s, u"caption"_s, Question, row.buttons), row.answer)
            << row.name;
    }
    EXPECT_EQ(visibleWindows(), 0);
}

TEST(MessageBox, ShowsTheTextAsItIs)
{
    const QString text = u"<b>100%</b> & more\r\n\r\nError Number: \t5\rlast\nline"_s;
    const QList<std::pair<Icon, QMessageBox::Icon>> icons
        = { { Critical, QMessageBox::Critical }, { Question, QMessageBox::Question },
              { Exclamation, QMessageBox::Warning }, { Information, QMessageBox::Information } };
    for (const auto &[icon, shown] : icons) {
        whenOpen([shown = shown](QWidget *w) {
            EXPECT_EQ(w->windowTitle(), u"The caption"_s);
            EXPECT_EQ(asBox(w)->icon(), shown);
            EXPECT_EQ(asBox(w)->textFormat(), Qt::PlainText);
            EXPECT_EQ(asBox(w)->text(), u"<b>100%</b> & more\n\nError Number: \t5\nlast\nline"_s);
            w->close();
        });
        messageBox(nullptr, text, u"The caption"_s, icon, Ok);
    }
}

TEST(MessageBox, SurvivesItsParentsEnd)
{
    auto parent = std::make_unique<QWidget>();
    whenOpen([&parent](QWidget *) { parent.reset(); });
    EXPECT_EQ(messageBox(parent.get(), u"text"_s, u"caption"_s, Question, YesNoCancel), AnswerCancel);
}

TEST(MessageBox, CloseRequestReachesTheWindowOfThatCaptionOnly)
{
    QWidget other;
    other.setWindowTitle(u"Kavro_2000"_s);
    other.show();
    QWidget hidden;
    hidden.setWindowTitle(u"Kavro_2000 - Continue?"_s);
    EXPECT_FALSE(closeWindowTitled(u"Kavro_2000 - Continue?"_s));

    QTimer::singleShot(20, qApp, [] { EXPECT_TRUE(closeWindowTitled(u"Kavro_2000 - Continue?"_s)); });
    EXPECT_EQ(
        messageBox(&other, u"Sure?"_s, u"Kavro_2000 - Continue?"_s, Question, YesNoCancel), AnswerCancel);
    EXPECT_TRUE(other.isVisible());
}

TEST(ScriptedBoxes, AnswersInOrderWithoutAnyWindow)
{
    QStringList failures;
    ScriptedBoxes script([&](const QString &text) { failures += text; });
    script.expectBox(u"Sure?"_s, AnswerNo)
        .expectOpenFile(u"Open it"_s, u"/tmp/a.mdb"_s)
        .expectSaveFile(u"Save it"_s, QString())
        .expectShellOpen(u"file:///tmp/log.txt"_s)
        .expectBox(u"Done."_s);
    EXPECT_EQ(messageBox(nullptr, u"Sure?"_s, u"Title"_s, Question, YesNo), AnswerNo);
    EXPECT_EQ(
        openFile(nullptr, { u"Open it"_s, u"/tmp"_s, u"x.mdb"_s, u"mdb (*.mdb)|*.mdb"_s }), u"/tmp/a.mdb"_s);
    EXPECT_EQ(saveFile(nullptr, { u"Save it"_s, QString(), QString(), QString() }), QString());
    EXPECT_TRUE(shellOpen(u"file:///tmp/log.txt"_s));
    EXPECT_FALSE(script.isFinished());
    EXPECT_EQ(messageBox(nullptr, u"Done."_s, u"Title"_s, Information, Ok), AnswerOk);

    EXPECT_TRUE(script.isFinished());
    EXPECT_EQ(failures, QStringList());
    EXPECT_EQ(visibleWindows(), 0);
    const QList<ScriptedBoxes::Box> boxes
        = { { u"Sure?"_s, u"Title"_s, Question, YesNo }, { u"Done."_s, u"Title"_s, Information, Ok } };
    EXPECT_EQ(script.boxes(), boxes);
    ASSERT_EQ(script.pickers().size(), 2);
    EXPECT_EQ(script.pickers().at(0).name, u"x.mdb"_s);
}

TEST(ScriptedBoxes, ReportsWrongExtraAndMissingQuestions)
{
    QStringList failures;
    const auto note = [&](const QString &text) { failures += text; };
    {
        ScriptedBoxes outer(note);
        outer.expectBox(u"outer"_s, AnswerYes);
        {
            ScriptedBoxes inner(note);
            inner.expectBox(u"one"_s, AnswerYes).expectShellOpen(u"two"_s).expectBox(u"three"_s);
            EXPECT_EQ(messageBox(nullptr, u"other"_s, QString(), Question, YesNoCancel), AnswerCancel);
            EXPECT_EQ(messageBox(nullptr, u"two"_s, QString(), Question, YesNo), AnswerNo);
        }
        EXPECT_EQ(messageBox(nullptr, u"outer"_s, QString(), Question, YesNo), AnswerYes);
        EXPECT_EQ(openFile(nullptr, { u"extra"_s, QString(), QString(), QString() }), QString());
    }
    EXPECT_EQ(ScriptedBoxes::active(), nullptr);
    EXPECT_EQ(visibleWindows(), 0);
    EXPECT_EQ(failures,
        QStringList(
            { u"expected box: one but asked box: other"_s, u"expected shell open: two but asked box: two"_s,
                u"never asked: box: three"_s, u"unexpected: open file: extra"_s }));
}

TEST(FilePickers, OfferTheProposedNameAndLeaveJudgementToTheCaller)
{
    QTemporaryDir dir;
    const QString existing = QDir(dir.path()).canonicalPath() + u"/there.mdb"_s;
    QFile file(existing);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    const QString missing = QDir(dir.path()).canonicalPath() + u"/missing.mdb"_s;
    const FileQuestion question = { u"Kavro 2.0 - Open Database"_s, QDir(dir.path()).canonicalPath(),
        u"there.mdb"_s, u"mdb (*.mdb)|*.mdb"_s };

    const auto accept = [](const QString &name) {
        whenOpen([name](QWidget *w) {
            auto *dialog = qobject_cast<QFileDialog *>(w);
            ASSERT_NE(dialog, nullptr);
            EXPECT_EQ(dialog->windowTitle(), u"Kavro 2.0 - Open Database"_s);
            EXPECT_EQ(dialog->nameFilters(), QStringList(u"mdb (*.mdb)"_s));
            if (!name.isEmpty())
                dialog->selectFile(name);
            QMetaObject::invokeMethod(dialog, "accept");
        });
    };
    accept(QString());
    EXPECT_EQ(openFile(nullptr, question), existing);
    accept(missing);
    EXPECT_EQ(openFile(nullptr, question), missing);
    accept(QString()); // an existing file: no question about overwriting comes up
    EXPECT_EQ(saveFile(nullptr, question), existing);
    whenOpen([](QWidget *w) { w->close(); });
    EXPECT_EQ(saveFile(nullptr, question), QString());
}

TEST(FilePickers, TranslateFilters)
{
    EXPECT_EQ(qtFilter(u"Text (*.txt)|*.txt"_s), u"Text (*.txt)"_s);
    EXPECT_EQ(qtFilter(u"HTML|*.htm;*.html|All files (*.*)|*"_s), u"HTML (*.htm *.html);;All files (*)"_s);
    EXPECT_EQ(qtFilter(QString()), QString());
}

TEST(ShellOpen, TurnsPathsAndAddressesIntoUrls)
{
    UrlCatcher catcher;
    QDesktopServices::setUrlHandler(u"file"_s, &catcher, "take");
    QDesktopServices::setUrlHandler(u"http"_s, &catcher, "take");
    shellOpen(u"file:///tmp/my log #1 100%.txt"_s);
    shellOpen(u"/tmp/page.html"_s);
    shellOpen(u"http://kavro.example/help?page=1#top"_s);
    QDesktopServices::unsetUrlHandler(u"file"_s);
    QDesktopServices::unsetUrlHandler(u"http"_s);
    const QList<QUrl> expected = { QUrl::fromLocalFile(u"/tmp/my log #1 100%.txt"_s),
        QUrl::fromLocalFile(u"/tmp/page.html"_s), QUrl(u"http://kavro.example/help?page=1#top"_s) };
    EXPECT_EQ(catcher.caught, expected);
}

class DefaultProgramsTest : public testing::Test
{
protected:
    QTemporaryDir m_home;
    QHash<QByteArray, QByteArray> m_before;

    DefaultProgramsTest()
    {
        set("XDG_CONFIG_HOME", "/config");
        set("XDG_CONFIG_DIRS", "/etc");
        set("XDG_DATA_HOME", "/data");
        set("XDG_DATA_DIRS", "/usr");
        m_before.insert("XDG_CURRENT_DESKTOP", qgetenv("XDG_CURRENT_DESKTOP"));
        qputenv("XDG_CURRENT_DESKTOP", "Lab:Other");
    }
    ~DefaultProgramsTest() override
    {
        for (auto each = m_before.begin(); each != m_before.end(); ++each)
            qputenv(each.key().constData(), each.value());
    }
    void set(const char *variable, const char *folder)
    {
        m_before.insert(variable, qgetenv(variable));
        qputenv(variable, QFile::encodeName(m_home.path() + QString::fromLatin1(folder)));
    }
    void write(const QString &name, const QByteArray &text)
    {
        const QString path = m_home.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    static bool known() { return hasProgramFor(u"/nowhere/Kavro2000.chm"_s); }
};

TEST_F(DefaultProgramsTest, AreTheChosenAndTheDeclaringOnesThatAreInstalled)
{
    const QByteArray type = "application/vnd.ms-htmlhelp";
    EXPECT_FALSE(known());
    write(u"config/mimeapps.list"_s, "[Default Applications]\n" + type + "=gone.desktop;lab-viewer.desktop;\n");
    EXPECT_FALSE(known()) << "chosen but not installed";
    write(u"usr/applications/lab/viewer.desktop"_s, "[Desktop Entry]\nMimeType=text/plain;\n");
    EXPECT_TRUE(known()) << "a hyphen may stand for a folder";
    QFile::remove(m_home.filePath(u"config/mimeapps.list"_s));
    EXPECT_FALSE(known());

    const QByteArray viewer = "[Other]\nMimeType=text/plain\n[Desktop Entry]\nMimeType = text/css;" + type + "\n";
    write(u"data/applications/viewer.desktop"_s, viewer);
    EXPECT_TRUE(known()) << "declared, no cache";
    write(u"etc/lab-mimeapps.list"_s, "[Removed Associations]\n" + type + "=viewer.desktop;\n");
    EXPECT_FALSE(known()) << "declared, but removed again";
    QFile::remove(m_home.filePath(u"etc/lab-mimeapps.list"_s));
    write(u"data/applications/mimeinfo.cache"_s, "[MIME Cache]\ntext/css=viewer.desktop;\n");
    EXPECT_FALSE(known()) << "the cache counts";
    write(u"data/applications/mimeinfo.cache"_s, "[MIME Cache]\napplication/x-chm=viewer.desktop;\n");
    EXPECT_TRUE(known()) << "another name of the type";
}

#include "DesktopTest.moc"
