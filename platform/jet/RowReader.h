#pragma once

#include "platform/jet/JetFile.h"
#include "platform/jet/Pages.h"
#include "platform/jet/TextDecoder.h"

#include <vector>

namespace jet {

/** Takes the rows of one table apart. */
class RowReader
{
public:
    RowReader(MdbHandle &mdb, const MdbTableDef &table, bool isJet3, const TextDecoder &texts);

    Row read(const QByteArray &row) const;

private:
    struct Layout;
    Layout layout(const Bytes &row) const;
    std::vector<int> offsets3(const Bytes &row, qsizetype maskAt) const;
    std::vector<int> offsets4(const Bytes &row, qsizetype maskAt) const;
    Field field(const Bytes &row, const Layout &layout, const MdbColumn &column) const;
    Field fixedField(const Bytes &bytes, const MdbColumn &column) const;
    Field variableField(const QByteArray &bytes, const MdbColumn &column) const;

    MdbHandle &m_mdb;
    const MdbTableDef &m_table;
    bool m_isJet3;
    const TextDecoder &m_texts;
};

} // namespace jet
