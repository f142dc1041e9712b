#pragma once

#include <QByteArrayView>

namespace agent {

/** The pictures of a mouth, in the order in which a character's drawings have them. */
enum MouthShape { MouthClosed, MouthWide1, MouthWide2, MouthWide3, MouthWide4, MouthMedium, MouthNarrow };

/** The mouth that says a phoneme, by the voice's name of it. Closed for pauses and for what nobody knows. */
MouthShape mouthOf(QByteArrayView phoneme);

/** A mouth for speech of which the sounds are unknown: the shape of the so-many-th change. */
MouthShape talkingMouth(int change);

} // namespace agent
