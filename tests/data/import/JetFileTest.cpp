// What a genuine file may hold that the sample does not: made by changing the sample's bytes, or rows made by hand.
#include "tests/data/import/JetSample.h"

#include "platform/jet/Header.h"
#include "platform/jet/RowReader.h"

#include <QtEndian>
#include <bit>

using jet::Date;
using jet::Field;
using jet::Row;

namespace {

QByteArray utf16(const QString &text)
{
    QByteArray bytes(2 * text.size(), '\0');
    qToLittleEndian<char16_t>(text.constData(), text.size(), bytes.data());
    return bytes;
}

QString text(const Field &field)
{
    const auto *found = std::get_if<QString>(&field);
    return found ? *found : u"(no text)"_s;
}

bool isDamaged(const Row &row)
{
    return std::all_of(row.begin(), row.end(),
                       [](const Field &field) { return std::holds_alternative<jet::Unreadable>(field); });
}

} // namespace

class JetFileTest : public JetSample
{
protected:
    QByteArray bytes = bytesOf(sample());
    QList<Row> before = rowsOf(sample(), u"tblGroup"_s);
    int page = pageWith(bytes, utf16(u"Routers"_s));
    qsizetype routersAt = bytes.indexOf(utf16(u"Routers"_s));
    int routers = rowAt(bytes, page, routersAt);

    QList<Row> groups() { return rowsOf(write(u"edited.mdb"_s, bytes), u"tblGroup"_s); }
    void mark(int row, int flags) { setWord(bytes, entryOf(page, row), word(bytes, entryOf(page, row)) | flags); }
    /** Leaves a pointer where the row was. */
    void pointTo(int targetPage, int targetRow)
    {
        const qsizetype row = qsizetype(page) * kPage + (word(bytes, entryOf(page, routers)) & 0x1fff);
        qToLittleEndian(quint32(targetPage << 8 | targetRow), bytes.data() + row);
        mark(routers, 0x4000);
    }
    /** A new page at the end of the file with one row; returns its number. */
    int addPage(const QByteArray &row, int flags)
    {
        const int added = int(bytes.size() / kPage);
        QByteArray content = bytes.mid(qsizetype(page) * kPage, 14);
        setWord(content, 12, 1);
        content += QByteArray(2, '\0');
        setWord(content, 14, int(kPage - row.size()) | flags);
        bytes += content + QByteArray(kPage - content.size() - row.size(), '\0') + row;
        return added;
    }
    QByteArray routersRow()
    {
        const int begin = word(bytes, entryOf(page, routers)) & 0x1fff;
        const int end = routers == 0 ? kPage : word(bytes, entryOf(page, routers - 1)) & 0x1fff;
        return bytes.mid(qsizetype(page) * kPage + begin, end - begin);
    }
};

TEST_F(JetFileTest, NullAndEmptyTextsAreTwoThings)
{
    const QList<Row> devices = rowsOf(sample(), u"tblDevices"_s);
    ASSERT_EQ(devices.size(), 24);
    EXPECT_EQ(text(devices[0][3]), QString());
    EXPECT_TRUE(std::holds_alternative<std::monostate>(devices[0][4]));
}

TEST_F(JetFileTest, DeletedRowsAreGone)
{
    mark(routers, 0xc000);
    QList<Row> expected = before;
    expected.removeAt(0);
    EXPECT_EQ(groups(), expected);
}

TEST_F(JetFileTest, RowsThatWereMovedToAnotherPage)
{
    const QByteArray row = routersRow();
    pointTo(addPage(row, 0x8000), 0);
    EXPECT_EQ(groups(), before);
    // Moved once more: the first page now points on.
    const int second = addPage(row, 0x8000);
    const int first = second - 1;
    setWord(bytes, entryOf(first, 0), word(bytes, entryOf(first, 0)) | 0x4000);
    qToLittleEndian(quint32(second << 8), bytes.data() + qsizetype(first) * kPage + kPage - row.size());
    EXPECT_EQ(groups(), before);
}

TEST_F(JetFileTest, PointersThatLeadNowhereOrRoundInCircles)
{
    for (const auto &[targetPage, row] : {std::pair(page, routers), {5000, 0}, {page, 200}, {0, 0}}) {
        bytes = bytesOf(sample());
        pointTo(targetPage, row);
        const QList<Row> found = groups();
        ASSERT_EQ(found.size(), before.size());
        EXPECT_TRUE(isDamaged(found[0])) << targetPage << ':' << row;
        EXPECT_EQ(found.mid(1), before.mid(1));
    }
}

TEST_F(JetFileTest, CompressedTexts)
{
    const auto put = [&](const QByteArray &text) {
        ASSERT_EQ(text.size(), 14);
        bytes.replace(routersAt, 14, text);
    };
    put("\xff\xfeSwitch-r\xf6" "oms");
    EXPECT_EQ(text(groups()[0][1]), u"Switch-röoms"_s);
    put(QByteArray("\xff\xfe" "ab\0\x16\x04\0cdefgh", 14));
    EXPECT_EQ(text(groups()[0][1]), u"abЖcdefgh"_s);
    put(QByteArray("\xff\xfe\0\x16\x04\x16\x04\x16\x04\x16\x04\0yz", 14).leftJustified(14, 'z'));
    EXPECT_EQ(text(groups()[0][1]), u"ЖЖЖЖyz"_s + QString());
}

