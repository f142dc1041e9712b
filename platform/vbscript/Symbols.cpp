#include "platform/vbscript/Symbols.h"

#include "platform/vbscript/Memory.h"

namespace vbs {

namespace {

qint64 chargeOf(qsizetype length) { return qint64(sizeof(Symbol)) + 4 * length + 64; }

}

SymbolTable::~SymbolTable()
{
    for (const auto &symbol : m_symbols)
        memory::release(chargeOf(symbol->text.size()));
}

Symbol *SymbolTable::intern(QStringView text)
{
    const QString folded = text.toString().toCaseFolded();
    if (Symbol *known = m_byName.value(folded))
        return known;
    // Symbols live as long as the engine: a script that invents names without end must meet the memory limit.
    memory::charge(chargeOf(text.size()));
    m_symbols.push_back(std::make_unique<Symbol>(Symbol { text.toString(), folded }));
    m_symbols.back()->id = int(m_symbols.size() - 1);
    m_byName.insert(folded, m_symbols.back().get());
    return m_symbols.back().get();
}

}
