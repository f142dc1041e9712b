#include "core/vbMain.h"

#include "core/Dialogs.h"
#include "platform/dao/DateText.h"

using namespace Qt::StringLiterals;

QString AppTitle() { return QString::fromUtf16(kAppTitle); }

QString AppVersion()
{
    return u"%1.%2.%3"_s.arg(KAVRO_VERSION_MAJOR).arg(KAVRO_VERSION_MINOR).arg(KAVRO_VERSION_REVISION);
}

VbMain &vbMain()
{
    static VbMain state;
    return state;
}

void UseDatabase(std::unique_ptr<dao::Database> opened, const QString &path)
{
    VbMain &program = vbMain();
    program.db = std::move(opened);
    program.databasePath = path;
    ++program.databaseGeneration;
}

dao::Database &db()
{
    if (!vbMain().db)
        throw VbError(91, u"Object variable or With block variable not set"_s);
    return *vbMain().db;
}

void CheckDatabaseErrors()
{
    const QList<dao::Error> &errors = dao::Errors();
    if (!errors.isEmpty())
        throw VbError(errors.constLast().number, errors.constLast().description);
}

QString GeneralDate(const QDateTime &when) { return dao::generalDateText(when); }

bool ShellOpen(const QString &FilePath)
{
    return vbMain().dialogs && vbMain().dialogs->shellOpen(FilePath);
}
