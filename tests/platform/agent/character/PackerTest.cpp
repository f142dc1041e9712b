#include "platform/agent/character/CharacterPacker.h"
#include "SmallCharacter.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QJsonObject json(const char *text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text);
    EXPECT_TRUE(document.isObject()) << text;
    return document.object();
}

const char kCommon[] = R"({
  "states": { "Showing": ["Show"], "Hiding": ["Hide"] },
  "animations": {
    "_blink": { "tracks": { "lids": { "picture": [[0, "shut"], [50, "open"]] }, "brow": { "y": [[0, 0], [50, 2]] } } },
    "Nod": { "duration": 10, "tracks": { "head": { "y": [[0, 1]] }, "tail": { "y": [[0, 1]] } } },
    "Wave": { "duration": 10, "tracks": {} }
  }
})";

} // namespace

TEST(Packer, LaysACharacterOverWhatAllShare)
{
    const QJsonObject merged = agent::mergedDescription(json(kCommon), json(R"({
      "name": "A", "parts": { "head": {} }, "states": { "Hiding": ["Vanish"] },
      "animations": { "Wave": { "duration": 99, "tracks": {} } } })"));
    EXPECT_EQ(merged, json(R"({
      "name": "A", "parts": { "head": {} }, "states": { "Showing": ["Show"], "Hiding": ["Vanish"] },
      "animations": {
        "Nod": { "duration": 10, "tracks": { "head": { "y": [[0, 1]] } } },
        "Wave": { "duration": 99, "tracks": {} } } })"));
}

TEST(Packer, WritesOutWhatIsTakenInAndMirrored)
{
    const QJsonObject merged = agent::mergedDescription(json(kCommon), json(R"({
      "parts": { "lids": {}, "brow": {}, "armLeft": {}, "armRight": {}, "head": {} },
      "animations": {
        "Point": {
          "duration": 500, "with": [["_blink", 100], ["_blink", 400]],
          "tracks": { "lids": { "picture": [[0, "half"], [300, "half"]] }, "brow": { "y": [[0, 5]] },
                      "armLeft": { "rotate": [[0, 10], [9, -20, "out"]], "y": [[0, 3]] } } },
        "Other": { "mirrorOf": "Point", "speaks": true } } })"));
    const QJsonObject animations = merged.value("animations"_L1).toObject();
    EXPECT_EQ(animations.value("Point"_L1).toObject().value("tracks"_L1).toObject(), json(R"({
      "lids": { "picture": [[0, "half"], [100, "shut"], [150, "open"], [300, "half"], [400, "shut"], [450, "open"]] },
      "brow": { "y": [[0, 5]] },
      "armLeft": { "rotate": [[0, 10], [9, -20, "out"]], "y": [[0, 3]] } })"));
    const QJsonObject other = animations.value("Other"_L1).toObject();
    EXPECT_EQ(other.value("tracks"_L1).toObject().value("armRight"_L1).toObject(),
              json(R"({ "rotate": [[0, -10], [9, 20, "out"]], "y": [[0, 3]] })"));
    EXPECT_EQ(other.value("duration"_L1).toInt(), 500);
    EXPECT_TRUE(other.value("speaks"_L1).toBool());
    EXPECT_FALSE(other.contains("mirrorOf"_L1));
}

TEST(Packer, RefersOnlyToWhatIsThere)
{
    for (const char *animation : { R"({ "mirrorOf": "None" })", R"({ "with": [["None", 0]] })" }) {
        const QJsonObject own{ { u"animations"_s, QJsonObject{ { u"A"_s, json(animation) } } } };
        const auto error = refusal([&] { agent::mergedDescription({}, own); });
        ASSERT_TRUE(error) << animation;
        EXPECT_TRUE(error->text().contains("unknown animation None"_L1));
    }
}

TEST(Packer, TellsTheLineOfBadJsonAndMissingFiles)
{
    const QTemporaryDir folder;
    const auto missing = refusal([&] { agent::packedFolder(folder.filePath(u"none"_s)); });
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->number(), agent::ErrorNumber::FileNotFound);
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"bad"_s));
    for (const char *name : { "common.json", "bad/character.json", "bad/parts.svg" }) {
        QFile file(folder.filePath(QLatin1StringView(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(name).startsWith("bad") ? "{\n\"name\": ,\n}" : "{}");
    }
    const auto bad = refusal([&] { agent::packedFolder(folder.filePath(u"bad"_s)); });
    ASSERT_TRUE(bad);
    EXPECT_TRUE(bad->text().contains("character.json, line 2"_L1)) << qPrintable(bad->text());
}
