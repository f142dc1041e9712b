#pragma once

#include "core/Announcer.h"
#include "core/ResultTable.h"

#include <QString>

/** The saying lines of one occasion, 4 columns (text, animation, x, y) × at least one row:
    a saying that the database does not hold gives a line that says so. */
ResultTable MSAgentSpeak(const QString &saying);

/** Fills a token into the text of every line. */
void ReplaceInText(ResultTable &lines, const QString &token, const QString &text);

/** The announcement after a cycle as the texts to speak, in order; empty when nothing is to be said.
    failedNow has 6 columns, recoveredNow 5. */
QList<ResultTable> AnnouncementLines(const ResultTable &failedNow, const ResultTable &recoveredNow);

/** The announcer of a program without characters: shows every line in the status bar. */
class StatusBarAnnouncer : public Announcer
{
public:
    void LoadMSAgent() override;
    void speakLines(const ResultTable &lines) override;
    void speak(const QString &saying) override;
    void AnnounceDevices(const ResultTable &failedNow, const ResultTable &recoveredNow) override;
    void unloadCharacter() override;
};