TEST_F(JetFileTest, PasswordsAreTold)
{
    EXPECT_FALSE(jet::readHeader(bytes.left(jet::kHeaderSize)).hasPassword);
    EXPECT_FALSE(jet::readHeader(bytes.left(jet::kHeaderSize)).isJet3);
    bytes[0x42] = char(bytes[0x42] ^ 's');
    bytes[0x44] = char(bytes[0x44] ^ 'e');
    try {
        groups();
        FAIL() << "opened";
    } catch (const jet::Error &error) {
        EXPECT_TRUE(error.text().contains(u"protected by a password"_s)) << error.text().toStdString();
    }
}

// Rows of the older version, whose offsets have one byte

namespace {

/** A table of the given columns, as libmdb describes one. */
class HandMadeTable
{
public:
    HandMadeTable() { m_table.columns = g_ptr_array_new(); }
    ~HandMadeTable() { g_ptr_array_free(m_table.columns, TRUE); }
    HandMadeTable(const HandMadeTable &) = delete;
    HandMadeTable &operator=(const HandMadeTable &) = delete;

    HandMadeTable &fixed(int type, int number, int offset)
    {
        MdbColumn column {};
        column.col_type = type;
        column.col_num = number;
        column.is_fixed = 1;
        column.fixed_offset = offset;
        return add(column);
    }
    HandMadeTable &variable(int type, int number, unsigned index)
    {
        MdbColumn column {};
        column.col_type = type;
        column.col_num = number;
        column.var_col_num = index;
        m_table.num_var_cols = std::max(m_table.num_var_cols, index + 1);
        return add(column);
    }
    Row read(const QByteArray &row, int codePage = 1252)
    {
        MdbHandle none {};
        const jet::TextDecoder texts(true, codePage);
        return jet::RowReader(none, m_table, true, texts).read(row);
    }

private:
    HandMadeTable &add(const MdbColumn &column)
    {
        m_columns.push_back(std::make_unique<MdbColumn>(column));
        g_ptr_array_add(m_table.columns, m_columns.back().get());
        ++m_table.num_cols;
        return *this;
    }
    MdbTableDef m_table {};
    std::vector<std::unique_ptr<MdbColumn>> m_columns;
};

/** Fixed part, then variable values, then the offsets backwards, the jumps backwards, the count and the mask. */
QByteArray jet3Row(int columns, const QByteArray &fixed, const QList<QByteArray> &values, const QByteArray &mask)
{
    QByteArray row(1, char(columns));
    row += fixed;
    QList<int> offsets;
    for (const QByteArray &value : values) {
        offsets << int(row.size());
        row += value;
    }
    offsets << int(row.size());
    const qsizetype withoutJumps = row.size() + offsets.size() + 1 + mask.size();
    const int jumps = int((withoutJumps - 1 + (withoutJumps - 1) / 256) / 256);
    for (qsizetype i = offsets.size(); i-- > 0;)
        row += char(offsets[i]);
    for (int jump = jumps; jump > 0; --jump) {
        const auto first
            = std::find_if(offsets.begin(), offsets.end(), [&](int offset) { return offset >= 256 * jump; });
        row += first == offsets.end() ? '\xff' : char(first - offsets.begin());
    }
    return row + char(values.size()) + mask;
}

} // namespace

TEST(Jet3Row, FixedVariableAndAddedColumns)
{
    HandMadeTable table;
    table.fixed(MDB_LONGINT, 0, 0).variable(MDB_TEXT, 1, 0).fixed(MDB_BOOL, 2, 0).variable(MDB_TEXT, 4, 2);
    table.variable(MDB_TEXT, 5, 3).fixed(MDB_LONGINT, 6, 4); // both added after the row was written
    QByteArray id(4, '\0');
    qToLittleEndian(qint32(-7), id.data());
    // Column 3, the second variable one, is deleted; its value is still in the row.
    const QByteArray row = jet3Row(5, id, {"na\xefve \x80", "gone", ""}, QByteArray(1, char(0b11111)));
    EXPECT_EQ(table.read(row), (Row {qint64(-7), u"naïve €"_s, true, QString(), Field(), Field()}));
    EXPECT_EQ(text(table.read(jet3Row(5, id, {"\xcf\xf0\x81", "", ""}, QByteArray(1, '\x02')), 1251)[1]), u"ПрЃ"_s);
    EXPECT_EQ(table.read(jet3Row(5, id, {"x", "y", "z"}, QByteArray(1, '\0'))),
              (Row {Field(), Field(), false, Field(), Field(), Field()}));
}

TEST(Jet3Row, LongRowsHaveAJumpTable)
{
    for (const int length : {100, 247, 250, 251, 252, 253, 254, 255}) {
        HandMadeTable table;
        QList<QByteArray> values;
        Row expected;
        for (int i = 0; i < 8; ++i) {
            table.variable(MDB_TEXT, i, unsigned(i));
            values << QByteArray(length - i % 3, char('a' + i));
            expected << QString(length - i % 3, QChar(char16_t('a' + i)));
        }
        EXPECT_EQ(table.read(jet3Row(8, {}, values, "\xff")), expected) << length;
    }
}

TEST(Jet3Row, DamagedOnesAreToldNotRead)
{
    HandMadeTable table;
    table.fixed(MDB_LONGINT, 0, 0).variable(MDB_TEXT, 1, 0);
    for (int length = 0; length < 12; ++length) {
        const Row row = table.read(QByteArray(length, '\xff'));
        ASSERT_EQ(row.size(), 2);
        EXPECT_TRUE(isDamaged(row)) << length;
    }
}
