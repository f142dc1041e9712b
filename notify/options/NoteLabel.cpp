#include "notify/options/NoteLabel.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>

NoteLabel::NoteLabel(QWidget *parent)
    : QWidget(parent)
    , m_sign(new QLabel(this))
    , m_text(new QLabel(this))
{
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_sign, 0, Qt::AlignTop);
    row->addWidget(m_text, 1);
    hide();
}

void NoteLabel::drawSign()
{
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    const QIcon sign = style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this);
    m_sign->setPixmap(sign.pixmap(QSize(size, size), devicePixelRatioF()));
}

void NoteLabel::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::StyleChange && !m_sign->pixmap().isNull())
        drawSign();
}

void NoteLabel::setText(const QString &text)
{
    if (!text.isEmpty() && m_sign->pixmap().isNull())
        drawSign();
    m_text->setText(text);
    setVisible(!text.isEmpty());
}

QString NoteLabel::text() const { return m_text->text(); }
