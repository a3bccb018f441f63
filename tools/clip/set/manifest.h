#pragma once
// The checksums of a set's files as text: a line that says what it is, then a line for each file,
// in the form that sha256sum writes and `sha256sum -c` checks. Names are bytes.
//
// A packed set has one inside. Another stands in userdata/ of Velmora's folder and grows with every
// set packed or unpacked, so that a clip that went missing can be known again by what it held.

#include <map>
#include <string>
#include <string_view>

namespace maker {

inline constexpr const char* kKnownSumsName = "userdata/clips.sha256";

using Manifest = std::map<std::string, std::string>;  // name: SHA-256

std::string printManifest(const Manifest& manifest);

// Throws ToolError with what is wrong and in which line.
Manifest parseManifest(std::string_view text);

// The checksums known in the current directory, by name such as "videos/a.m19". Empty when there is
// no such file, or none that can be understood.
Manifest knownSums();

// Adds to them, once all else is done: that they cannot be written is a warning and no error.
void addKnownSums(const Manifest& sums);

}  // namespace maker
