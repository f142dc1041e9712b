#include "platform/agent/window/Engines.h"

#include "platform/agent/speech/SpeechPlayer.h"
#include "platform/agent/voice/Listener.h"
#include "platform/agent/window/Pulse.h"

namespace agent {

namespace {

/** The voice of a character's file. */
class CharacterSpeaker : public Speaker
{
public:
    explicit CharacterSpeaker(const Voice &voice)
        : m_voice(voice)
    {
        connect(&m_player, &SpeechPlayer::wordShown, this, &Speaker::wordShown);
        connect(&m_player, &SpeechPlayer::mouthChanged, this, &Speaker::mouthChanged);
        connect(&m_player, &SpeechPlayer::bookmark, this, &Speaker::bookmark);
        connect(&m_player, &SpeechPlayer::finished, this, &Speaker::finished);
    }
    void start(const QString &taggedText) override { m_player.start(taggedText, m_voice); }
    void stop() override { m_player.stop(); }
    QStringList words() const override { return m_player.words(); }

private:
    Voice m_voice;
    SpeechPlayer m_player;
};

class MicrophoneEar : public Ear
{
public:
    MicrophoneEar()
    {
        connect(&m_listener, &Listener::understood, this, &Ear::understood);
        connect(&m_listener, &Listener::failed, this, &Ear::failed);
    }
    void start(const Commands &commands) override { m_listener.start(commands); }
    void stop() override { m_listener.stop(); }

private:
    Listener m_listener;
};

} // namespace

Engines Engines::ofMachine()
{
    return { [](const CharacterFile &file) { return std::make_unique<CharacterSpeaker>(file.voice()); },
        [] { return std::make_unique<MicrophoneEar>(); }, [] { return std::make_unique<SystemPulse>(); } };
}

} // namespace agent
