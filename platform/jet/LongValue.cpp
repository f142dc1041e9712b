#include "platform/jet/LongValue.h"

#include <QSet>

namespace jet {

namespace {

constexpr int kDefinitionSize = 12;
constexpr quint32 kInRow = 0x80000000;
constexpr quint32 kOneRow = 0x40000000;
constexpr quint32 kLengthMask = 0x3fffffff;
constexpr qsizetype kPointerSize = 4;

std::optional<QByteArray> atLeast(const QByteArray &bytes, qsizetype length)
{
    return bytes.size() >= length ? std::optional(bytes.first(length)) : std::nullopt;
}

/** Parts on several pages, each beginning with a pointer to the next one. */
std::optional<QByteArray> readChain(MdbHandle &mdb, quint32 pointer, qsizetype length)
{
    QByteArray value;
    QSet<quint32> seen; // a damaged chain may bite its tail
    while (value.size() < length) {
        const auto before = seen.size();
        seen.insert(pointer);
        const auto part = seen.size() > before && pointer >> 8 ? rowAt(mdb, pointer) : std::nullopt;
        if (!part || part->size() <= kPointerSize)
            return std::nullopt;
        pointer = Bytes(*part).number<quint32>(0);
        value += part->sliced(kPointerSize);
    }
    return value.first(length);
}

} // namespace

std::optional<QByteArray> readLongValue(MdbHandle &mdb, const QByteArray &field)
{
    if (field.size() < kDefinitionSize)
        return std::nullopt;
    const Bytes bytes(field);
    const quint32 head = bytes.number<quint32>(0);
    const qsizetype length = head & kLengthMask;
    const quint32 pointer = bytes.number<quint32>(4);
    if (length == 0)
        return QByteArray("");
    if (head & kInRow)
        return atLeast(field.mid(kDefinitionSize), length);
    if (head & kOneRow) {
        const auto row = rowAt(mdb, pointer);
        return row ? atLeast(*row, length) : std::nullopt;
    }
    return readChain(mdb, pointer, length);
}

} // namespace jet
