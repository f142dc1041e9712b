#include "platform/agent/character/CharacterPacker.h"

#include "platform/agent/Agent.h"
#include "platform/agent/character/CharacterFile.h"
#include "platform/agent/character/CharacterFormat.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Error(ErrorNumber::FileNotFound, u"%1: %2"_s.arg(path, file.errorString()));
    return file.readAll();
}

QJsonObject objectIn(const QString &path)
{
    QJsonParseError error;
    const QByteArray text = contentsOf(path);
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (!document.isObject())
        throw Error(ErrorNumber::BadData, u"%1, line %2: %3"_s.arg(path)
                                              .arg(text.left(error.offset).count('\n') + 1)
                                              .arg(error.errorString()));
    return document.object();
}

/** Two objects in one; the upper one's entries count. */
QJsonObject over(QJsonObject lower, const QJsonObject &upper)
{
    for (auto it = upper.begin(); it != upper.end(); ++it)
        lower.insert(it.key(), it.value());
    return lower;
}

QJsonObject withoutStrangers(const QJsonObject &animations, const QJsonObject &parts)
{
    QJsonObject known = animations;
    for (const QString &name : animations.keys()) {
        QJsonObject animation = animations.value(name).toObject(), tracks = animation.value("tracks"_L1).toObject();
        if (tracks.isEmpty())
            continue;
        const QStringList named = tracks.keys();
        for (const QString &part : named) {
            if (!parts.contains(part))
                tracks.remove(part);
        }
        animation.insert("tracks"_L1, tracks);
        known.insert(name, animation);
    }
    return known;
}

QString mirroredPart(const QString &part)
{
    QString other = part;
    if (part.endsWith("Left"_L1))
        return other.replace(part.size() - 4, 4, u"Right"_s);
    if (part.endsWith("Right"_L1))
        return other.replace(part.size() - 5, 5, u"Left"_s);
    return part;
}

bool turnsRound(const QString &channel) { return channel == "rotate"_L1 || channel == "x"_L1 || channel == "skew"_L1; }

QJsonArray mirroredKeys(QJsonArray keys)
{
    for (QJsonValueRef key : keys) {
        QJsonArray entry = key.toArray();
        entry.replace(1, -entry.at(1).toDouble());
        key = entry;
    }
    return keys;
}

QJsonObject mirroredTracks(const QJsonObject &tracks, const QJsonObject &parts)
{
    QJsonObject mirrored;
    for (auto part = tracks.begin(); part != tracks.end(); ++part) {
        QJsonObject channels = part->toObject();
        for (const QString &name : channels.keys()) {
            if (turnsRound(name))
                channels.insert(name, mirroredKeys(channels.value(name).toArray()));
        }
        const QString other = mirroredPart(part.key());
        if (parts.contains(other))
            mirrored.insert(other, channels);
    }
    return mirrored;
}

/** Keys of another animation, later by so many ms, among those that stand there already. */
QJsonArray mergedKeys(const QJsonArray &keys, const QJsonArray &more, int offset)
{
    QList<QJsonArray> all;
    for (const QJsonValue &key : keys)
        all.append(key.toArray());
    for (const QJsonValue &key : more) {
        QJsonArray entry = key.toArray();
        entry.replace(0, entry.at(0).toInt() + offset);
        all.append(entry);
    }
    std::stable_sort(all.begin(), all.end(), [](const QJsonArray &a, const QJsonArray &b) {
        return a.at(0).toInt() < b.at(0).toInt();
    });
    QJsonArray merged;
    for (const QJsonArray &key : std::as_const(all))
        merged.append(key);
    return merged;
}

/** A movement of one's own counts; pictures mix. */
bool isTaken(const QJsonObject &own, const QString &part, const QString &channel)
{
    return own.value(part).toObject().contains(channel) && channel != "picture"_L1;
}

QJsonObject withTracks(QJsonObject tracks, const QJsonObject &own, const QJsonObject &more, int offset)
{
    for (auto part = more.begin(); part != more.end(); ++part) {
        QJsonObject channels = tracks.value(part.key()).toObject();
        const QJsonObject added = part->toObject();
        for (auto channel = added.begin(); channel != added.end(); ++channel) {
            if (!isTaken(own, part.key(), channel.key()))
                channels.insert(channel.key(), mergedKeys(channels.value(channel.key()).toArray(),
                                                          channel->toArray(), offset));
        }
        tracks.insert(part.key(), channels);
    }
    return tracks;
}

QJsonObject namedAnimation(const QJsonObject &animations, const QString &name, const QString &user)
{
    if (!animations.contains(name))
        throw Error(ErrorNumber::BadData, u"%1 refers to the unknown animation %2."_s.arg(user, name));
    return animations.value(name).toObject();
}

/** Takes the "mirrorOf" out: the other animation seen in a mirror, under what stands here. */
QJsonObject withoutMirror(const QJsonObject &animations, const QString &name, const QJsonObject &parts)
{
    QJsonObject animation = animations.value(name).toObject();
    const QJsonValue other = animation.take("mirrorOf"_L1);
    if (other.isUndefined())
        return animation;
    QJsonObject mirrored = namedAnimation(animations, other.toString(), name);
    mirrored.insert("tracks"_L1, mirroredTracks(mirrored.value("tracks"_L1).toObject(), parts));
    return over(mirrored, animation);
}

/** Takes the "with" out: tracks of other animations, from their given times on. */
QJsonObject withoutWith(const QJsonObject &animations, const QString &name)
{
    QJsonObject animation = animations.value(name).toObject();
    const QJsonObject own = animation.value("tracks"_L1).toObject();
    QJsonObject tracks = own;
    for (const QJsonValue &entry : animation.take("with"_L1).toArray()) {
        const QJsonObject other = namedAnimation(animations, entry[qsizetype(0)].toString(), name);
        tracks = withTracks(tracks, own, other.value("tracks"_L1).toObject(), entry[qsizetype(1)].toInt());
    }
    animation.insert("tracks"_L1, tracks);
    return animation;
}

} // namespace

QJsonObject mergedDescription(const QJsonObject &common, const QJsonObject &own)
{
    const QJsonObject parts = own.value("parts"_L1).toObject();
    QJsonObject animations = over(withoutStrangers(common.value("animations"_L1).toObject(), parts),
                                  own.value("animations"_L1).toObject());
    const QStringList names = animations.keys();
    for (const QString &name : names)
        animations.insert(name, withoutMirror(animations, name, parts));
    for (const QString &name : names)
        animations.insert(name, withoutWith(animations, name));
    for (const QString &name : names) {
        if (name.startsWith(u'_'))
            animations.remove(name);
    }
    QJsonObject merged = own;
    merged.insert("animations"_L1, animations);
    merged.insert("states"_L1, over(common.value("states"_L1).toObject(), own.value("states"_L1).toObject()));
    return merged;
}

QByteArray packedFolder(const QString &folder)
{
    const QJsonObject common = objectIn(folder + u"/../common.json"_s);
    const CharacterSource source{ mergedDescription(common, objectIn(folder + u"/character.json"_s)),
                                  contentsOf(folder + u"/parts.svg"_s) };
    const QByteArray bytes = packed(source);
    CharacterFile::read(bytes);
    return bytes;
}

} // namespace agent
