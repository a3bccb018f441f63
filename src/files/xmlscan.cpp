#include "files/xmlscan.h"

#include <cstdlib>

namespace xml {

namespace {

std::string closingTag(const std::string& name) {
    return "</" + name + ">";
}

}  // namespace

int Scanner::skipChar() {
    if (stream_ != nullptr) {
        return fgetc(stream_);
    }
    if (ahead_.empty()) {
        return EOF;
    }
    const auto first = static_cast<unsigned char>(ahead_.front());
    ahead_.remove_prefix(1);
    return first;
}

// At the end the byte 0xFF is appended, like any other.
void Scanner::append(std::string& buffer) {
    buffer.push_back(static_cast<char>(static_cast<unsigned char>(skipChar())));
}

std::string Scanner::skipTo(const std::string& target) {
    std::string buffer;
    for (int read = 0; read < kMotBudget; ++read) {
        append(buffer);
        if (buffer.ends_with(target)) {
            return "";
        }
        if (buffer.ends_with(kEndOfAll)) {
            return kEndOfAll;
        }
    }
    return "";
}

std::string Scanner::readNode(const std::string& name) {
    const std::string opening = "<" + name + ">";
    const std::string closing = closingTag(name);
    std::string before;
    for (int read = 0; read < kNoeudBudget && !before.ends_with(opening); ++read) {
        append(before);
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
        append(text);
    }
    // Deliberate: the closing tag's length is cut off whether or not it was found, so a text that
    // is too long comes back as its first 99 characters less that many.
    // [quirk_long_text_is_cut_by_its_closing_tag]
    text.resize(text.size() - closing.size());
    return text;
}

void Scanner::readPrologue() {
    for (int i = 0; i <= kDeclarationChars; ++i) {
        skipChar();
    }
    skipTo("<all>");
}

std::vector<std::string> readNodes(std::string_view document, std::span<const char* const> names) {
    Scanner scanner(document);
    scanner.readPrologue();
    std::vector<std::string> texts;
    for (const char* name : names) {
        texts.push_back(scanner.readNode(name));
    }
    return texts;
}

int numberOf(const std::string& text) {
    return static_cast<int>(strtol(text.c_str(), nullptr, 10));
}

std::string element(const std::string& name, const std::string& text) {
    return "<" + name + ">" + text + closingTag(name) + "\n";
}

size_t longestText(const std::string& name) {
    return kNoeudBudget - closingTag(name).size();
}

bool comesBack(const std::string& text, const std::string& name) {
    return text.size() <= longestText(name) && text.find(closingTag(name)) == std::string::npos &&
           text != kEndOfAll && text != kEndOfPlaylist;
}

}  // namespace xml
