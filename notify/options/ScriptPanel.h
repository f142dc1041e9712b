#pragma once

#include <QWidget>

class NoteLabel;
class QLabel;

/** What the page about scripts tells: what a script is, where it stands, and a way to edit it. */
class ScriptPanel : public QWidget
{
    Q_OBJECT
public:
    explicit ScriptPanel(QWidget *parent);

private:
    void edit();
    void describe();

    QLabel *m_state;
    NoteLabel *m_problem;
};
