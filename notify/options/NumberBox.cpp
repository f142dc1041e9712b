#include "notify/options/NumberBox.h"

#include <QLineEdit>
#include <QWheelEvent>

NumberBox::NumberBox(QWidget *parent)
    : QDoubleSpinBox(parent)
{
    QLocale plain = locale();
    plain.setNumberOptions(QLocale::OmitGroupSeparator);
    setLocale(plain);
    setFocusPolicy(Qt::StrongFocus);
    setStepType(QAbstractSpinBox::AdaptiveDecimalStepType);
    setAccelerated(true);
    connect(this, &QDoubleSpinBox::valueChanged, this, &NumberBox::touched);
    // Typing the number that stands there already changes no value.
    connect(lineEdit(), &QLineEdit::textEdited, this, &NumberBox::touched);
}

QString NumberBox::textFromValue(double value) const
{
    return locale().toString(value, 'f', QLocale::FloatingPointShortest);
}

void NumberBox::wheelEvent(QWheelEvent *event)
{
    if (hasFocus())
        QDoubleSpinBox::wheelEvent(event);
    else
        event->ignore();
}
