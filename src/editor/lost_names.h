#pragma once
// Why the playlists file would not give a text back at the next start, as a line for the performer;
// empty for what it gives back.

#include <string>

#include "files/xmlscan.h"

namespace lost {

inline std::string why(const std::string& text, const char* element, const char* tooLong) {
    if (xml::comesBack(text, element)) {
        return "";
    }
    const size_t most = xml::longestText(element);
    return text.size() > most ? std::to_string(most) + tooLong
                              : "a playlist cannot keep this name: use another one";
}

// A track's path below ./videos/.
inline std::string whyPath(const std::string& path) {
    return why(path, "track", " signs is the most with its folders: use shorter names");
}

// A playlist's name.
inline std::string whyName(const std::string& name) {
    return why(name, "name", " signs is the most: use a shorter name");
}

}  // namespace lost
