#pragma once

#include "platform/vbscript/Code.h"
#include "platform/vbscript/Object.h"

namespace vbs {

class Engine;

/** An object of a class that a script defines. */
class Instance final : public Object
{
public:
    Instance(Engine &engine, std::shared_ptr<ClassDefinition> definition);
    ~Instance() override;

    ClassDefinition &definition() const { return *m_definition; }
    Value *fields() const { return m_fields; }
    bool beginTerminate() { return !std::exchange(m_terminated, true); }
    void forgetEngine() { m_engine = nullptr; }
    void clearFields();
    Instance *next() const { return m_next; }

    QString typeName() const override { return m_definition->name->text; }
    int findMember(QStringView name) const override;
    bool hasDefaultMember() const override { return m_definition->defaultMember; }
    Value invoke(int member, Access access, Args &args) override;
    void lastReleased() override;

private:
    Engine *m_engine;
    std::shared_ptr<ClassDefinition> m_definition;
    Value *m_fields = nullptr;
    bool m_terminated = false;
    Instance *m_previous = nullptr; // all instances of an engine form a list
    Instance *m_next = nullptr;
};

/** What GetRef returns, and what stands for a procedure wherever a value is needed. */
class ProcedureReference final : public Object
{
public:
    ProcedureReference(Engine &engine, std::shared_ptr<Procedure> procedure)
        : m_engine(engine), m_procedure(std::move(procedure)) {}
    Procedure *procedure() const { return m_procedure.get(); }

    QString typeName() const override;
    int findMember(QStringView) const override { return kNoMember; }
    bool hasDefaultMember() const override { return true; }
    Value invoke(int member, Access access, Args &args) override;

private:
    Engine &m_engine;
    std::shared_ptr<Procedure> m_procedure;
};

}
