// Any bytes through the scanner of the user files, against the same rules written as searches in a
// string.
//
// Input: the number of steps, a byte for each step (what to look for), then the text.
#include <cstring>

#include "files/xmlscan.h"
#include "fuzz/input.h"

namespace {

using fuzz::require;

constexpr const char* kTargets[] = {"<all>", "<playlist>", "</all>", "l>", "<x>"};
constexpr const char* kNames[] = {"name", "track", "topbar", "filter", "button", "a"};
constexpr int kSteps = 8;
constexpr size_t kSkipLimit = 43;
constexpr size_t kNodeLimit = 99;

// The text as a string, without an end: bytes of 0xFF follow the last one.
class Model {
public:
    explicit Model(std::span<const uint8_t> text)
        : text_(reinterpret_cast<const char*>(text.data()), text.size()) {}

    std::string skipTo(const std::string& target) {
        const std::string window = ahead(kSkipLimit);
        const size_t found = endOf(window, target);
        const size_t end = endOf(window, "</all>");
        at_ += std::min({found, end, kSkipLimit});
        return end < found ? "</all>" : "";
    }

    std::string readNode(const std::string& name) {
        const std::string before = ahead(kNodeLimit);
        const size_t opening = endOf(before, "<" + name + ">");
        const size_t end = endOf(before, "</all>");
        const size_t endOfPlaylist = endOf(before, "</playlist>");
        at_ += std::min({opening, end, endOfPlaylist, kNodeLimit});
        if (std::min(end, endOfPlaylist) < opening) {
            return end < endOfPlaylist ? "</all>" : "</playlist>";
        }
        const std::string closing = "</" + name + ">";
        const std::string text = ahead(kNodeLimit);
        const size_t length = std::min(endOf(text, closing), kNodeLimit);
        at_ += length;
        return text.substr(0, length - closing.size());
    }

    int skipChar() {
        const int byte = at_ < text_.size() ? static_cast<unsigned char>(text_[at_]) : EOF;
        ++at_;
        return byte;
    }

    void readPrologue() {
        at_ += 44;
        skipTo("<all>");
    }

private:
    std::string ahead(size_t count) const {
        std::string window = at_ < text_.size() ? text_.substr(at_, count) : "";
        window.resize(count, '\xFF');
        return window;
    }
    // Bytes up to the end of the first occurrence.
    static size_t endOf(const std::string& window, const std::string& what) {
        const size_t found = window.find(what);
        return found == std::string::npos ? std::string::npos : found + what.size();
    }

    std::string text_;
    size_t at_ = 0;
};

void step(int choice, xml::Scanner& scanner, Model& model) {
    const char* target = kTargets[static_cast<size_t>(choice / 4) % std::size(kTargets)];
    const char* name = kNames[static_cast<size_t>(choice / 4) % std::size(kNames)];
    switch (choice % 4) {
        case 0:
            require(scanner.readNode(name) == model.readNode(name), "readNode");
            break;
        case 1:
            require(scanner.skipTo(target) == model.skipTo(target), "skipTo");
            break;
        case 2:
            require(scanner.skipChar() == model.skipChar(), "skipChar");
            break;
        default:
            scanner.readPrologue();
            model.readPrologue();
            break;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Input input(data, size);
    uint8_t choices[kSteps];
    const int steps = input.below(kSteps + 1);
    for (int i = 0; i < steps; ++i) {
        choices[i] = input.byte();
    }
    Model model(input.rest());
    xml::Scanner scanner({reinterpret_cast<const char*>(input.rest().data()), input.rest().size()});
    for (int i = 0; i < steps; ++i) {
        step(choices[i], scanner, model);
    }
    return 0;
}
