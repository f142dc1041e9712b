#pragma once

#include "platform/vbscript/Object.h"

#include <QStringList>
#include <span>

namespace vbs {

/** The WScript object of the command: output, arguments, ending, waiting. */
class WScript final : public NativeObject<WScript>
{
public:
    WScript(QString fileName, QStringList arguments);
    static std::span<const Member<WScript>> members();
    QString typeName() const override { return QStringLiteral("Object"); }

private:
    Value echo(Args &args);
    Value quit(Args &args);
    Value sleep(Args &args);
    Value createObject(Args &args) { return args.host().createObject(args.text(0)); }
    Value scriptName(Args &);
    Value scriptFullName(Args &);
    Value arguments(Args &) { return m_arguments; }
    Value output(Args &) { return m_output; }
    Value errors(Args &) { return m_errors; }
    Value input(Args &) { return m_input; }
    Value name(Args &) { return Value::string(u"kavro-vbs"); }
    Value version(Args &) { return Value::string(u"5.8"); }
    Value interactive(Args &) { return Value::boolean(false); }
    void setInteractive(Args &) {} // nothing is ever shown, whatever the script asks for

    QString m_fileName;
    Value m_arguments;
    Value m_output;
    Value m_errors;
    Value m_input;
};

}
