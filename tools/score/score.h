#pragma once
// A score: what was played, or is to be, as a text that people read and write. velmora-record
// writes it, velmora-render plays it.
//
// The file is lines of bytes. What stands before the first frame is about the whole:
//
//   velmora score 1              the first line
//   display 1280 720             pixels of the display that it was played on; this is the default
//   seed 1700000000              of the snow; default 1
//   pad NAME                     a game controller was there, of this name
//   playlist NAME                the frames count from the one in which this playlist has loaded,
//                                on the mix screen; without it from the start of the program
//   file userdata/prefs.xml      the file as it was: the lines below that begin with "|"
//   file userdata/prefs.xml missing
//   clip 48213 sea/waves.m19     the size in bytes of a clip that was played with, as a playlist
//                                names it: another one gives other pictures
//   clip missing sea/foam.m19
//
// Each line after that is a frame and what comes with it, separated by blanks:
//
//   120 +q right:10 @320,180     frame 120
//   +25 -q                       25 frames after the line before
//   200-400/25 s                 frames 200, 225, 250 and so on up to 400
//   500 end                      the score has 500 frames, 0 to 499
//
//   q  q:10        down for two frames, for ten
//   +q  -q  ~q     down, up, the repetition of a key that is held
//   q=1  q=0       the key is down, or up, without an event that says so
//   +q/81          down, with this character (UTF-16) where the keyboard does not give the usual
//   one mouse mouse3 pad0  +mouse -pad0   buttons likewise
//   @320,180       the pointer, in pixels from the picture's top left
//   fps=24         the program's rate, from this frame on
//   close          the window is closed
//   !+q            comes before the keys of its frame are sampled, instead of after it
//
// "#" begins a comment. Without "end" the last frame that is named ends the score.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/limits.h"

namespace maker {

inline constexpr int kMostScoreFrames = 10'000'000;    // more than four days
inline constexpr size_t kMostScoreEvents = 5'000'000;  // of the whole
inline constexpr size_t kMostScoreBytes = size_t{64} << 20;
inline constexpr int kTapFrames = 2;  // the frame that samples a key, and one to see it held

enum class Deed : uint8_t {
    KEY_DOWN,
    KEY_UP,
    KEY_AGAIN,
    KEY_IS_DOWN,
    KEY_IS_UP,
    POINTER,
    MOUSE_DOWN,
    MOUSE_UP,
    PAD_DOWN,
    PAD_UP,
    RATE,
    CLOSE,
};

struct ScoreEvent {
    int frame = 0;
    Deed deed = Deed::CLOSE;
    bool early = false;      // before the keys of the frame are sampled
    uint16_t character = 0;  // of a key that goes down, UTF-16
    int code = 0;            // SDL's number of the key; the button; the rate
    int x = 0;               // of the pointer, in the picture
    int y = 0;

    bool operator==(const ScoreEvent&) const = default;
};

struct ScoreFile {
    std::string name;      // of scoreFiles()
    bool missing = false;  // there was none
    std::string content;

    bool operator==(const ScoreFile&) const = default;
};

struct ScoreClip {
    std::string track;              // below videos/, without line ends or blanks around it
    std::optional<uint64_t> bytes;  // none: it was missing

    bool operator==(const ScoreClip&) const = default;
};

struct Score {
    int width = kHdmiWidth;  // of the display
    int height = kHdmiHeight;
    uint32_t seed = 1;
    bool hasPad = false;
    std::string pad;
    std::string playlist;  // empty: from the start of the program
    std::vector<ScoreFile> files;
    std::vector<ScoreClip> clips;
    std::vector<ScoreEvent> events;  // in the order in which they come
    int frames = 0;

    bool operator==(const Score&) const = default;
};

// The user's files that a score can hold, by their names in Velmora's folder.
std::vector<std::string> scoreFiles();

// Whether a score can name a clip of this track.
bool canName(const std::string& track);

// Throws ToolError, which names the line.
Score parseScore(std::string_view bytes);

// All that stands before the first frame.
std::string printScoreHead(const Score& score);

// One event as it stands in a line, with a blank before it.
std::string printScoreEvent(const ScoreEvent& event);

std::string printScore(const Score& score);

}  // namespace maker
