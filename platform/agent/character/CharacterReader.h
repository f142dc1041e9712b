#pragma once

#include "platform/agent/character/CharacterFile.h"
#include "platform/agent/character/CharacterFormat.h"

namespace agent {

/** Checks a description and its drawing, every name, number and reference in them, and builds the character. Throws
    agent::Error BadData, whose text names the place. */
CharacterFile::Content contentOf(const CharacterSource &source);

} // namespace agent
