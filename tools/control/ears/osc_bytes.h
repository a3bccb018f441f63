#pragma once
// One OSC packet as what was heard. Pure: any bytes are safe. Whoever received the packet fills in
// `device` and `when`.

#include <cstdint>
#include <span>
#include <vector>

#include "tools/control/base/heard.h"

namespace control {

inline constexpr size_t kMostOscMessages = 64;  // in one packet
inline constexpr int kDeepestBundle = 4;        // bundles in each other
inline constexpr size_t kLongestAddress = 128;  // bytes
inline constexpr size_t kLongestText = 256;     // bytes

// Puts the messages of a packet behind `into`, those of bundles in their order; when they ask to be
// played later is not heeded. Of the arguments the first number counts, if it is finite, and the
// first text, cut to kLongestText, with '?' for control characters. False for a packet that is
// malformed anywhere or beyond a limit: `into` is as before then.
bool heardOfOsc(std::span<const uint8_t> packet, std::vector<Heard>& into);

}  // namespace control
