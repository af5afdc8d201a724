#pragma once
// Fan-out of serialised events to the connected alert-stream clients, and the
// generator thread that produces random events at the configured rate.
// Thread-safe; the generator is owned and joined by stop().
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <thread>

#include "EventFactory.h"

namespace devicesim {

class AlertHub final {
public:
    struct Subscriber {
        std::mutex mutex;
        std::condition_variable cv;
        std::deque<Chunks> queue;
        bool dropped = false;
    };

    std::shared_ptr<Subscriber> subscribe();
    void unsubscribe(const std::shared_ptr<Subscriber>& sub);
    // Waits up to timeout for the next event; false when none (or dropped).
    static bool next(Subscriber& sub, Chunks& out, std::chrono::milliseconds timeout);
    void publish(const Chunks& ev);
    // Ends every current stream (the clients see the connection close).
    void dropAll();
    size_t subscribers();
    unsigned long long published() const { return m_published; }

    // Generator: calls make() about rate times per second while clients are connected.
    void startGenerator(std::function<void()> make);
    void setRate(double rate) { m_rate = rate; }
    double rate() const { return m_rate; }
    void stop();

private:
    std::mutex m_mutex;
    std::list<std::shared_ptr<Subscriber>> m_subs;
    std::atomic<unsigned long long> m_published{0};
    std::atomic<double> m_rate{2.0};
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

} // namespace devicesim
