#pragma once

#include <QString>
#include <QStringView>

namespace agent {

/** One speech tag as it stands in a text: \Name\, \Name=value\ or \Map="spoken"="shown"\. */
struct SpeechTag {
    QString name;  // lower case, three letters
    QString value; // without quotes; of a map the spoken text
    QString shown; // of a map only
    qsizetype end = 0; // first character after the tag
};

/** Finds tags in one text. It remembers in vain searches, so that a long text full of beginnings is read in one go. */
class TagReader
{
public:
    /** Within a map's spoken text a backslash may be single or doubled, and single quotes are already undone. */
    TagReader(QStringView text, bool mapped)
        : m_text(text)
        , m_mapped(mapped)
    {
    }

    /** True when a well-formed tag begins at the position, which is that of a backslash. */
    bool read(qsizetype at, SpeechTag &tag);

private:
    bool readMap(qsizetype at, SpeechTag &tag);
    bool readValue(qsizetype at, SpeechTag &tag, qsizetype &end) const;
    qsizetype findClosingQuote(qsizetype from, QStringView after, qsizetype &nothingFrom) const;

    QStringView m_text;
    bool m_mapped;
    qsizetype m_noSpokenEndFrom = -1; // no end of a spoken text from here on; -1: not known
    qsizetype m_noShownEndFrom = -1;
};

} // namespace agent
