#include "SQLWorker.h"

#include <QElapsedTimer>
#include <QMetaObject>

#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>

namespace qdb {

SQLWorker::SQLWorker() : context_(new QObject)
{
    thread_.setObjectName(QStringLiteral("qdb-sql"));
    context_->moveToThread(&thread_);
    QObject::connect(&thread_, &QThread::finished, context_, &QObject::deleteLater);
    thread_.start();
}

SQLWorker::~SQLWorker()
{
    thread_.quit();
    thread_.wait();
}

void SQLWorker::Run(const std::function<void()> &job, const std::function<void(int)> &tick)
{
    struct Shared
    {
        std::mutex mutex;
        std::condition_variable finished;
        bool done = false;
        std::exception_ptr error;
    };
    auto shared = std::make_shared<Shared>();
    QMetaObject::invokeMethod(
        context_,
        [shared, job] {
            try {
                job();
            } catch (...) {
                shared->error = std::current_exception();
            }
            const std::lock_guard<std::mutex> lock(shared->mutex);
            shared->done = true;
            shared->finished.notify_all();
        },
        Qt::QueuedConnection);
    QElapsedTimer clock;
    clock.start();
    std::exception_ptr tickError; // kept until the job, which may use the caller's data, is over
    std::unique_lock<std::mutex> lock(shared->mutex);
    while (!shared->finished.wait_for(lock, std::chrono::milliseconds(50), [&] { return shared->done; })) {
        lock.unlock();
        try {
            if (tick && !tickError)
                tick(int(clock.elapsed()));
        } catch (...) {
            tickError = std::current_exception();
        }
        lock.lock();
    }
    if (shared->error)
        std::rethrow_exception(shared->error);
    if (tickError)
        std::rethrow_exception(tickError);
}

} // namespace qdb
