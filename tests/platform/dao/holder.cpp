#include "platform/dao/Dao.h"

#include <QCoreApplication>
#include <cstdio>

// holder PATH shared|exclusive [SQL]: opens the database, runs the statement without committing it, says so
// and waits for a line on its input.
int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    try {
        const auto db = dao::OpenDatabase(args.value(1), args.value(2) == QStringLiteral("exclusive"));
        if (args.size() > 3)
            db->Execute(args.value(3));
        std::puts("open");
        std::fflush(stdout);
        std::getchar();
        db->Close();
    } catch (const VbError &error) {
        std::printf("%ld\n", error.number());
    }
    return 0;
}
