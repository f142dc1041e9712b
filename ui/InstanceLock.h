#pragma once

#include <QString>

/** One running copy per user: a lock that the kernel takes back when the program ends, however it ends. */
class InstanceLock
{
public:
    InstanceLock() = default;
    ~InstanceLock();
    InstanceLock(const InstanceLock &) = delete;
    InstanceLock &operator=(const InstanceLock &) = delete;

    /** False when another copy holds the lock. Where no lock file can be made nobody can tell, and the answer
     * is true. */
    bool acquire();
    static QString filePath();

private:
    int m_file = -1;
};
