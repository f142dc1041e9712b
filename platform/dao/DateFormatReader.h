#pragma once

#include <QDateTime>
#include <QLocale>
#include <optional>

namespace dao {

/** Two-digit years: 00 to 29 are of this century, 30 to 99 of the last. Invalid when there is no such day. */
QDate dateOf(int year, int month, int day);

/** OLE day number 0, the day of a time that stands alone. */
inline QDate oleDayZero() { return QDate(1899, 12, 30); }

/** Reads a whole text by a date format of Qt; empty when it does not fit. Qt's own reader is not enough: it
   knows not the day halves of every locale, and here a slash may stand where the format has a dot. */
class DateFormatReader
{
public:
    DateFormatReader(const QLocale &locale, QStringView format, QStringView text)
        : m_locale(locale)
        , m_format(format)
        , m_text(text)
    {
    }
    std::optional<QDateTime> run();

private:
    bool readNext();
    bool readField(QChar c, qsizetype length);
    int *numberOf(QChar c);
    bool readQuoted();
    bool readChar(QChar expected);
    bool readWord(QStringView word);
    bool readHalf();
    int readName(QString (QLocale::*nameOf)(int, QLocale::FormatType) const, int count, qsizetype length);
    bool readNumber(int &number, int maxDigits);
    int hour() const;

    const QLocale &m_locale;
    QStringView m_format;
    QStringView m_text;
    qsizetype m_at = 0; // in the format
    qsizetype m_pos = 0; // in the text
    bool m_hasDate = false;
    int m_year = 0;
    int m_month = 1;
    int m_day = 1;
    int m_hour = 0;
    int m_minute = 0;
    int m_second = 0;
    int m_half = -1; // 0: before noon, 1: after
};

} // namespace dao
