#include "ui/EmptyHint.h"

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QEvent>

namespace {
constexpr int kMargin = 16;
}

EmptyHint::EmptyHint(QAbstractItemView &view, const QString &text)
    : QLabel(text, view.viewport())
    , m_view(view)
{
    setAlignment(Qt::AlignCenter);
    setWordWrap(true);
    setEnabled(false); // the palette's own muted colour, in light and dark
    setAttribute(Qt::WA_TransparentForMouseEvents);
    view.viewport()->installEventFilter(this);
    const QAbstractItemModel *model = view.model();
    connect(model, &QAbstractItemModel::modelReset, this, &EmptyHint::follow);
    connect(model, &QAbstractItemModel::rowsInserted, this, &EmptyHint::follow);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &EmptyHint::follow);
    follow();
}

bool EmptyHint::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        follow();
    return QLabel::eventFilter(watched, event);
}

void EmptyHint::follow()
{
    const bool empty = m_view.model()->rowCount() == 0;
    if (empty)
        setGeometry(m_view.viewport()->rect().adjusted(kMargin, kMargin, -kMargin, -kMargin));
    setVisible(empty);
}
