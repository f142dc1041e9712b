#pragma once

#include <QHash>
#include <QString>
#include <memory>
#include <vector>

namespace vbs {

struct Procedure;
struct ClassDefinition;

/** What a name means at global level. */
enum class GlobalKind : quint8 { None, Variable, Constant, Procedure, Class };

/** A name of one engine; names are equal without regard to case, so symbols are compared by address. */
struct Symbol
{
    QString text;   // as first written
    QString folded; // for look-ups in native objects
    GlobalKind kind = GlobalKind::None;
    bool declared = false; // Option Explicit accepts it
    int slot = -1;         // place among the global variables, -1: none yet
    int id = 0;            // position in the table
    std::shared_ptr<Procedure> procedure = {};
    std::shared_ptr<ClassDefinition> classDefinition = {};
};

/** All names that the scripts of one engine have used. */
class SymbolTable
{
public:
    SymbolTable() = default;
    ~SymbolTable();
    Q_DISABLE_COPY_MOVE(SymbolTable)
    Symbol *intern(QStringView text);
    Symbol *find(const QString &folded) const { return m_byName.value(folded); }
    const std::vector<std::unique_ptr<Symbol>> &all() const { return m_symbols; }

private:
    QHash<QString, Symbol *> m_byName;
    std::vector<std::unique_ptr<Symbol>> m_symbols;
};

}
