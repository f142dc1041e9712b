#include "platform/jet/Pages.h"

namespace jet {

RowState Page::state(int row) const
{
    switch (entry(row) & 0xc000) {
    case 0x8000:
        return RowState::MovedHere;
    case 0x4000:
        return RowState::Moved;
    case 0xc000:
        return RowState::Deleted;
    default:
        return RowState::Normal;
    }
}

QByteArray Page::row(int row) const
{
    constexpr int kOffsetMask = 0x1fff;
    const int begin = entry(row) & kOffsetMask;
    const int end = row == 0 ? int(m_bytes.size()) : entry(row - 1) & kOffsetMask;
    return m_bytes.part(begin, end - begin);
}

std::optional<QByteArray> rowAt(MdbHandle &mdb, quint32 pointer)
{
    if (!mdb_read_alt_pg(&mdb, pointer >> 8))
        return std::nullopt;
    const Page page(mdb, mdb.alt_pg_buf);
    const int row = int(pointer & 0xff);
    if (!page.isData() || row >= page.rowCount())
        return std::nullopt;
    try {
        return page.row(row);
    } catch (const std::out_of_range &) {
        return std::nullopt;
    }
}

} // namespace jet
