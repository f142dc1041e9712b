#include "tests/editors/EditorWorld.h"

#include <QPlainTextEdit>
#include <QPointer>
#include <QTimer>

using namespace Qt::StringLiterals;

void RecordingTree::setNodeText(NodeLevel, const QString &node, const QString &to)
{
    log << u"text %1 = %2"_s.arg(node, to);
}

void RecordingTree::addNode(
    NodeLevel, const QString &parent, const QString &node, const QString &label, int image)
{
    log << u"add %1 > %2 | %3 | %4"_s.arg(parent, node, label).arg(image);
}

void RecordingTree::removeNode(NodeLevel, const QString &node) { log << u"remove "_s + node; }

void RecordingTree::selectNode(NodeLevel, const QString &node) { log << u"select "_s + node; }

void RecordingTree::refreshViews() { log << u"refresh"_s; }

void Driver::toggle(const char *array, int index)
{
    at(array, index).setFocus();
    QTest::keyClick(&at(array, index), Qt::Key_Space);
}

void Driver::type(const char *array, int index, const QString &text)
{
    QWidget &box = at(array, index);
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&box, Qt::Key_Delete);
    QTest::keyClicks(&box, text);
}

QString Driver::text(const char *array, int index)
{
    QWidget &box = at(array, index);
    if (auto *text = qobject_cast<QPlainTextEdit *>(&box))
        return text->toPlainText();
    return at<QLineEdit>(array, index).text();
}

QStringList Driver::texts(const char *array, int count)
{
    QStringList all;
    for (int i = 0; i < count; ++i)
        all << text(array, i);
    return all;
}

void EditorWorld::drive(const char *command, QList<std::function<void(Driver &)>> acts)
{
    qsizetype done = 0;
    QPointer<QDialog> last; // a later form may lie where an earlier one lay
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        auto *form = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!form || !form->isVisible())
            return;
        if (form == last || done == acts.size()) {
            ADD_FAILURE() << "still open: " << form->objectName().toStdString();
            form->done(QDialog::Rejected);
            return;
        }
        last = form;
        timer.stop(); // an act waits, too
        form->activateWindow();
        EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == form; }));
        Driver driver(*form);
        acts.at(done++)(driver);
        timer.start();
    });
    timer.start(0);
    trigger(command);
    EXPECT_EQ(done, acts.size()) << "forms opened";
}

void EditorWorld::show(QDialog &form)
{
    form.setModal(false);
    form.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
}

void EditorWorld::reopen()
{
    dao::SetAccessHook({});
    vbMain().db = dao::OpenDatabase(world.path(u"defaultDB.mdb"_s), true);
}

void EditorWorld::failAccess(int index)
{
    dao::SetAccessHook([left = index]() mutable {
        if (left-- == 0)
            throw VbError(3043, u"Disk or network error."_s);
    });
}

void EditorWorld::fillCatalogue()
{
    for (const QString &row : { u"'Echo request', 'ICMP', 0"_s, u"'Discard', 'TCP', 9"_s,
             u"'Mail', 'TCP', 25"_s, u"'Web', 'tcp', 80"_s, u"'Secure web', 'TCP', 443"_s })
        world.sql(u"INSERT INTO tblTCPPorts (Port_Desc, Port_Type, Port_Num) VALUES ("_s + row + u")"_s);
}

QStringList EditorWorld::nodes()
{
    QStringList lines;
    for (const QString &line : treeLines())
        lines << line.section(u" | "_s, 0, 1).trimmed();
    return lines;
}
