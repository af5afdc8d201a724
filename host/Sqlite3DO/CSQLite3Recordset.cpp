#include "Sqlite3DO/CSQLite3Recordset.h"

#include <cstdlib>

void CSQLite3Recordset::Clear()
{
    m_columns.clear();
    m_rows.clear();
    m_nulls.clear();
    m_current = 0;
}

void CSQLite3Recordset::AppendRow(std::vector<std::string> values, std::vector<bool> nulls)
{
    m_rows.push_back(std::move(values));
    m_nulls.push_back(std::move(nulls));
}

const std::string* CSQLite3Recordset::field(int column) const
{
    if (IsEOF() || column < 0 || static_cast<size_t>(column) >= m_rows[m_current].size())
        return nullptr;
    return &m_rows[m_current][static_cast<size_t>(column)];
}

long long CSQLite3Recordset::GetInt64(int column) const
{
    const std::string* f = field(column);
    return f ? std::strtoll(f->c_str(), nullptr, 10) : 0;
}

std::string CSQLite3Recordset::GetString(int column) const
{
    const std::string* f = field(column);
    return f ? *f : std::string();
}

bool CSQLite3Recordset::IsNull(int column) const
{
    if (field(column) == nullptr)
        return true;
    return m_nulls[m_current][static_cast<size_t>(column)];
}
