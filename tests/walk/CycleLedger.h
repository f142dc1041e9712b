#pragma once

#include <QHash>
#include <QStringList>

/** Compares what every check was before a cycle with what it is afterwards: one outcome and, for a change, one
    line of the event log. It is shown the world often enough to see every beginning and every end. */
class CycleLedger
{
public:
    /** Looks at the program; what is wrong with a cycle that has just ended is in faults(). */
    void observe(bool checking);
    /** While on, the operator is changing rows. */
    void setEditing(bool on);
    /** The tree was loaded again, which forgets what was not reported yet. */
    void treeReloaded() { m_reloaded = true; }
    /** The program ended or went on with another file; a cycle that ran is not judged. */
    void forget() { m_running = false; }

    QStringList takeFaults() { return std::exchange(m_faults, {}); }
    int cycles() const { return m_cycles; }
    int judged() const { return m_judged; }
    int changes() const { return m_changes; }

private:
    struct Check {
        int outcomes = 0;
        int mode = 0;
        int flag = 0;
        bool enabled = false;
        int failures = 0; // lines of the event log
        int recoveries = 0;
    };
    using Checks = QHash<qint64, Check>;

    static Checks read();
    void begin();
    void judge();
    void judgeOutcomes(qint64 id, const Check &before, const Check &now);
    void judgeEvents(qint64 id, const Check &before, const Check &now);

    Checks m_before;
    QStringList m_faults;
    bool m_running = false;
    bool m_wholly = false; // monitoring was on all along
    bool m_editing = false;
    bool m_edited = false;
    bool m_reloaded = false;
    bool m_foreign = false; // the cycle began on another database
    int m_generation = 0;
    int m_cycles = 0;
    int m_judged = 0;
    int m_changes = 0;
};
