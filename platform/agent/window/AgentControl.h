#pragma once

#include "platform/agent/Agent.h"
#include "platform/agent/window/Engines.h"

#include <QString>

#include <memory>
#include <vector>

namespace agent {

class AgentCharacter;

/** The agent control with characters on the screen. */
class AgentControl : public Control
{
    Q_OBJECT
public:
    /** Relative file names are looked up in the character folder. */
    explicit AgentControl(const QString &characterFolder, const Engines &engines = Engines::ofMachine(),
        QObject *parent = nullptr);
    ~AgentControl() override;

    Character &Load(const QString &id, const QString &file) override;
    void Unload(const QString &id) override;
    Character *find(const QString &id) override;

private:
    std::vector<std::unique_ptr<AgentCharacter>>::iterator place(const QString &id);

    QString m_folder;
    Engines m_engines;
    std::vector<std::unique_ptr<AgentCharacter>> m_characters;
};

} // namespace agent
