#include "platform/jet/RowReader.h"

#include "platform/jet/LongValue.h"

#include <bit>
#include <cmath>

using namespace Qt::StringLiterals;

namespace jet {

namespace {

constexpr int kMoneyScale = 10000;

const MdbColumn &columnAt(const MdbTableDef &table, int i)
{
    return *static_cast<const MdbColumn *>(g_ptr_array_index(table.columns, guint(i)));
}

int fixedSize(int type)
{
    switch (type) {
    case MDB_BYTE:
        return 1;
    case MDB_INT:
        return 2;
    case MDB_LONGINT:
    case MDB_FLOAT:
        return 4;
    case MDB_MONEY:
    case MDB_DOUBLE:
    case MDB_DATETIME:
        return 8;
    case MDB_NUMERIC:
        return 17;
    default:
        return 0;
    }
}

/** A sign and four groups of 32 bits, the most significant one first. */
double decimal(const Bytes &bytes, int scale)
{
    double number = 0;
    for (int group = 0; group < 4; ++group)
        number = number * 4294967296.0 + bytes.number<quint32>(1 + 4 * group);
    number /= std::pow(10.0, scale);
    return bytes.byte(0) ? -number : number;
}

Field unreadable() { return Unreadable {u"it lies outside of its row"_s}; }

} // namespace

struct RowReader::Layout {
    int columns = 0; // that the row knows: later ones were added after it was written
    int fixedAt = 0;
    QByteArray presence; // a bit per column: not Null
    std::vector<int> offsets; // of the variable columns, and of their end
};

RowReader::RowReader(MdbHandle &mdb, const MdbTableDef &table, bool isJet3, const TextDecoder &texts)
    : m_mdb(mdb)
    , m_table(table)
    , m_isJet3(isJet3)
    , m_texts(texts)
{
}

Row RowReader::read(const QByteArray &row) const
{
    const int columns = int(m_table.num_cols);
    try {
        const Bytes bytes(row);
        const Layout where = layout(bytes);
        Row fields;
        for (int i = 0; i < columns; ++i)
            fields.append(field(bytes, where, columnAt(m_table, i)));
        return fields;
    } catch (const std::out_of_range &) {
        return Row(columns, Unreadable {u"its row is damaged"_s});
    }
}

RowReader::Layout RowReader::layout(const Bytes &row) const
{
    Layout where;
    where.columns = m_isJet3 ? row.byte(0) : row.number<quint16>(0);
    where.fixedAt = m_isJet3 ? 1 : 2;
    const int maskSize = (where.columns + 7) / 8;
    const qsizetype maskAt = row.size() - maskSize;
    where.presence = row.part(maskAt, maskSize);
    if (m_table.num_var_cols > 0)
        where.offsets = m_isJet3 ? offsets3(row, maskAt) : offsets4(row, maskAt);
    return where;
}

std::vector<int> RowReader::offsets4(const Bytes &row, qsizetype maskAt) const
{
    const int count = row.number<quint16>(maskAt - 2);
    std::vector<int> offsets;
    for (int i = 0; i <= count; ++i)
        offsets.push_back(row.number<quint16>(maskAt - 4 - 2 * i));
    return offsets;
}

/** Offsets of one byte; a jump table tells from which column on another 256 is to be added. */
std::vector<int> RowReader::offsets3(const Bytes &row, qsizetype maskAt) const
{
    const int count = row.byte(maskAt - 1);
    int jumps = int((row.size() - 1) / 256);
    const qsizetype tableAt = maskAt - 2 - jumps;
    // The number of entries follows from the size of the row; the last one may be a dummy.
    if ((tableAt - count) / 256 < jumps)
        --jumps;
    std::vector<int> offsets;
    int used = 0;
    for (int i = 0; i <= count; ++i) {
        while (used < jumps && row.byte(maskAt - 2 - used) == i)
            ++used;
        offsets.push_back(row.byte(tableAt - i) + 256 * used);
    }
    return offsets;
}

Field RowReader::field(const Bytes &row, const Layout &where, const MdbColumn &column) const
{
    const int number = column.col_num;
    const bool known = number >= 0 && number < where.columns;
    const bool present = known && (where.presence[number / 8] >> (number % 8) & 1);
    if (column.col_type == MDB_BOOL)
        return present;
    if (!present)
        return {};
    try {
        if (column.is_fixed)
            return fixedField(Bytes(row.part(where.fixedAt + column.fixed_offset, fixedSize(column.col_type))), column);
        const size_t variable = column.var_col_num;
        if (variable + 1 >= where.offsets.size())
            return {};
        const int begin = where.offsets[variable];
        return variableField(row.part(begin, where.offsets[variable + 1] - begin), column);
    } catch (const std::out_of_range &) {
        return unreadable();
    }
}

Field RowReader::fixedField(const Bytes &bytes, const MdbColumn &column) const
{
    switch (column.col_type) {
    case MDB_BYTE:
        return qint64(bytes.byte(0));
    case MDB_INT:
        return qint64(bytes.number<qint16>(0));
    case MDB_LONGINT:
        return qint64(bytes.number<qint32>(0));
    case MDB_MONEY:
        return double(bytes.number<qint64>(0)) / kMoneyScale;
    case MDB_FLOAT:
        return double(std::bit_cast<float>(bytes.number<quint32>(0)));
    case MDB_DOUBLE:
        return std::bit_cast<double>(bytes.number<quint64>(0));
    case MDB_DATETIME:
        return Date {std::bit_cast<double>(bytes.number<quint64>(0))};
    case MDB_NUMERIC:
        return decimal(bytes, column.col_scale);
    default:
        return Unreadable {u"it is of a kind that has no counterpart"_s};
    }
}

Field RowReader::variableField(const QByteArray &bytes, const MdbColumn &column) const
{
    if (column.col_type == MDB_TEXT)
        return m_texts.decode(bytes);
    // Files of other makers keep numbers among the variable columns too.
    if (const int size = fixedSize(column.col_type); size > 0)
        return fixedField(Bytes(Bytes(bytes).part(0, size)), column);
    if (column.col_type != MDB_MEMO)
        return Unreadable {u"it is of a kind that has no counterpart"_s};
    const auto memo = readLongValue(m_mdb, bytes);
    if (!memo)
        return Unreadable {u"the pages that hold it are damaged"_s};
    return m_texts.decode(*memo);
}

} // namespace jet
