#pragma once

#include <QDoubleSpinBox>

/** A spin box for whole numbers and fractions, shown without trailing zeros. The wheel moves it only while it has the
    focus, so that scrolling a page changes nothing. */
class NumberBox : public QDoubleSpinBox
{
    Q_OBJECT
public:
    explicit NumberBox(QWidget *parent);

    QString textFromValue(double value) const override;

signals:
    /** The operator has typed or stepped. */
    void touched();

protected:
    void wheelEvent(QWheelEvent *event) override;
};
