#pragma once
// What the machine has left: memory, room on the disk, power and coolness.

#include <cstdint>
#include <filesystem>
#include <optional>

#include "tools/doctor/remarks.h"

namespace doctor {

struct MachineFacts {
    std::optional<size_t> freeMemory;   // bytes that a program may still take
    std::optional<uint64_t> freeSpace;  // bytes on the disk of Velmora's folder
    std::optional<unsigned> throttled;  // bits of the Raspberry Pi's own watch; see the source
    std::optional<double> temperature;  // of the processor, in degrees Celsius
};

// Where the kernel tells.
struct MachinePlaces {
    std::filesystem::path memory = "/proc/meminfo";
    std::filesystem::path throttled = "/sys/devices/platform/soc/soc:firmware/get_throttled";
    std::filesystem::path temperature = "/sys/class/thermal/thermal_zone0/temp";
};

// What is not told stays empty.
MachineFacts machineAt(const MachinePlaces& places, const std::filesystem::path& folder);

// All but the memory, which the playlists are held against.
void judgeMachine(const MachineFacts& facts, Remarks& remarks);

}  // namespace doctor
