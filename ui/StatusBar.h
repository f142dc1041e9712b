#pragma once

#include <QBasicTimer>
#include <QStatusBar>
#include <array>

class ElidedLabel;

/** sbStatusBar: three panels. A text is stored at once and painted at the screen's pace, because progress
   texts come up to 20,000 times a second. */
class StatusBar : public QStatusBar
{
    Q_OBJECT
public:
    enum Panel { Progress, Announcement, Ready, PanelCount };

    explicit StatusBar(QWidget *parent = nullptr);

    void setPanelText(Panel panel, const QString &text);
    /** What was set last, painted or not. */
    const QString &panelText(Panel panel) const { return m_texts[panel]; }
    /** How often the panels were painted anew. */
    int paints() const { return m_paints; }

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    void paintTexts();
    std::array<QString, PanelCount> m_texts;
    std::array<ElidedLabel *, PanelCount> m_labels {};
    QBasicTimer m_paint;
    int m_paints = 0;
};
