#include "worker_pool.h"

#include <utility>

namespace ads::host {

WorkerPool::WorkerPool(size_t threads) {
    try {
        for (size_t i = 0; i < threads; ++i) threads_.emplace_back([this] { Loop(); });
    } catch (...) {
        Stop();
        throw;
    }
}

WorkerPool::~WorkerPool() { Stop(); }

void WorkerPool::Submit(Task task, bool urgent) {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        (urgent ? urgent_ : others_).push_back(std::move(task));
    }
    wake_.notify_one();
}

void WorkerPool::Stop() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        closing_ = true;
        urgent_.clear();
        others_.clear();
    }
    wake_.notify_all();
    for (std::thread& t : threads_) {
        if (t.joinable()) t.join();
    }
}

void WorkerPool::Loop() {
    for (;;) {
        Task task;
        {
            std::unique_lock<std::mutex> lock(mutex_);
            wake_.wait(lock, [this] { return closing_ || !urgent_.empty() || !others_.empty(); });
            if (closing_) return;
            std::deque<Task>& queue = urgent_.empty() ? others_ : urgent_;
            task = std::move(queue.front());
            queue.pop_front();
        }
        task();
    }
}

}  // namespace ads::host
