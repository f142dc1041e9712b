#pragma once

#include <QDialog>
#include <QIcon>

class QAbstractButton;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QTreeWidget;
class QVBoxLayout;

/** A window size as the forms state it. */
struct Twips {
    int width;
    int height;
};

/** A modal form. Controls of one kind are a numbered array: the object name is "txtArray(0)". A text box that
    gets the focus has its whole text selected. */
class EditorForm : public QDialog
{
    Q_OBJECT
public:
    EditorForm(QWidget *parent, const char *name, const QString &caption, const QIcon &picture);

    /** A picture of the program's set by its file name without ".svg". */
    static QIcon picture(const QString &name);

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    enum Button { Ok = 0, Cancel = 1, Back = 2, Next = 3 };

    /** Names a control and tells its role to screen readers. */
    template <class Control>
    Control *named(Control *control, const char *array, int index, const QString &role)
    {
        name(*control, array, index, role);
        return control;
    }
    /** A one-line box that takes as much as the column behind it. */
    QLineEdit *lineBox(const char *array, int index, const QString &role, int maxLength = kTextColumn);
    /** A box that shows something and can be copied from. */
    QLineEdit *shownBox(const char *array, int index, const QString &role);
    QPlainTextEdit *textBox(const char *array, int index, const QString &role);
    /** The label's mnemonic moves the focus to the box. */
    static void addRow(QFormLayout &rows, const QString &label, QWidget *box);
    /** A line of explanation in the palette's muted colour. */
    QLabel *hint(const QString &text = {});
    /** A bold line that says what a page is about. */
    QLabel *heading(const QString &text);
    QTreeWidget *table(const char *name, const QString &role, const QStringList &columns);
    /** A button of cmdArray. */
    QAbstractButton *command(int index, const QString &text, const QString &role = {});
    /** A row of cmdArray(0) OK and cmdArray(1) Cancel at the bottom of the column. */
    void addOkCancel(QVBoxLayout &column);
    QAbstractButton *okButton() const { return m_ok; }
    /** What OK does; the base closes the form. */
    virtual void onOk() { accept(); }
    /** Opens at the stated size, or larger where the texts ask for it. */
    void openAt(Twips size);
    /** The same for a form that keeps its size. */
    void fixAt(Twips size);

    static constexpr int kTextColumn = 255;
    static constexpr int kNoLimit = 32767;

private:
    void name(QWidget &control, const char *array, int index, const QString &role);
    QSize sizeFor(Twips size);

    QAbstractButton *m_ok = nullptr;
};
