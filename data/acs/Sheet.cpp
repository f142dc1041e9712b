#include "Sheet.h"

#include "platform/agent/character/CharacterRenderer.h"

#include <QPainter>

using namespace Qt::StringLiterals;
using agent::Animation;
using agent::CharacterFile;
using agent::CharacterRenderer;

namespace {

constexpr int kFrame = 126;
constexpr int kLabel = 20;
constexpr int kTitle = 40;
constexpr int kGap = 10;
constexpr int kColumns = 4;
constexpr int kOverlap = 3; // a frame has air beside its figure
constexpr int kRow = kFrame + 2 * kOverlap;
constexpr qreal kMoments[] = { 0.3, 0.55, 0.8 };
constexpr int kCell = int(std::size(kMoments)) * kFrame;
constexpr QColor kPaper(0xf4, 0xf5, 0xf8), kCard(0xff, 0xff, 0xff), kRim(0xd9, 0xdd, 0xe6), kInk(0x25, 0x2a, 0x3a);

/** What a sheet shows, in a reader's order. */
const QStringList kShown = { u"Show"_s, u"Hide"_s, u"RestPose"_s, u"Speaking"_s, u"Blink"_s, u"Idle1_1"_s,
    u"Idle1_2"_s, u"Idle2_1"_s, u"Idle2_2"_s, u"Idle3_1"_s, u"Idle3_2"_s, u"Acknowledge"_s, u"Alert"_s,
    u"Announce"_s, u"Confused"_s, u"Congratulate"_s, u"Decline"_s, u"Explain"_s, u"GetAttention"_s, u"Greet"_s,
    u"Hearing_1"_s, u"Pleased"_s, u"Sad"_s, u"Surprised"_s, u"Think"_s, u"Uncertain"_s, u"Wave"_s,
    u"GestureUp"_s, u"GestureDown"_s, u"GestureLeft"_s, u"GestureRight"_s, u"MoveUp"_s, u"MoveDown"_s,
    u"MoveLeft"_s, u"MoveRight"_s };

QRect cellAt(int index, int top)
{
    return { kGap + index % kColumns * (kCell + kGap), top + index / kColumns * (kRow + kLabel + kGap), kCell,
             kRow + kLabel };
}

QFont font(int pixels, bool bold)
{
    QFont made(u"DejaVu Sans"_s);
    made.setPixelSize(pixels);
    made.setBold(bold);
    return made;
}

void paintCell(QPainter &painter, CharacterRenderer &renderer, const Animation &animation, const QRect &cell)
{
    painter.setPen(kRim);
    painter.setBrush(kCard);
    painter.drawRoundedRect(cell, 8, 8);
    painter.setPen(kInk);
    painter.setFont(font(12, false));
    painter.drawText(QRect(cell.left(), cell.bottom() - kLabel, cell.width(), kLabel), Qt::AlignCenter,
                     animation.name());
    painter.setClipRect(cell);
    for (std::size_t i = 0; i < std::size(kMoments); ++i) {
        const bool speaks = animation.name() == "Speaking"_L1;
        QRectF target(QPointF(), renderer.file().size().scaled(kRow, kRow, Qt::KeepAspectRatio));
        target.moveCenter(QPointF(cell.left() + (qreal(i) + 0.5) * kFrame, cell.top() + 2 + kRow / 2.0));
        renderer.paint(painter, target, animation.at(int(kMoments[i] * animation.durationMs())),
                       speaks ? 2 + int(i) * 2 : agent::kMouthOfPose);
    }
    painter.setClipping(false);
}

QList<const Animation *> shownOf(const CharacterFile &character)
{
    QList<const Animation *> shown;
    for (const QString &name : kShown) {
        if (const Animation *animation = character.animation(name))
            shown += animation;
    }
    return shown;
}

int heightOf(const CharacterFile &character)
{
    const int rows = int(shownOf(character).size() + kColumns - 1) / kColumns;
    return kTitle + rows * (kRow + kLabel + kGap);
}

} // namespace

QImage contactSheet(const QList<std::shared_ptr<const CharacterFile>> &characters)
{
    int height = kGap;
    for (const auto &character : characters)
        height += heightOf(*character);
    QImage sheet(kGap + kColumns * (kCell + kGap), height, QImage::Format_RGB32);
    sheet.fill(kPaper);
    QPainter painter(&sheet);
    painter.setRenderHint(QPainter::Antialiasing);
    int top = 0;
    for (const auto &character : characters) {
        painter.setPen(kInk);
        painter.setFont(font(20, true));
        painter.drawText(QRect(kGap + 4, top, kCell, kTitle), Qt::AlignVCenter, character->name());
        CharacterRenderer renderer(character);
        const QList<const Animation *> shown = shownOf(*character);
        for (int i = 0; i < shown.size(); ++i)
            paintCell(painter, renderer, *shown.at(i), cellAt(i, top + kTitle));
        top += heightOf(*character);
    }
    return sheet;
}

QImage filmStrip(const std::shared_ptr<const CharacterFile> &character, const Animation &animation, int frames,
                 qreal scale)
{
    const QSize cell = (character->size() * scale).toSize();
    const int columns = std::min(frames, 8), rows = (frames + columns - 1) / columns;
    QImage strip(cell.width() * columns, cell.height() * rows, QImage::Format_RGB32);
    strip.fill(kCard);
    QPainter painter(&strip);
    CharacterRenderer renderer(character);
    for (int i = 0; i < frames; ++i) {
        const QRectF area(QRect(QPoint(i % columns * cell.width(), i / columns * cell.height()), cell));
        painter.setClipRect(area);
        painter.setPen(kRim);
        painter.drawRect(area);
        renderer.paint(painter, area, animation.at(animation.durationMs() * i / std::max(1, frames - 1)));
    }
    return strip;
}
