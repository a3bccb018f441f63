#pragma once
// The conformance corpus of the clip format: clips that test a reader one matter at a time, with
// the checksums of their frames and a page about them. The same bytes every time.

#include <cstddef>
#include <filesystem>

namespace maker::conformance {

// The folder is made; one that holds anything is refused. Returns the number of clips.
size_t writeCorpus(const std::filesystem::path& folder);

}  // namespace maker::conformance
