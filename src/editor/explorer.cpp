#include "editor/explorer.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <utility>

#include "common/memory.h"
#include "common/messages.h"
#include "files/regular_file.h"
#include "layout/clipname.h"

namespace {

constexpr const char* kBack = ".. back";
constexpr const char* kUnusedRow = "error";
constexpr size_t kLookBytes = size_t{256} << 10;  // a frame
constexpr size_t kReadBytes = size_t{32} << 10;   // at a time

enum EntryKind { NEITHER, REGULAR_FILE, FOLDER };

// A link counts as what it leads to. What leads nowhere, and what is neither file nor folder, has
// no place in the explorer.
EntryKind kindOf(int folder, const dirent& entry) {
    if (entry.d_type == DT_REG) {
        return REGULAR_FILE;
    }
    if (entry.d_type == DT_DIR) {
        return FOLDER;
    }
    struct stat facts;
    if ((entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) ||
        fstatat(folder, entry.d_name, &facts, 0) != 0) {
        return NEITHER;
    }
    if (S_ISREG(facts.st_mode)) {
        return REGULAR_FILE;
    }
    return S_ISDIR(facts.st_mode) ? FOLDER : NEITHER;
}

void closeFolder(c_playlist& model) {
    if (model.dirHandle != nullptr) {
        closedir(model.dirHandle);
        model.dirHandle = nullptr;
    }
}

// The file is open only meanwhile: a card can be taken out at any time.
clip::SurveyState look(const std::string& path, clip::Survey& survey) {
    FILE* file = openRegularFile(path);
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

void Explorer::enter(c_playlist& model, const std::string& entry) {
    const std::string root = model.baseDir + kVideosFolder;
    std::string folder = entry == kBack ? model.curDir.substr(0, model.curDir.rfind('/'))
                                        : model.curDir + "/" + entry;
    model.browseDir = folder;
    model.curDir = std::move(folder);
    closeFolder(model);
    model.dirHandle = opendir(model.browseDir.c_str());

    std::fill_n(model.entryIsDir, kExplorerRows, 1);
    std::fill_n(model.entryIsClip, kExplorerRows, 0);
    std::fill_n(facts, kExplorerRows, ClipFacts{});
    surveyRow_ = -1;
    model.nbEntries = 0;
    found = 0;
    listed = 0;
    if (model.browseDir != root) {
        model.entries[0] = kBack;
        model.nbEntries = 1;
    }
    if (model.dirHandle == nullptr) {
        puts(msg::kNoDirectory);
    } else {
        // The entries that there is memory for are shown.
        if (!withinMemory([&] { list(model); })) {
            puts(msg::kNoMemory);
        }
        closeFolder(model);
    }
    // Deliberate: the last row keeps the text of an earlier listing; it is shown only when a folder
    // fills it. [quirk_explorer_keeps_its_last_text]
    for (int row = model.nbEntries; row < kExplorerRows - 1; ++row) {
        model.entries[row] = kUnusedRow;
    }
}

// The first hundred rows, in the order in which the directory gives them; the rest is only counted.
void Explorer::list(c_playlist& model) {
    while (const dirent* each = readdir(model.dirHandle)) {
        const std::string name = each->d_name;
        if (name == "." || name == ".." || name.compare(0, 2, "._") == 0) {
            continue;
        }
        const EntryKind kind = kindOf(dirfd(model.dirHandle), *each);
        if (kind == NEITHER || (kind == REGULAR_FILE && !clip::isPlayableName(name))) {
            continue;
        }
        ++found;
        if (model.nbEntries == kExplorerRows) {
            continue;
        }
        model.entries[model.nbEntries] = name;
        model.entryIsDir[model.nbEntries] = kind == FOLDER ? 1 : 0;
        model.entryIsClip[model.nbEntries] = kind == FOLDER ? 0 : 1;
        ++model.nbEntries;
        ++listed;
    }
}

void Explorer::lookInto(const c_playlist& model) {
    int row = model.scroll[page::RIGHT].pos;
    const int end = std::min(row + kVisibleRows, model.nbEntries);
    const auto unknown = [&] {
        return model.entryIsClip[row] != 0 && facts[row].state == clip::SURVEY_GOES_ON;
    };
    while (row < end && !unknown()) {
        ++row;
    }
    if (row >= end) {
        return;
    }
    if (row != surveyRow_) {
        surveyRow_ = row;
        survey_ = {};
    }
    facts[row].state = look(model.browseDir + "/" + model.entries[row], survey_);
    if (facts[row].state != clip::SURVEY_GOES_ON) {
        facts[row].frames = survey_.frames();
        facts[row].steps = survey_.steps();
        surveyRow_ = -1;
    }
}

void c_playlist::exitEditPlaylists() {
    closeFolder(*this);
    dirHandle = opendir(baseDir.c_str());
}
