#include "platform/desktop/Labels.h"

#include <QLabel>

namespace desktop {

QLabel *mutedLabel(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    label->setForegroundRole(QPalette::PlaceholderText);
    // Takes the width there is instead of wrapping into a narrow block.
    label->setSizePolicy(QSizePolicy::Expanding, label->sizePolicy().verticalPolicy());
    return label;
}

QLabel *headingLabel(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

} // namespace desktop
