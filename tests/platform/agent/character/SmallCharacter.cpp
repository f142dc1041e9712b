#include "SmallCharacter.h"

#include <QCryptographicHash>
#include <QJsonDocument>

using namespace Qt::StringLiterals;
using agent::CharacterFile;
using agent::CharacterSource;
using agent::Error;

namespace {

const char kDescription[] = R"({
  "name": "Boxy", "description": "Two boxes.", "size": [100, 80], "balloonAnchor": [50, 10],
  "voice": { "name": "en", "variant": "", "pitch": 50, "range": 40, "speed": 160 },
  "parts": {
    "box": { "pivot": [50, 50] },
    "lid": { "parent": "box", "pivot": [50, 30] },
    "mouth": { "parent": "box", "pivot": [50, 55] }
  },
  "speech": { "lid": { "y": [0, -1, -2, -3, -4, -5, -6] } },
  "states": { "Showing": ["Wave", "Unknown"], "IdlingLevel1": [] },
  "animations": {
    "Wave": {
      "duration": 1000, "speaks": true, "return": "Spin",
      "tracks": {
        "box": { "rotate": [[0, 0], [400, 90, "linear"]], "opacity": [[200, 0.5]] },
        "mouth": { "picture": [[0, "0"], [300, "4"]] }
      }
    },
    "Spin": { "duration": 800, "loopFrom": 400, "tracks": { "lid": { "x": [[0, 0], [400, 8], [800, 8]] } } }
  }
})";

QByteArray drawing()
{
    QByteArray svg = R"svg(<svg xmlns="http://www.w3.org/2000/svg" width="100" height="80" viewBox="0 0 100 80">
<defs><linearGradient id="red"><stop offset="0" stop-color="#ff0000"/></linearGradient></defs>
<g id="box"><rect x="40" y="40" width="20" height="20" fill="url(#red)"/></g>
<g id="lid"><rect x="45" y="20" width="10" height="10" fill="#0000ff"/></g>
)svg";
    for (int i = 0; i < agent::kMouthShapes; ++i)
        svg += "<g id=\"mouth." + QByteArray::number(i) + "\"><rect x=\"45\" y=\"50\" width=\"10\" height=\""
            + QByteArray::number(i + 1) + "\" fill=\"#00ff00\"/></g>\n";
    return svg + "</svg>\n";
}

QJsonValue changedValue(const QJsonValue &value, const QStringList &path, const QJsonValue &to)
{
    if (path.isEmpty())
        return to;
    QJsonObject object = value.toObject();
    object.insert(path.first(), changedValue(object.value(path.first()), path.mid(1), to));
    return object;
}

} // namespace

CharacterSource smallCharacter() { return { QJsonDocument::fromJson(kDescription).object(), drawing() }; }

std::shared_ptr<const CharacterFile> loaded(const CharacterSource &source)
{
    return CharacterFile::read(agent::packed(source));
}

std::optional<Error> refusal(const std::function<void()> &read)
{
    try {
        read();
        return {};
    } catch (const Error &error) {
        return error;
    }
}

std::optional<Error> refusalOf(const QByteArray &bytes)
{
    return refusal([&] { CharacterFile::read(bytes); });
}

QByteArray enveloped(const QByteArray &payload)
{
    return "KavroCharacter 1\n" + QCryptographicHash::hash(payload, QCryptographicHash::Sha256) + payload;
}

QJsonObject changed(QJsonObject object, const QString &path, const QJsonValue &value)
{
    return changedValue(object, path.split(u'/'), value).toObject();
}
