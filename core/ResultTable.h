#pragma once

#include <QSet>
#include <QStringList>

/** A two-dimensional text array indexed (column, row) from 0, grown by one row at a time.
    Without rows it is an array without bounds. */
class ResultTable
{
public:
    explicit ResultTable(int columns) : m_columns(columns) {}

    void addRow(const QStringList &cells)
    {
        Q_ASSERT(cells.size() == m_columns);
        m_cells += cells;
    }
    int columns() const { return m_columns; }
    int rows() const { return int(m_cells.size() / m_columns); }
    QStringList row(int row) const { return m_cells.mid(row * m_columns, m_columns); }
    const QString &at(int column, int row) const { return m_cells.at(row * m_columns + column); }
    void set(int column, int row, const QString &text) { m_cells[row * m_columns + column] = text; }
    void clear() { m_cells.clear(); }
    /** The rows whose cell in a column is one of the texts. */
    ResultTable rowsWith(int column, const QSet<QString> &texts) const
    {
        ResultTable kept(m_columns);
        for (int r = 0; r < rows(); ++r) {
            if (texts.contains(at(column, r)))
                kept.addRow(row(r));
        }
        return kept;
    }
    bool operator==(const ResultTable &) const = default;

private:
    int m_columns;
    QStringList m_cells;
};

/** Whether the array was ever dimensioned, that is, holds at least one row. */
inline bool ArrayHasBounds(const ResultTable &table) { return table.rows() > 0; }
