#pragma once

#include "platform/agent/window/BalloonPlace.h"
#include "platform/agent/window/Overlay.h"

#include <QTextLayout>

namespace agent {

/** How a balloon looks: the flags of BalloonStyle and, in the two highest bytes, characters per line (8 to
   255) and number of lines (1 to 128); 0 stands for the usual number. */
struct BalloonFormat {
    int flags = 0;
    int charactersPerLine = 0;
    int lines = 0;

    /** Throws BadData. */
    static BalloonFormat ofStyle(int style);
    bool has(int flag) const { return (flags & flag) != 0; }
};

/** The word balloon: what a character says or thinks, word by word or at once. Longer texts scroll. */
class Balloon : public Overlay
{
    Q_OBJECT
public:
    enum class Kind { Speech, Thought };

    Balloon();

    /** Shows a new text, with AutoPace none of its words yet. Names who speaks for screen readers. */
    void begin(Kind kind, const QString &speaker, const QStringList &words, const BalloonFormat &format);
    /** So many words have been said. */
    void showWords(int count);
    /** The whole text at once. */
    void showAll() { showWords(int(m_wordEnds.size())); }
    /** Stays beside the character, wherever it goes. In screen coordinates. */
    void follow(const QRect &character, const QPoint &head);

    /** The whole text. */
    QString text() const { return m_layout.text(); }
    /** The part of the text that has been said. */
    QString shownText() const { return text().left(shownLength()); }
    BalloonPlace place() const { return m_place; }

signals:
    /** The user clicked it. */
    void dismissed();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void redraw() override;

private:
    qsizetype shownLength() const;
    void layOut();
    void arrange();
    void drawText(QPainter &painter, const QRectF &area);
    int visibleLines() const;
    int firstVisibleLine() const;

    QTextLayout m_layout;
    QList<qsizetype> m_wordEnds;
    BalloonFormat m_format;
    Kind m_kind = Kind::Speech;
    int m_shownWords = 0;
    QSize m_textSize;
    qreal m_lineHeight = 1;
    QRect m_character;
    QPoint m_head;
    BalloonPlace m_place;
};

} // namespace agent
