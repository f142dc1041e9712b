#include "platform/dao/Errors.h"

#include <algorithm>
#include <iterator>

namespace dao {

namespace {

struct ErrorRow {
    long number;
    const char16_t *text;
};

// Sorted by number.
constexpr ErrorRow kErrors[] = {
    {6, u"Overflow"},
    {13, u"Type mismatch"},
    {94, u"Invalid use of Null"},
    {3000, u"Reserved error (%1); there is no message for this error."},
    {3020, u"Update or CancelUpdate without AddNew or Edit."},
    {3021, u"No current record."},
    {3022,
     u"The changes you requested to the table were not successful because they would create duplicate values "
     u"in the index, primary key, or relationship. Change the data in the field or fields that contain "
     u"duplicate data, remove the index, or redefine the index to permit duplicate entries and try again."},
    {3024, u"Couldn't find file '%1'."},
    {3026, u"Not enough space on disk."},
    {3027, u"Can't update. Database or object is read-only."},
    {3043, u"Disk or network error."},
    {3044,
     u"'%1' isn't a valid path. Make sure that the path name is spelled correctly and that you are connected "
     u"to the server on which the file resides."},
    {3045, u"Couldn't use '%1'; file already in use."},
    {3049,
     u"Can't open database '%1'. It may not be a database that your application recognizes, or the file may "
     u"be corrupt."},
    {3050, u"Couldn't lock file."},
    {3055, u"Not a valid file name."},
    {3058, u"Index or primary key can't contain a Null value."},
    {3061, u"Too few parameters. Expected %1."},
    {3062, u"Duplicate output alias '%1'."},
    {3065, u"Can't execute a select query."},
    {3073, u"Operation must use an updatable query."},
    {3074, u"Can't repeat table name '%1' in FROM clause."},
    {3075, u"%1 in query expression '%2'."},
    {3078,
     u"The Microsoft Jet database engine cannot find the input table or query '%1'. Make sure it exists and "
     u"that its name is spelled correctly."},
    {3079,
     u"The specified field '%1' could refer to more than one table listed in the FROM clause of your SQL "
     u"statement."},
    {3080, u"Joined table '%1' not listed in FROM clause."},
    {3085, u"Undefined function '%1' in expression."},
    {3086, u"Couldn't delete from specified tables."},
    {3100, u"Can't set field '%1' in join key to Null."},
    {3113, u"Can't update '%1'; field not updatable."},
    {3117, u"Can't sort on Memo or OLE Object '%1'."},
    {3118, u"Can't join on Memo or OLE Object '%1'."},
    {3126, u"Invalid bracketing of name '%1'."},
    {3127,
     u"The INSERT INTO statement contains the following unknown field name: '%1'. Make sure you have typed "
     u"the name correctly, and try the operation again."},
    {3128, u"Specify the table containing the records you want to delete."},
    {3129, u"Invalid SQL statement; expected 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT', or 'UPDATE'."},
    {3130, u"Syntax error in DELETE statement."},
    {3131, u"Syntax error in FROM clause."},
    {3134, u"Syntax error in INSERT INTO statement."},
    {3135, u"Syntax error in JOIN operation."},
    {3138, u"Syntax error in ORDER BY clause."},
    {3141,
     u"The SELECT statement includes a reserved word or an argument name that is misspelled or missing, or "
     u"the punctuation is incorrect."},
    {3142, u"Characters found after end of SQL statement."},
    {3144, u"Syntax error in UPDATE statement."},
    {3145, u"Syntax error in WHERE clause."},
    {3163,
     u"The field is too small to accept the amount of data you attempted to add. Try inserting or pasting "
     u"less data."},
    {3167, u"Record is deleted."},
    {3196,
     u"The database '%1' is already in use by another person or process. When the database is available, try "
     u"the operation again."},
    {3204, u"Database already exists."},
    {3218, u"Couldn't update; currently locked."},
    {3219, u"Invalid operation."},
    {3258,
     u"The SQL statement couldn't be executed because it contains ambiguous outer joins. To force one of the "
     u"joins to be performed first, create a separate query that performs the first join and then include "
     u"that query in your SQL statement."},
    {3265, u"Item not found in this collection."},
    {3290, u"Syntax error in CREATE TABLE statement."},
    {3296, u"Join expression not supported."},
    {3314,
     u"The field '%1' can't contain a Null value because the Required property for this field is set to "
     u"True. Enter a value in this field."},
    {3315, u"Field '%1' can't be a zero-length string."},
    {3332, u"Can't enter value into blank field on 'one' side of outer join."},
    {3343, u"Unrecognized database format '%1'."},
    {3346, u"Number of query values and destination fields aren't the same."},
    {3348, u"Can't add record(s); join key of table '%1' not in result set."},
    {3349, u"Numeric field overflow."},
    {3356,
     u"You attempted to open a database that is already opened exclusively by user 'Admin' on machine '%1'. "
     u"Try again when the database is available."},
    {3360, u"Query is too complex."},
    {3420, u"Object is invalid or no longer set."},
    {3421, u"Data type conversion error."},
    {3428,
     u"A problem occurred in your database. Correct the problem by repairing and compacting the database."},
    {3464, u"Data type mismatch in criteria expression."},
    {3704,
     u"You attempted to open a database that is already opened by user 'Admin' on machine '%1'. Try again "
     u"when the database is available."},
};

QList<Error> &collection()
{
    static QList<Error> errors;
    return errors;
}

std::function<void()> &accessHook()
{
    static std::function<void()> hook;
    return hook;
}

} // namespace

QString errorText(long number, const QString &first, const QString &second)
{
    const auto row = std::lower_bound(std::begin(kErrors), std::end(kErrors), number,
                                      [](const ErrorRow &r, long n) { return r.number < n; });
    Q_ASSERT(row != std::end(kErrors) && row->number == number);
    QString text = QString::fromUtf16(row->text);
    // Not arg(): an insert is foreign text and may itself hold a "%1".
    if (const qsizetype at = text.indexOf(u"%2"); at >= 0)
        text.replace(at, 2, second);
    if (const qsizetype at = text.indexOf(u"%1"); at >= 0)
        text.replace(at, 2, first);
    return text;
}

void raise(long number, const QString &first, const QString &second)
{
    throw VbError(number, errorText(number, first, second));
}

void clearErrors()
{
    if (!collection().isEmpty())
        collection().clear();
}

void recordError(const VbError &error, const QString &source)
{
    collection() = {Error {error.number(), error.description(), source}};
}

const QList<Error> &Errors() { return collection(); }

void SetAccessHook(std::function<void()> hook) { accessHook() = std::move(hook); }

void callAccessHook()
{
    if (accessHook())
        accessHook()();
}

} // namespace dao
