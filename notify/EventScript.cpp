#include "notify/EventScript.h"

#include "core/MainWindow.h"
#include "core/Trap.h"
#include "core/Waits.h"
#include "core/vbMain.h"
#include "platform/vbscript/Ast.h"
#include "platform/vbscript/ScriptControl.h"
#include "platform/vbscript/ScriptError.h"
#include "platform/vbscript/Symbols.h"

using namespace Qt::StringLiterals;

namespace {

void logScriptError(const QString &what) { WriteLog("User script error:  "_L1 + what, u"Warning"_s, 0, 0); }

dao::Recordset scriptRows(const QString &event)
{
    dao::Recordset rows = db().OpenRecordset("Select Script_Event, Script FROM tblScripts WHERE Script_Event ='"_L1
                                             + event + u'\'');
    CheckDatabaseErrors();
    return rows;
}

bool isMain(const vbs::ProcedureAst *procedure)
{
    return procedure->name->text.compare("Main"_L1, Qt::CaseInsensitive) == 0;
}

} // namespace

std::optional<QString> StoredScript(const QString &event)
{
    dao::Recordset rows = scriptRows(event);
    if (rows.Eof())
        return {};
    return rows.Field(u"Script"_s).text();
}

void StoreScript(const QString &event, const QString &script)
{
    dao::Recordset rows = scriptRows(event);
    if (rows.Eof())
        rows.AddNew();
    else
        rows.Edit();
    rows.Set(u"Script_Event"_s, event);
    rows.Set(u"Script"_s, script);
    rows.Update();
    CheckDatabaseErrors();
}

QString ScriptProblem(const QString &script)
{
    vbs::SymbolTable names;
    try {
        const std::shared_ptr<vbs::Unit> unit = vbs::parseScript(script, names);
        const bool hasMain = std::any_of(unit->procedures.begin(), unit->procedures.end(), isMain);
        return hasMain ? QString() : u"There is no procedure Main."_s;
    } catch (const vbs::ScriptError &error) {
        return u"Line %1: %2."_s.arg(error.line()).arg(error.message());
    }
}

EventScript::EventScript(int limitMs) : m_limitMs(limitMs) {}

EventScript::~EventScript() = default;

Task<void> EventScript::ExecuteScript(QString event) { return Trap("ExecuteScript", execute(std::move(event))); }

Task<void> EventScript::execute(QString event)
{
    const std::optional<QString> stored = StoredScript(event);
    if (!stored)
        co_return;
    const QString script = *stored;
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
