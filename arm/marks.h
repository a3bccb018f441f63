#pragma once
// The two marks between which instructions are counted: the measured program calls close() with
// these numbers, which no file has, and the plugin in the emulator sees the call.

#include <cstdint>

inline constexpr uint32_t kCountBegin = 0x564C0001;
inline constexpr uint32_t kCountEnd = 0x564C0002;
