#include "tools/clip/reports/describe.h"

#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "clip/block.h"
#include "moxel/moxel.h"
#include "tools/base/texts.h"

namespace maker {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kTypeNames[clip::kColourTypes] = {
    "raw",
    "palette",
    "four runs, rows",
    "four runs, columns",
    "short runs, rows",
    "short runs, columns",
    "palette runs, rows",
    "palette runs, columns",
    "two colours, rows",
    "two colours, columns",
};

// The bytes of each section, as JSON and as text name them.
struct Section {
    const char* key;
    const char* label;
    size_t clip::BlockLayout::*bytes;
    size_t before;  // all blocks
};
constexpr Section kSections[] = {
    {"header", "headers", &clip::BlockLayout::headerBytes, clip::kHeaderBytes},
    {"runs", "change runs", &clip::BlockLayout::runBytes, 0},
    {"map", "map entries", &clip::BlockLayout::mapBytes, 0},
    {"codes", "tile codes", &clip::BlockLayout::codeBytes, 0},
    {"records", "tile records", &clip::BlockLayout::recordBytes, 0},
};

struct Totals {
    size_t records = 0;
    std::array<size_t, clip::kMaxTypeSlots> byType{};
    std::array<size_t, std::size(kSections)> bytes{};
};

Totals totalsOf(const Description& description) {
    Totals totals;
    for (size_t i = 0; i < totals.bytes.size(); ++i) {
        totals.bytes[i] = kSections[i].before;
    }
    for (const clip::BlockLayout& block : description.blocks) {
        totals.records += block.header.recordCount;
        for (size_t type = 0; type < totals.byType.size(); ++type) {
            totals.byType[type] += block.header.typeCounts[type];
        }
        for (size_t i = 0; i < totals.bytes.size(); ++i) {
            totals.bytes[i] += block.*kSections[i].bytes;
        }
    }
    return totals;
}

std::string faultText(const clip::Verdict& verdict) {
    const std::string place =
        verdict.block < 0 ? "the file header" : "block " + std::to_string(verdict.block);
    return "broken in " + place + " at offset " + std::to_string(verdict.offset) + ": " +
           verdict.message;
}

std::string costText(const LoadCost& cost) {
    return "on stage\n  ready after " + decimals(cost.seconds, 1) + " s, after " +
           decimals(cost.secondsAsFirst, 1) + " s as the first clip of a playlist\n  " +
           megabytes(cost.memory, 1) + " of memory\n";
}

double rawShare(const Description& description) {
    const double raw =
        2.0 * kFrameWidth * description.header.height * description.header.frameCount;
    return raw > 0 ? static_cast<double>(description.fileBytes) / raw : 0;
}

std::string line(const std::string& name, size_t value) {
    char text[64];
    std::snprintf(text, sizeof(text), "  %-32s %10zu\n", name.c_str(), value);
    return text;
}

template <class Counts>
Json typesOf(const Counts& counts, int alpha) {
    Json types = Json::array();
    for (size_t type = 0; type < static_cast<size_t>(clip::typeSlots(alpha)); ++type) {
        types.push_back(counts[type]);
    }
    return types;
}

template <class BytesOf>
Json sectionsOf(BytesOf bytesOf) {
    Json json;
    for (size_t i = 0; i < std::size(kSections); ++i) {
        json[kSections[i].key] = bytesOf(i);
    }
    return json;
}

Json jsonOf(const clip::BlockLayout& block, int alpha) {
    return {{"offset", block.offset},
            {"frames", block.frames},
            {"records", block.header.recordCount},
            {"recordsByType", typesOf(block.header.typeCounts, alpha)},
            {"bytes", sectionsOf([&](size_t i) { return block.*kSections[i].bytes; })}};
}

int stepsFor(std::span<const clip::BlockLayout> blocks, int stepRecords) {
    int steps = clip::kStepsBesideRecords;
    for (const clip::BlockLayout& block : blocks) {
        steps += clip::recordSteps(block.header.recordCount, stepRecords);
    }
    return steps;
}

// A block's buffers.
size_t memoryOf(const clip::BlockLayout& block) {
    const size_t codeWords = block.codeBytes / sizeof(uint16_t);
    const size_t tiles = codeWords / static_cast<size_t>(block.frames) * clip::kCodesPerWord;
    const clip::BlockRoom room =
        clip::blockRoom(block.header.recordCount, block.header.recordWords, block.header.mapWords,
                        block.frames, static_cast<int>(tiles));
    return clip::kPaletteBytes + (room.mapEntries + room.codeWords) * sizeof(uint16_t) +
           room.runBytes + room.guardedRecordBytes() + room.records * sizeof(uint32_t) +
           clip::kMaxTypeSlots * (sizeof(uint16_t) + sizeof(uint32_t));
}

}  // namespace

