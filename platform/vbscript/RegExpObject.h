#pragma once

#include "platform/vbscript/Memory.h"
#include "platform/vbscript/Object.h"
#include "platform/vbscript/Regex.h"

#include <memory>
#include <span>

namespace vbs {

/** The RegExp object. */
class RegExpObject final : public NativeObject<RegExpObject>
{
public:
    static std::span<const Member<RegExpObject>> members();
    QString typeName() const override { return QStringLiteral("IRegExp2"); }

private:
    Value pattern(Args &) { return Value::string(m_pattern); }
    void setPattern(Args &args);
    Value global(Args &) { return Value::boolean(m_global); }
    void setGlobal(Args &args) { m_global = toBoolean(args.host(), args.newValue()); }
    Value ignoreCase(Args &) { return Value::boolean(m_options.ignoreCase); }
    void setIgnoreCase(Args &args);
    Value multiLine(Args &) { return Value::boolean(m_options.multiLine); }
    void setMultiLine(Args &args);
    Value test(Args &args);
    Value execute(Args &args);
    Value replace(Args &args);
    const Regex &compiled();

    QString m_pattern;
    bool m_global = false;
    Regex::Options m_options;
    memory::Charge m_charge;        // for m_regex
    std::unique_ptr<Regex> m_regex; // null: to be compiled
};

}
