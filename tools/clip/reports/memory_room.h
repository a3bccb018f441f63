#pragma once
// How much of a machine's memory the 50 clip slots and their clips may take. `velmora-clip check`
// asks for a machine that is elsewhere, the doctor for the one that it runs on, with all that is
// started already.

#include <cstddef>

namespace maker {

inline constexpr size_t kMebibyte = size_t{1} << 20;

// What a small system takes: kernel, its services, an X server. On the card for the Raspberry Pi,
// in an emulated machine, 106, 182 and 198 MiB of 512, 1024 and 2048 (scripts/check-image memory);
// a real one's graphics have some of the rest. With 1 GiB and more the kernel keeps more free by
// itself.
constexpr size_t systemMemory(size_t bytes) {
    return (bytes < 1024 * kMebibyte ? 122 : 200) * kMebibyte;
}
// The program without its slots: code, surfaces, libraries.
inline constexpr size_t kProgramMemory = 24 * kMebibyte;
// What packaging/play.sh leaves free, so that the system does not stall.
inline constexpr size_t kKeptMemory = 32 * kMebibyte;

// Of what is free before the program starts.
constexpr size_t roomForClips(size_t freeBytes) {
    constexpr size_t kTaken = kProgramMemory + kKeptMemory;
    return freeBytes > kTaken ? freeBytes - kTaken : 0;
}

// Of a machine with so much memory.
constexpr size_t roomOnMachine(size_t bytes) {
    const size_t taken = systemMemory(bytes);
    return bytes > taken ? roomForClips(bytes - taken) : 0;
}

}  // namespace maker
