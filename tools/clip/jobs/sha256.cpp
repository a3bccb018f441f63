#include "tools/clip/jobs/sha256.h"

#include <algorithm>
#include <new>

extern "C" {
#include <libavutil/mem.h>
#include <libavutil/sha.h>
}

namespace maker {

namespace {

constexpr int kBits = static_cast<int>(kSha256Bytes) * 8;
// The library counts bytes in an unsigned int.
constexpr size_t kPieceBytes = size_t{1} << 24;

}  // namespace

void Sha256::Free::operator()(AVSHA* sha) const {
    av_free(sha);
}

Sha256::Sha256() : sha_(av_sha_alloc()) {
    if (!sha_) {
        throw std::bad_alloc();
    }
    av_sha_init(sha_.get(), kBits);
}

void Sha256::add(std::span<const uint8_t> bytes) {
    while (!bytes.empty()) {
        const size_t piece = std::min(bytes.size(), kPieceBytes);
        av_sha_update(sha_.get(), bytes.data(), static_cast<unsigned>(piece));
        bytes = bytes.subspan(piece);
    }
}

std::string Sha256::finish() {
    uint8_t digest[kSha256Bytes];
    av_sha_final(sha_.get(), digest);
    std::string text;
    for (const uint8_t byte : digest) {
        constexpr const char* kDigits = "0123456789abcdef";
        text += {kDigits[byte / 16], kDigits[byte % 16]};
    }
    return text;
}

std::string sha256Of(std::span<const uint8_t> bytes) {
    Sha256 sha;
    sha.add(bytes);
    return sha.finish();
}

std::string sha256Of(const std::string& bytes) {
    return sha256Of(std::span(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()));
}

}  // namespace maker
