// Threads that run the tasks handed to them: urgent tasks before the
// others, each kind in the order given. The pool drops the tasks not yet
// started and joins its threads when it goes, so that no thread outlives
// the work it was made for.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace ads::host {

class WorkerPool {
public:
    using Task = std::function<void()>;

    explicit WorkerPool(size_t threads);
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    // A task must not throw.
    void Submit(Task task, bool urgent = false);

private:
    void Loop();
    void Stop();

    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<Task> urgent_;
    std::deque<Task> others_;
    bool closing_ = false;
    std::vector<std::thread> threads_;
};

}  // namespace ads::host
