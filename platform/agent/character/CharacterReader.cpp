#include "platform/agent/character/CharacterReader.h"

#include "platform/agent/character/DrawingCheck.h"
#include "platform/agent/character/JsonNode.h"

#include <QSvgRenderer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

constexpr int kMaxParts = 200;
constexpr int kMaxAnimations = 300;
constexpr int kMaxStates = 100;
constexpr int kMaxKeys = 500;
constexpr int kMaxDuration = 120'000;
constexpr int kMaxLayer = 100;
constexpr int kMaxText = 1000;

struct ChannelRule {
    const char16_t *name;
    Channel channel;
    qreal least, most;
};

constexpr ChannelRule kChannels[] = {
    { u"rotate", Channel::Rotate, -3600, 3600 },
    { u"x", Channel::X, -2000, 2000 },
    { u"y", Channel::Y, -2000, 2000 },
    { u"scaleX", Channel::ScaleX, -10, 10 },
    { u"scaleY", Channel::ScaleY, -10, 10 },
    { u"skew", Channel::Skew, -80, 80 },
    { u"opacity", Channel::Opacity, 0, 1 },
    { u"picture", Channel::Picture, 0, 0 },
    { u"layer", Channel::Layer, -kMaxLayer, kMaxLayer },
};

struct EasingName {
    const char16_t *name;
    QEasingCurve::Type type;
};

constexpr EasingName kEasings[] = {
    { u"inOut", QEasingCurve::InOutSine },
    { u"linear", QEasingCurve::Linear },
    { u"in", QEasingCurve::InQuad },
    { u"out", QEasingCurve::OutQuad },
    { u"back", QEasingCurve::OutBack },
    { u"bounce", QEasingCurve::OutBounce },
    { u"elastic", QEasingCurve::OutElastic },
};

/** The entry of a table of that name. */
template <typename Entry, std::size_t count>
const Entry &entryOf(const Entry (&table)[count], const JsonNode &node, const QString &name)
{
    const auto found = std::find_if(std::begin(table), std::end(table),
                                    [&](const Entry &entry) { return name == QStringView(entry.name); });
    if (found == std::end(table))
        node.fail(u"has no %1"_s.arg(name.left(80)));
    return *found;
}

/** Builds a character from its description, one section after the other; later ones refer to earlier ones. */
class Reader
{
public:
    Reader(const CharacterSource &source)
        : m_root(source.description, QString())
        , m_pictures(checkedPictures(source.drawing))
    {
        readFacts();
        readParts();
        sortFromRoots();
        readRest();
        readMouth();
        readAnimations();
        readStates();
        readDrawing(source.drawing);
    }

    CharacterFile::Content take() { return std::move(m_content); }

private:
    static QPointF pointOf(const JsonNode &node)
    {
        node.length(2, 2);
        return { node.at(0).number(-2000, 2000), node.at(1).number(-2000, 2000) };
    }

    void readFacts()
    {
        m_content.name = m_root.at(u"name"_s).text(64);
        m_content.description = m_root.at(u"description"_s).text(kMaxText);
        const JsonNode size = m_root.at(u"size"_s), voice = m_root.at(u"voice"_s);
        size.length(2, 2);
        m_content.frame = { m_root.has(u"origin"_s) ? pointOf(m_root.at(u"origin"_s)) : QPointF(),
                            QSizeF(size.at(0).number(16, 1024), size.at(1).number(16, 1024)) };
        m_content.balloonAnchor = pointOf(m_root.at(u"balloonAnchor"_s));
        m_content.voice = { voice.at(u"name"_s).text(32), voice.at(u"variant"_s).text(32),
                            voice.at(u"pitch"_s).integer(0, 99), voice.at(u"range"_s).integer(0, 99),
                            voice.at(u"speed"_s).integer(80, 450) };
    }

    static QString partOf(const QString &picture) { return picture.section(u'.', 0, 0); }

    /** Parts in the order in which they are drawn; those without a picture only carry others, anywhere. */
    void readParts()
    {
        const JsonNode parts = m_root.at(u"parts"_s);
        const QStringList described = parts.keys(kMaxParts);
        for (const QString &picture : m_pictures) {
            const QString name = partOf(picture);
            if (!described.contains(name))
                parts.fail(u"do not describe the group %1"_s.arg(picture));
            addPart(name);
            m_content.parts[m_index.value(name)].pictures += picture;
        }
        for (const QString &name : described)
            addPart(name);
        for (Part &part : m_content.parts)
            describePart(part, parts.at(part.name));
    }

