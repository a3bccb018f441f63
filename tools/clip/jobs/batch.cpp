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

#include "tools/base/errors.h"

namespace maker {

namespace {

constexpr auto kPause = std::chrono::milliseconds(50);

// A signal ends what a thread waits for; by itself it comes to one thread only.
void wake(std::vector<std::jthread>& threads) {
    for (std::jthread& thread : threads) {
        pthread_kill(thread.native_handle(), SIGTERM);
    }
}

struct Batch {
    Batch(size_t tasks, size_t workers) : done(tasks), working(workers) {}

    std::mutex mutex;  // of all that follows
    std::condition_variable changed;
    std::vector<bool> done;
    size_t working;  // workers
    size_t next = 0;
    std::exception_ptr failure;
};

// What each of the workers does.
void work(Batch& batch, const std::function<void(size_t)>& task) {
    std::unique_lock lock(batch.mutex);
    while (!batch.failure && batch.next < batch.done.size()) {
        const size_t mine = batch.next++;
        std::exception_ptr failure;
        lock.unlock();
        try {
            task(mine);
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        batch.done[mine] = !failure;
        batch.failure = batch.failure ? batch.failure : failure;
        batch.changed.notify_all();
    }
    --batch.working;
    batch.changed.notify_all();
}

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
    Batch batch(tasks, count);
    std::vector<std::jthread> threads;
    for (size_t i = 0; i < count; ++i) {
        threads.emplace_back([&] { work(batch, task); });
    }
    size_t reported = 0;
    std::unique_lock lock(batch.mutex);
    while (batch.working > 0) {
        if (!batch.failure && reported < tasks && batch.done[reported]) {
            lock.unlock();
            report(reported++);
            lock.lock();
            continue;
        }
        batch.changed.wait_for(lock, kPause);
        if (interrupted()) {
            wake(threads);
        }
    }
    lock.unlock();
    for (; reported < tasks; ++reported) {
        if (batch.done[reported]) {
            report(reported);
        }
    }
    if (batch.failure) {
        std::rethrow_exception(batch.failure);
    }
}

int defaultWorkers() {
    return static_cast<int>(std::max(std::thread::hardware_concurrency(), 1U));
}

}  // namespace maker
