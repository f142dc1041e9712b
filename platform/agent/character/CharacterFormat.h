#pragma once

// The envelope of a character file: one line with the format's version, the check sum of what follows, and a CBOR map
// with the description and the drawing. Nothing is compressed, so that no file is larger in memory than on disk.

#include <QByteArray>
#include <QJsonObject>

namespace agent {

constexpr qsizetype kMaxCharacterFile = 4 * 1024 * 1024;
constexpr int kCharacterVersion = 1;

/** What the envelope holds: the description (see docs/characters.md) and the drawing, an SVG document. */
struct CharacterSource {
    QJsonObject description;
    QByteArray drawing;
};

/** The bytes of a file. */
QByteArray packed(const CharacterSource &source);
/** Throws agent::Error: NotACharacterFile, FileTooOld, FileTooNew, BadData. */
CharacterSource unpacked(const QByteArray &bytes);

} // namespace agent
