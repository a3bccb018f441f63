#pragma once
// The fixed sizes that several modules share. Frames are 640 x 360 pixels of RGB565, row-major,
// 640 pixels a row without gaps; clips are cut into 8 x 8 tiles. The clip format's own bounds stand
// in clip/format.h.

#include <cstddef>
#include <cstdint>

inline constexpr int kFrameWidth = 640;
inline constexpr int kFrameHeight = 360;
inline constexpr int kFramePixels = kFrameWidth * kFrameHeight;
inline constexpr size_t kFrameBytes = size_t{kFramePixels} * sizeof(uint16_t);
inline constexpr int kLayers = 2;

inline constexpr int kHdmiWidth = 1280;
inline constexpr int kHdmiHeight = 720;
inline constexpr int kCompositeBelow = 800;  // a display narrower than this is a composite output

inline constexpr int kClipSlots = 50;      // clips in memory at once
inline constexpr int kFilterSlots = 9;     // filter slots a layer
inline constexpr int kInputSlots = 100;    // entries of c_keys::gKeys
inline constexpr int kPadEntries = 14;     // controller functions
inline constexpr int kPadUnassigned = 99;  // a controller function without a button

// Deliberate: the four track limits do not agree with each other. A file may hold more tracks than
// the editor lets a playlist grow to, and the 52nd track that the reader takes has no slot and is
// dropped. [quirk_track_limits_differ]
inline constexpr int kPlaylists = 50;
inline constexpr int kTrackSlots = 51;
inline constexpr int kTracksRead = 52;
inline constexpr int kEditorTracks = 49;

static_assert(kFrameBytes == 460800);
static_assert(sizeof(int) == 4 && sizeof(short) == 2);
