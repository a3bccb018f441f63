#pragma once
// The forward-only scanner of the three user-data files, and what all three are written with. It
// knows just the shape that the program writes: a declaration line of 43 characters, a root element
// "all" and flat children whose text is wanted. It looks for tags at the end of what it has read,
// gives up after fixed numbers of characters, and never fails: past the end of the bytes every
// character counts as the byte 0xFF, and the limits end the search.

#include <cstdio>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace xml {

inline constexpr int kDeclarationChars = 43;
inline constexpr int kMotBudget = 43;  // characters that skipTo reads at most
inline constexpr int kNoeudBudget =
    99;  // characters before the opening tag, and again for the text
inline constexpr const char* kEndOfAll = "</all>";
inline constexpr const char* kEndOfPlaylist = "</playlist>";

// What a document starts and ends with.
inline constexpr const char* kDocumentStart =
    "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n";
inline constexpr const char* kDocumentEnd = "</all>\n";

// Reads bytes, or what is still ahead in an open stream, which the caller closes.
class Scanner {
public:
    explicit Scanner(std::string_view bytes) : ahead_(bytes) {}
    explicit Scanner(FILE* stream) : stream_(stream) {}

    // Reads and drops one character; returns it, or EOF.
    int skipChar();

    // Skips to just past `target`. Returns "</all>" when the end of the document came first, else
    // an empty string, whether or not the target was found.
    std::string skipTo(const std::string& target);

    // The text of the next element `name`; or "</all>" or "</playlist>" when that tag came before
    // the element's opening tag. Attributes, entities and comments are not understood; text comes
    // raw.
    std::string readNode(const std::string& name);

    // The start of every user-data file: declaration, line end, "<all>". Nothing of it is checked.
    void readPrologue();

private:
    void append(std::string& buffer);

    FILE* stream_ = nullptr;
    std::string_view ahead_;  // without a stream
};

// The texts of a document's elements `names`, in the order in which they are asked for.
std::vector<std::string> readNodes(std::string_view document, std::span<const char* const> names);

// Text that is not a number counts as 0.
int numberOf(const std::string& text);

// <name>text</name> and a line end.
std::string element(const std::string& name, const std::string& text);

// The longest text that readNode gives back whole: the closing tag must come within the limit too.
size_t longestText(const std::string& name);

// Whether `text`, written between the tags of `name`, comes back from readNode as it is and is told
// from an end tag. Any bytes will do, line ends and zeros too; no text at all comes back as none.
bool comesBack(const std::string& text, const std::string& name);

}  // namespace xml
