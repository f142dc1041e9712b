#include "platform/jet/Header.h"

#include "platform/jet/JetFile.h"

#include <QtEndian>
#include <algorithm>
#include <array>
#include <bit>
#include <numeric>

using namespace Qt::StringLiterals;

namespace jet {

namespace {

constexpr int kVersionAt = 0x14;
constexpr int kEncodedAt = 0x18;
constexpr int kCodePageAt = 0x3c;
constexpr int kPasswordAt = 0x42;
constexpr int kDateAt = 0x72;
constexpr int kLastVersion = 6;

/** The head is encoded with RC4 and a key that every file shares. */
void decode(QByteArray &head, int length)
{
    constexpr std::array<quint8, 4> key {0xc7, 0xda, 0x39, 0x6b};
    std::array<quint8, 256> state;
    std::iota(state.begin(), state.end(), quint8(0));
    quint8 j = 0;
    for (int i = 0; i < 256; ++i) {
        j = quint8(j + state[size_t(i)] + key[size_t(i) % key.size()]);
        std::swap(state[size_t(i)], state[j]);
    }
    quint8 x = 0;
    quint8 y = 0;
    for (int i = 0; i < length; ++i) {
        x = quint8(x + 1);
        y = quint8(y + state[x]);
        std::swap(state[x], state[y]);
        char &byte = head[kEncodedAt + i];
        byte = char(quint8(byte) ^ state[quint8(state[x] + state[y])]);
    }
}

/** In the newer files the password is mixed with the day of creation as well. */
bool hasPassword(const QByteArray &head, bool isJet3)
{
    QByteArray password = head.mid(kPasswordAt, isJet3 ? 20 : 40);
    if (!isJet3) {
        const double created = std::bit_cast<double>(qFromLittleEndian<quint64>(head.constData() + kDateAt));
        const quint32 mask = std::abs(created) < 1e9 ? quint32(qint32(created)) : 0;
        for (int i = 0; i < password.size(); ++i)
            password[i] = char(quint8(password[i]) ^ quint8(mask >> (8 * (i % 4))));
    }
    return std::any_of(password.cbegin(), password.cend(), [](char c) { return c != 0; });
}

} // namespace

Header readHeader(const QByteArray &head)
{
    const QByteArray name = head.mid(4, 15);
    if (name != "Standard Jet DB" && name != "Standard ACE DB")
        throw Error(u"This is no Jet database."_s);
    if (head.size() < kHeaderSize)
        throw Error(u"The file ends in its first page."_s);
    const int version = quint8(head[kVersionAt]);
    if (version > kLastVersion)
        throw Error(u"The file is of an unknown version (%1) of the format."_s.arg(version));
    QByteArray plain = head;
    Header header;
    header.isJet3 = version == 0;
    decode(plain, header.isJet3 ? 126 : 128);
    header.hasPassword = hasPassword(plain, header.isJet3);
    if (const int codePage = qFromLittleEndian<quint16>(plain.constData() + kCodePageAt))
        header.codePage = codePage;
    return header;
}

} // namespace jet
