#include "platform/vbscript/Instance.h"

#include "platform/vbscript/Engine.h"
#include "platform/vbscript/Memory.h"

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace vbs {

Instance::Instance(Engine &engine, std::shared_ptr<ClassDefinition> definition)
    : m_engine(&engine), m_definition(std::move(definition))
{
    const size_t count = size_t(m_definition->fieldCount);
    memory::charge(memory::blockSize(qint64(count * sizeof(Value))));
    m_fields = static_cast<Value *>(std::calloc(count ? count : 1, sizeof(Value)));
    m_next = engine.instances();
    if (m_next)
        m_next->m_previous = this;
    engine.instances() = this;
}

Instance::~Instance()
{
    if (m_next)
        m_next->m_previous = m_previous;
    if (m_previous)
        m_previous->m_next = m_next;
    else if (m_engine)
        m_engine->instances() = m_next;
    clearFields();
    memory::release(memory::blockSize(qint64(sizeof(Value)) * m_definition->fieldCount));
    std::free(m_fields);
}

void Instance::clearFields()
{
    for (int i = 0; i < m_definition->fieldCount; ++i)
        m_fields[i] = Value();
}

int Instance::findMember(QStringView name) const
{
    Symbol *symbol = m_engine ? m_engine->symbols().find(name.toString().toCaseFolded()) : nullptr;
    return symbol && m_definition->members.contains(symbol) ? symbol->id : kNoMember;
}

Value Instance::invoke(int member, Access access, Args &args)
{
    if (!m_engine)
        throw ScriptError(err::kNoSuchMember);
    Symbol *name = member == kDefaultMember ? m_definition->defaultMember
                                            : m_engine->symbols().all()[size_t(member)].get();
    if (!name)
        throw ScriptError(err::kNoSuchMember, typeName());
    return m_engine->callMemberOf(this, name, access, args);
}

void Instance::lastReleased()
{
    if (m_engine && m_definition->terminate && beginTerminate()) {
        ++refs; // alive while Class_Terminate runs
        m_engine->terminate(this);
        if (--refs)
            return; // Class_Terminate has stored it somewhere
    }
    delete this;
}

QString ProcedureReference::typeName() const { return u"Object"_s; }

Value ProcedureReference::invoke(int, Access, Args &args)
{
    QList<Value> values;
    for (int i = 0; i < args.count(); ++i)
        values.append(args[i]);
    return m_engine.callProcedure(m_procedure.get(), nullptr, values);
}

}
