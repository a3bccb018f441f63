#include "tools/clip/jobs/clip_names.h"

#include <unicode/translit.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>

#include "tools/base/texts.h"
#include "tools/clip/media/image_sequence.h"

namespace maker {

namespace {

constexpr size_t kLongest = 80;  // characters; a playlist holds paths of 91
constexpr const char* kFallback = "clip";

// Letters of any script as Latin ones without accents; what has no such form stays.
icu::UnicodeString inLatinLetters(const std::u32string& text) {
    static UErrorCode error = U_ZERO_ERROR;
    static const std::unique_ptr<icu::Transliterator> transliterator(
        icu::Transliterator::createInstance("Any-Latin; Latin-ASCII", UTRANS_FORWARD, error));
    icu::UnicodeString latin = icu::UnicodeString::fromUTF32(
        reinterpret_cast<const UChar32*>(text.data()), static_cast<int32_t>(text.size()));
    if (U_SUCCESS(error)) {
        transliterator->transliterate(latin);
    }
    return latin;
}

// What stands for a character in a name.
char plainCharacter(char16_t character) {
    if (character >= 'A' && character <= 'Z') {
        return static_cast<char>(character - 'A' + 'a');
    }
    const bool letter = character >= 'a' && character <= 'z';
    const bool digit = character >= '0' && character <= '9';
    const bool plain = letter || digit || character == '-' || character == '+';
    return plain ? static_cast<char>(character) : '_';
}

// They belong to the letter before them.
bool isMark(char16_t character) {
    constexpr char16_t kApostrophe = '\'';
    return character == kApostrophe || u_charType(character) == U_NON_SPACING_MARK;
}

std::string withoutEdges(const std::string& name) {
    const size_t from = name.find_first_not_of("-_+");
    if (from == std::string::npos) {
        return "";
    }
    return name.substr(from, name.find_last_not_of("-_+") - from + 1);
}

std::string plainName(const std::string& text) {
    std::string name;
    const icu::UnicodeString latin = inLatinLetters(codePoints(text));
    for (int32_t i = 0; i < latin.length(); ++i) {
        const char plain = plainCharacter(latin[i]);
        if (!isMark(latin[i]) && !(plain == '_' && name.ends_with('_'))) {
            name += plain;
        }
    }
    return withoutEdges(withoutEdges(name).substr(0, kLongest));
}

std::string withoutNumber(std::string name) {
    const size_t dash = name.find_last_not_of("0123456789");
    if (dash != std::string::npos && dash + 1 < name.size() && name[dash] == '-') {
        name[dash] = '_';
    }
    return name;
}

}  // namespace

std::string safeName(const std::string& input) {
    namespace fs = std::filesystem;
    const std::optional<ImagePattern> pattern = imagePattern(input);
    const fs::path path(input);
    std::string name = plainName(pattern ? pattern->before : path.stem().string());
    if (name.empty() && pattern) {
        std::error_code ignored;
        name = plainName(fs::absolute(path, ignored).parent_path().filename().string());
    }
    return name.empty() ? kFallback : name;
}

std::string latin1Of(const std::string& text) {
    std::string latin1;
    for (const char32_t character : codePoints(text)) {
        if (character > 0xFF) {
            return "";
        }
        latin1 += static_cast<char>(character);
    }
    return latin1;
}

std::string ClipNames::cutTo(std::string name, int room) const {
    while (name.size() > 1 && widthOf(name) > room) {
        name.pop_back();
    }
    const std::string cut = withoutEdges(name);
    return cut.empty() ? kFallback : cut;
}

void ClipNames::take(const std::string& name) {
    names_.insert(lowerCase(name));
}

bool ClipNames::taken(const std::string& name) const {
    return names_.contains(lowerCase(name));
}

std::string ClipNames::give(const std::string& name, int room, const std::string& suffix) {
    const std::string wished = withoutNumber(name);
    std::string given = cutTo(wished, room - widthOf(suffix));
    for (int number = 2; taken(given); ++number) {
        const std::string behind = std::string("_").append(std::to_string(number));
        given = cutTo(wished, room - widthOf(behind + suffix)) + behind;
    }
    take(given);
    return given;
}

}  // namespace maker
