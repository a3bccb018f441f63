#pragma once
// The longest frame of a performance: two clips drawn whole, the top one with alpha, keyed over the
// bottom one, every filter on both layers, doubled onto a 1280 x 720 surface. Needs the stage
// (tests/support/stage_objects.h) and a folder `videos` in the working directory, where it leaves
// the clips.

#include <cstdint>
#include <string>
#include <vector>

#include "moxel/moxel.h"

void writeClip(const std::string& name, const std::vector<uint8_t>& bytes);

// Loads a clip of `videos` but for the last step, which expands its maps; ends the program when it
// cannot be played.
void loadAlmost(c_moxel& clip, const std::string& name);

// Call once, before the frames.
void prepareLongestFrame();
void drawLongestFrame();
