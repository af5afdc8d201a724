#pragma once

// Hands work to a pool thread and its outcome back to the GUI thread the way
// QtConcurrent::run and a queued call do, but tells the thread sanitizer where
// the ordering between the two threads comes from.
//
// Why: a task built on the GUI thread is published to a pool thread, and its
// result back again, only through QThreadPool's and the event queue's locks.
// Those are futexes inside the Qt libraries, which are not instrumented, so the
// sanitizer sees the task's copy of its captures (and the result's copy) written
// on one thread and read on another with nothing in between, and reports every
// such hand-off as a race.
//
// Who calls it: every module site that runs a task on a pool (the shift report
// export, the settings retry, the returning-customer search, the picture
// loader's downloads) and the receivers that take the results.
//
// It adds no synchronisation of its own: in a normal build the annotations
// compile to nothing, and under the sanitizer they only state an ordering that
// Qt's locks already provide. Each hand-off uses a token of its own (a heap
// object the task and its receiver share), so two unrelated tasks are never
// ordered by it and a real race between them is still reported.

#include <QCoreApplication>
#include <QEvent>
#include <QException>
#include <QFuture>
#include <QFutureInterface>
#include <QRunnable>
#include <QThreadPool>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

#if defined(__SANITIZE_THREAD__)
#define BT_HANDOFF_ANNOTATE 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define BT_HANDOFF_ANNOTATE 1
#endif
#endif

#ifdef BT_HANDOFF_ANNOTATE
extern "C" void __tsan_acquire(void* addr);
extern "C" void __tsan_release(void* addr);
#endif

namespace BodyTemperature::handoff {

// Shared by one task and its receiver; kept alive by both.
using Token = std::shared_ptr<const void>;

inline Token NewToken()
{
    return std::make_shared<const char>('\0');
}

// Everything this thread wrote before is visible to whoever acquires the token after.
inline void Release(const void* token) noexcept
{
#ifdef BT_HANDOFF_ANNOTATE
    __tsan_release(const_cast<void*>(token));
#else
    (void)token;
#endif
}

inline void Acquire(const void* token) noexcept
{
#ifdef BT_HANDOFF_ANNOTATE
    __tsan_acquire(const_cast<void*>(token));
#else
    (void)token;
#endif
}

namespace detail {

template <typename R, typename F>
class Task final : public QFutureInterface<R>, public QRunnable {
public:
    Task(Token token, F function) : m_token(std::move(token)), m_function(std::move(function)) {}

    QFuture<R> Start(QThreadPool* pool)
    {
        this->setThreadPool(pool);
        this->setRunnable(this);
        this->reportStarted();
        QFuture<R> future = this->future();
        // The task's own address: the pool thread knows it before it may read a member.
        // Past this line the pool thread may run, finish and delete the task.
        Release(this);
        pool->start(this);
        return future;
    }

    void run() override
    {
        Acquire(this);
        if (!this->isCanceled()) {
#ifndef QT_NO_EXCEPTIONS
            try {
#endif
                if constexpr (std::is_void_v<R>) {
                    m_function();
                } else {
                    const R result = m_function();
                    this->reportResult(result);
                }
#ifndef QT_NO_EXCEPTIONS
            } catch (...) {
                this->reportException(QUnhandledException());
            }
#endif
        }
        // The receiver reads the result after the finish it is told about.
        if (m_token)
            Release(m_token.get());
        this->reportFinished();
    }

private:
    const Token m_token;
    F m_function;
};

class Delivery final : public QEvent {
public:
    static QEvent::Type EventType()
    {
        static const int type = QEvent::registerEventType();
        return static_cast<QEvent::Type>(type);
    }

    explicit Delivery(std::function<void()> function) : QEvent(EventType()), m_function(std::move(function)) {}
    // Dropped undelivered (its receiver destroyed first): still published by the post.
    ~Delivery() override { Acquire(this); }

    void Run() { m_function(); }

private:
    std::function<void()> m_function;
};

} // namespace detail

// QtConcurrent::run(pool, function): the task is published under its own address,
// and token is released at the task's end, after its result is stored; the receiver calls Acquire(token) before it reads
// the result (the watcher's finished handler, or after QFuture::isFinished()).
// A task whose outcome comes back by Post() alone passes no token.
template <typename F>
auto Run(QThreadPool* pool, Token token, F function) -> QFuture<std::invoke_result_t<F&>>
{
    using R = std::invoke_result_t<F&>;
    return (new detail::Task<R, F>(std::move(token), std::move(function)))->Start(pool);
}

// A queued call of function in receiver's thread; receiver's customEvent()
// passes its events to Deliver(). The event's own address is the token.
inline void Post(QObject* receiver, std::function<void()> function)
{
    auto* event = new detail::Delivery(std::move(function));
    Release(event);
    QCoreApplication::postEvent(receiver, event);
}

// True when event was a Post() and has run.
inline bool Deliver(QEvent* event)
{
    // Before its type is read: a Post() event was written on the posting thread.
    Acquire(event);
    if (event->type() != detail::Delivery::EventType())
        return false;
    static_cast<detail::Delivery*>(event)->Run();
    return true;
}

} // namespace BodyTemperature::handoff
