#include "tests/walk/TypedTexts.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kColumn = 255; // what a text column takes

QString loopback(Random &random) { return u"127.0.0.%1"_s.arg(1 + random.below(25)); }

QString someRange(Random &random)
{
    const int first = 1 + random.below(250);
    switch (random.below(4)) {
    case 0:
        return u"127.0.1.%1-%2"_s.arg(first).arg(first + random.below(4));
    case 1:
        return u"127.0.1.%1 - 127.0.1.%2"_s.arg(first).arg(first + random.below(4));
    case 2:
        return u"127.0.2.%1/30"_s.arg(first);
    default:
        return u"127.0.2.%1/32"_s.arg(first);
    }
}

QString oddName(Random &random)
{
    static const QStringList names { u"grün.beispiel"_s, u"日本語のホスト"_s, u"ΑΘΗΝΑ"_s, u"straße"_s, u"STRASSE"_s,
        u"two words"_s, u"10.5"_s, u"1.2.3"_s, u"127.0.0.256"_s, u"a:b:c"_s, u"<DEVICE>"_s, u"100%"_s, u"web*"_s,
        u"[x]?#"_s, u"\"quoted\""_s, u"x; DROP TABLE tblGroup"_s, u"&amp; <b>bold</b>"_s, u"back\\slash"_s,
        u"e\u0301"_s, u"\u00e9"_s, u"İstanbul"_s, u"i\u0307"_s, u"right\u202eleft"_s, u"nbsp\u00a0name"_s, u"🖥 server"_s };
    return random.of(names);
}

QString notAName(Random &random)
{
    return random.of<QString>({ {}, u"   "_s, u"NULL"_s, u"7"_s, u"1e3"_s, u"-5"_s, u"&h10"_s, u"x"_s, u"127.0.0.9-127.0.0.1"_s,
        u"127.0.0.1-999"_s, u"127.0.0.1/8"_s, u"127.0.0.1/40"_s, u"127.0.0.1-"_s });
}

/** At and around the end of a column, where a character of two code units may be cut in half. */
QString longText(Random &random)
{
    const int letters = random.of({ kColumn - 2, kColumn - 1, kColumn, kColumn + 45 });
    return QString(letters, random.of({ u'w', u'ß', u'漢' })) + u"🖥🖥"_s;
}

} // namespace

QString typed::deviceName(Random &random)
{
    const int kind = random.below(100);
    if (kind < 40)
        return loopback(random);
    if (kind < 60)
        return someRange(random);
    if (kind < 75)
        return oddName(random);
    if (kind < 82)
        return u"  localhost "_s;
    if (kind < 97)
        return notAName(random);
    return random.chance(80) ? longText(random) : u"boss's machine"_s;
}

QString typed::text(Random &random)
{
    const int kind = random.below(100);
    if (kind < 45)
        return u"Text %1"_s.arg(random.below(30));
    if (kind < 60)
        return {};
    if (kind < 70)
        return u"  in blanks  "_s;
    if (kind < 92)
        return oddName(random);
    return random.chance(80) ? longText(random) : u"boss's text"_s;
}

QString typed::portNumber(Random &random, const QStringList &known)
{
    const int kind = random.below(100);
    if (kind < 40)
        return random.of(known);
    if (kind < 70)
        return QString::number(1 + random.below(65535));
    return random.of<QString>({ {}, u"0"_s, u" 443 "_s, u"65535"_s, u"65536"_s, u"-1"_s, u"abc"_s, u"1e3"_s, u"80.4"_s, u"80.5"_s,
        u"&h50"_s, u"99999999999999999999"_s, u"0.4"_s, u"1,5"_s, u"+25"_s, u"-0.3"_s, u"65535.4"_s });
}

QString typed::mailAddress(Random &random)
{
    return random.of<QString>({ u"ops@example"_s, u"a@b"_s, u"two@example,three@example"_s, {}, u" "_s, u"no address"_s });
}
