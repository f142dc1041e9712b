#include "platform/agent/character/CharacterRenderer.h"

#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <cmath>

namespace agent {

namespace {

/** Images are kept finer than they are shown, because most parts are turned and shifted by fractions of a pixel. */
constexpr qreal kOversampling = 2;
constexpr qreal kMaxPixelsPerUnit = 16;
constexpr qreal kMargin = 1; // units, for soft edges
constexpr qreal kInvisible = 1.0 / 512;

QTransform transformOf(const Part &part, const PartPose &pose)
{
    QTransform transform;
    transform.translate(part.pivot.x() + pose.x, part.pivot.y() + pose.y);
    transform.rotate(pose.rotate);
    transform.shear(-std::tan(pose.skew * M_PI / 180), 0);
    transform.scale(pose.scaleX, pose.scaleY);
    transform.translate(-part.pivot.x(), -part.pivot.y());
    return transform;
}

} // namespace

QImage CharacterRenderer::image(const Pose &pose, int mouth, qreal scale, qreal devicePixelRatio)
{
    const QSizeF size = m_file->size() * scale;
    QImage image((size * devicePixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paint(painter, QRectF(QPointF(), size), pose, mouth);
    return image;
}

void CharacterRenderer::paint(QPainter &painter, const QRectF &target, const Pose &pose, int mouth)
{
    const Pose shown = m_file->speaking(pose, mouth);
    painter.save();
    painter.translate(target.topLeft());
    painter.scale(target.width() / m_file->size().width(), target.height() / m_file->size().height());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QTransform device = painter.deviceTransform();
    setPixelsPerUnit(std::sqrt(std::abs(device.determinant())));
    painter.translate(-m_file->frame().topLeft());
    paintItems(painter, itemsOf(shown), shown);
    painter.restore();
}

QList<CharacterRenderer::Item> CharacterRenderer::itemsOf(const Pose &pose) const
{
    const QList<Part> &parts = m_file->parts();
    QList<Item> items(parts.size());
    for (const qsizetype i : m_file->fromRoots()) {
        const Part &part = parts.at(i);
        const PartPose &own = pose[i];
        const QTransform transform = transformOf(part, own);
        if (part.parent < 0) {
            items[i] = { i, own.layer, i, 1, transform };
            continue;
        }
        const Item &parent = items.at(part.parent);
        items[i] = { i, own.layer + parent.layer, parent.root, own.opacity * parent.opacity,
                     transform * parent.transform };
    }
    std::stable_sort(items.begin(), items.end(), [](const Item &a, const Item &b) { return a.layer < b.layer; });
    return items;
}

/** Runs of parts of one root, painted according to its opacity. */
void CharacterRenderer::paintItems(QPainter &painter, const QList<Item> &items, const Pose &pose)
{
    for (auto item = items.cbegin(); item != items.cend();) {
        const qsizetype root = item->root;
        const qreal opacity = pose[root].opacity;
        const auto end = std::find_if(item, items.cend(), [root](const Item &each) { return each.root != root; });
        if (opacity >= 1 - kInvisible)
            std::for_each(item, end, [&](const Item &each) { paintItem(painter, each, pose); });
        else if (opacity > kInvisible)
            paintFaded(painter, { item, end }, pose, opacity);
        item = end;
    }
}

/** A half transparent figure must not let its own parts shine through each other: they are put together first. */
void CharacterRenderer::paintFaded(QPainter &painter, const QList<Item> &items, const Pose &pose, qreal opacity)
{
    const QRectF frame = m_file->frame();
    QImage veil((frame.size() * std::ceil(m_pixelsPerUnit)).toSize(), QImage::Format_ARGB32_Premultiplied);
    veil.fill(Qt::transparent);
    QPainter inner(&veil);
    inner.setRenderHint(QPainter::SmoothPixmapTransform);
    inner.scale(veil.width() / frame.width(), veil.height() / frame.height());
    inner.translate(-frame.topLeft());
    for (const Item &each : items)
        paintItem(inner, each, pose);
    inner.end();
    painter.setOpacity(opacity);
    painter.drawImage(frame, veil);
    painter.setOpacity(1);
}

void CharacterRenderer::paintItem(QPainter &painter, const Item &item, const Pose &pose)
{
    const Part &part = m_file->parts().at(item.part);
    if (part.pictures.isEmpty() || item.opacity < kInvisible)
        return;
    const Sprite &sprite = spriteOf(part.pictures.at(pose[item.part].picture));
    if (sprite.image.isNull())
        return;
    const QTransform before = painter.transform();
    painter.setTransform(item.transform, true);
    painter.setOpacity(item.opacity);
    painter.drawImage(sprite.area, sprite.image);
    painter.setOpacity(1);
    painter.setTransform(before);
}

const CharacterRenderer::Sprite &CharacterRenderer::spriteOf(const QString &picture)
{
    auto found = m_sprites.find(picture);
    if (found == m_sprites.end())
        found = m_sprites.insert(picture, drawn(picture));
    return *found;
}

CharacterRenderer::Sprite CharacterRenderer::drawn(const QString &picture) const
{
    QSvgRenderer &drawing = m_file->drawing();
    const QRectF bounds = drawing.boundsOnElement(picture);
    const QRectF frame = m_file->frame();
    const QRectF reach = frame.adjusted(-frame.width(), -frame.height(), frame.width(), frame.height());
    const QRectF area = bounds.adjusted(-kMargin, -kMargin, kMargin, kMargin) & reach;
    if (bounds.isEmpty() || area.isEmpty())
        return {};
    const qreal pixels = m_pixelsPerUnit * kOversampling;
    QImage image(int(std::ceil(area.width() * pixels)), int(std::ceil(area.height() * pixels)),
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(pixels, pixels);
    painter.translate(-area.topLeft());
    drawing.render(&painter, picture, bounds); // onto its own bounds, that is, where it stands
    return { image, QRectF(area.topLeft(), QSizeF(image.size()) / pixels) };
}

void CharacterRenderer::setPixelsPerUnit(qreal pixels)
{
    const qreal bounded = std::clamp(pixels, 0.1, kMaxPixelsPerUnit);
    if (qFuzzyCompare(bounded, m_pixelsPerUnit))
        return;
    m_pixelsPerUnit = bounded;
    m_sprites.clear();
}

} // namespace agent
