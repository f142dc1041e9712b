#include "platform/agent/character/CharacterFile.h"

#include "platform/agent/Agent.h"
#include "platform/agent/character/CharacterFormat.h"
#include "platform/agent/character/CharacterReader.h"

#include <QFile>
#include <QFileInfo>
#include <QSvgRenderer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace agent {

std::shared_ptr<const CharacterFile> CharacterFile::load(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        throw Error(ErrorNumber::FileNotFound, u"There is no character file %1."_s.arg(path));
    QFile file(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly)) // a pipe or device would make us wait
        throw Error(ErrorNumber::BadData, u"The character file %1 cannot be read."_s.arg(path));
    try {
        return read(file.read(kMaxCharacterFile + 1));
    } catch (const Error &error) {
        throw Error(error.number(), u"%1: %2"_s.arg(info.fileName(), error.text()));
    }
}

std::shared_ptr<const CharacterFile> CharacterFile::read(const QByteArray &bytes)
{
    return std::make_shared<const CharacterFile>(contentOf(unpacked(bytes)));
}

const Animation *CharacterFile::animation(const QString &name) const
{
    const auto found = m_content.animations.constFind(name.toLower());
    return found == m_content.animations.cend() ? nullptr : &*found;
}

QStringList CharacterFile::animationNames() const
{
    QStringList names;
    for (const Animation &each : m_content.animations)
        names += each.name();
    names.sort();
    return names;
}

QStringList CharacterFile::state(const QString &name) const { return m_content.states.value(name.toLower()); }

Pose CharacterFile::speaking(const Pose &pose, int mouth) const
{
    if (mouth < 0 || mouth >= m_content.mouthPictures.size())
        return pose;
    Pose spoken = pose;
    spoken[m_content.mouth].picture = m_content.mouthPictures.at(mouth);
    for (const Track &track : m_content.mouthTracks) {
        PartPose &part = spoken[track.part];
        setChannel(part, track.channel, channelOf(part, track.channel) + track.keys.at(mouth).value);
    }
    return spoken;
}

} // namespace agent