    void addPart(const QString &name)
    {
        if (m_index.contains(name))
            return;
        m_index.insert(name, m_content.parts.size());
        m_content.parts.append(Part{ name, -1, {}, {} });
    }

    void describePart(Part &part, const JsonNode &node)
    {
        part.pivot = pointOf(node.at(u"pivot"_s));
        if (node.has(u"parent"_s))
            part.parent = indexOf(node.at(u"parent"_s), node.at(u"parent"_s).word());
    }

    qsizetype indexOf(const JsonNode &node, const QString &name) const
    {
        const auto found = m_index.constFind(name);
        if (found == m_index.cend())
            node.fail(u"names the unknown part %1"_s.arg(name));
        return *found;
    }

    /** Rounds over all parts, each of which takes those whose parent is in; a circle never gets in. */
    void sortFromRoots()
    {
        QList<bool> taken(m_content.parts.size(), false);
        for (bool progress = true; progress;) {
            progress = false;
            for (qsizetype i = 0; i < m_content.parts.size(); ++i) {
                const qsizetype parent = m_content.parts.at(i).parent;
                if (taken.at(i) || (parent >= 0 && !taken.at(parent)))
                    continue;
                taken[i] = progress = true;
                m_content.fromRoots += i;
            }
        }
        if (m_content.fromRoots.size() != m_content.parts.size())
            m_root.at(u"parts"_s).at(m_content.parts.at(taken.indexOf(false)).name).fail(u"is its own ancestor"_s);
    }

    void readRest()
    {
        m_content.rest = Pose(m_content.parts.size());
        for (qsizetype i = 0; i < m_content.parts.size(); ++i) {
            const JsonNode part = m_root.at(u"parts"_s).at(m_content.parts.at(i).name);
            if (!part.has(u"rest"_s))
                continue;
            const JsonNode rest = part.at(u"rest"_s);
            for (const QString &name : rest.keys(std::size(kChannels))) {
                const ChannelRule &rule = entryOf(kChannels, rest, name);
                setChannel(m_content.rest[i], rule.channel, valueOf(rest.at(name), rule, i));
            }
        }
    }

    qreal valueOf(const JsonNode &node, const ChannelRule &rule, qsizetype part) const
    {
        if (rule.channel == Channel::Picture)
            return qreal(pictureOf(node, part));
        return rule.channel == Channel::Layer ? node.integer(-kMaxLayer, kMaxLayer)
                                              : node.number(rule.least, rule.most);
    }

    qsizetype pictureOf(const JsonNode &node, qsizetype part) const
    {
        const Part &owner = m_content.parts.at(part);
        const qsizetype picture = owner.pictures.indexOf(owner.name + u'.' + node.word());
        if (picture < 0)
            node.fail(u"names no picture of %1"_s.arg(owner.name));
        return picture;
    }

    void readMouth()
    {
        const JsonNode parts = m_root.at(u"parts"_s);
        m_content.mouth = indexOf(parts, u"mouth"_s);
        for (int shape = 0; shape < kMouthShapes; ++shape) {
            const qsizetype picture
                = m_content.parts.at(m_content.mouth).pictures.indexOf(u"mouth.%1"_s.arg(shape));
            if (picture < 0)
                parts.at(u"mouth"_s).fail(u"has no picture mouth.%1"_s.arg(shape));
            m_content.mouthPictures += int(picture);
        }
        if (!m_root.has(u"speech"_s))
            return;
        const JsonNode speech = m_root.at(u"speech"_s);
        for (const QString &name : speech.keys(kMaxParts))
            readMouthTracks(speech.at(name), indexOf(speech, name));
    }

