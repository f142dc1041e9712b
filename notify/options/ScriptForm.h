#pragma once

#include <QDialog>

class NoteLabel;
class QPlainTextEdit;

/** The script of an event, to be written. What is wrong with it is told below it; it may be kept nevertheless. */
class ScriptForm : public QDialog
{
    Q_OBJECT
public:
    /** Begins with a script; an empty one with the frame of Main. */
    ScriptForm(const QString &script, QWidget *parent);

    QString script() const;

private:
    void load();
    void judge();

    QPlainTextEdit *m_text;
    NoteLabel *m_problem;
};
