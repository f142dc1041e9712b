#pragma once

#include <QWidget>

class QLabel;

/** A line that tells what is wrong, with a warning sign before it; without a text it takes no room. */
class NoteLabel : public QWidget
{
    Q_OBJECT
public:
    explicit NoteLabel(QWidget *parent);

    void setText(const QString &text);
    QString text() const;

protected:
    void changeEvent(QEvent *event) override;

private:
    void drawSign();

    QLabel *m_sign;
    QLabel *m_text;
};
