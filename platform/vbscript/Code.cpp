#include "platform/vbscript/Code.h"

#include "platform/vbscript/Memory.h"

namespace vbs {

Code::Code() = default;

Code::~Code() { memory::release(charged); }

}
