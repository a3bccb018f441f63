#include "tools/clip/encoder/encoder.h"

#include <algorithm>
#include <atomic>
#include <cassert>
#include <cmath>
#include <iterator>
#include <stdexcept>
#include <string>
#include <utility>

#include "clip/validate.h"
#include "tools/base/errors.h"
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

// A clip that shows its source exactly is dithered before it is coded, pixel by pixel.
bool dithersBeforehand(const ClipSettings& settings) {
    return settings.dither && settings.quality == kBestQuality && !hasBudget(settings);
}

}  // namespace

double ClipStats::psnr() const {
    return 10 * std::log10(255.0 * 255.0 * samples / squaredError);
}

ClipEncoder::ClipEncoder(const ClipSettings& settings)
    : settings_(settings),
      plan_{.quality = settings.quality,
            .content = settings.content,
            .mostRecords = mostRecordsOf(settings),
            .dither = settings.dither && !dithersBeforehand(settings),
            .noise = settings.noise} {
    assert(settings.height >= clip::kTileSize && settings.height <= kFrameHeight &&
           settings.height % clip::kTileSize == 0);
    assert(settings.quality >= 0 && settings.quality <= kBestQuality);
}

void ClipEncoder::add(const uint8_t* rgba) {
    if (added_ == clip::kMaxFrames) {
        throw std::logic_error("a clip holds at most 256 frames");
    }
    if (dithersBeforehand(settings_)) {
        appendTiles(rgba, settings_.height, settings_.alpha, block_.originals);
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
    std::vector<int16_t> still;
    if (!alwaysExact(plan_) || hasBudget(settings_)) {
        still = tracker_.next(block);
    }
    if (hasBudget(settings_)) {
        sources_.push_back(std::move(block));
        still_.push_back(std::move(still));
        return;
    }
    if (pending_.size() >= static_cast<size_t>(settings_.workers)) {
        write(pending_.front().get(), clip_);
        pending_.erase(pending_.begin());
    }
    const auto policy = settings_.workers > 1 ? std::launch::async : std::launch::deferred;
    pending_.push_back(std::async(
        policy, [plan = plan_, source = std::move(block), link = chain_.next(std::move(still))] {
            return link.code(source, plan);
        }));
}

void ClipEncoder::write(CodedBlock coded, Coding& clip) const {
    const double tiles = static_cast<double>(coded.tiles.placements.size());
    ClipStats& stats = clip.stats;
    stats.noise =
        (stats.noise * stats.frames + coded.noise * coded.frames) / (stats.frames + coded.frames);
    stats.frames += coded.frames;
    stats.limitedBlocks += coded.limited ? 1 : 0;
    stats.exactBlocks += coded.exact ? 1 : 0;
    stats.squaredError += coded.squaredError;
    stats.samples += tiles * clip::kTilePixels * kChannels;
    const NumberedBlock block = numberBlock(std::move(coded), clip.history);
    appendBlock(clip.bytes, block.sections, settings_.alpha ? 1 : 0);
    ++stats.blocks;
    stats.records += block.records;
    stats.fillers += block.fillers;
}

// Nothing stands in a sample, whose positions are not those of the clip.
std::vector<StandingChain::Link> ClipEncoder::linksOf(
    const std::vector<SourceBlock>& sources) const {
    StandingChain chain;
    std::vector<StandingChain::Link> links;
    for (size_t i = 0; i < sources.size(); ++i) {
        const bool sample = sources[i].tileCount < sources_[i].tileCount;
        links.push_back(chain.next(sample ? std::vector<int16_t>() : still_[i]));
    }
    return links;
}

ClipEncoder::Coding ClipEncoder::codeAll(const std::vector<SourceBlock>& sources, double factor,
                                         SearchProgress& progress) const {
    progress.begin(static_cast<double>(sources[0].tileCount) /
                   static_cast<double>(sources_[0].tileCount));
    CodingPlan plan = plan_;
    plan.byteFactor = settings_.byteBudget > 0 ? factor : 1;
    plan.recordFactor = settings_.recordBudget > 0 ? factor : 1;
    const size_t workers =
        std::min(static_cast<size_t>(std::max(settings_.workers, 1)), sources.size());
    std::vector<CodedBlock> blocks(sources.size());
    const std::vector<StandingChain::Link> links = linksOf(sources);
    std::atomic<size_t> next = 0;
    std::vector<std::future<void>> tasks;
    for (size_t worker = 0; worker < workers; ++worker) {
        const auto policy = workers > 1 ? std::launch::async : std::launch::deferred;
        tasks.push_back(std::async(policy, [&] {
            while (!interrupted()) {
                const size_t i = next++;  // coded for certain: later blocks wait for it
                if (i >= blocks.size()) {
                    return;
                }
                blocks[i] = links[i].code(sources[i], plan);
                progress.done(1 / static_cast<double>(blocks.size()));
            }
        }));
    }
    for (std::future<void>& task : tasks) {
        task.get();
    }
    stopIfInterrupted();
    Coding clip;
    for (CodedBlock& block : blocks) {
        write(std::move(block), clip);
    }
    return clip;
}

// The larger of the shares of both budgets.
double ClipEncoder::shareOf(double bytes, double records) const {
    const double ofBytes =
        settings_.byteBudget > 0 ? bytes / static_cast<double>(settings_.byteBudget) : 0;
    const double ofRecords =
        settings_.recordBudget > 0 ? records / static_cast<double>(settings_.recordBudget) : 0;
    return std::max(ofBytes, ofRecords);
}

double ClipEncoder::shareOf(const Coding& clip) const {
    return shareOf(static_cast<double>(clip::kHeaderBytes + clip.bytes.size()), clip.stats.records);
}

// All blocks share one price, the Lagrangian multiplier, so that the budget goes where it takes
// away the most error. A sample of the tiles says which, in proportion to what the whole clip took
// at the first price.
void ClipEncoder::fitBudget(SearchProgress& progress) {
    constexpr double kUsed = 0.88;  // of the budget is near enough
    constexpr double kMargin = 0.99;
    constexpr int kTries = 2;
    clip_ = codeAll(sources_, 1, progress);
    if (shareOf(clip_) <= 1) {
        return;
    }
    std::vector<SourceBlock> samples;
    std::transform(sources_.begin(), sources_.end(), std::back_inserter(samples), sampleOf);
    const auto fixed =
        static_cast<double>(clip::blockHeaderBytes(settings_.alpha ? 1 : 0) * sources_.size());
    const auto growing = [fixed](const Coding& clip) {
        return static_cast<double>(clip.bytes.size()) - fixed;
    };
    const Coding sample = codeAll(samples, 1, progress);
    const double bytesScale = growing(clip_) / growing(sample);
    const double recordsScale =
        static_cast<double>(clip_.stats.records) / std::max(sample.stats.records, 1);
    PriceSearch search([&](double price) {
        const Coding tried = codeAll(samples, price, progress);
        return shareOf(fixed + bytesScale * growing(tried), recordsScale * tried.stats.records);
    });
    double wanted = 1;
    for (int i = 0; i < kTries || shareOf(clip_) > 1; ++i) {
        const double price = search.find(wanted);
        Coding tried = codeAll(sources_, price, progress);
        const double share = shareOf(tried);
        if (share <= 1 || shareOf(clip_) > 1) {
            clip_ = std::move(tried);
        }
        if ((share <= 1 && share >= kUsed) || price >= kDearest) {
            break;
        }
        wanted = kMargin * search.shareAt(price) / share;  // the clip is as far off as here
        search.took(price, share);
    }
    clip_.stats.withinBudget = shareOf(clip_) <= 1;
}

std::vector<uint8_t> ClipEncoder::finish(const std::function<void(double)>& searching) {
    if (added_ == 0) {
        throw std::logic_error("a clip holds at least one frame");
    }
    if (block_.frames > 0) {
        finishBlock();
    }
    if (hasBudget(settings_)) {
        SearchProgress progress(searching);
        fitBudget(progress);
    }
    for (std::future<CodedBlock>& block : pending_) {
        write(block.get(), clip_);
    }
    pending_.clear();
    std::vector<uint8_t> bytes;
    appendFileHeader(
        bytes,
        {clip::kVersion, static_cast<uint8_t>(settings_.quality), kFrameWidth,
         static_cast<uint16_t>(settings_.height), static_cast<uint8_t>(settings_.alpha ? 1 : 0),
         static_cast<uint8_t>(clip_.stats.blocks), static_cast<uint16_t>(clip_.stats.frames)});
    bytes.insert(bytes.end(), clip_.bytes.begin(), clip_.bytes.end());
    const clip::Verdict verdict = clip::validate(bytes);
    if (!verdict.ok) {
        throw std::logic_error("the encoder made a faulty clip: " + verdict.message + " (block " +
                               std::to_string(verdict.block) + ", offset " +
                               std::to_string(verdict.offset) + ")");
    }
    return bytes;
}

}  // namespace maker
