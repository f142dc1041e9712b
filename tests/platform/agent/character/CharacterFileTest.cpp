#include "SmallCharacter.h"

#include <QCborMap>
#include <QCborValue>
#include <QFile>
#include <QJsonArray>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using agent::CharacterFile;
using agent::CharacterSource;
using agent::Error;
using agent::ErrorNumber;
using agent::Pose;

namespace {

QByteArray merlin()
{
    QFile file(QStringLiteral(KAVRO_CHARACTERS "/merlin.acs"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

QJsonArray keys(int count)
{
    QJsonArray list;
    for (int i = 0; i < count; ++i)
        list.append(QJsonArray{ i, 0 });
    return list;
}

QJsonObject manyParts(int count)
{
    QJsonObject parts = smallCharacter().description.value("parts"_L1).toObject();
    while (parts.size() < count)
        parts.insert(u"part%1"_s.arg(parts.size()), QJsonObject{ { u"pivot"_s, QJsonArray{ 0, 0 } } });
    return parts;
}

} // namespace

TEST(CharacterFile, TellsWhatStandsInIt)
{
    const auto boxy = loaded(smallCharacter());
    EXPECT_EQ(boxy->name(), u"Boxy");
    EXPECT_EQ(boxy->description(), u"Two boxes.");
    EXPECT_EQ(boxy->size(), QSizeF(100, 80));
    EXPECT_EQ(boxy->balloonAnchor(), QPointF(50, 10));
    EXPECT_EQ(boxy->voice().name, u"en");
    EXPECT_EQ(boxy->voice().range, 40);
    EXPECT_EQ(boxy->animationNames(), QStringList({ u"Spin"_s, u"Wave"_s }));
    EXPECT_EQ(boxy->state(u"showing"_s), QStringList(u"Wave"_s)) << "what a character cannot do is skipped";
    EXPECT_TRUE(boxy->state(u"Hiding"_s).isEmpty());
    ASSERT_TRUE(boxy->animation(u"wAVE"_s));
    EXPECT_TRUE(boxy->animation(u"Wave"_s)->canSpeak());
    EXPECT_EQ(boxy->animation(u"Wave"_s)->returnName(), u"Spin");
    EXPECT_FALSE(boxy->animation(u"Waves"_s));
}

TEST(CharacterFile, AnOriginMovesTheFrameAndTheBalloonWithIt)
{
    CharacterSource source = smallCharacter();
    source.description = changed(source.description, u"origin"_s, QJsonArray{ -10, -20 });
    EXPECT_EQ(loaded(source)->frame(), QRectF(-10, -20, 100, 80));
    EXPECT_EQ(loaded(source)->balloonAnchor(), QPointF(60, 30));
}

TEST(CharacterFile, SpeechMovesTheMouthAndWhatFollowsIt)
{
    const auto boxy = loaded(smallCharacter());
    const Pose rest = boxy->restPose(), open = boxy->speaking(rest, 4);
    EXPECT_EQ(boxy->speaking(rest, agent::kMouthOfPose), rest);
    EXPECT_EQ(boxy->speaking(rest, agent::kMouthShapes), rest);
    EXPECT_EQ(open[2].picture, 4);
    EXPECT_EQ(open[1].y, -4);
}

TEST(CharacterFile, IsRefusedWhenCutOffOrChangedAnywhere)
{
    const QByteArray whole = merlin();
    ASSERT_FALSE(refusalOf(whole));
    for (qsizetype at = 0; at < whole.size(); at += 97) {
        const auto cut = refusalOf(whole.left(at));
        ASSERT_TRUE(cut) << at;
        EXPECT_EQ(cut->number(), at < 15 ? ErrorNumber::NotACharacterFile : ErrorNumber::BadData) << at;
        QByteArray flipped = whole;
        flipped[at] = char(flipped.at(at) ^ 0x10);
        EXPECT_TRUE(refusalOf(flipped)) << at;
    }
}

TEST(CharacterFile, TellsForeignOldNewAndBrokenFilesApart)
{
    const QByteArray hash(32, 'h');
    const struct {
        QByteArray bytes;
        ErrorNumber number;
        const char *says;
    } files[] = {
        { "", ErrorNumber::NotACharacterFile, "not a character file" },
        { "\x89PNG\r\n\x1a\n", ErrorNumber::NotACharacterFile, "not a character file" },
        { QByteArray("\xC3\xAB\xCD\xAB\0\0\0\0", 8), ErrorNumber::NotACharacterFile, "another agent" },
        { QByteArray("\xC4\xAB\xCD\xAB\0\0\0\0", 8), ErrorNumber::NotACharacterFile, "a piece" },
        { "\xD0\xCF\x11\xE0\xA1\xB1", ErrorNumber::FileTooOld, "older" },
        { "KavroCharacter 2\n" + hash, ErrorNumber::FileTooNew, "newer version of the program (format 2)" },
        { "KavroCharacter 999999999\n", ErrorNumber::FileTooNew, "newer" },
        { "KavroCharacter 9999999999\n", ErrorNumber::BadData, "first line" },
        { "KavroCharacter 0\n" + hash, ErrorNumber::BadData, "version" },
        { "KavroCharacter one\n" + hash, ErrorNumber::BadData, "version" },
        { "KavroCharacter 1", ErrorNumber::BadData, "first line" },
        { "KavroCharacter 1\n", ErrorNumber::BadData, "check sum" },
        { "KavroCharacter 1\n" + hash + "payload", ErrorNumber::BadData, "check sum" },
        { enveloped({}), ErrorNumber::BadData, "is missing" },
        { enveloped("no CBOR"), ErrorNumber::BadData, "is missing" },
        { enveloped(QByteArray(100'000, '\x81')), ErrorNumber::BadData, "is missing" }, // lists in lists
        { enveloped("\x5b\x7f\xff\xff\xff\xff\xff\xff\xff"), ErrorNumber::BadData, "is missing" }, // huge length
        { enveloped(QCborValue(QCborMap{ { u"character"_s, u"{}"_s } }).toCbor()), ErrorNumber::BadData,
          "is missing" },
        { enveloped(QCborValue(QCborMap{ { u"character"_s, QByteArray("{]") }, { u"drawing"_s, QByteArray() } })
                        .toCbor()),
          ErrorNumber::BadData, "cannot be read" },
        { enveloped(QCborValue(QCborMap{ { u"character"_s, QByteArray("[]") }, { u"drawing"_s, QByteArray() } })
                        .toCbor()),
          ErrorNumber::BadData, "cannot be read" },
        { enveloped(QByteArray(agent::kMaxCharacterFile, 'x')), ErrorNumber::BadData, "too large" },
    };
    for (const auto &file : files) {
        const auto error = refusalOf(file.bytes);
        ASSERT_TRUE(error) << file.says;
        EXPECT_EQ(quint32(error->number()), quint32(file.number)) << file.says;
        EXPECT_TRUE(error->text().contains(QLatin1StringView(file.says))) << qPrintable(error->text());
    }
}

TEST(CharacterFile, MissingFilesAndFoldersAreTold)
{
    const QTemporaryDir folder;
    const auto missing = refusal([&] { CharacterFile::load(folder.filePath(u"none.acs"_s)); });
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->number(), ErrorNumber::FileNotFound);
    const auto notFile = refusal([&] { CharacterFile::load(folder.path()); });
    ASSERT_TRUE(notFile);
    EXPECT_EQ(notFile->number(), ErrorNumber::BadData);
}

TEST(CharacterFile, EveryFaultOfADescriptionIsToldWithItsPlace)
{
    const auto at = [](const char *path) { return QString::fromLatin1(path); };
    const QJsonArray point{ 0, 0 };
    const struct {
        QString path;
        QJsonValue value;
        const char *says;
    } faults[] = {
        { at("name"), 5, "name is no text" },
        { at("name"), QString(65, u'x'), "longer" },
        { at("size"), QJsonArray{ 100 }, "size has 1 entries" },
        { at("size"), QJsonArray{ 0, 100 }, "size[0] is no number from 16" },
        { at("size"), QJsonArray{ 1e9, 100 }, "size[0]" },
        { at("balloonAnchor"), u"top"_s, "balloonAnchor is no list" },
        { at("voice/pitch"), 50.5, "voice/pitch is no whole number" },
        { at("voice/speed"), 0, "voice/speed" },
        { at("parts"), QJsonArray(), "parts is no object" },
        { at("parts/box/pivot"), QJsonValue(), "parts/box/pivot is no list" },
        { at("parts/box/parent"), u"nobody"_s, "unknown part nobody" },
        { at("parts/box/parent"), u"lid"_s, "is its own ancestor" },
        { at("parts/box/parent"), u"box"_s, "is its own ancestor" },
        { at("parts/box/rest"), QJsonObject{ { u"opacity"_s, 2 } }, "parts/box/rest/opacity" },
        { at("parts/box/rest"), QJsonObject{ { u"colour"_s, 2 } }, "has no colour" },
        { at("parts/box/rest"), QJsonObject{ { u"picture"_s, u"big"_s } }, "names no picture of box" },
        { at("parts/<b>"), QJsonObject{ { u"pivot"_s, point } }, "is no plain name" },
        { at("parts"), manyParts(201), "parts has more than 200" },
        { at("parts"), QJsonObject{ { u"mouth"_s, QJsonObject{ { u"pivot"_s, point } } } }, "the group box" },
        { at("speech/nose"), QJsonObject(), "unknown part nose" },
        { at("speech/lid/y"), keys(6), "speech/lid/y has 6" },
        { at("speech/lid/picture"), keys(7), "may only turn" },
        { at("states/Showing"), u"Wave"_s, "states/Showing is no list" },
        { at("animations"), QJsonValue(), "animations is no object" },
        { at("animations/WAVE"), QJsonObject(), "has no duration" },
        { at("animations/Wave/duration"), 0, "animations/Wave/duration" },
        { at("animations/Wave/duration"), 1e6, "animations/Wave/duration" },
        { at("animations/Spin/loopFrom"), 800, "animations/Spin/loopFrom" },
        { at("animations/Wave/speaks"), u"yes"_s, "neither true nor false" },
        { at("animations/Wave/return"), u"Home"_s, "unknown animation Home" },
        { at("animations/Wave/tracks"), QJsonValue(), "animations/Wave/tracks is no object" },
        { at("animations/Wave/tracks/nose"), QJsonObject(), "unknown part nose" },
        { at("animations/Wave/tracks/lid/colour"), keys(1), "has no colour" },
        { at("animations/Wave/tracks/lid/x"), QJsonArray(), "has 0 entries" },
        { at("animations/Wave/tracks/lid/x"), keys(501), "has 501 entries" },
        { at("animations/Wave/tracks/lid/x"), QJsonArray{ QJsonArray{ 0 } }, "lid/x[0] has 1" },
        { at("animations/Wave/tracks/lid/x"), QJsonArray{ QJsonArray{ 0, qQNaN() } }, "lid/x[0][1] is no number" },
        { at("animations/Wave/tracks/lid/x"), QJsonArray{ QJsonArray{ 0, 1e300 } }, "lid/x[0][1] is no number" },
        { at("animations/Wave/tracks/lid/x"), QJsonArray{ QJsonArray{ -1, 0 } }, "lid/x[0][0]" },
        { at("animations/Wave/tracks/lid/x"), QJsonArray{ QJsonArray{ 5, 0 }, QJsonArray{ 5, 1 } }, "later" },
        { at("animations/Wave/tracks/lid/x"), QJsonArray{ QJsonArray{ 5, 0, u"jolly"_s } }, "has no jolly" },
        { at("animations/Wave/tracks/mouth/picture"), QJsonArray{ QJsonArray{ 5, 4 } }, "is no text" },
        { at("animations/Wave/tracks/mouth/picture"), QJsonArray{ QJsonArray{ 5, u"9"_s } }, "names no picture" },
        { at("animations/Wave/tracks/box/layer"), QJsonArray{ QJsonArray{ 5, 0.5 } }, "is no whole number" },
    };
    for (const auto &fault : faults) {
        CharacterSource source = smallCharacter();
        source.description = changed(source.description, fault.path, fault.value);
        const auto error = refusalOf(agent::packed(source));
        ASSERT_TRUE(error) << fault.says;
        EXPECT_EQ(error->number(), ErrorNumber::BadData) << fault.says;
        EXPECT_TRUE(error->text().contains(QLatin1StringView(fault.says)))
            << qPrintable(error->text()) << " instead of " << fault.says;
    }
}

TEST(CharacterFile, AnimationsOfOneNameInOtherLettersAreRefused)
{
    CharacterSource source = smallCharacter();
    const QJsonValue wave = source.description.value("animations"_L1).toObject().value("Wave"_L1);
    source.description = changed(source.description, u"animations/WAVE"_s, wave);
    const auto error = refusalOf(agent::packed(source));
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->text().contains("twice"_L1)) << qPrintable(error->text());
}
