#pragma once

#include <QFrame>

/** One line of plain text that gives way to its neighbours: what does not fit ends in "…" and stands in the
 * tip. */
class ElidedLabel : public QFrame
{
    Q_OBJECT
public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    void setText(const QString &text);
    /** A thin line at the left edge, apart from the neighbour. */
    void setDivided(bool divided);
    const QString &text() const { return m_text; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_text;
    bool m_divided = false;
};
