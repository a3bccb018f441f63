#pragma once
// What there is to import in files and folders, and which of it is imported already.

#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "tools/clip/jobs/encode_job.h"
#include "tools/clip/jobs/folder_hold.h"

namespace maker {

// A file that is named is taken whatever it is called. Of a folder and those below it are taken, by
// their endings, videos and animated images, and numbered pictures that follow each other as one
// image sequence; other still pictures are counted and left. Names that begin with a point are
// passed over, and links to folders are not followed.
struct Scan {
    std::vector<std::string> inputs;  // files and patterns, each once, sorted within a folder given
    int stills = 0;                   // pictures left
};

// Throws ToolError for a name that is not there or a folder that cannot be read.
Scan scanInputs(const std::vector<std::string>& given);

// Tells one state of an input from another. Of an image sequence all its pictures count.
struct InputState {
    uint64_t bytes = 0;
    int64_t changed = 0;  // nanoseconds since 1970

    bool operator==(const InputState&) const = default;
};

// All zeros for an input that is not there.
InputState stateOf(const std::string& input);

// Which clips of a folder were made from which inputs, so that an import does only what is missing
// or changed.
//
// The log is a file beside the clips that only ever grows by whole lines: one that gives an input
// its clip's name, before the clip gets that name on the disk, and one that says that the clip is
// there, after it. Whatever interrupts an import, a clip without its second line is made again,
// under the same name, over what may be there; a line that broke off counts as none. An input
// counts as done when its size, its time and the options of the encoder are those of the second
// line and the clips have the sizes that stand there. Instead of the time what the input holds may
// be the same, and a clip may have been made again by other means, as far as its CLIP.json says so.
// Nothing is ever deleted.
//
// While it exists the object holds the folder against other imports. May be used from any thread.
class ImportLog {
public:
    // Reads the log; a folder that is not there has none. Throws when another import is at work.
    explicit ImportLog(const std::filesystem::path& folder);
    ~ImportLog();
    ImportLog(const ImportLog&) = delete;
    ImportLog& operator=(const ImportLog&) = delete;

    // The name that the input's clip has; empty when it has none yet.
    std::string nameOf(const std::string& input) const;
    std::vector<std::string> names() const;

    // The input's clips in the folder when they are as they should be; else none.
    std::vector<std::string> clipsOf(const std::string& input, const InputState& state,
                                     const std::string& options) const;

    // The folder must be there by now.
    void begin(const std::string& input, const std::string& name);
    void finish(const std::string& input, const std::string& name, const InputState& state,
                const std::string& options, const std::vector<ClipReport>& clips);

private:
    struct Clip {
        std::string file;
        uint64_t bytes = 0;
    };
    struct Entry {
        std::string name;
        InputState state;
        std::string options;
        std::vector<Clip> clips;  // none while it is not finished
    };

    void readLine(const std::string& line);
    void append(const std::string& line);

    std::filesystem::path folder_;
    std::map<std::string, Entry> entries_;  // by absolute path
    std::optional<FolderHold> held_;
    int file_ = -1;
    bool brokenOff_ = false;  // the log's last line
    mutable std::mutex mutex_;
};

}  // namespace maker
