#pragma once

#include <QObject>
#include <QThread>

#include <functional>

namespace qdb {

// A thread that runs a connection's reads, so that the thread that asked can wait without
// being stuck in the database's call: the application may show that it waits and let the
// user cancel. Jobs run one at a time, in the order asked; a job asked for while waiting
// for another runs after it.
class SQLWorker
{
public:
    SQLWorker();
    ~SQLWorker();
    SQLWorker(const SQLWorker &) = delete;
    SQLWorker &operator=(const SQLWorker &) = delete;

    // Runs job in the worker thread and waits for it; tick(elapsed ms) is called about every
    // 50 ms meanwhile. What the job throws is thrown here.
    void Run(const std::function<void()> &job, const std::function<void(int)> &tick);

private:
    QThread thread_;
    QObject *context_; // lives in thread_
};

} // namespace qdb
