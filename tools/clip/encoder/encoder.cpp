#include "tools/clip/encoder/encoder.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <stdexcept>
#include <string>
#include <utility>

#include "clip/validate.h"
#include "tools/clip/base/errors.h"
#include "tools/clip/encoder/block_sections.h"
#include "tools/clip/encoder/quantise.h"

namespace maker {

namespace {

// Twelve seconds for a whole clip: longer than that no performer waits for the next one.
constexpr int kMostRecordsPerFrame = 2340;

int mostRecordsOf(const ClipSettings& settings) {
    return settings.quality < kBestQuality && settings.recordBudget == 0
               ? kMostRecordsPerFrame * clip::kFramesPerBlock
               : 0;
}

bool hasBudget(const ClipSettings& settings) {
    return settings.recordBudget > 0 || settings.byteBudget > 0;
}

}  // namespace

double ClipStats::psnr() const {
    return 10 * std::log10(255.0 * 255.0 * samples / squaredError);
}

ClipEncoder::ClipEncoder(const ClipSettings& settings)
    : settings_(settings),
      plan_{.quality = settings.quality,
            .content = settings.content,
            .mostRecords = mostRecordsOf(settings)},
      bytes_(clip::kHeaderBytes) {
    assert(settings.height >= clip::kTileSize && settings.height <= kFrameHeight &&
           settings.height % clip::kTileSize == 0);
    assert(settings.quality >= 0 && settings.quality <= kBestQuality);
}

void ClipEncoder::add(const uint8_t* rgba) {
    if (added_ == clip::kMaxFrames) {
        throw std::logic_error("a clip holds at most 256 frames");
    }
    if (settings_.dither) {
        dithered_.assign(rgba, rgba + static_cast<size_t>(kFrameWidth * settings_.height) * 4);
        dither(dithered_.data(), settings_.height);
        rgba = dithered_.data();
    }
    appendPicture(rgba, settings_.height, settings_.alpha, block_);
    ++added_;
    if (block_.frames == clip::kFramesPerBlock) {
        finishBlock();
    }
}

void ClipEncoder::finishBlock() {
    SourceBlock block = std::exchange(block_, {});
    if (hasBudget(settings_)) {
        sources_.push_back(std::move(block));
        return;
    }
    if (pending_.size() >= static_cast<size_t>(settings_.workers)) {
        write(pending_.front().get());
        pending_.erase(pending_.begin());
    }
    const auto policy = settings_.workers > 1 ? std::launch::async : std::launch::deferred;
    pending_.push_back(std::async(
        policy, [plan = plan_, source = std::move(block)] { return codeBlock(source, plan); }));
}

void ClipEncoder::write(CodedBlock coded) {
    const double tiles = static_cast<double>(coded.tiles.placements.size());
    stats_.frames += coded.frames;
    stats_.exactBlocks += coded.exact ? 1 : 0;
    stats_.squaredError += coded.squaredError;
    stats_.samples += tiles * clip::kTilePixels * kChannels;
    const NumberedBlock block = numberBlock(std::move(coded), history_);
    appendBlock(bytes_, block.sections, settings_.alpha ? 1 : 0);
    ++stats_.blocks;
    stats_.records += block.records;
    stats_.fillers += block.fillers;
}

void ClipEncoder::writeAll(std::vector<CodedBlock> blocks) {
    stats_ = {};
    history_ = {};
    bytes_.assign(clip::kHeaderBytes, 0);
    for (CodedBlock& block : blocks) {
        write(std::move(block));
    }
}

std::vector<CodedBlock> ClipEncoder::codeAll(double factor) const {
    CodingPlan plan = plan_;
    plan.byteFactor = settings_.byteBudget > 0 ? factor : 1;
    plan.recordFactor = settings_.recordBudget > 0 ? factor : 1;
    const size_t workers =
        std::min(static_cast<size_t>(std::max(settings_.workers, 1)), sources_.size());
    std::vector<CodedBlock> blocks(sources_.size());
    std::vector<std::future<void>> tasks;
    for (size_t worker = 0; worker < workers; ++worker) {
        const auto policy = workers > 1 ? std::launch::async : std::launch::deferred;
        tasks.push_back(std::async(policy, [this, worker, workers, &plan, &blocks] {
            for (size_t i = worker; i < blocks.size() && !interrupted(); i += workers) {
                blocks[i] = codeBlock(sources_[i], plan);
            }
        }));
    }
    for (std::future<void>& task : tasks) {
        task.get();
    }
    stopIfInterrupted();
    return blocks;
}

bool ClipEncoder::overBudget() const {
    return (settings_.recordBudget > 0 && stats_.records > settings_.recordBudget) ||
           (settings_.byteBudget > 0 && static_cast<int64_t>(bytes_.size()) > settings_.byteBudget);
}

// All blocks share one price, the Lagrangian multiplier, so that the budget goes where it takes
// away the most error. The price is the lowest of a few tried that keeps within the budget.
void ClipEncoder::fitBudget() {
    constexpr double kStep = 8;
    constexpr double kDearest = 1e9;
    constexpr int kHalvings = 5;
    writeAll(codeAll(1));
    double over = 1;
    double within = 1;
    while (overBudget() && within < kDearest) {
        over = within;
        within *= kStep;
        writeAll(codeAll(within));
    }
    stats_.withinBudget = !overBudget();
    if (within == 1 || !stats_.withinBudget) {
        return;
    }
    double written = within;
    for (int i = 0; i < kHalvings; ++i) {
        written = std::sqrt(over * within);
        writeAll(codeAll(written));
        (overBudget() ? over : within) = written;
    }
    if (written != within) {
        writeAll(codeAll(within));
    }
}

std::vector<uint8_t> ClipEncoder::finish() {
    if (added_ == 0) {
        throw std::logic_error("a clip holds at least one frame");
    }
    if (block_.frames > 0) {
        finishBlock();
    }
    if (hasBudget(settings_)) {
        fitBudget();
    }
    for (std::future<CodedBlock>& block : pending_) {
        write(block.get());
    }
    pending_.clear();
    std::vector<uint8_t> header;
    appendFileHeader(
        header,
        {clip::kVersion, static_cast<uint8_t>(settings_.quality), kFrameWidth,
         static_cast<uint16_t>(settings_.height), static_cast<uint8_t>(settings_.alpha ? 1 : 0),
         static_cast<uint8_t>(stats_.blocks), static_cast<uint16_t>(stats_.frames)});
    std::copy(header.begin(), header.end(), bytes_.begin());
    const clip::Verdict verdict = clip::validate(bytes_);
    if (!verdict.ok) {
        throw std::logic_error("the encoder made a faulty clip: " + verdict.message + " (block " +
                               std::to_string(verdict.block) + ", offset " +
                               std::to_string(verdict.offset) + ")");
    }
    return std::move(bytes_);
}

}  // namespace maker
