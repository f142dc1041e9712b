#include "platform/agent/window/AgentControl.h"

#include "platform/agent/window/AgentCharacter.h"
#include "platform/agent/window/Pulse.h"

#include <QApplication>
#include <QDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace agent {

AgentControl::AgentControl(const QString &characterFolder, const Engines &engines, QObject *parent)
    : Control(parent)
    , m_folder(characterFolder)
    , m_engines(engines)
{
}

AgentControl::~AgentControl()
{
    for (const auto &character : m_characters)
        character->retire();
}

std::vector<std::unique_ptr<AgentCharacter>>::iterator AgentControl::place(const QString &id)
{
    return std::find_if(m_characters.begin(), m_characters.end(),
        [&id](const auto &character) { return character->id().compare(id, Qt::CaseInsensitive) == 0; });
}

Character &AgentControl::Load(const QString &id, const QString &file)
{
    if (!qobject_cast<QApplication *>(QCoreApplication::instance()))
        throw Error(ErrorNumber::CannotStart, u"Characters need a screen."_s);
    if (find(id))
        throw Error(ErrorNumber::AlreadyLoaded, u"The character %1 is loaded already."_s.arg(id));
    // An absolute path stays as it is.
    auto loaded = CharacterFile::load(QDir(m_folder).absoluteFilePath(file));
    m_characters.push_back(std::make_unique<AgentCharacter>(id, std::move(loaded), m_engines, *this));
    return *m_characters.back();
}

void AgentControl::Unload(const QString &id)
{
    const auto found = place(id);
    if (found == m_characters.end())
        throw Error(ErrorNumber::UnknownCharacter, u"There is no character %1."_s.arg(id));
    AgentCharacter *character = found->release();
    m_characters.erase(found);
    character->retire();
    // It may be one of its own events from which it is unloaded.
    character->setParent(this);
    character->deleteLater();
}

Character *AgentControl::find(const QString &id)
{
    const auto found = place(id);
    return found == m_characters.end() ? nullptr : found->get();
}

} // namespace agent
