#include "tools/clip/reports/clip_files.h"

#include <algorithm>

#include "layout/clipname.h"
#include "tools/clip/base/interrupt.h"

namespace maker {

namespace fs = std::filesystem;

std::vector<std::string> clipsBelow(const fs::path& folder) {
    std::vector<std::string> paths;
    std::error_code error;
    fs::recursive_directory_iterator entry(folder,
                                           fs::directory_options::follow_directory_symlink |
                                               fs::directory_options::skip_permission_denied,
                                           error);
    // The folders that the entry stands in, from `folder` on, whatever links led there.
    std::vector<fs::path> above{fs::canonical(folder, error)};
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        stopIfInterrupted();
        std::error_code ignored;
        if (entry->is_directory(ignored)) {
            above.resize(static_cast<size_t>(entry.depth()) + 1);
            above.push_back(fs::canonical(entry->path(), ignored));
            if (std::find(above.begin(), above.end() - 1, above.back()) != above.end() - 1) {
                entry.disable_recursion_pending();
            }
        } else if (entry->is_regular_file(ignored) && clip::isClipName(entry->path().filename())) {
            paths.push_back(entry->path().lexically_relative(folder).string());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

}  // namespace maker
