#pragma once

#include <QSplitter>

/** Tree and list side by side. The divider stays at least 1500 twips from either edge. */
class Panes : public QSplitter
{
    Q_OBJECT
public:
    Panes(QWidget *left, QWidget *right, QWidget *parent = nullptr);

    /** The divider's distance from the left edge; corrected when it is too near to an edge. */
    void setPosition(double twips);
    int position() const; // pixels

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void apply();
    int m_wanted = 0; // pixels; the window may be too narrow for it at first
};
