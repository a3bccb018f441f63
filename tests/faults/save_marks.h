#pragma once
// Names that save_once asks for, and that do not exist: in a trace of its system calls they stand
// before and behind those of the save.

namespace faults {

inline constexpr const char* kSaveStarts = "the save starts";
inline constexpr const char* kSaveEnds = "the save ends";

}  // namespace faults
