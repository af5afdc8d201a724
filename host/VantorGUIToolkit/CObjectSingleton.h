#pragma once
// The GUI toolkit's lazily created singleton for module objects.
// Instance() may be called from any thread (a search task, the GUI thread):
// the first call creates the object under a boost::mutex, later calls read an
// atomic pointer. The object lives until the library that instantiated the
// template is unloaded, when a static clean-up object deletes it.
#include <atomic>
#include <boost/thread/locks.hpp>
#include <boost/thread/mutex.hpp>

namespace VantorGUIToolkit {

template <typename T>
class CObjectSingleton {
public:
    static T* Instance()
    {
        T* p = s_instance.load(std::memory_order_acquire);
        if (p != nullptr)
            return p;
        boost::unique_lock<boost::mutex> lock(s_mutex);
        p = s_instance.load(std::memory_order_relaxed);
        if (p == nullptr) {
            p = new T();
            s_instance.store(p, std::memory_order_release);
            static Cleanup cleanup;
            (void)cleanup;
        }
        return p;
    }

    CObjectSingleton() = delete;

private:
    struct Cleanup {
        ~Cleanup() { delete s_instance.exchange(nullptr); }
    };
    static std::atomic<T*> s_instance;
    static boost::mutex s_mutex;
};

template <typename T>
std::atomic<T*> CObjectSingleton<T>::s_instance{nullptr};
template <typename T>
boost::mutex CObjectSingleton<T>::s_mutex;

} // namespace VantorGUIToolkit