    void readMouthTracks(const JsonNode &node, qsizetype part)
    {
        for (const QString &name : node.keys(std::size(kChannels))) {
            const ChannelRule &rule = entryOf(kChannels, node, name);
            if (rule.channel > Channel::Skew)
                node.fail(u"may only turn, shift or stretch"_s);
            const JsonNode values = node.at(name);
            values.length(kMouthShapes, kMouthShapes);
            Track track{ part, rule.channel, {} };
            for (int shape = 0; shape < kMouthShapes; ++shape)
                track.keys += Key{ shape, values.at(shape).number(rule.least, rule.most) };
            m_content.mouthTracks += track;
        }
    }

    void readAnimations()
    {
        const JsonNode animations = m_root.at(u"animations"_s);
        for (const QString &name : animations.keys(kMaxAnimations)) {
            if (m_content.animations.contains(name.toLower()))
                animations.fail(u"name %1 twice"_s.arg(name));
            m_content.animations.insert(name.toLower(), readAnimation(animations.at(name), name));
        }
        for (const Animation &each : std::as_const(m_content.animations))
            checkAnimationName(animations.at(each.name()), each.returnName());
    }

    void checkAnimationName(const JsonNode &node, const QString &name) const
    {
        if (!name.isEmpty() && !m_content.animations.contains(name.toLower()))
            node.fail(u"names the unknown animation %1"_s.arg(name));
    }

    Animation readAnimation(const JsonNode &node, const QString &name) const
    {
        Animation::Parts parts;
        parts.name = name;
        parts.durationMs = node.at(u"duration"_s).integer(1, kMaxDuration);
        if (node.has(u"loopFrom"_s))
            parts.loopFromMs = node.at(u"loopFrom"_s).integer(0, parts.durationMs - 1);
        parts.canSpeak = node.has(u"speaks"_s) && node.at(u"speaks"_s).flag();
        if (node.has(u"return"_s))
            parts.returnName = node.at(u"return"_s).word();
        const JsonNode tracks = node.at(u"tracks"_s);
        for (const QString &part : tracks.keys(kMaxParts))
            parts.tracks += readTracks(tracks.at(part), indexOf(tracks, part));
        return Animation(std::move(parts), m_content.rest);
    }

    QList<Track> readTracks(const JsonNode &node, qsizetype part) const
    {
        QList<Track> tracks;
        for (const QString &name : node.keys(std::size(kChannels))) {
            const ChannelRule &rule = entryOf(kChannels, node, name);
            tracks += Track{ part, rule.channel, readKeys(node.at(name), rule, part) };
        }
        return tracks;
    }

    QList<Key> readKeys(const JsonNode &node, const ChannelRule &rule, qsizetype part) const
    {
        QList<Key> keys;
        const qsizetype count = node.length(1, kMaxKeys);
        for (qsizetype i = 0; i < count; ++i) {
            const JsonNode entry = node.at(i);
            Key key;
            key.ms = entry.length(2, 3) ? entry.at(0).integer(0, kMaxDuration) : 0;
            if (!keys.isEmpty() && key.ms <= keys.constLast().ms)
                entry.fail(u"does not come later than the one before"_s);
            key.value = valueOf(entry.at(1), rule, part);
            if (entry.length(2, 3) == 3)
                key.easing = entryOf(kEasings, entry, entry.at(2).word()).type;
            keys += key;
        }
        return keys;
    }

    /** States may name more than a character can do: it does what it can. */
    void readStates()
    {
        const JsonNode states = m_root.at(u"states"_s);
        for (const QString &name : states.keys(kMaxStates)) {
            const JsonNode list = states.at(name);
            QStringList animations;
            const qsizetype count = list.length(0, kMaxAnimations);
            for (qsizetype i = 0; i < count; ++i) {
                const QString animation = list.at(i).word();
                if (m_content.animations.contains(animation.toLower()))
                    animations += animation;
            }
            m_content.states.insert(name.toLower(), animations);
        }
    }

    void readDrawing(const QByteArray &svg)
    {
        m_content.drawing = std::make_shared<QSvgRenderer>(svg);
        if (!m_content.drawing->isValid())
            m_root.fail(u"has a drawing that cannot be shown"_s);
    }

    JsonNode m_root;
    QStringList m_pictures;
    QHash<QString, qsizetype> m_index;
    CharacterFile::Content m_content;
};

} // namespace

CharacterFile::Content contentOf(const CharacterSource &source) { return Reader(source).take(); }

} // namespace agent
