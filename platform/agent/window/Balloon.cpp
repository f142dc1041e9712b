#include "platform/agent/window/Balloon.h"

#include "platform/agent/Agent.h"
#include "platform/agent/window/BalloonShape.h"

#include <QAccessible>
#include <QEvent>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

constexpr int kUsualCharacters = 32;
constexpr int kUsualLines = 3;
constexpr int kMostLines = 12; // of a balloon that follows its text
constexpr int kBorder = 2; // room for the line around the shape

struct Look {
    QColor back;
    QColor text;
    QColor line;
};
const Look kLight { QColor(0xff, 0xfb, 0xea), QColor(0x23, 0x22, 0x1e), QColor(0x7a, 0x73, 0x61) };
const Look kDark { QColor(0x3a, 0x3d, 0x45), QColor(0xf6, 0xf5, 0xf0), QColor(0xa6, 0xa8, 0xb0) };

const Look &lookFor(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() < 128 ? kDark : kLight;
}

QMargins padding(Balloon::Kind kind)
{
    return kind == Balloon::Kind::Thought ? QMargins(22, 19, 22, 19) : QMargins(13, 9, 13, 9);
}

int byteOf(int style, int shift) { return int((quint32(style) >> shift) & 0xff); }

} // namespace

BalloonFormat BalloonFormat::ofStyle(int style)
{
    BalloonFormat format { style & 0xffff, byteOf(style, 16), byteOf(style, 24) };
    if (format.charactersPerLine != 0 && format.charactersPerLine < 8)
        throw Error(ErrorNumber::BadData, u"A balloon has between 8 and 255 characters per line."_s);
    if (format.lines > 128 || (format.lines != 0 && format.has(SizeToText)))
        throw Error(
            ErrorNumber::BadData, u"A balloon has between 1 and 128 lines, or the size of its text."_s);
    return format;
}

Balloon::Balloon()
{
    // Its shape is painted, not filled by the style.
    setAutoFillBackground(false);
    setCursor(Qt::PointingHandCursor);
}

void Balloon::begin(Kind kind, const QString &speaker, const QStringList &words, const BalloonFormat &format)
{
    m_kind = kind;
    m_format = format;
    m_shownWords = 0;
    m_wordEnds.clear();
    QString text;
    for (const QString &word : words) {
        text += (text.isEmpty() ? QString() : u" "_s) + word;
        m_wordEnds.append(text.size());
    }
    m_layout.setText(text);
    setAccessibleName(kind == Kind::Thought ? u"%1 thinks"_s.arg(speaker) : u"%1 says"_s.arg(speaker));
    setAccessibleDescription(text);
    layOut();
    arrange();
    redraw();
    QAccessibleEvent spoken(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&spoken);
}

void Balloon::showWords(int count)
{
    count = std::clamp(count, 0, int(m_wordEnds.size()));
    if (count == m_shownWords)
        return;
    m_shownWords = count;
    redraw();
}

void Balloon::follow(const QRect &character, const QPoint &head)
{
    m_character = character;
    m_head = head;
    if (text().isEmpty())
        return;
    const BalloonPlace before = m_place;
    arrange();
    // Only a tail that points elsewhere needs another picture.
    if (before.side != m_place.side
        || before.body.topLeft() - before.tip != m_place.body.topLeft() - m_place.tip)
        redraw();
}

void Balloon::mousePressEvent(QMouseEvent *) { emit dismissed(); }

void Balloon::changeEvent(QEvent *event)
{
    Overlay::changeEvent(event);
    const bool looks = event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange;
    if (!looks || text().isEmpty())
        return;
    layOut();
    arrange();
    redraw();
}

qsizetype Balloon::shownLength() const { return m_shownWords == 0 ? 0 : m_wordEnds.at(m_shownWords - 1); }

/** The whole text is laid out from the start, so that no word jumps to another line while it is being said.
 */
void Balloon::layOut()
{
    const QFontMetricsF metrics(font());
    const int characters = m_format.charactersPerLine ? m_format.charactersPerLine : kUsualCharacters;
    const qreal width
        = std::min<qreal>(characters * metrics.averageCharWidth(), screenAt(m_head).width() - 80);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    m_layout.setTextOption(option);
    m_layout.setFont(font());
    m_layout.setCacheEnabled(true);
    m_lineHeight = metrics.height();
    qreal used = 0;
    m_layout.beginLayout();
    for (QTextLine line = m_layout.createLine(); line.isValid(); line = m_layout.createLine()) {
        line.setLineWidth(width);
        // A foreign script's font may be taller than the balloon's own.
        m_lineHeight = std::max(m_lineHeight, line.height());
        used = std::max(used, line.naturalTextWidth());
    }
    m_layout.endLayout();
    m_lineHeight = std::ceil(m_lineHeight);
    for (int line = 0; line < m_layout.lineCount(); ++line)
        m_layout.lineAt(line).setPosition({ 0, line * m_lineHeight });
    m_textSize = QSizeF(m_format.has(SizeToText) ? used : width, visibleLines() * m_lineHeight).toSize();
    m_textSize += QSize(1, 0);
}

int Balloon::visibleLines() const
{
    if (!m_format.has(SizeToText))
        return m_format.lines ? m_format.lines : kUsualLines;
    const int room = std::max(1, int(screenAt(m_head).height() / 3 / m_lineHeight));
    return std::clamp(m_layout.lineCount(), 1, std::min(kMostLines, room));
}

int Balloon::firstVisibleLine() const
{
    const int last
        = m_layout.lineForTextPosition(int(std::max<qsizetype>(0, shownLength() - 1))).lineNumber();
    return std::clamp(last - visibleLines() + 1, 0, std::max(0, m_layout.lineCount() - 1));
}

void Balloon::arrange()
{
    const QSize body = m_textSize.grownBy(padding(m_kind));
    m_place = placeBalloon(body, m_character, m_head, screenAt(m_character.center()).adjusted(4, 4, -4, -4));
    const QMargins border(kBorder, kBorder, kBorder, kBorder);
    setGeometry(m_place.body.united(QRect(m_place.tip, QSize(1, 1))).marginsAdded(border));
}

void Balloon::redraw()
{
    QImage picture((QSizeF(size()) * devicePixelRatioF()).toSize(), QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(devicePixelRatioF());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    // Half a pixel inwards, so that the line is one crisp row of pixels.
    const QRectF body = QRectF(m_place.body.translated(-pos())).adjusted(0.5, 0.5, -0.5, -0.5);
    const QPointF tip = m_place.tip - pos();
    const Look &look = lookFor(palette());
    painter.setPen(QPen(look.line, 1.25));
    painter.setBrush(look.back);
    painter.drawPath(m_kind == Kind::Thought ? thoughtShape(body, tip) : speechShape(body, tip));
    painter.setPen(look.text);
    drawText(painter, QRectF(m_place.body.translated(-pos()).marginsRemoved(padding(m_kind))));
    painter.end();
    setPicture(picture);
}

void Balloon::drawText(QPainter &painter, const QRectF &area)
{
    const int first = firstVisibleLine();
    const qsizetype length = m_format.has(AutoPace) ? shownLength() : text().size();
    QTextLayout::FormatRange unsaid { int(length), int(text().size() - length), {} };
    unsaid.format.setForeground(Qt::transparent);
    const QPointF origin = area.topLeft() - QPointF(0, m_layout.lineAt(first).y());
    painter.setClipRect(area);
    m_layout.draw(&painter, origin, { unsaid }, area);
}

} // namespace agent
