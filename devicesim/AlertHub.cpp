#include "AlertHub.h"

namespace devicesim {

namespace {
// A client that stops reading must not make the emulator grow without end;
// the bound is high because a burst for measurements queues many events that
// share their picture bytes.
constexpr size_t kMaxQueued = 200000;
}

std::shared_ptr<AlertHub::Subscriber> AlertHub::subscribe()
{
    auto sub = std::make_shared<Subscriber>();
    std::lock_guard<std::mutex> lock(m_mutex);
    m_subs.push_back(sub);
    return sub;
}

void AlertHub::unsubscribe(const std::shared_ptr<Subscriber>& sub)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_subs.remove(sub);
}

bool AlertHub::next(Subscriber& sub, Chunks& out, std::chrono::milliseconds timeout)
{
    std::unique_lock<std::mutex> lock(sub.mutex);
    sub.cv.wait_for(lock, timeout, [&] { return sub.dropped || !sub.queue.empty(); });
    if (sub.dropped || sub.queue.empty())
        return false;
    out = std::move(sub.queue.front());
    sub.queue.pop_front();
    return true;
}

void AlertHub::publish(const Chunks& ev)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    for (auto& sub : m_subs) {
        std::lock_guard<std::mutex> l(sub->mutex);
        if (sub->queue.size() >= kMaxQueued)
            sub->queue.pop_front();
        sub->queue.push_back(ev);
        sub->cv.notify_one();
    }
    ++m_published;
}

void AlertHub::dropAll()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    for (auto& sub : m_subs) {
        std::lock_guard<std::mutex> l(sub->mutex);
        sub->dropped = true;
        sub->cv.notify_all();
    }
}

size_t AlertHub::subscribers()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_subs.size();
}

void AlertHub::startGenerator(std::function<void()> make)
{
    m_thread = std::thread([this, make]() {
        auto next = std::chrono::steady_clock::now();
        while (!m_stop) {
            const double rate = m_rate;
            if (rate <= 0 || subscribers() == 0) {
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
                next = std::chrono::steady_clock::now();
                continue;
            }
            const auto now = std::chrono::steady_clock::now();
            if (now < next) {
                std::this_thread::sleep_for(std::min<std::chrono::steady_clock::duration>(next - now,
                    std::chrono::milliseconds(50)));
                continue;
            }
            make();
            next += std::chrono::microseconds(static_cast<long long>(1e6 / rate));
            if (std::chrono::steady_clock::now() - next > std::chrono::seconds(1))
                next = std::chrono::steady_clock::now();
        }
    });
}

void AlertHub::stop()
{
    m_stop = true;
    dropAll();
    if (m_thread.joinable())
        m_thread.join();
}

} // namespace devicesim
