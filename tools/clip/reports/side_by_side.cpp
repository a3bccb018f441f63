#include "tools/clip/reports/side_by_side.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "common/limits.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/clip/reports/captioned.h"
#include "tools/clip/reports/compare.h"

namespace maker {

namespace {

constexpr size_t kMostRows = 6;  // of a PNG, before the worst
constexpr int kWidth = 3 * kFrameWidth + 2 * kPictureGap;

Picture shownOf(const std::vector<uint8_t>& rgba) {
    Picture picture(kFrameWidth, static_cast<int>(rgba.size() / 4 / kFrameWidth));
    picture.rgba = rgba;
    return overCheckerboard(picture);
}

Picture differenceOf(const Picture& a, const Picture& b) {
    Picture difference(a.width, a.height);
    for (size_t i = 0; i < a.rgba.size(); ++i) {
        const int apart = std::abs(a.rgba[i] - b.rgba[i]) * kAmplified;
        difference.rgba[i] = i % 4 == 3 ? 255 : static_cast<uint8_t>(std::min(apart, 255));
    }
    return difference;
}

}  // namespace

SideBySide::SideBySide(const std::string& path) : path_(path), film_(movieKindOf(path)) {
    const std::string ending = std::filesystem::path(path).extension();
    if (ending != kPng.ending && ending != ".mkv") {
        throw ToolError("a comparison is a picture or an exact film: give " + path +
                        " the ending .png or .mkv");
    }
    checkOutput(path);
}

void SideBySide::add(const std::vector<uint8_t>& source, const std::vector<uint8_t>& clip) {
    const Picture left = shownOf(source);
    const Picture middle = shownOf(clip);
    const double error = colourError(left.rgba, middle.rgba);
    Picture row = groundOf(kWidth, kCaptionHeight + left.height);
    constexpr int kColumn = kFrameWidth + kPictureGap;
    drawCaptioned(row, 0, 0, left, "source, frame " + std::to_string(frames_));
    drawCaptioned(row, kColumn, 0, middle, "clip, " + decibels(psnrOf(error), 1));
    drawCaptioned(row, 2 * kColumn, 0, differenceOf(left, middle),
                  "difference x " + std::to_string(kAmplified));
    if (film_ == nullptr) {
        keep(frames_, row, error);
    } else {
        if (!writer_) {
            writer_.emplace(*film_, row.width, row.height, false, kStageFps);
        }
        writer_->add(row);
    }
    ++frames_;
}

// Once there are too many rows, every second of them does.
void SideBySide::keep(int frame, const Picture& row, double error) {
    if (error > worstError_) {
        worst_ = row;
        worstError_ = error;
    }
    if (frame % step_ != 0) {
        return;
    }
    if (rows_.size() == kMostRows) {
        for (size_t i = 1; i < kMostRows / 2; ++i) {
            rows_[i] = std::move(rows_[2 * i]);
        }
        rows_.resize(kMostRows / 2);
        step_ *= 2;
    }
    if (frame % step_ == 0) {
        rows_.push_back(row);
    }
}

std::vector<uint8_t> SideBySide::sheet() const {
    const int height = worst_.height + kPictureGap;
    Picture sheet = groundOf(kWidth, height * static_cast<int>(rows_.size() + 1) - kPictureGap);
    for (size_t i = 0; i < rows_.size(); ++i) {
        sheet.copy(rows_[i], 0, height * static_cast<int>(i));
    }
    sheet.copy(worst_, 0, sheet.height - worst_.height);
    return pictureFile(kPng, sheet, false);
}

void SideBySide::finish() {
    writeWholeFile(path_, film_ == nullptr ? sheet() : writer_->finish());
}

}  // namespace maker
