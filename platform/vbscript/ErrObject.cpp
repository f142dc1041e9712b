#include "platform/vbscript/ErrObject.h"

namespace vbs {

std::span<const Member<ErrObject>> ErrObject::members()
{
    using E = ErrObject;
    static constexpr Member<E> kMembers[] = {
        { "Number", 0, 0, &E::number, &E::setNumber, true },
        { "Description", 0, 0, &E::description, &E::setDescription },
        { "Source", 0, 0, &E::source, &E::setSource },
        { "HelpFile", 0, 0, &E::helpFile, &E::setHelpFile },
        { "HelpContext", 0, 0, &E::helpContext, &E::setHelpContext },
        { "Clear", 0, 0, &E::clear },
        { "Raise", 1, 5, &E::raise },
    };
    return kMembers;
}

Value ErrObject::clear(Args &)
{
    m_engine.err() = {};
    return {};
}

Value ErrObject::raise(Args &args)
{
    // The engine's own errors also have long numbers, as components know them.
    const qint32 given = args.integer(0);
    const int number = (quint32(given) & 0xffff0000u) == 0x800a0000u ? given & 0xffff : given;
    if (number == 0)
        throw ScriptError(err::kInvalidCall);
    // What is left out keeps what was set before, so that a script may fill Err and then raise it.
    const ErrState &state = m_engine.err();
    const QString kept = state.description.isEmpty() || state.number ? errorText(number) : state.description;
    const QString source = state.source.isEmpty() || state.number ? ScriptError(number).source() : state.source;
    ScriptError error = ScriptError::fromComponent(number, args.text(2, kept), args.text(1, source));
    error.setHelp(args.text(3, QString()), args.integer(4, 0));
    throw error;
}

}
