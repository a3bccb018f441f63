#include "tools/clip/numbering.h"

#include <algorithm>
#include <cstddef>

namespace maker {

namespace {

constexpr size_t kMaxRecords = 65535;

// The banned numbers of one record.
using BanRange = std::span<const Ban>;

bool banned(BanRange bans, size_t number) {
    return std::any_of(bans.begin(), bans.end(),
                       [number](const Ban& ban) { return ban.number == number; });
}

// Gives the records of one type their numbers, from `first` on. At most `spare` fillers.
class TypeNumbering {
public:
    TypeNumbering(size_t first, size_t spare) : first_(first), spare_(spare) {}

    // Numbers are taken from the lowest free one up; records with bans choose first.
    std::vector<uint32_t> assign(std::vector<uint32_t> records, const std::vector<BanRange>& bans);

private:
    void place(uint32_t record, BanRange bans);

    size_t first_;
    size_t spare_;
    size_t records_ = 0;
    size_t lowestFree_ = 0;
    std::vector<uint32_t> slots_;
};

void TypeNumbering::place(uint32_t record, BanRange bans) {
    size_t slot = lowestFree_;
    while (slot < slots_.size() && (slots_[slot] != kFiller || banned(bans, first_ + slot))) {
        ++slot;
    }
    while (slot >= slots_.size() && banned(bans, first_ + slot)) {
        ++slot;
    }
    if (slot >= records_ + spare_) {
        slot = lowestFree_;
    }
    if (slot >= slots_.size()) {
        slots_.resize(slot + 1, kFiller);
    }
    slots_[slot] = record;
    while (lowestFree_ < slots_.size() && slots_[lowestFree_] != kFiller) {
        ++lowestFree_;
    }
}

std::vector<uint32_t> TypeNumbering::assign(std::vector<uint32_t> records,
                                            const std::vector<BanRange>& bans) {
    records_ = records.size();
    slots_.assign(records_, kFiller);
    std::stable_sort(records.begin(), records.end(),
                     [&bans](uint32_t a, uint32_t b) { return bans[a].size() > bans[b].size(); });
    for (const uint32_t record : records) {
        place(record, bans[record]);
    }
    while (!slots_.empty() && slots_.back() == kFiller) {
        slots_.pop_back();
    }
    return slots_;
}

std::vector<BanRange> bansByRecord(const std::vector<Ban>& bans, size_t records) {
    std::vector<BanRange> ranges(records);
    for (size_t from = 0; from < bans.size();) {
        size_t to = from;
        while (to < bans.size() && bans[to].record == bans[from].record) {
            ++to;
        }
        ranges[bans[from].record] = BanRange(bans).subspan(from, to - from);
        from = to;
    }
    return ranges;
}

}  // namespace

Numbering numberRecords(std::span<const uint8_t> types, std::vector<Ban> bans) {
    std::sort(bans.begin(), bans.end());
    bans.erase(std::unique(bans.begin(), bans.end()), bans.end());
    const std::vector<BanRange> ranges = bansByRecord(bans, types.size());
    std::array<std::vector<uint32_t>, clip::kMaxTypeSlots> byType;
    for (size_t record = 0; record < types.size(); ++record) {
        byType[types[record]].push_back(static_cast<uint32_t>(record));
    }

    Numbering numbering;
    numbering.numberOf.resize(types.size());
    size_t spare = kMaxRecords - types.size();
    for (size_t type = 0; type < byType.size(); ++type) {
        const size_t first = numbering.recordAt.size();
        const std::vector<uint32_t> slots =
            TypeNumbering(first, spare).assign(byType[type], ranges);
        spare -= slots.size() - byType[type].size();
        numbering.typeCounts[type] = static_cast<uint16_t>(slots.size());
        for (const uint32_t record : slots) {
            if (record != kFiller) {
                numbering.numberOf[record] = static_cast<uint16_t>(numbering.recordAt.size());
            }
            numbering.recordAt.push_back(record);
        }
    }
    return numbering;
}

void addSeamBans(const SeamFrame& beside, std::span<const uint32_t> records,
                 std::span<const uint8_t> codes, std::span<const uint64_t> looks,
                 std::vector<Ban>& bans) {
    for (size_t tile = 0; tile < records.size(); ++tile) {
        if (records[tile] != kFiller && codes[tile] == beside.codes[tile] &&
            looks[tile] != beside.looks[tile]) {
            bans.push_back({records[tile], beside.entries[tile]});
        }
    }
}

}  // namespace maker
