#include "platform/vbscript/Object.h"

#include "platform/vbscript/Memory.h"

#include <cstdlib>

namespace vbs {

Object::~Object() = default;

void *Object::operator new(std::size_t size)
{
    memory::charge(memory::blockSize(qint64(size)));
    return ::operator new(size);
}

void Object::operator delete(void *block, std::size_t size)
{
    memory::release(memory::blockSize(qint64(size)));
    ::operator delete(block);
}

std::unique_ptr<Enumerator> Object::enumerate(ScriptHost &)
{
    throw ScriptError(err::kNotCollection);
}

void Args::assign(int index, const Value &value)
{
    if (index < m_count && m_values[index].isReference())
        m_values[index].resolved() = value;
}

const Value &Args::missing()
{
    static const Value value = Value::missing();
    return value;
}

}
