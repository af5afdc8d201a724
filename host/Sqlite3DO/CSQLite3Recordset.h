#pragma once
// The rows of one query, read whole when the statement runs; a cursor walks them.
#include <string>
#include <vector>

class CSQLite3Recordset {
public:
    void Clear();
    bool IsEOF() const { return m_current >= m_rows.size(); }
    void MoveNext() { if (!IsEOF()) ++m_current; }
    size_t RowCount() const { return m_rows.size(); }
    int FieldCount() const { return static_cast<int>(m_columns.size()); }
    const std::vector<std::string>& ColumnNames() const { return m_columns; }

    // Field of the current row by position. Out of range or NULL: 0 / empty.
    long long GetInt64(int column) const;
    int GetInt(int column) const { return static_cast<int>(GetInt64(column)); }
    std::string GetString(int column) const;
    bool IsNull(int column) const;

    // Filled by CSQLite3Conn.
    void SetColumns(std::vector<std::string> names) { m_columns = std::move(names); }
    void AppendRow(std::vector<std::string> values, std::vector<bool> nulls);

private:
    const std::string* field(int column) const;
    std::vector<std::string> m_columns;
    std::vector<std::vector<std::string>> m_rows;
    std::vector<std::vector<bool>> m_nulls;
    size_t m_current = 0;
};
