#pragma once

#include "platform/agent/character/CharacterFile.h"

#include <QImage>
#include <QTransform>

class QPainter;

namespace agent {

/** Paints a character. Its pictures are drawn once a size and kept, so that a frame is put together from images. */
class CharacterRenderer
{
public:
    explicit CharacterRenderer(std::shared_ptr<const CharacterFile> file)
        : m_file(std::move(file))
    {
    }

    const CharacterFile &file() const { return *m_file; }

    /** Fills `target` (in the painter's coordinates, of the frame's proportions) with the whole frame. The mouth is one
        of the seven shapes or kMouthOfPose. Nothing outside the figure is touched. */
    void paint(QPainter &painter, const QRectF &target, const Pose &pose, int mouth = kMouthOfPose);
    /** A frame on transparent ground; scale in device-independent pixels a unit. */
    QImage image(const Pose &pose, int mouth = kMouthOfPose, qreal scale = 1, qreal devicePixelRatio = 1);

private:
    /** A picture drawn ahead; empty when there is nothing to see. */
    struct Sprite {
        QImage image;
        QRectF area; // units
    };
    /** A part as it is to be painted. */
    struct Item {
        qsizetype part = 0;
        int layer = 0;
        qsizetype root = 0;
        qreal opacity = 1; // without the root's
        QTransform transform; // units to units
    };

    QList<Item> itemsOf(const Pose &pose) const;
    void paintItems(QPainter &painter, const QList<Item> &items, const Pose &pose);
    void paintFaded(QPainter &painter, const QList<Item> &items, const Pose &pose, qreal opacity);
    void paintItem(QPainter &painter, const Item &item, const Pose &pose);
    const Sprite &spriteOf(const QString &picture);
    Sprite drawn(const QString &picture) const;
    void setPixelsPerUnit(qreal pixels);

    std::shared_ptr<const CharacterFile> m_file;
    QHash<QString, Sprite> m_sprites;
    qreal m_pixelsPerUnit = 0;
};

} // namespace agent
