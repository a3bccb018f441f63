#pragma once
// Files that are part of the tool, so that it needs none beside it. The build makes their bytes.

#include <span>

namespace maker {

extern const std::span<const unsigned char> kFontFile;  // data/volter, the interface's font

}  // namespace maker
