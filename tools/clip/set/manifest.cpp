#include "tools/clip/set/manifest.h"

#include <algorithm>
#include <cstdio>
#include <optional>

#include "files/userfile.h"
#include "tools/base/errors.h"
#include "tools/clip/jobs/sha256.h"

namespace maker {

namespace {

constexpr std::string_view kFirstLine = "# Velmora set, version 1: SHA-256 of its files";
constexpr std::string_view kBetween = "  ";
constexpr size_t kDigits = 2 * kSha256Bytes;
constexpr size_t kMostKnownBytes = size_t{16} << 20;

// As sha256sum writes names with line ends and backslashes in them: the line then starts with a
// backslash.
std::string escaped(const std::string& name) {
    std::string text;
    for (const char each : name) {
        switch (each) {
            case '\n':
                text += "\\n";
                break;
            case '\r':
                text += "\\r";
                break;
            case '\\':
                text += "\\\\";
                break;
            default:
                text += each;
        }
    }
    return text;
}

// Null when there is no such escape.
std::optional<std::string> unescaped(std::string_view text) {
    std::string name;
    for (size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\\') {
            name += text[at];
            continue;
        }
        const char next = ++at < text.size() ? text[at] : '\0';
        if (next != 'n' && next != 'r' && next != '\\') {
            return std::nullopt;
        }
        name += next == 'n' ? '\n' : next == 'r' ? '\r' : '\\';
    }
    return name;
}

bool isSum(std::string_view text) {
    return text.size() == kDigits && std::ranges::all_of(text, [](char c) {
               return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
           });
}

bool addLine(std::string_view line, Manifest& manifest) {
    const bool escapes = line.starts_with('\\');
    line.remove_prefix(escapes ? 1 : 0);
    if (line.size() <= kDigits + kBetween.size() || !isSum(line.substr(0, kDigits)) ||
        line.substr(kDigits, kBetween.size()) != kBetween) {
        return false;
    }
    const std::string_view rest = line.substr(kDigits + kBetween.size());
    const std::optional<std::string> name = escapes ? unescaped(rest) : std::string(rest);
    return name && manifest.emplace(*name, line.substr(0, kDigits)).second;
}

}  // namespace

std::string printManifest(const Manifest& manifest) {
    std::string text(kFirstLine);
    text += "\n";
    for (const auto& [name, sum] : manifest) {
        const std::string shown = escaped(name);
        text += shown == name ? "" : "\\";
        text += sum;
        text += kBetween;
        text += shown + "\n";
    }
    return text;
}

Manifest parseManifest(std::string_view text) {
    Manifest manifest;
    int number = 1;
    for (size_t at = 0; at < text.size(); ++number) {
        const size_t end = text.find('\n', at);
        if (end == std::string_view::npos) {
            throw ToolError("its list of checksums breaks off");
        }
        const std::string_view line = text.substr(at, end - at);
        at = end + 1;
        if (number == 1 ? line != kFirstLine : !addLine(line, manifest)) {
            throw ToolError("its list of checksums is wrong in line " + std::to_string(number));
        }
    }
    if (number == 1) {
        throw ToolError("its list of checksums is empty");
    }
    return manifest;
}

Manifest knownSums() {
    const std::optional<std::string> text = readRegular(kKnownSumsName, kMostKnownBytes);
    try {
        return text ? parseManifest(*text) : Manifest();
    } catch (const ToolError&) {
        return {};
    }
}

void addKnownSums(const Manifest& sums) {
    Manifest all = knownSums();
    const Manifest before = all;
    for (const auto& [name, sum] : sums) {
        all[name] = sum;
    }
    if (all != before && !replaceFile(kKnownSumsName, printManifest(all))) {
        std::fprintf(stderr, "velmora-clip: warning: cannot write %s\n", kKnownSumsName);
    }
}

}  // namespace maker
