#pragma once

#include "editors/OperatorEditors.h"
#include "tests/ui/WindowWorld.h"

#include <QAbstractButton>
#include <QDialog>
#include <QLineEdit>
#include <QTest>
#include <QTreeWidget>

/** A tree that records what an editor does to it, for a form without a window. */
class RecordingTree : public EditedTree
{
public:
    NodeLevel level = NodeLevel::Root;
    QString key = QStringLiteral("Root");
    QString text;
    QStringList log;

    NodeLevel currentLevel() const override { return level; }
    QString currentKey() const override { return key; }
    QString currentText() const override { return text; }
    void setNodeText(NodeLevel, const QString &node, const QString &to) override;
    void addNode(
        NodeLevel, const QString &parent, const QString &node, const QString &label, int image) override;
    void removeNode(NodeLevel, const QString &node) override;
    void selectNode(NodeLevel, const QString &node) override;
    void refreshViews() override;
    QWidget *window() override { return nullptr; }
};

/** One open form, driven by its controls. */
class Driver
{
public:
    explicit Driver(QDialog &form)
        : m_form(form)
    {
    }

    template <class Control = QWidget>
    Control &at(const char *array, int index)
    {
        const QString name = QStringLiteral("%1(%2)").arg(QString::fromLatin1(array)).arg(index);
        return named<Control>(name);
    }
    template <class Control = QWidget>
    Control &named(const QString &name)
    {
        auto *control = m_form.findChild<Control *>(name);
        if (!control)
            qFatal("no control %s", qPrintable(name));
        return *control;
    }
    QDialog &form() { return m_form; }
    QAbstractButton &command(int index) { return at<QAbstractButton>("cmdArray", index); }
    void press(int index) { QTest::mouseClick(&command(index), Qt::LeftButton); }
    void toggle(const char *array, int index);
    /** Types over whatever stands in a box. */
    void type(const char *array, int index, const QString &text);
    QString text(const char *array, int index);
    QStringList texts(const char *array, int count);

private:
    QDialog &m_form;
};

/** The real window with the real editors. */
class EditorWorld : public WindowWorld
{
protected:
    SmallNetwork net { world };
    OperatorEditors editors;
    RecordingTree recorded;

    void openWindow() { open(&editors); }
    /** Carries out a command; acts drive the forms that it opens, one after the other. A form that an act
       leaves open is a fault. */
    void drive(const char *command, QList<std::function<void(Driver &)>> acts);
    /** Shows a form without the window. */
    static void show(QDialog &form);
    /** Opens the database again that the end of the program has closed. */
    void reopen();
    /** Lets the database access of that number, counted from now, fail. */
    static void failAccess(int index);
    /** An empty catalogue with the ping entry and some ports. */
    void fillCatalogue();
    QStringList nodes();
};
