#pragma once

// libmdb's own header wants glib outside of its extern "C".
#include <glib.h>

#include <mdbtools.h>

#include <QByteArray>
#include <QtEndian>
#include <optional>
#include <stdexcept>

namespace jet {

/** Whole numbers and parts of a piece of a page; what lies outside of it throws std::out_of_range. */
class Bytes
{
public:
    explicit Bytes(const QByteArray &bytes)
        : m_bytes(bytes)
    {
    }
    qsizetype size() const { return m_bytes.size(); }
    QByteArray part(qsizetype at, qsizetype length) const
    {
        if (at < 0 || length < 0 || at + length > m_bytes.size())
            throw std::out_of_range("outside of the row");
        return m_bytes.mid(at, length);
    }
    template <class T>
    T number(qsizetype at) const
    {
        return qFromLittleEndian<T>(part(at, sizeof(T)).constData());
    }
    int byte(qsizetype at) const { return number<quint8>(at); }

private:
    QByteArray m_bytes;
};

enum class RowState { Normal, Deleted, Moved, MovedHere };

/** One page with rows. */
class Page
{
public:
    Page(const MdbHandle &mdb, const unsigned char *buffer)
        : m_bytes(QByteArray(reinterpret_cast<const char *>(buffer), mdb.fmt->pg_size))
        , m_countAt(mdb.fmt->row_count_offset)
    {
    }
    bool isData() const { return m_bytes.byte(0) == MDB_PAGE_DATA; }
    int rowCount() const { return m_bytes.number<quint16>(m_countAt); }
    RowState state(int row) const;
    /** Throws std::out_of_range for a row that lies outside of the page. */
    QByteArray row(int row) const;

private:
    int entry(int row) const { return m_bytes.number<quint16>(m_countAt + 2 + 2 * row); }
    Bytes m_bytes;
    int m_countAt;
};

/** The row that a pointer (page number and row number) names, on whatever page it is; empty when there is none. */
std::optional<QByteArray> rowAt(MdbHandle &mdb, quint32 pointer);

} // namespace jet
