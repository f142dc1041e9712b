#include "platform/agent/character/CharacterFormat.h"

#include "platform/agent/Agent.h"

#include <QCborMap>
#include <QCborValue>
#include <QCryptographicHash>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

const QByteArray kMagic = QByteArrayLiteral("KavroCharacter ");
constexpr qsizetype kMaxVersionDigits = 9;
constexpr auto kHash = QCryptographicHash::Sha256;

Error damaged(const QString &why)
{
    return Error(ErrorNumber::BadData, u"The character file is damaged: %1."_s.arg(why));
}

struct Foreign {
    const char *start; // four bytes
    ErrorNumber number;
    const char16_t *text;
};

constexpr Foreign kForeign[] = {
    { "\xD0\xCF\x11\xE0", ErrorNumber::FileTooOld,
      u"This character was made for an older kind of agent, whose files cannot be shown." },
    { "\xC3\xAB\xCD\xAB", ErrorNumber::NotACharacterFile,
      u"This character was made for another agent, whose files cannot be shown." },
    { "\xC4\xAB\xCD\xAB", ErrorNumber::NotACharacterFile,
      u"This is a piece of a character made for another agent, whose files cannot be shown." },
};

void refuseForeign(const QByteArray &bytes)
{
    for (const Foreign &each : kForeign) {
        if (bytes.startsWith(QByteArrayView(each.start, 4)))
            throw Error(each.number, QString::fromUtf16(each.text));
    }
    if (!bytes.startsWith(kMagic))
        throw Error(ErrorNumber::NotACharacterFile, u"This is not a character file."_s);
}

/** Where the first line ends. */
qsizetype checkVersion(const QByteArray &bytes)
{
    const qsizetype end = bytes.indexOf('\n', kMagic.size());
    if (end < 0 || end > kMagic.size() + kMaxVersionDigits)
        throw damaged(u"its first line is incomplete"_s);
    bool isNumber = false;
    const int version = bytes.mid(kMagic.size(), end - kMagic.size()).toInt(&isNumber);
    if (!isNumber || version < 1)
        throw damaged(u"its version is no number"_s);
    if (version > kCharacterVersion)
        throw Error(ErrorNumber::FileTooNew,
                    u"This character needs a newer version of the program (format %1)."_s.arg(version));
    return end;
}

QByteArray checkedPayload(const QByteArray &bytes, qsizetype start)
{
    const qsizetype hashSize = QCryptographicHash::hashLength(kHash);
    const QByteArray payload = bytes.mid(start + hashSize);
    if (QCryptographicHash::hash(payload, kHash) != bytes.mid(start, hashSize))
        throw damaged(u"its check sum is wrong"_s);
    return payload;
}

} // namespace

QByteArray packed(const CharacterSource &source)
{
    const QByteArray description = QJsonDocument(source.description).toJson(QJsonDocument::Compact);
    const QByteArray payload
        = QCborValue(QCborMap{ { u"character"_s, description }, { u"drawing"_s, source.drawing } }).toCbor();
    return kMagic + QByteArray::number(kCharacterVersion) + '\n' + QCryptographicHash::hash(payload, kHash) + payload;
}

CharacterSource unpacked(const QByteArray &bytes)
{
    refuseForeign(bytes);
    const qsizetype lineEnd = checkVersion(bytes);
    if (bytes.size() > kMaxCharacterFile)
        throw damaged(u"it is too large"_s);
    const QCborValue payload = QCborValue::fromCbor(checkedPayload(bytes, lineEnd + 1));
    const QCborValue character = payload[u"character"_s], drawing = payload[u"drawing"_s];
    if (!character.isByteArray() || !drawing.isByteArray())
        throw damaged(u"its description or its drawing is missing"_s);
    QJsonParseError error;
    const QJsonDocument description = QJsonDocument::fromJson(character.toByteArray(), &error);
    if (!description.isObject())
        throw damaged(u"its description cannot be read (%1)"_s.arg(error.errorString()));
    return { description.object(), drawing.toByteArray() };
}

} // namespace agent
