#include "platform/agent/Agent.h"

#include "platform/agent/VoiceGrammar.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

auto named(const QString &name)
{
    return [&name](const Command &command) { return command.name.compare(name, Qt::CaseInsensitive) == 0; };
}

} // namespace

void Commands::add(const Command &command)
{
    if (find(command.name))
        throw Error(ErrorNumber::CommandExists, u"The command %1 exists already."_s.arg(command.name));
    if (!command.voice.trimmed().isEmpty())
        VoiceGrammar check(command.voice); // throws when it is none
    m_all.append(command);
}

void Commands::remove(const QString &name)
{
    if (m_all.removeIf(named(name)) == 0)
        throw Error(ErrorNumber::UnknownCommand, u"There is no command %1."_s.arg(name));
}

const Command *Commands::find(const QString &name) const
{
    const auto found = std::find_if(m_all.cbegin(), m_all.cend(), named(name));
    return found == m_all.cend() ? nullptr : &*found;
}

} // namespace agent
