// Texts with speech tags and voice grammars: whatever they hold, reading them ends, soon and with everything shown.
#include "platform/agent/Agent.h"
#include "platform/agent/SpeechTags.h"
#include "platform/agent/VoiceGrammar.h"

#include <cstdlib>

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

void tryTags(const QString &text)
{
    const agent::SpeechText speech = agent::parseSpeech(text);
    qsizetype spoken = 0;
    int visible = 0;
    for (const agent::SpeechPiece &piece : speech.pieces) {
        require(piece.words >= visible && piece.words <= speech.words.size());
        require(piece.pause >= 0 && piece.pause <= 60'000 && piece.bookmark >= 0 && piece.state.volume <= 65535);
        visible = piece.words;
        spoken += piece.spoken.size();
    }
    require(visible == speech.words.size());
    require(spoken <= 10 * text.size());
    for (const QString &word : speech.words)
        require(!word.isEmpty() && word.simplified() == word);
    require(agent::speechAlternatives(text).join(QLatin1Char('|')) == text);
}

void tryGrammar(const QString &text)
{
    try {
        const agent::VoiceGrammar grammar(text);
        const QStringList words = grammar.words();
        grammar.matches(words);
        require(!grammar.matches({}));
        require(grammar.toJsgf(QStringLiteral("c"), QSet<QString>(words.cbegin(), words.cend())).isEmpty());
        const QString rule = grammar.toJsgf(QStringLiteral("c"));
        require(rule.startsWith(QLatin1String("<c> = ")) && rule.endsWith(QLatin1String(";\n")));
        for (const QChar sign : QStringLiteral("{}\"\\/=;<>")) {
            const qsizetype own = sign == QLatin1Char('<') || sign == QLatin1Char('>')
                ? 1 + rule.count(QLatin1String("<skipped>"))
                : (sign == QLatin1Char('=') || sign == QLatin1Char(';') ? 1 : 0);
            require(rule.count(sign) == own);
        }
    } catch (const agent::Error &error) {
        require(error.number() != agent::ErrorNumber::None && !error.text().isEmpty());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    tryTags(text);
    tryGrammar(text);
    return 0;
}
