#pragma once

#include <QString>
#include <functional>

/** Operations on whole files, made so that after a crash at any point either the old or the new file is there.
    They throw VbError with the number and text that Visual Basic has for the failure. */
namespace dao::files {

/** Called with the name and the file of every step ("rename /folder/x.mdb") before it is done; may throw. For
    fault sweeps in tests. */
void setStepHook(std::function<void(const QString &step)> hook);
/** Announces a step to the hook. */
void step(const char *name, const QString &path);

/** Whether both paths name one file: the same text, a link to it, or another way to it. */
bool isSame(const QString &one, const QString &other);
/** The path with all links followed, so that replacing it leaves the links alone; the path itself when there is
    no such file. */
QString resolved(const QString &path);

/** Removes a file; one that does not exist is no error. */
void remove(const QString &path);
/** Removes what SQLite keeps beside a database file: left there, a new file of that name would take it for its
    own. */
void removeSideFiles(const QString &path);
/** Removes a database file with its side files. */
void removeDatabase(const QString &path);
/** Waits until the file's content is on the disk. */
void sync(const QString &path);
/** Gives a file another name in its own folder or file system, replacing what stood there, lastingly. False when
    the two are on different file systems. */
bool replace(const QString &from, const QString &to);

/** A file under construction beside its target: gone again, with SQLite's side files, unless it was finished. */
class Draft
{
public:
    explicit Draft(const QString &target);
    ~Draft();
    Draft(const Draft &) = delete;
    Draft &operator=(const Draft &) = delete;

    const QString &path() const { return m_path; }
    /** Removes the draft for the target that another process has left behind, with all that belongs to it. */
    static void removeLeftBehind(const QString &target, qint64 process);
    /** Puts the file, safely written, under the target's name. Throws 3204 when there is one by now. */
    void finish();
    /** The same, but replaces a file of that name and takes its access rights over. */
    void finishReplacing();

private:
    QString m_target;
    QString m_path;
};

/** Puts a finished file in the place of another one, over file system borders too; from is gone afterwards. */
void moveOver(const QString &from, const QString &to);

} // namespace dao::files
