#pragma once
// Lazily created process-wide singleton.
// Instance() may be called from any thread: creation is double-checked under a
// boost::mutex. The instance lives until the library that instantiated the
// template is unloaded (a static clean-up object registered at first use
// deletes it). Host types whose single instance must be shared by every
// library of the process (AlarmTransfer, ...) specialise Instance() in their
// own host library instead of relying on this per-library storage.
#include <atomic>
#include <boost/thread/locks.hpp>
#include <boost/thread/mutex.hpp>

namespace Base {

template <typename T>
class CSingleton {
public:
    static T* Instance()
    {
        T* p = s_instance.load(std::memory_order_acquire);
        if (p == nullptr) {
            boost::unique_lock<boost::mutex> lock(s_mutex);
            p = s_instance.load(std::memory_order_relaxed);
            if (p == nullptr) {
                p = new T();
                s_instance.store(p, std::memory_order_release);
                static Cleanup cleanup;
                (void)cleanup;
            }
        }
        return p;
    }

    CSingleton() = delete;

private:
    struct Cleanup {
        ~Cleanup()
        {
            delete s_instance.exchange(nullptr);
        }
    };
    static std::atomic<T*> s_instance;
    static boost::mutex s_mutex;
};

template <typename T>
std::atomic<T*> CSingleton<T>::s_instance{nullptr};
template <typename T>
boost::mutex CSingleton<T>::s_mutex;

} // namespace Base
