// What the files explorer knows of the clips it shows. One visible clip is looked into at a time,
// a bounded bit a frame, so that the page is there at once however slow the card is.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "playlists/playlist.h"

namespace {

constexpr size_t kLookBytes = size_t{256} << 10;  // a frame
constexpr size_t kReadBytes = size_t{32} << 10;   // at a time

// Null for what is not a regular file: a pipe would hold the program up for good.
FILE* openFile(const std::string& path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return nullptr;
    }
    struct stat facts;
    FILE* file = fstat(descriptor, &facts) == 0 && S_ISREG(facts.st_mode) ? fdopen(descriptor, "rb")
                                                                          : nullptr;
    if (file == nullptr) {
        close(descriptor);
    }
    return file;
}

// The file is open only meanwhile: a card can be taken out at any time.
clip::SurveyState lookInto(const std::string& path, clip::Survey& survey) {
    FILE* file = openFile(path);
    if (file == nullptr) {
        return clip::SURVEY_BROKEN;
    }
    char buffer[kReadBytes];
    setvbuf(file, buffer, _IOFBF, sizeof buffer);
    const clip::SurveyState state = survey.look(file, kLookBytes);
    fclose(file);
    return state;
}

}  // namespace

void c_playlist::forgetClips() {
    surveyRow = -1;
    std::fill_n(clipFacts, kExplorerRows, ClipFacts{});
}

// The first visible clip that nothing is known of, -1 when there is none.
int c_playlist::rowToLookInto() const {
    const int first = scroll[1].pos;
    const int end = std::min(first + kVisibleRows, nbEntries);
    for (int row = first; row < end; ++row) {
        if (entryIsClip[row] != 0 && clipFacts[row].state == clip::SURVEY_GOES_ON) {
            return row;
        }
    }
    return -1;
}

void c_playlist::lookIntoClips() {
    const int row = rowToLookInto();
    if (row < 0) {
        return;
    }
    if (row != surveyRow) {
        surveyRow = row;
        survey = {};
    }
    ClipFacts& facts = clipFacts[row];
    facts.state = lookInto(browseDir + "/" + entries[row], survey);
    if (facts.state != clip::SURVEY_GOES_ON) {
        facts.frames = survey.frames();
        facts.steps = survey.steps();
        surveyRow = -1;
    }
}
