#include "platform/vbscript/objects/Charset.h"

#include <cerrno>
#include <iconv.h>

using namespace Qt::StringLiterals;

namespace vbs::objects {

namespace {

const iconv_t kNone = reinterpret_cast<iconv_t>(-1);
constexpr char kText[] = "UTF-16LE"; // as QString holds it on this machine

struct Alias
{
    const char *name;
    const char *known;
};
constexpr Alias kAliases[] = {
    { "unicode", "utf-16le" }, { "utf-16", "utf-16le" }, { "unicodefffe", "utf-16be" },
    { "ascii", "us-ascii" }, { "utf8", "utf-8" },
    { "iso-8859-1", "windows-1252" }, // as browsers read it
};
}

Charset::Charset(const QString &name) : m_name(name.trimmed().toLower().toLatin1())
{
    for (const Alias &row : kAliases) {
        if (m_name == row.name)
            m_name = row.known;
    }
    if (m_name.isEmpty() || m_name.contains('/')) // slashes introduce options of iconv
        m_name = "?";
    m_toText = iconv_open(kText, m_name.constData());
    m_fromText = iconv_open(m_name.constData(), kText);
}

Charset::~Charset()
{
    if (m_toText != kNone)
        iconv_close(m_toText);
    if (m_fromText != kNone)
        iconv_close(m_fromText);
}

bool Charset::isKnown() const { return m_toText != kNone && m_fromText != kNone; }

QByteArray Charset::mark() const
{
    if (m_name == "utf-8")
        return "\xef\xbb\xbf";
    return m_name == "utf-16le" ? "\xff\xfe" : m_name == "utf-16be" ? "\xfe\xff" : QByteArray();
}

QByteArray Charset::encode(QStringView text)
{
    iconv(m_fromText, nullptr, nullptr, nullptr, nullptr);
    QByteArray result(text.size() * 4 + 16, Qt::Uninitialized);
    char *from = reinterpret_cast<char *>(const_cast<char16_t *>(text.utf16()));
    size_t left = size_t(text.size()) * 2;
    char *to = result.data();
    size_t room = size_t(result.size());
    while (left > 0 && iconv(m_fromText, &from, &left, &to, &room) == size_t(-1)) {
        if (errno == E2BIG)
            break; // no set takes more than four bytes a unit; shift states fit the reserve
        const size_t skipped = qMin<size_t>(left, 2);
        from += skipped;
        left -= skipped;
        *to++ = '?';
        --room;
    }
    result.resize(to - result.constData());
    return result;
}

QString Charset::decode(QByteArrayView bytes, qsizetype most, qsizetype &used)
{
    iconv(m_toText, nullptr, nullptr, nullptr, nullptr);
    QString result(qMin(most, bytes.size() + 1), Qt::Uninitialized); // a byte seldom gives more than one unit
    char *from = const_cast<char *>(bytes.data());
    size_t left = size_t(bytes.size());
    qsizetype done = 0;
    while (left > 0 && done < most) {
        if (done == result.size())
            result.resize(qMin(most, done * 2));
        char *to = reinterpret_cast<char *>(result.data() + done);
        size_t room = size_t(result.size() - done) * 2;
        const bool failed = iconv(m_toText, &from, &left, &to, &room) == size_t(-1);
        const int reason = errno;
        done = (to - reinterpret_cast<char *>(result.data())) / 2;
        if (failed && reason == E2BIG && done < result.size()) {
            result.resize(done + 2); // room for one unit only: the pair gets room for its other half
            most = qMax(most, done + 2);
        } else if (failed && reason != E2BIG) {
            result[done++] = QChar::ReplacementCharacter;
            ++from;
            --left;
        }
    }
    used = from - bytes.data();
    result.resize(done);
    return result;
}

}
