#include "tools/render/played_clips.h"

#include "tools/base/texts.h"

namespace maker {

std::vector<std::string> otherClips(const Score& score, const std::filesystem::path& folder) {
    std::vector<std::string> sentences;
    for (const ScoreClip& clip : score.clips) {
        std::error_code error;
        const uintmax_t bytes = std::filesystem::file_size(folder / "videos" / clip.track, error);
        std::string sentence = inQuotes(clip.track);
        if (!clip.bytes && !error) {
            sentence.append(" was missing when this was played, and is there now");
        } else if (clip.bytes && error) {
            sentence.append(" is missing here");
        } else if (clip.bytes && bytes != *clip.bytes) {
            sentence.append(" is another clip than the one that was played: ");
            sentence.append(std::to_string(bytes)).append(" bytes, not ");
            sentence.append(std::to_string(*clip.bytes));
        } else {
            continue;
        }
        sentences.push_back(std::move(sentence));
    }
    return sentences;
}

}  // namespace maker
