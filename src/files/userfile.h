#pragma once
// The program's user-data files: read whole, replaced whole.
//
// A file that is there but cannot be read is never written over: what it holds may be all that the
// performer has. A power cut at any moment of a save leaves either the old file or the new one.

#include <cstdio>
#include <optional>
#include <string>

#include "common/memory.h"
#include "common/messages.h"

// Empty when it has none any more.
std::string workingDirectory();

// At most `most` bytes of a regular file; null, with the reason in `errno`, when it is none or
// cannot be read.
std::optional<std::string> readRegular(const std::string& path, size_t most);

// The whole content of `path`, by a temporary file beside it (pending_file.h). A link stays and the
// file behind it is replaced, or made when there is none yet; what is no regular file is left
// alone. The folder of `path` is made when it is missing. The old file's mode and owner are kept
// where the system allows it; where it does not, nobody gets rights that they did not have. False
// when any step failed; the old file is then untouched.
bool replaceFile(const std::string& path, const std::string& content);

// One user-data file over a run of the program.
class UserFile {
public:
    // The file's bytes; null when there is no file, or none that can be read from its start to its
    // end. A file is read at most as far as the scanner (xmlscan.h) goes in any of them.
    std::optional<std::string> read(const std::string& path);

    // True once read() has met a file that it could not read.
    bool unreadable() const { return unreadable_; }

    // replaceFile, but for a file that could not be read: false then, for as long as this lives.
    bool replace(const std::string& path, const std::string& content) const;

    // Replaces `folder`/`name` by what `makeText` gives; says so when that cannot be done.
    template <typename MakeText>
    bool save(const std::string& folder, const char* name, MakeText makeText) const {
        bool saved = false;
        withinMemory([&] { saved = replace(folder + "/" + name, makeText()); });
        if (!saved) {
            printf(msg::kSaveFailedFormat, folder.c_str(), name);
        }
        return saved;
    }

private:
    bool unreadable_ = false;
};
