#pragma once

#include "platform/vbscript/Engine.h"

#include <span>

namespace vbs {

/** The Err object. */
class ErrObject final : public NativeObject<ErrObject>
{
public:
    explicit ErrObject(Engine &engine) : m_engine(engine) {}
    static std::span<const Member<ErrObject>> members();
    QString typeName() const override { return QStringLiteral("Object"); }

private:
    Value number(Args &) { return Value::longInteger(m_engine.err().number); }
    void setNumber(Args &args) { m_engine.err().number = toLong(args.host(), args.newValue()); }
    Value description(Args &) { return Value::string(m_engine.err().description); }
    void setDescription(Args &args) { m_engine.err().description = toText(args.host(), args.newValue()); }
    Value source(Args &) { return Value::string(m_engine.err().source); }
    void setSource(Args &args) { m_engine.err().source = toText(args.host(), args.newValue()); }
    Value helpFile(Args &) { return Value::string(m_engine.err().helpFile); }
    void setHelpFile(Args &args) { m_engine.err().helpFile = toText(args.host(), args.newValue()); }
    Value helpContext(Args &) { return Value::longInteger(m_engine.err().helpContext); }
    void setHelpContext(Args &args) { m_engine.err().helpContext = toLong(args.host(), args.newValue()); }
    Value clear(Args &);
    Value raise(Args &args);

    Engine &m_engine;
};

}
