#pragma once

#include <QList>
#include <QString>
#include <functional>
#include <memory>
#include <stdexcept>
#include <variant>

/** Genuine Jet database files, read only. */
namespace jet {

/** What makes a whole file or table unreadable, in words for the operator. */
class Error : public std::runtime_error
{
public:
    explicit Error(const QString &text)
        : std::runtime_error(text.toStdString())
    {
    }
    QString text() const { return QString::fromUtf8(what()); }
};

/** A day number: days since 30 December 1899; its fraction counts forward from midnight also before that day. */
struct Date {
    double days = 0;
    bool operator==(const Date &) const = default;
};

/** A value that the file does not give away, and why. */
struct Unreadable {
    QString reason;
    bool operator==(const Unreadable &) const = default;
};

/** std::monostate is Null. */
using Field = std::variant<std::monostate, bool, qint64, double, Date, QString, Unreadable>;
using Row = QList<Field>;

struct Table {
    QString name;
    QStringList columns;
    qint64 rowCount = 0; // as the file says, which need not be true
};

/** An object that is no table of the user's own. */
struct OtherObject {
    QString kind; // "linked table", "query", …
    QString name;
};

class FilePrivate;

/** An open Jet file. Whoever opens a damaged one risks the process: see the README. */
class File
{
public:
    /** Throws Error for a file that is none, is protected, or whose catalogue cannot be read. */
    explicit File(const QString &path);
    ~File();
    File(const File &) = delete;
    File &operator=(const File &) = delete;

    /** The user's tables; one whose definition cannot be read has no columns. */
    const QList<Table> &tables() const;
    const QList<OtherObject> &otherObjects() const;

    /** Calls the function with every row in the order of the file, a field per column. Rows that cannot be taken
        apart are all Unreadable; rows on lost pages are missing, which the table's rowCount tells. */
    void read(const Table &table, const std::function<void(const Row &)> &row);

private:
    std::unique_ptr<FilePrivate> d;
};

} // namespace jet
