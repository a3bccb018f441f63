#include "tools/clip/encoder/numbering.h"

#include <algorithm>
#include <cstddef>

namespace maker {

namespace {

constexpr size_t kMaxRecords = 65535;
constexpr int kTries = 2000;  // numbers looked at for one record

using UseRange = std::span<const TileUse>;

uint32_t keyOf(const TileUse& use, size_t number) {
    return static_cast<uint32_t>(use.position) << 19 | static_cast<uint32_t>(use.code) << 16 |
           static_cast<uint32_t>(number);
}

// Gives the records of one type their numbers, from `first` on. At most `spare` fillers.
class TypeNumbering {
public:
    TypeNumbering(size_t first, size_t spare, const NumberHistory& history)
        : first_(first), spare_(spare), history_(history) {}

    // Numbers are taken from the lowest free one up; records with many uses choose first.
    std::vector<uint32_t> assign(std::vector<uint32_t> records, const std::vector<UseRange>& uses);

private:
    bool clashes(UseRange uses, size_t slot) const;
    bool taken(size_t slot) const { return slot < slots_.size() && slots_[slot] != kFiller; }
    void place(uint32_t record, UseRange uses);

    size_t first_;
    size_t spare_;
    const NumberHistory& history_;
    size_t records_ = 0;
    size_t lowestFree_ = 0;
    std::vector<uint32_t> slots_;
};

bool TypeNumbering::clashes(UseRange uses, size_t slot) const {
    return std::any_of(uses.begin(), uses.end(), [this, slot](const TileUse& use) {
        return history_.clashes(use, first_ + slot);
    });
}

void TypeNumbering::place(uint32_t record, UseRange uses) {
    const size_t end = records_ + spare_;
    size_t slot = lowestFree_;
    for (int tries = 0; slot < end && tries < kTries; ++slot) {
        if (!taken(slot) && !clashes(uses, slot)) {
            break;
        }
        tries += taken(slot) ? 0 : 1;
    }
    // Where the tries have run out, nothing is known of the slot that comes next.
    if (slot >= end || taken(slot) || clashes(uses, slot)) {
        slot = lowestFree_;
    }
    if (slot >= slots_.size()) {
        slots_.resize(slot + 1, kFiller);
    }
    slots_[slot] = record;
    while (taken(lowestFree_)) {
        ++lowestFree_;
    }
}

std::vector<uint32_t> TypeNumbering::assign(std::vector<uint32_t> records,
                                            const std::vector<UseRange>& uses) {
    records_ = records.size();
    slots_.assign(records_, kFiller);
    std::stable_sort(records.begin(), records.end(),
                     [&uses](uint32_t a, uint32_t b) { return uses[a].size() > uses[b].size(); });
    for (const uint32_t record : records) {
        place(record, uses[record]);
    }
    while (!slots_.empty() && slots_.back() == kFiller) {
        slots_.pop_back();
    }
    return slots_;
}

std::vector<UseRange> usesByRecord(UseRange uses, size_t records) {
    std::vector<UseRange> ranges(records);
    for (size_t from = 0; from < uses.size();) {
        size_t to = from;
        while (to < uses.size() && uses[to].record == uses[from].record) {
            ++to;
        }
        ranges[uses[from].record] = uses.subspan(from, to - from);
        from = to;
    }
    return ranges;
}

// Fillers cost bytes and time as any record does.
size_t fillersFor(size_t records) {
    constexpr size_t kShare = 20;
    constexpr size_t kAlways = 64;
    return std::min(records / kShare + kAlways, kMaxRecords - records);
}

}  // namespace

bool NumberHistory::clashes(const TileUse& use, size_t number) const {
    const auto known = looks_.find(keyOf(use, number));
    return known != looks_.end() && known->second != use.look;
}

void NumberHistory::add(const TileUse& use, size_t number) {
    looks_[keyOf(use, number)] = use.look;
}

Numbering numberRecords(std::span<const uint8_t> types, std::span<const TileUse> uses,
                        NumberHistory& history) {
    const std::vector<UseRange> ranges = usesByRecord(uses, types.size());
    std::array<std::vector<uint32_t>, clip::kMaxTypeSlots> byType;
    for (size_t record = 0; record < types.size(); ++record) {
        byType[types[record]].push_back(static_cast<uint32_t>(record));
    }

    Numbering numbering;
    numbering.numberOf.resize(types.size());
    size_t spare = fillersFor(types.size());
    for (size_t type = 0; type < byType.size(); ++type) {
        const size_t first = numbering.recordAt.size();
        const std::vector<uint32_t> slots =
            TypeNumbering(first, spare, history).assign(byType[type], ranges);
        spare -= slots.size() - byType[type].size();
        numbering.typeCounts[type] = static_cast<uint16_t>(slots.size());
        for (const uint32_t record : slots) {
            if (record != kFiller) {
                numbering.numberOf[record] = static_cast<uint16_t>(numbering.recordAt.size());
            }
            numbering.recordAt.push_back(record);
        }
    }
    for (const TileUse& use : uses) {
        history.add(use, numbering.numberOf[use.record]);
    }
    return numbering;
}

}  // namespace maker
