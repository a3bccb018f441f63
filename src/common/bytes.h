#pragma once
// Bytes to numbers and back. Files are little-endian; so is every multi-byte number in memory
// that came straight from a file, whatever the machine.

#include <cstdint>

inline constexpr uint16_t le16(const uint8_t* bytes) {
    return static_cast<uint16_t>(bytes[0] | (bytes[1] << 8));
}

inline constexpr uint32_t le32(const uint8_t* bytes) {
    return static_cast<uint32_t>(le16(bytes)) | (static_cast<uint32_t>(le16(bytes + 2)) << 16);
}

inline constexpr uint16_t be16(const uint8_t* bytes) {
    return static_cast<uint16_t>((bytes[0] << 8) | bytes[1]);
}

inline constexpr void putLe16(uint8_t* bytes, uint16_t value) {
    bytes[0] = static_cast<uint8_t>(value & 0xFF);
    bytes[1] = static_cast<uint8_t>(value >> 8);
}

inline constexpr void putLe32(uint8_t* bytes, uint32_t value) {
    putLe16(bytes, static_cast<uint16_t>(value & 0xFFFF));
    putLe16(bytes + 2, static_cast<uint16_t>(value >> 16));
}
