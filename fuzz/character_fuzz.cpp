// Character files. The check sum would stop every change, so the input is what stands behind it: the description and
// the drawing, divided by the first NUL. What is accepted must also move and be painted.
#include "platform/agent/Agent.h"
#include "platform/agent/character/CharacterFormat.h"
#include "platform/agent/character/CharacterReader.h"
#include "platform/agent/character/CharacterRenderer.h"

#include <QJsonDocument>
#include <cstdlib>

namespace {

void perform(const std::shared_ptr<const agent::CharacterFile> &character)
{
    agent::CharacterRenderer renderer(character);
    for (const QString &name : character->animationNames()) {
        const agent::Animation *animation = character->animation(name);
        if (!animation)
            std::abort();
        for (int step = 0; step <= 4; ++step) {
            const agent::Pose pose = animation->at(animation->durationMs() * step / 3);
            if (pose.size() != character->parts().size())
                std::abort();
            renderer.image(pose, step + 1, 0.25);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const qsizetype middle = bytes.indexOf('\0');
    const agent::CharacterSource source{ QJsonDocument::fromJson(bytes.left(middle)).object(),
                                         bytes.mid(middle + 1) };
    try {
        perform(std::make_shared<const agent::CharacterFile>(agent::contentOf(source)));
    } catch (const agent::Error &) {
    }
    try {
        agent::unpacked(bytes);
    } catch (const agent::Error &) {
    }
    return 0;
}
