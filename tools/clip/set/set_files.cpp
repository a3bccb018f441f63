#include "tools/clip/set/set_files.h"

#include <algorithm>

#include "tools/clip/set/pack_names.h"

namespace maker {

const PackedFile* SetFiles::find(const std::string& name) const {
    const auto found = std::ranges::find(files_, name, &PackedFile::name);
    return found == files_.end() ? nullptr : &*found;
}

size_t SetFiles::clips() const {
    return static_cast<size_t>(std::ranges::count_if(
        files_, [](const PackedFile& file) { return !trackOfPacked(file.name).empty(); }));
}

}  // namespace maker
