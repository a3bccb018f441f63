#include "tools/doctor/machine.h"

#include <fstream>
#include <limits>
#include <string>

#include "tools/base/texts.h"

namespace doctor {

namespace fs = std::filesystem;

namespace {

// The firmware's bits: what is so now, and sixteen bits higher what was so since the start.
constexpr unsigned kPowerLow = 1U << 0;
constexpr unsigned kSlowed = 1U << 2 | 1U << 3;  // for want of power, or for heat
constexpr int kSinceStart = 16;

constexpr uint64_t kNoRoom = 4'000'000;
constexpr uint64_t kLittleRoom = 200'000'000;
constexpr double kHot = 80;

std::optional<size_t> freeMemoryIn(const fs::path& file) {
    std::ifstream stream(file);
    std::string word;
    size_t kibibytes = 0;
    while (stream >> word) {
        if (word == "MemAvailable:" && stream >> kibibytes) {
            return kibibytes * 1024;
        }
    }
    return std::nullopt;
}

void judgePower(unsigned bits, Remarks& remarks) {
    const std::string mend = "Take the power supply that belongs to the board, and a short cable.";
    if ((bits & kPowerLow) != 0) {
        remarks.hurts("power", "the voltage is too low", mend);
    } else if ((bits & kPowerLow << kSinceStart) != 0) {
        remarks.note("power", "the voltage was too low since the machine started", mend);
    }
    if ((bits & kSlowed) != 0) {
        remarks.hurts("power", "the processor has been slowed down, for heat or want of power",
                      "Let it cool down; a fan or a heat sink keeps it fast.");
    } else if ((bits & kSlowed << kSinceStart) != 0) {
        remarks.note("power", "the processor was slowed down since the machine started",
                     "A fan or a heat sink keeps it fast.");
    }
    if (bits == 0) {
        remarks.fine("power", "enough of it since the machine started");
    }
}

}  // namespace

MachineFacts machineAt(const MachinePlaces& places, const fs::path& folder) {
    MachineFacts facts;
    facts.freeMemory = freeMemoryIn(places.memory);
    std::error_code error;
    const fs::space_info space = fs::space(folder, error);
    if (!error) {
        facts.freeSpace = space.available;
    }
    unsigned bits = 0;
    if (std::ifstream(places.throttled) >> std::hex >> bits) {
        facts.throttled = bits;
    }
    double thousandths = 0;
    if (std::ifstream(places.temperature) >> thousandths) {
        facts.temperature = thousandths / 1000;
    }
    return facts;
}

void judgeMachine(const MachineFacts& facts, Remarks& remarks) {
    if (facts.freeSpace) {
        const uint64_t room = *facts.freeSpace;
        const std::string free = maker::megabytes(room, 0) + " are free";
        if (room < kNoRoom) {
            remarks.hurts("disk", "it is full: nothing can be saved", "Delete what is not needed.");
        } else if (room < kLittleRoom) {
            remarks.note("disk", free + ", which a few clips fill");
        } else {
            remarks.fine("disk", free);
        }
    }
    if (facts.throttled) {
        judgePower(*facts.throttled, remarks);
    }
    if (facts.temperature && *facts.temperature >= kHot) {
        remarks.hurts("heat",
                      said("the processor has ", maker::decimals(*facts.temperature, 0),
                           " degrees Celsius, and slows down"),
                      "Let air to it.");
    }
}

}  // namespace doctor
