#pragma once

#include "platform/vbscript/Engine.h"
#include "platform/vbscript/Instance.h"

namespace vbs {

/** One running procedure or text. */
struct Engine::Frame
{
    CodePointer code;
    const Instruction *pc = nullptr; // the instruction that runs, or that called the frame above
    Value *registers = nullptr;
    Value me;
    size_t scope = 0;                // frame whose variables Execute sees
    Operand target = place::kNone;   // where the caller wants the result
    bool isBottom = false;           // called by native code: its end ends the loop
    bool resumeNext = false;
    std::unique_ptr<Locals> extras;  // names that Execute has brought in

    Instance *instance() const { return static_cast<Instance *>(me.is(Type::Object) ? me.object() : nullptr); }
};

inline Value &Engine::at(Operand operand) const
{
    return m_place[operand >> place::kShift][operand & place::kIndexMask];
}

}
