#include "platform/agent/speech/Mouth.h"

#include <iterator>

namespace agent {

namespace {

struct Sound {
    const char *beginning;
    MouthShape shape;
};

// The first beginning that fits decides, so longer ones stand before shorter ones.
constexpr Sound kSounds[] = {
    // vowels, by the words of which they are the middle
    { "aI", MouthWide4 }, { "aU", MouthWide4 }, { "a#", MouthWide3 }, { "a", MouthWide4 },    // hide, how, about, hat
    { "A@", MouthMedium }, { "A", MouthMedium }, { "0", MouthMedium }, { "O", MouthMedium },  // hard, hot
    { "oU", MouthNarrow }, { "o", MouthMedium },                                              // hoe, horse
    { "u", MouthNarrow }, { "U", MouthNarrow }, { "w", MouthNarrow },                         // hoop, hood, wet
    { "eI", MouthWide2 }, { "e", MouthWide3 }, { "E", MouthWide3 }, { "V", MouthWide3 },      // hay, head, hut
    { "3", MouthWide3 }, { "@", MouthWide3 },                                                 // hurt, ago
    { "i", MouthWide1 }, { "I", MouthWide1 }, { "j", MouthWide1 },                            // hear, hit, you
    // lips closed
    { "m", MouthClosed }, { "b", MouthClosed }, { "p", MouthClosed }, { "f", MouthClosed }, { "v", MouthClosed },
    // lips forward
    { "tS", MouthNarrow }, { "dZ", MouthNarrow }, { "S", MouthNarrow }, { "Z", MouthNarrow }, { "r", MouthNarrow },
    // tongue behind the teeth
    { "t", MouthWide2 }, { "d", MouthWide2 }, { "n", MouthWide2 }, { "s", MouthWide2 }, { "z", MouthWide2 },
    { "T", MouthWide2 }, { "D", MouthWide2 }, { "*", MouthWide2 },
    // tongue further back
    { "l", MouthWide1 }, { "g", MouthWide1 }, { "k", MouthWide1 }, { "N", MouthWide1 }, { "h", MouthWide1 },
    { "x", MouthWide1 }, { "?", MouthWide1 },
};

constexpr MouthShape kTalk[] = { MouthWide4, MouthWide2, MouthClosed, MouthMedium, MouthWide1, MouthNarrow, MouthClosed,
                                 MouthWide3, MouthWide2 };

} // namespace

MouthShape mouthOf(QByteArrayView phoneme)
{
    for (const Sound &sound : kSounds) {
        if (phoneme.startsWith(QByteArrayView(sound.beginning)))
            return sound.shape;
    }
    return MouthClosed;
}

MouthShape talkingMouth(int change)
{
    return kTalk[size_t(change) % std::size(kTalk)];
}

} // namespace agent
