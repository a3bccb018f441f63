#include <algorithm>
#include <charconv>
#include <climits>

#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/score/keys.h"
#include "tools/score/score.h"

namespace maker {

namespace {

constexpr std::string_view kFirstLine = "velmora score 1";
constexpr std::string_view kBlanks = " \t\r";
constexpr int kLargestSide = 16384;
constexpr int kMostButtons = 100;
constexpr int kFastest = 25;  // the program's pace
constexpr int kFurthest = 32767;

// The frames of one line.
struct Frames {
    int first = 0;
    int last = 0;
    int step = 1;
};

// A number of decimal digits and nothing else, within limits.
template <typename Number>
bool readNumber(std::string_view text, Number least, Number most, Number& value) {
    const char* const end = text.data() + text.size();
    Number read = 0;
    const auto [stopped, error] = std::from_chars(text.data(), end, read);
    if (error != std::errc() || stopped != end || read < least || read > most) {
        return false;
    }
    value = read;
    return true;
}

// Takes the first word off the text; empty when there is none.
std::string_view takeWord(std::string_view& text) {
    const size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
    const size_t end = std::min(text.find_first_of(kBlanks, begin), text.size());
    const std::string_view word = text.substr(begin, end - begin);
    text.remove_prefix(end);
    return word;
}

// What follows a word, without the blanks around it.
std::string restOf(std::string_view text) {
    const size_t begin = text.find_first_not_of(kBlanks);
    return begin == std::string_view::npos
               ? ""
               : std::string(text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin));
}

// The parts before and behind a mark; false when it is not there.
bool split(std::string_view text, char mark, std::string_view& before, std::string_view& behind) {
    const size_t at = text.find(mark);
    if (at == std::string_view::npos) {
        return false;
    }
    before = text.substr(0, at);
    behind = text.substr(at + 1);
    return true;
}

class Reader {
public:
    explicit Reader(std::string_view bytes) : rest_(bytes) {}

    Score read();

private:
    [[noreturn]] void fail(const std::string& what) const {
        throw ToolError("line " + std::to_string(line_) + ": " + what);
    }
    void require(bool right, const std::string& what) const {
        if (!right) {
            fail(what);
        }
    }
    bool nextLine(std::string_view& line);
    void readHead(std::string_view word, std::string_view rest);
    void readFile(std::string_view rest);
    void readClip(std::string_view rest);
    void readFrames(std::string_view word);
    void readEvents(std::string_view rest);
    void readEvent(std::string_view word);
    bool readPlain(std::string_view text, ScoreEvent& event) const;
    bool readTarget(std::string_view name, Deed key, ScoreEvent& event) const;
    void add(ScoreEvent event, int tap);

