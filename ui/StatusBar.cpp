#include "ui/StatusBar.h"

#include "ui/ElidedLabel.h"

#include <QTimerEvent>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPaintIntervalMs = 30;

struct PanelLooks {
    const char *name;
    QLatin1StringView objectName;
    int stretch;
};
constexpr PanelLooks kPanels[StatusBar::PanelCount] = {
    { QT_TRANSLATE_NOOP("StatusBar", "Progress"), "sbPanelProgress"_L1, 5 },
    { QT_TRANSLATE_NOOP("StatusBar", "Announcement"), "sbPanelAnnouncement"_L1, 4 },
    { QT_TRANSLATE_NOOP("StatusBar", "State"), "sbPanelReady"_L1, 2 },
};

} // namespace

StatusBar::StatusBar(QWidget *parent)
    : QStatusBar(parent)
{
    setObjectName(u"sbStatusBar"_s);
    setAccessibleName(tr("Status bar"));
    for (int panel = 0; panel < PanelCount; ++panel) {
        auto *label = new ElidedLabel(this);
        label->setObjectName(kPanels[panel].objectName);
        label->setAccessibleName(tr(kPanels[panel].name));
        label->setDivided(panel > 0);
        addWidget(label, kPanels[panel].stretch);
        m_labels[panel] = label;
    }
}

void StatusBar::setPanelText(Panel panel, const QString &text)
{
    m_texts[panel] = text;
    if (!m_paint.isActive())
        m_paint.start(kPaintIntervalMs, this);
}

void StatusBar::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_paint.timerId())
        paintTexts();
    else
        QStatusBar::timerEvent(event);
}

void StatusBar::paintTexts()
{
    m_paint.stop();
    ++m_paints;
    for (int panel = 0; panel < PanelCount; ++panel)
        m_labels[panel]->setText(m_texts[panel]);
}
