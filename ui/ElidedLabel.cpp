#include "ui/ElidedLabel.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace {
constexpr int kPadding = 6;
constexpr int kLineMargin = 2;
constexpr int kLeastChars = 6;
}

ElidedLabel::ElidedLabel(QWidget *parent)
    : QFrame(parent)
{
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void ElidedLabel::setText(const QString &text)
{
    if (text == m_text)
        return;
    m_text = text;
    // A screen reader reads the description beside the panel's name.
    setAccessibleDescription(text);
    setToolTip(text.isEmpty() ? QString() : u"<p>"_s + text.toHtmlEscaped() + u"</p>"_s);
    update();
}

void ElidedLabel::setDivided(bool divided)
{
    m_divided = divided;
    update();
}

QSize ElidedLabel::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return { metrics.horizontalAdvance(m_text) + 2 * kPadding, metrics.height() + kPadding };
}

QSize ElidedLabel::minimumSizeHint() const
{
    return { fontMetrics().averageCharWidth() * kLeastChars, fontMetrics().height() + kPadding };
}

void ElidedLabel::paintEvent(QPaintEvent *event)
{
    QFrame::paintEvent(event);
    QPainter painter(this);
    if (m_divided) {
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawLine(0, kLineMargin, 0, height() - kLineMargin);
        painter.setPen(palette().color(QPalette::WindowText));
    }
    const QRect area = contentsRect().adjusted(kPadding, 0, -kPadding, 0);
    const QString line = QString(m_text).replace(u'\n', u' ');
    painter.drawText(area, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
        fontMetrics().elidedText(line, Qt::ElideRight, area.width()));
}
