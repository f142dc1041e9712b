#include "platform/vbscript/Symbols.h"

#include "platform/vbscript/Memory.h"

namespace vbs {

Symbol *SymbolTable::intern(QStringView text)
{
    const QString folded = text.toString().toCaseFolded();
    if (Symbol *known = m_byName.value(folded))
        return known;
    // Symbols live as long as the engine: a script that invents names without end must meet the memory limit.
    memory::charge(qint64(sizeof(Symbol)) + 4 * text.size() + 64);
    m_symbols.push_back(std::make_unique<Symbol>(Symbol { text.toString(), folded }));
    m_symbols.back()->id = int(m_symbols.size() - 1);
    m_byName.insert(folded, m_symbols.back().get());
    return m_symbols.back().get();
}

}