bool describe(std::span<const uint8_t> bytes, Description& description) {
    description = {};
    description.fileBytes = bytes.size();
    description.verdict = clip::validate(bytes, &description.blocks);
    if (description.plays()) {
        description.cost = loadCost(description.blocks);
    }
    return clip::readHeader(bytes, description.header) &&
           description.header.version == clip::kVersion;
}

std::string verdictText(const Description& description) {
    if (!description.plays()) {
        return faultText(description.verdict);
    }
    std::string text = "plays";
    if (description.slow()) {
        text += ", but loads slowly: " + decimals(description.cost.seconds, 1) + " s (slow from " +
                decimals(kSlowSeconds, 0) + " s on)";
    }
    if (!description.verdict.ok) {
        text += "; ignored: " + description.verdict.message + " (offset " +
                std::to_string(description.verdict.offset) + ")";
    }
    return text;
}

std::string asText(const std::string& path, const Description& description) {
    const clip::FileHeader& header = description.header;
    const Totals totals = totalsOf(description);
    char text[256];
    std::snprintf(text, sizeof(text),
                  "  %d x %d, %s, quality %d, %d frames in %d blocks\n"
                  "  %zu bytes, %.1f %% of raw\n",
                  kFrameWidth, header.height, header.alpha != 0 ? "colour and alpha" : "colour",
                  header.quality, header.frameCount, header.blockCount, description.fileBytes,
                  100 * rawShare(description));
    std::string all = path + ":\n" + text + "records\n";
    for (size_t type = 0; type < totals.byType.size(); ++type) {
        if (totals.byType[type] > 0) {
            const char* alpha = type < clip::kColourTypes ? "" : " + alpha";
            all += line(kTypeNames[type % clip::kColourTypes] + std::string(alpha),
                        totals.byType[type]);
        }
    }
    all += line("all", totals.records) + "bytes\n";
    for (size_t i = 0; i < totals.bytes.size(); ++i) {
        all += line(kSections[i].label, totals.bytes[i]);
    }
    if (description.plays()) {
        all += costText(description.cost);
    }
    return all + "verdict\n  " + verdictText(description) + "\n";
}

std::string asJson(const std::string& path, const Description& description) {
    const clip::FileHeader& header = description.header;
    const Totals totals = totalsOf(description);
    Json blocks = Json::array();
    for (const clip::BlockLayout& block : description.blocks) {
        blocks.push_back(jsonOf(block, header.alpha));
    }
    Json json{{"file", path},
              {"bytes", description.fileBytes},
              {"version", header.version},
              {"quality", header.quality},
              {"storedWidth", header.storedWidth},
              {"height", header.height},
              {"alpha", header.alpha},
              {"frames", header.frameCount},
              {"blockCount", header.blockCount},
              {"rawShare", rawShare(description)},
              {"records", totals.records},
              {"recordsByType", typesOf(totals.byType, header.alpha != 0 ? 1 : 0)},
              {"sectionBytes", sectionsOf([&](size_t i) { return totals.bytes[i]; })},
              {"ok", description.verdict.ok},
              {"plays", description.plays()},
              {"blocks", blocks}};
    if (description.plays()) {
        json["loadSeconds"] = description.cost.seconds;
        json["loadSecondsAsFirst"] = description.cost.secondsAsFirst;
        json["loadsSlowly"] = description.slow();
        json["memory"] = description.cost.memory;
    }
    if (!description.verdict.ok) {
        json["fault"] = {{"message", description.verdict.message},
                         {"block", description.verdict.block},
                         {"offset", description.verdict.offset},
                         {"plays", description.plays()}};
    }
    // A file name need not be UTF-8.
    return json.dump(2, ' ', false, Json::error_handler_t::replace);
}

LoadCost loadCost(std::span<const clip::BlockLayout> blocks) {
    LoadCost cost;
    cost.steps = stepsFor(blocks, clip::kOtherClipBudget);
    cost.seconds = kStepSeconds * cost.steps;
    cost.stepsAsFirst = stepsFor(blocks, clip::kFirstClipBudget);
    cost.secondsAsFirst = kStepSeconds * cost.stepsAsFirst;
    cost.memory = slotBytes();
    for (const clip::BlockLayout& block : blocks) {
        cost.memory += memoryOf(block);
    }
    return cost;
}

size_t slotBytes() {
    return sizeof(c_moxel);
}

}  // namespace maker
