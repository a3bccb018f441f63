#pragma once
// Writes a user-data file so that a power cut at any moment leaves either the old file or the new
// one, whole: a temporary file beside the target is written, flushed to the disk and renamed over
// it. The target's folder is made when it is missing.

#include <string>

// The whole content of `path`. False when any step failed; the old file is then untouched.
bool replaceFile(const std::string& path, const std::string& content);
