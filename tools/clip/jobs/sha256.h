#pragma once
// The SHA-256 checksum of bytes that come piece by piece, as 64 hexadecimal digits in small
// letters. Memory that cannot be had is thrown.

#include <cstdint>
#include <memory>
#include <span>
#include <string>

struct AVSHA;

namespace maker {

inline constexpr size_t kSha256Bytes = 32;

class Sha256 {
public:
    Sha256();
    void add(std::span<const uint8_t> bytes);
    std::string finish();  // once

private:
    struct Free {
        void operator()(AVSHA* sha) const;
    };
    std::unique_ptr<AVSHA, Free> sha_;
};

std::string sha256Of(std::span<const uint8_t> bytes);
std::string sha256Of(const std::string& bytes);

}  // namespace maker
