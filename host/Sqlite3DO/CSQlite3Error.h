#pragma once
#include <stdexcept>
#include <string>

// Thrown by the SQLite wrapper for every failure: open, compile, step.
class CSQlite3Error : public std::runtime_error {
public:
    CSQlite3Error(int code, const std::string& message) : std::runtime_error(message), m_code(code) {}
    int Code() const { return m_code; }

private:
    int m_code;
};
