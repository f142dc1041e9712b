#include "platform/jet/TextDecoder.h"

#include "platform/jet/JetFile.h"

#include <QtEndian>
#include <array>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace jet {

namespace {

const iconv_t kNone = iconv_t(-1);

QString utf16(QByteArrayView bytes)
{
    QString text(bytes.size() / 2, Qt::Uninitialized);
    qFromLittleEndian<char16_t>(bytes.data(), text.size(), text.data());
    return text;
}

/** Runs of one-byte characters and runs of UTF-16, each ended by a zero byte. */
QString decompressed(QByteArrayView bytes)
{
    QString text;
    bool narrow = true;
    for (qsizetype begin = 0; begin <= bytes.size(); narrow = !narrow) {
        qsizetype end = bytes.indexOf('\0', begin);
        if (end < 0)
            end = bytes.size();
        const QByteArrayView run = bytes.sliced(begin, end - begin);
        text += narrow ? QString::fromLatin1(run) : utf16(run);
        begin = end + 1;
    }
    return text;
}

} // namespace

TextDecoder::TextDecoder(bool isJet3, int codePage)
    : m_isJet3(isJet3)
    , m_converter(isJet3 ? iconv_open("UTF-16LE", QByteArray("CP" + QByteArray::number(codePage)).constData()) : kNone)
{
    if (isJet3 && m_converter == kNone)
        throw Error(u"The texts of this file are in an unknown code page (%1)."_s.arg(codePage));
}

TextDecoder::~TextDecoder()
{
    if (m_converter != kNone)
        iconv_close(m_converter);
}

QString TextDecoder::decode(const QByteArray &bytes) const
{
    if (m_isJet3)
        return decodeCodePage(bytes);
    if (bytes.startsWith("\xff\xfe"))
        return decompressed(QByteArrayView(bytes).sliced(2));
    return utf16(bytes);
}

QString TextDecoder::decodeCodePage(const QByteArray &bytes) const
{
    QString text;
    QByteArray source = bytes;
    char *in = source.data();
    size_t left = size_t(source.size());
    iconv(m_converter, nullptr, nullptr, nullptr, nullptr);
    while (left > 0) {
        std::array<char, 512> block;
        char *out = block.data();
        size_t room = block.size();
        const size_t result = iconv(m_converter, &in, &left, &out, &room);
        text += utf16(QByteArrayView(block.data(), out - block.data()));
        if (result != size_t(-1) || errno == E2BIG)
            continue;
        // A byte that the code page does not define stands for itself, as it always did.
        text += QChar(char16_t(quint8(*in++)));
        --left;
    }
    return text;
}

} // namespace jet
