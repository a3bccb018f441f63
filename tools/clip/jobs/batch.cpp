#include "tools/clip/jobs/batch.h"

#include <pthread.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include "tools/clip/base/errors.h"

namespace maker {

namespace {

constexpr auto kPause = std::chrono::milliseconds(50);

// A signal ends what a thread waits for; by itself it comes to one thread only.
void wake(std::vector<std::jthread>& threads) {
    for (std::jthread& thread : threads) {
        pthread_kill(thread.native_handle(), SIGTERM);
    }
}

class Batch {
public:
    Batch(size_t tasks, size_t workers, const std::function<void(size_t)>& task)
        : task_(task), done_(tasks), working_(workers) {}

    // What each of the workers does.
    void work() {
        for (size_t mine = take(); mine < done_.size(); mine = take()) {
            std::exception_ptr failure;
            try {
                task_(mine);
            } catch (...) {
                failure = std::current_exception();
            }
            const std::lock_guard lock(mutex_);
            done_[mine] = !failure;
            failure_ = failure_ ? failure_ : failure;
            changed_.notify_all();
        }
        const std::lock_guard lock(mutex_);
        --working_;
        changed_.notify_all();
    }

    // Waits a little while.
    void wait(size_t task) {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, kPause, [this, task] { return done_[task] || failure_; });
    }

    // The same for the end of all work; whether it has come.
    bool waitForEnd() {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, kPause, [this] { return working_ == 0; });
    }

    bool failed() {
        const std::lock_guard lock(mutex_);
        return failure_ != nullptr;
    }

    bool isDone(size_t task) {
        const std::lock_guard lock(mutex_);
        return done_[task];
    }
    void rethrow() const {
        if (failure_) {
            std::rethrow_exception(failure_);
        }
    }

private:
    size_t take() {
        const std::lock_guard lock(mutex_);
        return failure_ ? done_.size() : next_ < done_.size() ? next_++ : next_;
    }

    const std::function<void(size_t)>& task_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<bool> done_;
    size_t working_;  // workers
    size_t next_ = 0;
    std::exception_ptr failure_;
};

}  // namespace

void runInOrder(size_t tasks, int workers, const std::function<void(size_t)>& task,
                const std::function<void(size_t)>& report) {
    const size_t count = std::min(tasks, static_cast<size_t>(std::max(workers, 1)));
    if (count <= 1) {
        for (size_t i = 0; i < tasks; ++i) {
            task(i);
            report(i);
        }
        return;
    }
    Batch batch(tasks, count, task);
    size_t reported = 0;
    {
        std::vector<std::jthread> threads;
        for (size_t i = 0; i < count; ++i) {
            threads.emplace_back([&batch] { batch.work(); });
        }
        while (reported < tasks && !batch.failed()) {
            batch.wait(reported);
            if (batch.isDone(reported)) {
                report(reported++);
            } else if (interrupted()) {
                wake(threads);
            }
        }
        while (!batch.waitForEnd()) {
            if (interrupted()) {
                wake(threads);
            }
        }
    }
    for (; reported < tasks; ++reported) {
        if (batch.isDone(reported)) {
            report(reported);
        }
    }
    batch.rethrow();
}

int defaultWorkers() {
    return static_cast<int>(std::max(std::thread::hardware_concurrency(), 1U));
}

}  // namespace maker
