#pragma once

#include <QList>

namespace agent {

/** How one part differs from the way it is drawn. A part turns, slants and grows about its pivot, then shifts, then
    follows its parent. */
struct PartPose {
    qreal rotate = 0;  // degrees, clockwise
    qreal x = 0;       // units to the right
    qreal y = 0;       // units down
    qreal scaleX = 1;
    qreal scaleY = 1;
    qreal skew = 0;    // degrees; what is above the pivot leans to the right
    qreal opacity = 1; // children fade with their parent
    int picture = 0;   // which of the part's pictures
    int layer = 0;     // added to the parent's; higher is nearer, equal ones keep the order of the drawing

    bool operator==(const PartPose &) const = default;
};

/** A whole character at one moment: one entry a part, in the order of CharacterFile::parts(). A plain value. */
class Pose
{
public:
    Pose() = default;
    explicit Pose(qsizetype parts)
        : m_parts(parts)
    {
    }

    qsizetype size() const { return m_parts.size(); }
    PartPose &operator[](qsizetype part) { return m_parts[part]; }
    const PartPose &operator[](qsizetype part) const { return m_parts[part]; }
    bool operator==(const Pose &) const = default;

    /** From one pose (t = 0) to another (t = 1) of the same character; pictures and layers change half-way. */
    static Pose blend(const Pose &from, const Pose &to, qreal t);

private:
    QList<PartPose> m_parts;
};

} // namespace agent
