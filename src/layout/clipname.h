#pragma once
// Clip files by their names alone; the case counts. Nothing is opened.

#include <string>

namespace clip {

inline bool endsWith(const std::string& name, const char* extension) {
    constexpr size_t kLength = 4;
    return name.size() >= kLength && name.compare(name.size() - kLength, kLength, extension) == 0;
}

// A clip of this version or an older one. Only this version loads.
inline bool isClipName(const std::string& name) {
    return endsWith(name, ".m17") || endsWith(name, ".m18") || endsWith(name, ".m19");
}

inline bool isPlayableName(const std::string& name) {
    return endsWith(name, ".m19");
}

}  // namespace clip
