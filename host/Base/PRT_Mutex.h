#pragma once
// Portable-runtime lock used around statements of a shared connection.
// Recursive, so an operation may hold it across several statements that each
// take it again (a delete-and-insert must never interleave with another).
#include <mutex>

class PRT_Mutex {
public:
    void Lock() { m_mutex.lock(); }
    void Unlock() { m_mutex.unlock(); }

private:
    std::recursive_mutex m_mutex;
};

class PRT_Guard {
public:
    explicit PRT_Guard(PRT_Mutex& m) : m_mutex(m) { m_mutex.Lock(); }
    ~PRT_Guard() { m_mutex.Unlock(); }
    PRT_Guard(const PRT_Guard&) = delete;
    PRT_Guard& operator=(const PRT_Guard&) = delete;

private:
    PRT_Mutex& m_mutex;
};
