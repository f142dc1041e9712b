#include "platform/dao/Collation.h"

#include "platform/dao/Errors.h"

#include <QString>
#include <algorithm>
#include <array>
#include <sqlite3.h>

namespace dao {

namespace {

// A weight holds the character's class above its code, so that weights compare as the order wants.
constexpr uint kDigit = 1u << 24;
constexpr uint kLetter = 2u << 24;

uint baseLetter(char32_t c)
{
    // A few steps reach the bare letter of every composed one.
    for (int i = 0; i < 4 && QChar::decompositionTag(c) == QChar::Canonical; ++i) {
        const QString parts = QChar::decomposition(c);
        c = QStringView(parts).toUcs4().value(0);
    }
    return QChar::toCaseFolded(c);
}

uint classWeight(char32_t folded)
{
    if (QChar::isDigit(folded))
        return kDigit | folded;
    return QChar::isLetter(folded) ? kLetter | folded : folded;
}

constexpr std::array<uint, 128> makeAsciiWeights()
{
    std::array<uint, 128> weights {};
    for (uint c = 0; c < 128; ++c) {
        const bool upper = c >= 'A' && c <= 'Z';
        const bool letter = upper || (c >= 'a' && c <= 'z');
        const bool digit = c >= '0' && c <= '9';
        weights[c] = (letter ? kLetter : digit ? kDigit : 0) | (upper ? c + 32 : c);
    }
    return weights;
}
constexpr auto kAsciiWeights = makeAsciiWeights();

int order(uint a, uint b) { return a < b ? -1 : a > b ? 1 : 0; }

int compareWhole(QStringView a, QStringView b)
{
    const QList<uint> left = a.toUcs4();
    const QList<uint> right = b.toUcs4();
    const qsizetype n = std::min(left.size(), right.size());
    int accents = 0; // decides only where the bare letters do not
    for (qsizetype i = 0; i < n; ++i) {
        if (left[i] == right[i])
            continue;
        const int bare = order(classWeight(baseLetter(left[i])), classWeight(baseLetter(right[i])));
        if (bare != 0)
            return bare;
        if (accents == 0)
            accents = order(QChar::toCaseFolded(char32_t(left[i])), QChar::toCaseFolded(char32_t(right[i])));
    }
    return left.size() != right.size() ? (left.size() < right.size() ? -1 : 1) : accents;
}

int compareUtf8(void *, int sizeA, const void *dataA, int sizeB, const void *dataB)
{
    const auto *a = static_cast<const uchar *>(dataA);
    const auto *b = static_cast<const uchar *>(dataB);
    const int n = std::min(sizeA, sizeB);
    for (int i = 0; i < n; ++i) {
        if ((a[i] | b[i]) & 0x80) {
            return compareWhole(QString::fromUtf8(reinterpret_cast<const char *>(a + i), sizeA - i),
                                QString::fromUtf8(reinterpret_cast<const char *>(b + i), sizeB - i));
        }
        if (const int difference = order(kAsciiWeights[a[i]], kAsciiWeights[b[i]]))
            return difference;
    }
    return sizeA < sizeB ? -1 : sizeA > sizeB ? 1 : 0;
}

} // namespace

int compareText(QStringView a, QStringView b) { return compareWhole(a, b); }

void registerCollation(sqlite3 *db)
{
    if (sqlite3_create_collation_v2(db, kCollation, SQLITE_UTF8, nullptr, compareUtf8, nullptr) != SQLITE_OK)
        raise(3043);
}

} // namespace dao
