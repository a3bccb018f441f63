#include "files/xmlscan.h"

namespace xml {

namespace {

// At the end of the file the byte 0xFF is appended, like any other.
void appendChar(FILE* stream, std::string& buffer) {
    buffer.push_back(static_cast<char>(static_cast<unsigned char>(fgetc(stream))));
}

std::string closingTag(const std::string& name) {
    return "</" + name + ">";
}

}  // namespace

int skipChar(FILE* stream) {
    return fgetc(stream);
}

std::string skipTo(FILE* stream, const std::string& target) {
    std::string buffer;
    for (int read = 0; read < kMotBudget; ++read) {
        appendChar(stream, buffer);
        if (buffer.ends_with(target)) {
            return "";
        }
        if (buffer.ends_with(kEndOfAll)) {
            return kEndOfAll;
        }
    }
    return "";
}

std::string readNode(FILE* stream, const std::string& name) {
    const std::string opening = "<" + name + ">";
    const std::string closing = closingTag(name);
    std::string before;
    for (int read = 0; read < kNoeudBudget && !before.ends_with(opening); ++read) {
        appendChar(stream, before);
        if (before.ends_with(opening)) {
            break;
        }
        if (before.ends_with(kEndOfAll)) {
            return kEndOfAll;
        }
        if (before.ends_with(kEndOfPlaylist)) {
            return kEndOfPlaylist;
        }
    }
    // Deliberate: an opening tag that did not come within its limit counts as found, and what
    // follows is read as the text. [quirk_missing_opening_tag_counts_as_found]
    std::string text;
    while (text.size() < kNoeudBudget && !text.ends_with(closing)) {
        appendChar(stream, text);
    }
    // Deliberate: the closing tag's length is cut off whether or not it was found, so a text that
    // is too long comes back as its first 99 characters less that many.
    // [quirk_long_text_is_cut_by_its_closing_tag]
    text.resize(text.size() - closing.size());
    return text;
}

size_t longestText(const std::string& name) {
    return kNoeudBudget - closingTag(name).size();
}

bool comesBack(const std::string& text, const std::string& name) {
    return text.size() <= longestText(name) && text.find(closingTag(name)) == std::string::npos &&
           text != kEndOfAll && text != kEndOfPlaylist;
}

void readPrologue(FILE* stream) {
    for (int i = 0; i < kDeclarationChars; ++i) {
        skipChar(stream);
    }
    skipChar(stream);
    skipTo(stream, "<all>");
}

}  // namespace xml
