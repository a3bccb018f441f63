#pragma once
// Inputs for the clip tool's commands, and what their clips show.
//
// Level n of 31 is the grey that a clip's red channel stores as n exactly; so the frames of a clip
// tell which frames of the input they are.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "clip_tool/reference.h"

namespace inputs {

uint8_t grey(int level);

// 64 x 36 frames of one grey each.
void levels(const std::string& path, const std::vector<int>& levels, int fps = 25);

// 64 x 36 noise that changes with every frame.
void noise(const std::string& path, int frames);

// A PNG file; `colour` gives red << 24 | green << 16 | blue << 8 | alpha.
void picture(const std::string& path, int width, int height,
             const std::function<uint32_t(int x, int y)>& colour);

reference::Clip readClip(const std::string& path);

// The red level in the middle of every frame of a clip.
std::vector<int> levelsOf(const std::string& path);

}  // namespace inputs
