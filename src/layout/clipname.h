#pragma once
// Clip files by their names alone; the case counts. Nothing is opened.

#include <string>

namespace clip {

// A clip of this version or an older one. Only this version loads.
inline bool isClipName(const std::string& name) {
    return name.ends_with(".m17") || name.ends_with(".m18") || name.ends_with(".m19");
}

inline bool isPlayableName(const std::string& name) {
    return name.ends_with(".m19");
}

}  // namespace clip
