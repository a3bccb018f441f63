#pragma once
// Many tasks on a few threads.
//
// Tasks are numbered from 0, begun in this order, and reported in this order by the calling thread,
// each as soon as it and all before it are done. The first exception that leaves a task ends the
// batch: what is under way is finished, nothing is begun any more, what is done is reported, and
// the exception is thrown again. An interrupt (errors.h) reaches tasks that wait for input.

#include <cstddef>
#include <functional>

namespace maker {

void runInOrder(size_t tasks, int workers, const std::function<void(size_t)>& task,
                const std::function<void(size_t)>& report);

// As many as the machine has cores.
int defaultWorkers();

}  // namespace maker
