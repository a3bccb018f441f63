#pragma once
// The program's user-data files: read whole, replaced whole.
//
// A file that is there but cannot be read is never written over: what it holds may be all that the
// performer has. A power cut at any moment of a save leaves either the old file or the new one.

#include <cstdio>
#include <string>

// The whole content of `path`, by a temporary file beside it that is flushed to the disk and
// renamed over it. A link stays and the file behind it is replaced, or made when there is none yet;
// what is no regular file is left alone. The folder of `path` is made when it is missing. The old
// file's mode and owner are kept where the system allows it; where it does not, nobody gets rights
// that they did not have. False when any step failed; the old file is then untouched.
bool replaceFile(const std::string& path, const std::string& content);

// One user-data file over a run of the program.
class UserFile {
public:
    // A stream of the file's bytes, which the caller closes; null when there is no file, or none
    // that can be read from its start to its end. A file is read at most as far as the scanner
    // (xmlscan.h) goes in any of them.
    FILE* open(const std::string& path);

    // True once open() has met a file that it could not read.
    bool unreadable() const { return unreadable_; }

    // replaceFile, but for a file that could not be read: false then, for as long as this lives.
    bool replace(const std::string& path, const std::string& content) const;

private:
    bool unreadable_ = false;
};
