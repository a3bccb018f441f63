// The frame double: the calls that the program makes once a frame, counted and passed on.
#include "app/frame_double.h"

#include <SDL.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>

namespace {

constexpr useconds_t kHeldPollUs = 500;

app::FrameCount* mapCount() {
    const char* path = getenv(app::kFrameFileVariable);
    const int file = path != nullptr ? open(path, O_RDWR | O_CLOEXEC) : -1;
    if (file < 0) {
        return nullptr;
    }
    void* bytes =
        mmap(nullptr, sizeof(app::FrameCount), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    close(file);
    return bytes != MAP_FAILED ? static_cast<app::FrameCount*>(bytes) : nullptr;
}

app::FrameCount* counts() {
    static app::FrameCount* const mapped = mapCount();
    return mapped;
}

struct AddressRange {
    uintptr_t begin = UINTPTR_MAX;
    uintptr_t end = 0;
};

// The program itself is the first object of the list.
int takeFirst(dl_phdr_info* object, size_t, void* range) {
    auto& taken = *static_cast<AddressRange*>(range);
    for (int i = 0; i < object->dlpi_phnum; ++i) {
        const ElfW(Phdr)& part = object->dlpi_phdr[i];
        if (part.p_type == PT_LOAD) {
            const uintptr_t begin = object->dlpi_addr + part.p_vaddr;
            taken.begin = begin < taken.begin ? begin : taken.begin;
            taken.end = begin + part.p_memsz > taken.end ? begin + part.p_memsz : taken.end;
        }
    }
    return 1;
}

// SDL calls the same functions for itself, in the middle of a frame too.
bool isProgram(const void* caller) {
    static const AddressRange program = [] {
        AddressRange range;
        dl_iterate_phdr(takeFirst, &range);
        return range;
    }();
    const auto address = reinterpret_cast<uintptr_t>(caller);
    return address >= program.begin && address < program.end;
}

void finishFrame() {
    counts()->finished.store(counts()->begun.load());
}

template <typename Function>
Function* nextOf(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

Uint8* SDL_GetKeyState(int* count) {
    static auto* const real = nextOf<Uint8*(int*)>("SDL_GetKeyState");
    if (counts() != nullptr && isProgram(__builtin_return_address(0))) {
        finishFrame();
        while (counts()->held.load() != 0) {
            usleep(kHeldPollUs);
        }
        counts()->begun.fetch_add(1);
    }
    return real(count);
}

void SDL_Delay(Uint32 ms) {
    static auto* const real = nextOf<void(Uint32)>("SDL_Delay");
    if (counts() != nullptr && isProgram(__builtin_return_address(0))) {
        finishFrame();
    }
    real(ms);
}

}  // extern "C"
