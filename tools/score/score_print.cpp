#include "files/playlists.h"
#include "files/preferences.h"
#include "tools/score/keys.h"
#include "tools/score/score.h"

namespace maker {

namespace {

std::string number(int value) {
    return std::to_string(value);
}

std::string keyText(const char* sign, const ScoreEvent& event) {
    std::string text = sign + keyName(event.code);
    if (event.deed != Deed::KEY_UP && event.character != usualCharacter(event.code)) {
        text.append("/").append(number(event.character));
    }
    return text;
}

std::string buttonText(const char* sign, const char* device, const ScoreEvent& event) {
    const bool plain = event.deed == Deed::MOUSE_DOWN || event.deed == Deed::MOUSE_UP;
    std::string text = sign;
    text.append(device);
    return plain && event.code == 1 ? text : text.append(number(event.code));
}

std::string fileText(const ScoreFile& file) {
    std::string text = "file " + file.name;
    if (file.missing) {
        return text.append(" missing\n");
    }
    text.append("\n|");
    for (const char byte : file.content) {
        text.push_back(byte);
        if (byte == '\n') {
            text.push_back('|');
        }
    }
    return text.append("\n");
}

}  // namespace

std::vector<std::string> scoreFiles() {
    return {files::kPreferencesName, files::kControllerName, files::kPlaylistsName};
}

bool canName(const std::string& track) {
    constexpr std::string_view kBlanks = " \t\r";
    return !track.empty() && track.find('\n') == std::string::npos &&
           kBlanks.find(track.front()) == std::string_view::npos &&
           kBlanks.find(track.back()) == std::string_view::npos;
}

std::string printScoreHead(const Score& score) {
    std::string text = "velmora score 1\n";
    text.append("display ").append(number(score.width)).append(" ");
    text.append(number(score.height)).append("\n");
    text.append("seed ").append(std::to_string(score.seed)).append("\n");
    if (score.hasPad) {
        text.append("pad ").append(score.pad).append("\n");
    }
    if (!score.playlist.empty()) {
        text.append("playlist ").append(score.playlist).append("\n");
    }
    for (const ScoreFile& file : score.files) {
        text.append(fileText(file));
    }
    for (const ScoreClip& clip : score.clips) {
        text.append("clip ").append(clip.bytes ? std::to_string(*clip.bytes) : "missing");
        text.append(" ").append(clip.track).append("\n");
    }
    return text;
}

std::string printScoreEvent(const ScoreEvent& event) {
    std::string text = event.early ? " !" : " ";
    switch (event.deed) {
        case Deed::KEY_DOWN:
            return text.append(keyText("+", event));
        case Deed::KEY_UP:
            return text.append(keyText("-", event));
        case Deed::KEY_AGAIN:
            return text.append(keyText("~", event));
        case Deed::KEY_IS_DOWN:
            return text.append(keyName(event.code)).append("=1");
        case Deed::KEY_IS_UP:
            return text.append(keyName(event.code)).append("=0");
        case Deed::POINTER:
            return text.append("@").append(number(event.x)).append(",").append(number(event.y));
        case Deed::MOUSE_DOWN:
            return text.append(buttonText("+", "mouse", event));
        case Deed::MOUSE_UP:
            return text.append(buttonText("-", "mouse", event));
        case Deed::PAD_DOWN:
            return text.append(buttonText("+", "pad", event));
        case Deed::PAD_UP:
            return text.append(buttonText("-", "pad", event));
        case Deed::RATE:
            return text.append("fps=").append(number(event.code));
        case Deed::CLOSE:
            break;
    }
    return text.append("close");
}

std::string printScore(const Score& score) {
    std::string text = printScoreHead(score);
    int frame = -1;
    for (const ScoreEvent& event : score.events) {
        if (event.frame != frame) {
            text.append(frame < 0 ? "" : "\n").append(number(event.frame));
        }
        frame = event.frame;
        text.append(printScoreEvent(event));
    }
    return text.append(frame < 0 ? "" : "\n").append(number(score.frames)).append(" end\n");
}

}  // namespace maker
