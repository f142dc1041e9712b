#include "ui/Panes.h"

#include "ui/Twips.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr int kEdgeTwips = 1500;
}

Panes::Panes(QWidget *left, QWidget *right, QWidget *parent)
    : QSplitter(Qt::Horizontal, parent)
{
    setObjectName(u"splSplitter"_s);
    setAccessibleName(tr("Splitter"));
    setChildrenCollapsible(false);
    for (QWidget *pane : { left, right }) {
        pane->setMinimumWidth(pixelsFromTwips(kEdgeTwips));
        addWidget(pane);
    }
    setStretchFactor(0, 0);
    setStretchFactor(1, 1);
    connect(this, &QSplitter::splitterMoved, this, [this](int pos) { m_wanted = pos; });
}

void Panes::setPosition(double twips)
{
    m_wanted = pixelsFromTwips(std::clamp(twips, double(kEdgeTwips), 1e6));
    apply();
}

int Panes::position() const { return isVisible() ? sizes().value(0) : m_wanted; }

void Panes::resizeEvent(QResizeEvent *event)
{
    QSplitter::resizeEvent(event);
    apply();
}

void Panes::apply()
{
    const int edge = pixelsFromTwips(kEdgeTwips);
    const int most = std::max(edge, width() - handleWidth() - edge);
    const int left = std::clamp(m_wanted, edge, most);
    setSizes({ left, std::max(edge, width() - handleWidth() - left) });
}
