#include "platform/agent/SpeechTags.h"

#include "tests/world/NetTest.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using agent::parseSpeech;
using agent::SpeechPiece;
using agent::SpeechState;
using agent::SpeechText;

namespace {

/** One piece in few characters: pause, bookmark and state before the word, the words visible after it. */
QString told(const SpeechPiece &piece)
{
    QString text;
    if (piece.joined)
        text += u'+';
    if (piece.pause > 0)
        text += u'p' + QString::number(piece.pause) + u' ';
    if (piece.bookmark > 0)
        text += u'm' + QString::number(piece.bookmark) + u' ';
    if (piece.emphasised)
        text += u'!';
    if (piece.state.speed > 0)
        text += u's' + QString::number(piece.state.speed) + u' ';
    if (piece.state.pitch > 0)
        text += u'h' + QString::number(piece.state.pitch) + u' ';
    if (piece.state.volume < 65535)
        text += u'v' + QString::number(piece.state.volume) + u' ';
    if (piece.state.character != SpeechState::Character::Normal)
        text += u'c' + QString::number(int(piece.state.character)) + u' ';
    return text + (piece.spelled ? u'~' + piece.spoken : piece.spoken) + u'@' + QString::number(piece.words);
}

QString told(const QString &tagged)
{
    const SpeechText text = parseSpeech(tagged);
    QStringList pieces;
    for (const SpeechPiece &piece : text.pieces)
        pieces.append(told(piece));
    return pieces.join(u'|') + u" = "_s + text.words.join(u'_');
}

struct Row {
    QString tagged;
    QString expected;
};

void check(std::initializer_list<Row> rows)
{
    for (const Row &row : rows)
        EXPECT_EQ(told(row.tagged), row.expected) << qPrintable(row.tagged);
}

} // namespace

TEST(SpeechTags, EveryTagWorksUntilTheNextOrTheReset)
{
    check({
        { u"Two \r\n\twords"_s, u"Two@1|words@2 = Two_words"_s },
        { u"a\\pau=800\\b\\PAU=50\\\\pau=25\\ c"_s, u"a@1|p800 b@2|p75 c@3 = a_b_c"_s },
        { u"\\Emp\\big deal"_s, u"!big@1|deal@2 = big_deal"_s },
        { u"\\spd=300\\a \\Pit=\"200\"\\b \\vol=0\\c \\rst\\d"_s, u"s300 a@1|s300 h200 b@2|s300 h200 v0 c@3|d@4 = a_b_c_d"_s },
        { u"\\Chr=\"whisper\"\\a \\chr=Monotone\\b \\chr=\"Normal\"\\c"_s, u"c2 a@1|c1 b@2|c@3 = a_b_c"_s },
        { u"a \\mrk=7\\b\\mrk=8\\"_s, u"a@1|m7 @1|b@2|m8 @2 = a_b"_s },
        { u"The end.\\pau=800\\"_s, u"The@1|end.@2|p800 @2 = The_end."_s },
        { u"\\vol=99999\\\\spd=-3\\\\mrk=0\\\\mrk=2147483647\\\\pau=99999999999\\a"_s, u"p60000 a@1 = a"_s },
        { u""_s, u" = "_s },
    });
    EXPECT_EQ(parseSpeech(u"\\ctx=\"E-mail\"\\me@x.de."_s).pieces.first().spoken, u"me at x dot de."_s);
    EXPECT_EQ(parseSpeech(u"\\ctx=\"Address\"\\St. \\ctx=\"Unknown\"\\St."_s).pieces.first().spoken, u"street"_s);
    EXPECT_EQ(parseSpeech(u"\\ctx=\"Address\"\\5 \\ctx=\"Unknown\"\\St."_s).pieces.last().spoken, u"St."_s);
}

