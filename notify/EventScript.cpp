#include "notify/EventScript.h"

#include "core/MainWindow.h"
#include "core/Trap.h"
#include "core/Waits.h"
#include "core/vbMain.h"
#include "platform/vbscript/ScriptControl.h"

using namespace Qt::StringLiterals;

namespace {

void logScriptError(const QString &what) { WriteLog("User script error:  "_L1 + what, u"Warning"_s, 0, 0); }

} // namespace

EventScript::EventScript(int limitMs) : m_limitMs(limitMs) {}

EventScript::~EventScript() = default;

Task<void> EventScript::ExecuteScript(QString event) { return Trap("ExecuteScript", execute(std::move(event))); }

Task<void> EventScript::execute(QString event)
{
    dao::Recordset rows = db().OpenRecordset("Select Script_Event, Script FROM tblScripts WHERE Script_Event ='"_L1
                                             + event + u'\'');
    CheckDatabaseErrors();
    if (rows.Eof())
        co_return;
    const QString script = rows.Field(u"Script"_s).text();
    rows.Close();
    co_await waits::Yield();
    vbMain().window->setStatusText("Executing User Script ("_L1 + event + ")..."_L1);
    ScriptControl &control = scriptControl();
    control.SetAllowUI(false);
    control.SetTimeout(m_limitMs);
    // Code of earlier runs stays in the engine; the same names replace the former ones.
    if (control.AddCode(script))
        control.Run(u"Main"_s);
}

ScriptControl &EventScript::scriptControl()
{
    if (ScriptControl1)
        return *ScriptControl1;
    ScriptControl1 = std::make_unique<ScriptControl>();
    connect(ScriptControl1.get(), &ScriptControl::Error, this,
            [this] { logScriptError(QString::number(ScriptControl1->Fault().number)); });
    connect(ScriptControl1.get(), &ScriptControl::Timeout, this, [] { logScriptError(u"timed out."_s); });
    return *ScriptControl1;
}
