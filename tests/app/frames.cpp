#include "app/frames.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <stdexcept>

namespace app {

Frames::Frames(const std::string& path) : path_(path) {
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    void* bytes = MAP_FAILED;
    if (file >= 0 && ftruncate(file, sizeof(FrameCount)) == 0) {
        bytes = mmap(nullptr, sizeof(FrameCount), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    }
    close(file);
    if (bytes == MAP_FAILED) {
        throw std::runtime_error("no counts in " + path);
    }
    count_ = static_cast<FrameCount*>(bytes);
}

Frames::~Frames() {
    munmap(count_, sizeof(FrameCount));
}

void Frames::startAnew() {
    count_->begun = 0;
    count_->finished = 0;
    count_->held = 0;
}

}  // namespace app