TEST(SpeechTags, MapSpeaksOneTextAndShowsTheOther)
{
    check({
        { u"\\map=\"10\\pau=50\\ dot \\pau=25\\0\"=\"10.0\"\\ port 80"_s, u"10@1|p50 dot@1|p25 0@1|port@2|80@3 = 10.0_port_80"_s },
        { u"\\map=\"10\\\\pau=50\\\\ dot\\\\emp\\\\0\"=\"a\\\\b\"\\"_s, u"10@1|p50 dot@1|!0@1 = a\\b"_s },
        { u"\\map=\"x\\pau=50\\\\emp\\y\"=\"xy\"\\"_s, u"x@1|p50 !y@1 = xy"_s },
        { u"(\\map=\"web one\"=\"web1\"\\) up"_s, u"(@1|+web@1|one@1|+)@1|up@2 = (web1)_up"_s },
        { u"\\map=\"one\"=\"three words shown\"\\ x"_s, u"one@3|x@4 = three_words_shown_x"_s },
        { u"\\map=\"a b c d\"=\"two words\"\\"_s, u"a@1|b@1|c@2|d@2 = two_words"_s },
        { u"a \\map=\"hum\"=\"\"\\ b"_s, u"a@1|hum@1|b@2 = a_b"_s },
        { u"a \\map=\"\"=\"unsaid\"\\ b"_s, u"a@1|+@2|b@3 = a_unsaid_b"_s },
        { u"\\map=\"say \"\"hi\"\"\"=\"\"\"hi\"\"\"\\"_s, u"say@1|\"hi\"@1 = \"hi\""_s },
        // Names that nobody has doubled anything in.
        { u"\\map=\"5\"disk\"=\"5\"disk\"\\ \\map=\"b\\c\"=\"b\\c\"\\"_s, u"5\"disk@1|b\\c@2 = 5\"disk_b\\c"_s },
        { u"\\MAP=\"WEB-1 a BC.\"=\"web\"\\ TCP"_s, u"~WEB-1@1|a@1|~BC.@1|TCP@2 = web_TCP"_s },
        { u"\\map=\"a \\spd=99\\b\"=\"ab\"\\ c"_s, u"a@1|s99 b@1|s99 c@2 = ab_c"_s },
    });
    EXPECT_EQ(agent::writtenForm(u"Failed: \\map=\"SRV\"=\"srv\"\\ port 80.\\pau=800\\Next\\xyz=3\\one"_s),
              u"Failed: srv port 80. Next one"_s);
}

TEST(SpeechTags, MalformedIsTextAndUnknownIsDropped)
{
    check({
        { u"\\xyz\\a \\abc=\"some text\"\\b \\lst\\"_s, u"a@1|b@2 = a_b"_s },
        { u"\\ Rst \\"_s, u"\\@1|Rst@2|\\@3 = \\_Rst_\\"_s },
        { u"C:\\Users\\me"_s, u"C:\\Users\\me@1 = C:\\Users\\me"_s },
        { u"\\\\server\\share"_s, u"\\\\server\\share@1 = \\\\server\\share"_s },
        { u"\\pau=800"_s, u"\\pau=800@1 = \\pau=800"_s },
        { u"\\pau=\\x"_s, u"\\pau=\\x@1 = \\pau=\\x"_s },
        { u"\\pau=8 00\\"_s, u"\\pau=8@1|00\\@2 = \\pau=8_00\\"_s },
        { u"\\spd=fast\\a"_s, u"a@1 = a"_s },
        { u"\\map=\"a\"=\"b\""_s, u"\\map=\"a\"=\"b\"@1 = \\map=\"a\"=\"b\""_s },
        { u"\\map=\"a\\pau=5\\"_s, u"\\map=\"a@1|p5 @1 = \\map=\"a"_s },
        { u"\\map=a\\ \\map\\"_s, u"\\map=a\\@1|\\map\\@2 = \\map=a\\_\\map\\"_s },
        { u"\\"_s, u"\\@1 = \\"_s },
    });
}

TEST(SpeechTags, AlternativesAreDividedOutsideOfMaps)
{
    EXPECT_EQ(agent::speechAlternatives(u"Hi|Hello \\map=\"a|b\"=\"c\"\\ there|"_s),
              QStringList({ u"Hi"_s, u"Hello \\map=\"a|b\"=\"c\"\\ there"_s, QString() }));
    EXPECT_EQ(agent::speechAlternatives(u"one"_s), QStringList(u"one"_s));
}

TEST(SpeechTags, TimeGrowsWithTheLengthOnly)
{
    for (const QString &beginning : { u"\\map=\""_s, u"\\map=\"a\"=\""_s, u"\\pau="_s, u"\\\\"_s, u"a\"=\""_s, u"x"_s }) {
        const double before = workedMs();
        const SpeechText text = parseSpeech(beginning.repeated(100'000 / beginning.size()));
        EXPECT_LT(workedMs() - before, 500) << qPrintable(beginning);
        EXPECT_FALSE(text.words.isEmpty());
        EXPECT_EQ(text.pieces.last().words, text.words.size());
    }
}
