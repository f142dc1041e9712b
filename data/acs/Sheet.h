#pragma once

#include "platform/agent/character/CharacterFile.h"

#include <QImage>

/** A contact sheet: one block a character, one cell an animation, three moments of each. */
QImage contactSheet(const QList<std::shared_ptr<const agent::CharacterFile>> &characters);

/** One animation, evenly spread over so many frames, for judging its movement. */
QImage filmStrip(const std::shared_ptr<const agent::CharacterFile> &character, const agent::Animation &animation,
                 int frames, qreal scale);
