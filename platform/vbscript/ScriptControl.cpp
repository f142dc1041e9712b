#include "platform/vbscript/ScriptControl.h"

#include "platform/vbscript/Engine.h"

namespace {

constexpr int kDefaultTimeout = 10000;

}

ScriptControl::ScriptControl(QObject *parent) : QObject(parent), m_engine(std::make_unique<vbs::Engine>())
{
    SetTimeout(kDefaultTimeout);
}

ScriptControl::~ScriptControl() = default;

void ScriptControl::SetAllowUI(bool allow) { m_engine->setUserInterfaceAllowed(allow); }

void ScriptControl::SetTimeout(int milliseconds) { m_engine->setTimeLimit(milliseconds); }

void ScriptControl::Reset() { m_engine->reset(); }

template <class Action>
bool ScriptControl::guarded(Action action)
{
    m_fault = {};
    try {
        action();
        return true;
    } catch (const vbs::ScriptError &error) {
        m_fault = { error.number(), error.message(), error.source(), error.line(), error.column() };
        emit Error();
    } catch (const vbs::ScriptTimeout &) {
        emit Timeout();
    } catch (const vbs::ScriptQuit &) {
        return true; // the script has ended itself
    }
    return false;
}

bool ScriptControl::AddCode(const QString &code)
{
    return guarded([&] { m_engine->addCode(code); });
}

bool ScriptControl::Run(const QString &procedure)
{
    return guarded([&] { m_engine->runProcedure(procedure); });
}
