#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

namespace agent {

/** Puts the movements that characters share (`common`) beneath a character's own ones, and writes out the short forms
    "with" and "mirrorOf", so that a file holds plain tracks only. Building blocks, whose names begin with "_", and
    shared tracks of parts that the character does not have are left out. Throws agent::Error BadData. */
QJsonObject mergedDescription(const QJsonObject &common, const QJsonObject &own);

/** The bytes of a character file made from FOLDER/character.json, FOLDER/parts.svg and the common.json beside FOLDER.
    Throws agent::Error when a file is missing or the character could not be read back. */
QByteArray packedFolder(const QString &folder);

} // namespace agent
