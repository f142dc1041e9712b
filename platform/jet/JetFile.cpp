#include "platform/jet/JetFile.h"

#include "platform/jet/Header.h"
#include "platform/jet/RowReader.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace jet {

namespace {

constexpr int kMaxMoves = 16;
constexpr int kMaxRowsOfPage = 256; // a pointer has one byte for the row

struct Close {
    void operator()(MdbHandle *handle) const { mdb_close(handle); }
    void operator()(MdbTableDef *table) const { mdb_free_tabledef(table); }
};
using TableDef = std::unique_ptr<MdbTableDef, Close>;

const char *kindOf(const MdbCatalogEntry &entry)
{
    switch (entry.object_type) {
    case MDB_TABLE:
        return "system table";
    case MDB_LINKED_TABLE:
    case MDB_UNKNOWN_09:
        return "linked table";
    case MDB_QUERY:
        return "query";
    case MDB_FORM:
        return "form";
    case MDB_REPORT:
        return "report";
    case MDB_MACRO:
        return "macro";
    case MDB_MODULE:
        return "module";
    default:
        return nullptr; // parts of the file's own bookkeeping
    }
}

QByteArray readHead(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Error(u"The file cannot be read: %1."_s.arg(file.errorString()));
    return file.read(kHeaderSize);
}

} // namespace

class FilePrivate
{
public:
    explicit FilePrivate(const QString &path);

    TableDef definition(const QString &name) const;
    void readPage(const MdbTableDef &table, const RowReader &reader, const std::function<void(const Row &)> &row);
    std::optional<QByteArray> rowBytes(const Page &page, int row) const;
    std::optional<QByteArray> follow(QByteArray pointer) const;

    Header header;
    std::unique_ptr<MdbHandle, Close> mdb;
    std::unique_ptr<TextDecoder> texts;
    QList<Table> tables;
    QList<OtherObject> others;

private:
    void readCatalogue();
    Table describe(const QString &name) const;
};

FilePrivate::FilePrivate(const QString &path)
    : header(readHeader(readHead(path)))
{
    if (header.hasPassword)
        throw Error(u"The file is protected by a password. Remove the password with the program that has set it, "
                    "then try again."_s);
    texts = std::make_unique<TextDecoder>(header.isJet3, header.codePage);
    mdb.reset(mdb_open(QFile::encodeName(path).constData(), MDB_NOFLAGS));
    if (!mdb)
        throw Error(u"The file cannot be opened; it is damaged or encrypted."_s);
    readCatalogue();
}

void FilePrivate::readCatalogue()
{
    const GPtrArray *catalogue = mdb_read_catalog(mdb.get(), MDB_ANY);
    if (!catalogue || catalogue->len == 0)
        throw Error(u"The list of tables cannot be read; the file is damaged or encrypted."_s);
    QStringList names;
    for (guint i = 0; i < catalogue->len; ++i) {
        auto *entry = static_cast<MdbCatalogEntry *>(g_ptr_array_index(catalogue, i));
        const QString name = QString::fromUtf8(entry->object_name);
        if (mdb_is_user_table(entry))
            names << name;
        else if (const char *kind = kindOf(*entry); kind && name != u"MSysDb") // the database's own entry
            others.append({QString::fromLatin1(kind), name});
    }
    for (const QString &name : names)
        tables.append(describe(name));
}

TableDef FilePrivate::definition(const QString &name) const
{
    QByteArray utf8 = name.toUtf8();
    TableDef table(mdb_read_table_by_name(mdb.get(), utf8.data(), MDB_TABLE));
    if (!table || !mdb_read_columns(table.get()))
        return nullptr;
    table->num_cols = std::min(table->num_cols, table->columns->len);
    return table;
}

Table FilePrivate::describe(const QString &name) const
{
    Table described {name, {}, 0};
    const TableDef table = definition(name);
    if (!table)
        return described;
    described.rowCount = table->num_rows;
    for (guint i = 0; i < table->num_cols; ++i)
        described.columns << QString::fromUtf8(static_cast<MdbColumn *>(g_ptr_array_index(table->columns, i))->name);
    return described;
}

/** A row that grew out of its page has left a pointer, which may lead to another pointer. */
std::optional<QByteArray> FilePrivate::follow(QByteArray pointer) const
{
    for (int move = 0; move < kMaxMoves; ++move) {
        if (pointer.size() < 4)
            return std::nullopt;
        const quint32 target = Bytes(pointer).number<quint32>(0);
        const auto row = rowAt(*mdb, target);
        if (!row)
            return std::nullopt;
        // A row that moved on once more bears both marks.
        const RowState state = Page(*mdb, mdb->alt_pg_buf).state(int(target & 0xff));
        if (state != RowState::Moved && state != RowState::Deleted)
            return row;
        pointer = *row;
    }
    return std::nullopt;
}

/** The bytes of a row; empty for one that is deleted or found by way of its pointer, null for a damaged one. */
std::optional<QByteArray> FilePrivate::rowBytes(const Page &page, int row) const
{
    try {
        switch (page.state(row)) {
        case RowState::Deleted:
        case RowState::MovedHere:
            return QByteArray();
        case RowState::Moved:
            return follow(page.row(row));
        case RowState::Normal:
            break;
        }
        return page.row(row);
    } catch (const std::out_of_range &) {
        return std::nullopt;
    }
}

void FilePrivate::readPage(const MdbTableDef &table, const RowReader &reader,
                           const std::function<void(const Row &)> &row)
{
    const Page page(*mdb, mdb->pg_buf);
    for (int i = 0; i < page.rowCount() && i < kMaxRowsOfPage; ++i) {
        const auto bytes = rowBytes(page, i);
        if (!bytes)
            row(Row(int(table.num_cols), Unreadable {u"its row is damaged"_s}));
        else if (!bytes->isEmpty())
            row(reader.read(*bytes));
    }
}

File::File(const QString &path)
    : d(std::make_unique<FilePrivate>(path))
{
}

File::~File() = default;

const QList<Table> &File::tables() const { return d->tables; }

const QList<OtherObject> &File::otherObjects() const { return d->others; }

void File::read(const Table &table, const std::function<void(const Row &)> &row)
{
    const TableDef definition = d->definition(table.name);
    if (!definition)
        throw Error(u"The definition of the table cannot be read."_s);
    const RowReader reader(*d->mdb, *definition, d->header.isJet3, *d->texts);
    mdb_rewind_table(definition.get());
    while (mdb_read_next_dpg(definition.get()))
        d->readPage(*definition, reader, row);
}

} // namespace jet
