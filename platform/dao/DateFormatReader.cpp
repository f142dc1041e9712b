#include "platform/dao/DateFormatReader.h"

namespace dao {

namespace {

bool sameChar(QChar expected, QChar actual)
{
    return expected.toCaseFolded() == actual.toCaseFolded() || (expected.isSpace() && actual.isSpace())
        || (expected == u'.' && actual == u'/');
}

} // namespace

QDate dateOf(int year, int month, int day)
{
    if (year < 100)
        year += year < 30 ? 2000 : 1900;
    return QDate(year, month, day);
}

std::optional<QDateTime> DateFormatReader::run()
{
    while (m_at < m_format.size()) {
        if (!readNext())
            return {};
    }
    const QDate date = m_hasDate ? dateOf(m_year, m_month, m_day) : oleDayZero();
    const QTime time(hour(), m_minute, m_second);
    if (m_pos != m_text.size() || !date.isValid() || !time.isValid())
        return {};
    return QDateTime(date, time);
}

int DateFormatReader::hour() const
{
    if (m_half < 0)
        return m_hour;
    return m_hour < 1 || m_hour > 12 ? -1 : m_hour % 12 + 12 * m_half;
}

bool DateFormatReader::readNext()
{
    const QChar c = m_format[m_at];
    if (c == u'\'')
        return readQuoted();
    if (c == u'a' || c == u'A') {
        m_at += m_at + 1 < m_format.size() && m_format[m_at + 1].toLower() == u'p' ? 2 : 1;
        return readHalf();
    }
    qsizetype length = 1;
    while (numberOf(c) && m_at + length < m_format.size() && m_format[m_at + length] == c)
        ++length;
    m_at += length;
    return numberOf(c) ? readField(c, length) : readChar(c);
}

bool DateFormatReader::readField(QChar c, qsizetype length)
{
    m_hasDate = m_hasDate || c == u'd' || c == u'M' || c == u'y';
    if (c == u'd' && length > 2)
        return readName(&QLocale::dayName, 7, length) > 0;
    if (c == u'M' && length > 2) {
        m_month = readName(&QLocale::monthName, 12, length);
        return m_month > 0;
    }
    return readNumber(*numberOf(c), c == u'y' ? 4 : 2);
}

int *DateFormatReader::numberOf(QChar c)
{
    switch (c.unicode()) {
    case u'd':
        return &m_day;
    case u'M':
        return &m_month;
    case u'y':
        return &m_year;
    case u'h':
    case u'H':
        return &m_hour;
    case u'm':
        return &m_minute;
    case u's':
        return &m_second;
    default:
        return nullptr;
    }
}

bool DateFormatReader::readQuoted()
{
    const qsizetype end = m_format.indexOf(u'\'', m_at + 1);
    if (end < 0)
        return false;
    const QStringView literal = m_format.mid(m_at + 1, end - m_at - 1);
    m_at = end + 1;
    return literal.isEmpty() ? readChar(u'\'') : readWord(literal);
}

bool DateFormatReader::readChar(QChar expected)
{
    if (m_pos >= m_text.size() || !sameChar(expected, m_text[m_pos]))
        return false;
    ++m_pos;
    return true;
}

bool DateFormatReader::readWord(QStringView word)
{
    const qsizetype start = m_pos;
    for (const QChar c : word) {
        if (!readChar(c)) {
            m_pos = start;
            return false;
        }
    }
    return !word.isEmpty();
}

bool DateFormatReader::readHalf()
{
    const QString am = m_locale.amText();
    const QString pm = m_locale.pmText();
    // The longer one first: it may begin with the other.
    const bool pmFirst = pm.size() > am.size();
    for (const bool isPm : {pmFirst, !pmFirst}) {
        if (readWord(isPm ? pm : am)) {
            m_half = isPm ? 1 : 0;
            return true;
        }
    }
    return false;
}

/** The number of the longest name that stands here, or 0. */
int DateFormatReader::readName(QString (QLocale::*nameOf)(int, QLocale::FormatType) const, int count,
                               qsizetype length)
{
    const QLocale::FormatType form = length == 3 ? QLocale::ShortFormat : QLocale::LongFormat;
    const qsizetype start = m_pos;
    qsizetype end = start;
    int found = 0;
    for (int n = 1; n <= count; ++n) {
        m_pos = start;
        if (readWord((m_locale.*nameOf)(n, form)) && m_pos > end) {
            end = m_pos;
            found = n;
        }
    }
    m_pos = end;
    return found;
}

bool DateFormatReader::readNumber(int &number, int maxDigits)
{
    int digits = 0;
    number = 0;
    for (; digits < maxDigits && m_pos < m_text.size(); ++digits) {
        const bool pair = m_text[m_pos].isHighSurrogate() && m_pos + 1 < m_text.size();
        const char32_t c
            = pair ? QChar::surrogateToUcs4(m_text[m_pos], m_text[m_pos + 1]) : m_text[m_pos].unicode();
        const int digit = QChar::digitValue(c);
        if (digit < 0)
            break;
        number = number * 10 + digit;
        m_pos += pair ? 2 : 1;
    }
    return digits > 0;
}

} // namespace dao
