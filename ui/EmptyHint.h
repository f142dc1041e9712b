#pragma once

#include <QLabel>

class QAbstractItemView;

/** A friendly line in the middle of a list that has no rows. */
class EmptyHint : public QLabel
{
    Q_OBJECT
public:
    /** Lives on the view's viewport; the view needs its model already. */
    EmptyHint(QAbstractItemView &view, const QString &text);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void follow();
    QAbstractItemView &m_view;
};
