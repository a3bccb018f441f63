#pragma once
// The interface's colours, 0x00RRGGBB: once for the program, its global colours and the clip tool.

#include <cstdint>

namespace colours {

inline constexpr uint32_t kWhite = 0xFFFFFF;
inline constexpr uint32_t kBlack = 0x000000;
inline constexpr uint32_t kPink = 0xFE00C3;
inline constexpr uint32_t kBlue = 0x59B1FF;
inline constexpr uint32_t kOrange = 0xFFB000;
inline constexpr uint32_t kGrey = 0x888888;

}  // namespace colours
