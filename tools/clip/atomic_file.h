#pragma once
// Files that appear whole or not at all.
//
// The bytes go to a temporary file beside the target, reach the disk, and take the target's name in
// one step. Whatever goes wrong on the way, the target keeps what it held and the temporary file is
// removed. Errors and interrupts are thrown (errors.h).

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace maker {

void writeWholeFile(const std::filesystem::path& path, std::span<const uint8_t> bytes);

std::vector<uint8_t> readWholeFile(const std::filesystem::path& path);

}  // namespace maker
