#pragma once

#include "core/Announcer.h"
#include "core/ResultTable.h"

#include <QString>
#include <QStringList>

/** The saying lines of one occasion, 4 columns (text, animation, x, y) × at least one row:
    a saying that the database does not hold gives a line that says so. */
ResultTable MSAgentSpeak(const QString &saying);

/** Fills a token into the text of every line. */
void ReplaceInText(ResultTable &lines, const QString &token, const QString &text);

/** A character's name for people; it is chosen by its file's name, which is written small. */
QString CharacterTitle(const QString &file);

/** What a character says to introduce itself. */
ResultTable GreetingLines(const QString &character);

/** Where the characters' files (.acs) are. */
QString CharacterFolder();
/** The names of the characters' files without their ending, sorted; empty when there are none. */
QStringList CharacterNames();

/** The announcement after a cycle as the texts to speak, in order; empty when nothing is to be said or the
    announcements are switched off. Tells the status bar. failedNow has 6 columns, recoveredNow 5. */
QList<ResultTable> AnnouncementLines(const ResultTable &failedNow, const ResultTable &recoveredNow);

/** The announcer of a program without characters: shows every line in the status bar. */
class StatusBarAnnouncer : public Announcer
{
public:
    void LoadMSAgent() override;
    void speakLines(const ResultTable &lines) override;
    void speak(const QString &saying) override;
    void greet(const QString &character) override;
    void AnnounceDevices(const ResultTable &failedNow, const ResultTable &recoveredNow) override;
    void unloadCharacter() override;
};
