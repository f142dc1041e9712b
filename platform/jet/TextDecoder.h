#pragma once

#include <QByteArray>
#include <QString>
#include <iconv.h>

namespace jet {

/** Turns the bytes of a text into characters: a code page in Jet 3, UTF-16 that may be compressed afterwards. */
class TextDecoder
{
public:
    TextDecoder(bool isJet3, int codePage);
    ~TextDecoder();
    TextDecoder(const TextDecoder &) = delete;
    TextDecoder &operator=(const TextDecoder &) = delete;

    QString decode(const QByteArray &bytes) const;

private:
    QString decodeCodePage(const QByteArray &bytes) const;
    bool m_isJet3;
    iconv_t m_converter;
};

} // namespace jet
