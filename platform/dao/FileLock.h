#pragma once

#include <QString>

namespace dao {

/** One user's hold on a database file: a lock on a small file beside it, shared or exclusive, which the
   kernel releases when the process dies. Two holds of one process are two users. */
class FileLock
{
public:
    /** Throws 3356 (somebody has it exclusively), 3704 (others have it open), 3050 (the lock file cannot be
     * made). */
    FileLock(const QString &databasePath, bool exclusive);
    ~FileLock();
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;

private:
    [[noreturn]] void raiseHeld(bool exclusive);

    QString m_path;
    int m_file = -1;
};

} // namespace dao