    std::string_view rest_;
    int line_ = 0;
    Frames frames_;
    bool inFrames_ = false;  // the first frame has been met
    int end_ = -1;
    int lastFrame_ = -1;
    Score score_;
};

bool Reader::nextLine(std::string_view& line) {
    if (rest_.empty()) {
        return false;
    }
    const size_t end = std::min(rest_.find('\n'), rest_.size());
    line = rest_.substr(0, end);
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    ++line_;
    return true;
}

void Reader::readFile(std::string_view rest) {
    const std::string name(takeWord(rest));
    const std::vector<std::string> known = scoreFiles();
    require(std::ranges::find(known, name) != known.end(),
            "a score holds no file " + inQuotes(name));
    require(std::ranges::find(score_.files, name, &ScoreFile::name) == score_.files.end(),
            "a second " + name);
    ScoreFile file{name, takeWord(rest) == "missing", ""};
    for (bool first = true; rest_.starts_with('|'); first = false) {
        std::string_view line;
        nextLine(line);
        file.content.append(first ? "" : "\n").append(line.substr(1));
    }
    score_.files.push_back(std::move(file));
}

void Reader::readClip(std::string_view rest) {
    const std::string_view size = takeWord(rest);
    ScoreClip clip{restOf(rest), std::nullopt};
    if (size != "missing") {
        uint64_t bytes = 0;
        require(readNumber(size, uint64_t{0}, UINT64_MAX, bytes),
                "a clip has a size in bytes, or is missing");
        clip.bytes = bytes;
    }
    require(!clip.track.empty(), "which clip?");
    score_.clips.push_back(std::move(clip));
}

void Reader::readHead(std::string_view word, std::string_view rest) {
    require(!inFrames_, inQuotes(word) + " stands before the first frame");
    if (word == "display") {
        const bool right = readNumber(takeWord(rest), 1, kLargestSide, score_.width) &&
                           readNumber(takeWord(rest), 1, kLargestSide, score_.height);
        require(right, "a display has a width and a height of 1 to 16384");
    } else if (word == "seed") {
        require(readNumber(takeWord(rest), uint32_t{0}, UINT32_MAX, score_.seed),
                "a seed is a number of 0 to 4294967295");
    } else if (word == "pad") {
        score_.hasPad = true;
        score_.pad = restOf(rest);
    } else if (word == "playlist") {
        score_.playlist = restOf(rest);
        require(!score_.playlist.empty(), "which playlist?");
    } else if (word == "file") {
        readFile(rest);
    } else if (word == "clip") {
        readClip(rest);
    } else {
        fail(inQuotes(word) + " is neither a frame nor a word that scores know");
    }
}

// "120", "+25" or "200-400/25"
void Reader::readFrames(std::string_view word) {
    constexpr int kLast = kMostScoreFrames;
    const std::string whole = inQuotes(word) + " is no frame: such as 120, +25 or 200-400/25";
    std::string_view first = word;
    std::string_view last;
    std::string_view step = "1";
    Frames read;
    if (word.starts_with('+')) {
        require(readNumber(word.substr(1), 0, kLast, read.first), whole);
        read.first += frames_.first;
        require(read.first <= kLast, "a score has at most 10000000 frames");
        frames_ = {read.first, read.first, 1};
        return;
    }
    const bool range = split(word, '-', first, last);
    if (range) {
        split(last, '/', last, step);
    }
    require(readNumber(first, 0, kLast, read.first), whole);
    require(!range || readNumber(last, read.first, kLast, read.last), whole);
    require(readNumber(step, 1, kLast, read.step), whole);
    read.last = range ? read.last : read.first;
    frames_ = read;
}

void Reader::add(ScoreEvent event, int tap) {
    for (int64_t frame = frames_.first; frame <= frames_.last; frame += frames_.step) {
        require(score_.events.size() + 2 <= kMostScoreEvents, "too many events");
        event.frame = static_cast<int>(frame);
        lastFrame_ = std::max(lastFrame_, event.frame);
        score_.events.push_back(event);
        if (tap > 0) {
            ScoreEvent up = event;
            // Each way up follows its way down.
            up.deed = static_cast<Deed>(static_cast<int>(event.deed) + 1);
            up.character = 0;
            up.frame += tap;
            lastFrame_ = std::max(lastFrame_, up.frame);
            score_.events.push_back(up);
        }
    }
}

static_assert(static_cast<int>(Deed::KEY_UP) == static_cast<int>(Deed::KEY_DOWN) + 1);
static_assert(static_cast<int>(Deed::MOUSE_UP) == static_cast<int>(Deed::MOUSE_DOWN) + 1);
static_assert(static_cast<int>(Deed::PAD_UP) == static_cast<int>(Deed::PAD_DOWN) + 1);

// What is no key and no button.
bool Reader::readPlain(std::string_view text, ScoreEvent& event) const {
    if (text == "close") {
        event.deed = Deed::CLOSE;
        return true;
    }
    if (text.starts_with("fps=")) {
        event.deed = Deed::RATE;
        require(readNumber(text.substr(4), 0, kFastest, event.code), "a rate is 0 to 25");
        return true;
    }
    std::string_view x;
    std::string_view y;
    if (split(text, '=', x, y)) {
        const std::optional<int> key = keyOf(x);
        require(key && (y == "0" || y == "1"), "there is no " + inQuotes(text));
        event.deed = y == "1" ? Deed::KEY_IS_DOWN : Deed::KEY_IS_UP;
        event.code = *key;
        return true;
    }
    if (!text.starts_with('@')) {
        return false;
    }
    event.deed = Deed::POINTER;
    const bool right = split(text.substr(1), ',', x, y) &&
                       readNumber(x, -kFurthest, kFurthest, event.x) &&
                       readNumber(y, -kFurthest, kFurthest, event.y);
    require(right, inQuotes(text) + " is no place of the pointer: such as @320,180");
    return true;
}

// A key or a button; `key` says what is done to it.
bool Reader::readTarget(std::string_view name, Deed key, ScoreEvent& event) const {
    const auto steps = static_cast<int>(key) - static_cast<int>(Deed::KEY_DOWN);
    const auto likewise = [&](Deed down) {
        return static_cast<Deed>(static_cast<int>(down) + steps);
    };
    if (const std::optional<int> number = keyOf(name)) {
        event.deed = key;
        event.code = *number;
        event.character = key == Deed::KEY_UP ? uint16_t{0} : usualCharacter(*number);
        return true;
    }
    if (key == Deed::KEY_AGAIN) {
        return false;
    }
    if (name == "mouse" || name.starts_with("mouse")) {
        event.deed = likewise(Deed::MOUSE_DOWN);
        event.code = 1;
        return name == "mouse" || readNumber(name.substr(5), 1, UCHAR_MAX, event.code);
    }
    event.deed = likewise(Deed::PAD_DOWN);
    return name.starts_with("pad") && readNumber(name.substr(3), 0, kMostButtons - 1, event.code);
}

void Reader::readEvent(std::string_view word) {
    const std::string whole = inQuotes(word);
    ScoreEvent event;
    event.early = word.starts_with('!');
    word.remove_prefix(event.early ? 1 : 0);
    if (readPlain(word, event)) {
        add(event, 0);
        return;
    }
    constexpr std::string_view kSigns = "+-~";  // in the order of their deeds
    const size_t sign = word.empty() ? std::string_view::npos : kSigns.find(word[0]);
    int tap = sign == std::string_view::npos ? kTapFrames : 0;
    word.remove_prefix(tap > 0 ? 0 : 1);
    std::string_view name = word;
    std::string_view behind;
    if (tap > 0 && split(word, ':', name, behind)) {
        require(readNumber(behind, 1, kMostScoreFrames, tap), whole + ": for how many frames?");
    }
    const bool given = split(name, '/', name, behind);
    const Deed deed = tap > 0 ? Deed::KEY_DOWN : static_cast<Deed>(sign);
    require(readTarget(name, deed, event), "there is no " + whole);
    if (given) {
        require(event.deed == Deed::KEY_DOWN || event.deed == Deed::KEY_AGAIN,
                whole + " has no character");
        require(readNumber<uint16_t>(behind, 0, UINT16_MAX, event.character),
                whole + ": a character is a number of 0 to 65535");
    }
    add(event, tap);
}

void Reader::readEvents(std::string_view rest) {
    for (std::string_view word = takeWord(rest); !word.empty(); word = takeWord(rest)) {
        if (word == "end") {
            require(end_ < 0, "a second end");
            end_ = frames_.first;
        } else {
            readEvent(word);
        }
    }
    lastFrame_ = std::max(lastFrame_, frames_.last);
}

Score Reader::read() {
    std::string_view line;
    const bool begun = nextLine(line);
    require(begun && restOf(line) == kFirstLine, "a score begins with " + std::string(kFirstLine));
    while (nextLine(line)) {
        std::string_view rest = line.substr(0, line.find('#'));
        if (line.starts_with("pad ") || line.starts_with("playlist ") ||
            line.starts_with("clip ")) {
            rest = line;  // names may hold any character
        }
        const std::string_view word = takeWord(rest);
        if (word.empty()) {
            continue;
        }
        if (word[0] == '+' || (word[0] >= '0' && word[0] <= '9')) {
            inFrames_ = true;
            readFrames(word);
            readEvents(rest);
        } else {
            readHead(word, rest);
        }
    }
    std::ranges::stable_sort(score_.events, {}, &ScoreEvent::frame);
    score_.frames = end_ >= 0 ? end_ : lastFrame_ + 1;
    std::erase_if(score_.events,
                  [&](const ScoreEvent& event) { return event.frame >= score_.frames; });
    return std::move(score_);
}

}  // namespace

Score parseScore(std::string_view bytes) {
    if (bytes.size() > kMostScoreBytes) {
        throw ToolError("a score has at most 64 MB");
    }
    return Reader(bytes).read();
}

}  // namespace maker
