// The pages with lists: the playlists and the tracks of one, the tracks and the files explorer.
#include <cstdio>

#include "clip/load_cost.h"
#include "editor/page_painter.h"
#include "layout/colours.h"
#include "layout/name_rooms.h"

namespace {

constexpr uint32_t kLitRgb = 0x3A3A3A;
constexpr int kTextDown = 2;  // from a row's top

constexpr int kFolderWidth = 11;
// The explorer's columns behind the names, from their right ends.
constexpr int kLoadColumn = 46;
constexpr int kFramesColumn = 44;
constexpr int kClipColumns = kLoadColumn + kFramesColumn;

constexpr const char* kCarryKeys =
    "Up, Down : carry it        X : set it down        Z : back where it was";

int rowY(int visibleRow) {
    return page::kFirstRowY + page::kRowHeight * visibleRow + kTextDown;
}

int leftOf(int list) {
    return page::kListX[list] + layout::kRowIndent;
}

int rightOf(int list) {
    return page::kListX[list] + page::kListWidth[list] - layout::kRowEnd;
}

std::string missingNote(int missing) {
    return std::to_string(missing) + (missing == 1 ? " file missing" : " files missing");
}

}  // namespace

// A heading and what it is about, cut to the column.
void PagePainter::title(int list, const std::string& heading, const std::string& subject) {
    const int x = leftOf(list);
    const int room = rightOf(list) - x;
    const int used = layout::kTextGap + textIn(room, heading, x, page::kTitleY, colours::kOrange);
    textIn(room - used, subject, x + used, page::kTitleY, colours::kGrey);
}

void PagePainter::hint(int list, const char* words) {
    textIn(rightOf(list) - leftOf(list), words, leftOf(list), rowY(0), colours::kGrey);
}

PagePainter::Look PagePainter::lookOf(int list, int row) const {
    // On the browse page the selected playlist is what the right list shows, whichever list is in
    // use; every other selection counts in its own list.
    const bool selected = row == editor_.selectedRow(list);
    const bool always = editor_.onPage(page::BROWSE) && list == page::LEFT;
    if (selected && (always || model_.dragSource == list)) {
        if (editor_.carriedFrom >= 0) {
            return CARRIED;
        }
        return editor_.focus == page::kNoButton ? SELECTED : SELECTED_ELSEWHERE;
    }
    const int pointed = page::rowAt(list, pointer_.x, pointer_.y);
    const bool quiet = model_.dragging != 0 || editor_.question != ASK_NOTHING;
    if (pointed >= 0 && pointed + model_.scroll[list].pos == row && !quiet) {
        return LIT;
    }
    return selected && editor_.onPage(page::TRACKS) ? SELECTED_ELSEWHERE : PLAIN;
}

PagePainter::Row PagePainter::ground(int list, int visibleRow) {
    // What is wrong with a file stands out from the row's ground, in a pink of its own.
    static constexpr struct {
        uint32_t ground, ink, quietInk, alarm;
    } kLooks[] = {
        {page::kPaperRgb, colours::kWhite, colours::kGrey, colours::kPink},
        {kLitRgb, colours::kWhite, colours::kGrey, 0xFF7AE0},
        {colours::kGrey, colours::kBlack, colours::kBlack, 0x440033},
        {colours::kWhite, colours::kBlack, colours::kBlack, 0xB00088},
        {colours::kOrange, colours::kBlack, colours::kBlack, colours::kPink},
    };
    const auto& look = kLooks[lookOf(list, model_.scroll[list].pos + visibleRow)];
    if (look.ground != page::kPaperRgb) {
        fill(page::kListX[list], page::kFirstRowY + page::kRowHeight * visibleRow,
             page::kListWidth[list], page::kRowHeight, look.ground);
    }
    return {rowY(visibleRow), look.ink, look.quietInk, look.alarm};
}

void PagePainter::familleRows() {
    const int first = model_.scroll[page::LEFT].pos;
    const int x = leftOf(page::LEFT);
    for (int i = 0; i < kVisibleRows && first + i < model_.nbFamilles; ++i) {
        const Famille& famille = model_.familles[first + i];
        const Row row = ground(page::LEFT, i);
        int end = rightOf(page::LEFT);
        textUpTo(end, layout::kCountColumn, std::to_string(famille.nbTracks), row.y, row.ink);
        end -= layout::kCountColumn;
        if (famille.nbMissing > 0) {
            end = textUpTo(end, end - x, missingNote(famille.nbMissing), row.y, row.alarm) -
                  layout::kTextGap;
        }
        textIn(end - x, famille.name, x, row.y, row.ink);
    }
    if (model_.nbFamilles == 0) {
        hint(page::LEFT, "no playlists: press create");
    }
}

// On the left of the tracks page and on the right of the browse page.
void PagePainter::trackRows(int list) {
    const int first = model_.scroll[list].pos;
    const int tracks = editor_.rowsIn(list);
    const int numberEnd = page::kListX[list] + layout::kNumberColumn;
    const int x = numberEnd + layout::kTextGap;
    for (int i = 0; i < kVisibleRows && first + i < tracks; ++i) {
        const Track& track = editor_.shown().tracks[first + i];
        const Row row = ground(list, i);
        int end = rightOf(list);
        textUpTo(numberEnd, layout::kNumberColumn, std::to_string(first + i + 1), row.y,
                 row.quietInk);
        if (track.missing != 0) {
            end = textUpTo(end, end - x, "missing", row.y, row.alarm) - layout::kTextGap;
        }
        textIn(end - x, track.path, x, row.y, row.ink);
    }
}

// Frames and seconds until it has loaded as one of the later clips. Returns where its name ends.
int PagePainter::clipFacts(const ClipFacts& facts, const Row& row) {
    const int end = rightOf(page::RIGHT);
    if (facts.state == clip::SURVEY_BROKEN) {
        textUpTo(end, kClipColumns, "broken", row.y, row.alarm);
    } else if (facts.state == clip::SURVEY_GOES_ON) {
        textUpTo(end, kLoadColumn, "...", row.y, row.quietInk);
    } else {
        char seconds[16];
        snprintf(seconds, sizeof seconds, "%.1f s", clip::kStepSeconds * facts.steps);
        textUpTo(end, kLoadColumn, seconds, row.y, row.quietInk);
        textUpTo(end - kLoadColumn, kFramesColumn, std::to_string(facts.frames), row.y,
                 row.quietInk);
    }
    return end - kClipColumns;
}

void PagePainter::entryRows() {
    const int first = model_.scroll[page::RIGHT].pos;
    const int left = leftOf(page::RIGHT);
    const int x = left + kFolderWidth + 2;
    for (int i = 0; i < kVisibleRows && first + i < model_.nbEntries; ++i) {
        const int entry = first + i;
        const Row row = ground(page::RIGHT, i);
        int end = rightOf(page::RIGHT);
        if (model_.entryIsDir[entry] != 0) {
            const uint32_t sign = row.ink == colours::kBlack ? row.ink : colours::kOrange;
            fill(left, row.y + 1, 4, 2, sign);
            fill(left, row.y + 2, 9, 6, sign);
        } else {
            end = clipFacts(editor_.explorer.facts[entry], row);
        }
        textIn(end - x, model_.entries[entry], x, row.y, row.ink);
    }
    if (model_.nbEntries == 0) {
        hint(page::RIGHT, "no clips in the videos folder");
    }
}

// Says when the folder holds more than the list, and what the columns behind the names are.
void PagePainter::explorerTitle() {
    const int y = page::kTitleY;
    int x = leftOf(page::RIGHT);
    int end = rightOf(page::RIGHT);
    textUpTo(end, kLoadColumn, "load", y, colours::kGrey);
    end =
        textUpTo(end - kLoadColumn, kFramesColumn, "frames", y, colours::kGrey) - layout::kTextGap;
    x += textIn(end - x, "files explorer", x, y, colours::kOrange) + layout::kTextGap;
    const Explorer& explorer = editor_.explorer;
    if (explorer.found > explorer.listed) {
        const std::string part =
            "first " + std::to_string(explorer.listed) + " of " + std::to_string(explorer.found);
        x += textIn(end - x, part, x, y, colours::kWhite) + layout::kTextGap;
    }
    textIn(end - x, "videos/" + model_.browsedFolder(), x, y, colours::kGrey);
}

void PagePainter::browsePage() {
    title(page::LEFT, "playlists",
          std::to_string(model_.nbFamilles) + " of " + std::to_string(kPlaylists));
    familleRows();
    scrollBar(page::LEFT);
    if (model_.nbFamilles > 0) {
        title(page::RIGHT, "'" + editor_.shown().name + "' playlist tracks", "");
        trackRows(page::RIGHT);
        if (editor_.shown().nbTracks == 0) {
            hint(page::RIGHT, "no tracks: press edit");
        }
    }
    scrollBar(page::RIGHT);
    controls("Drag & drop elements on top of buttons",
             editor_.carriedFrom >= 0
                 ? kCarryKeys
                 : "arrows : choose, past the lists the buttons        "
                   "X : edit, preview, use        Backspace : delete        Z : home");
}

void PagePainter::tracksPage() {
    const Famille& famille = editor_.shown();
    title(page::LEFT, "tracks",
          std::to_string(famille.nbTracks) + " of " + std::to_string(kEditorTracks) + " in '" +
              famille.name + "'");
    trackRows(page::LEFT);
    if (famille.nbTracks == 0) {
        hint(page::LEFT, "drag clips from the right to here");
    }
    scrollBar(page::LEFT);
    explorerTitle();
    entryRows();
    scrollBar(page::RIGHT);
    controls("Drag & drop files from the right to the left column",
             editor_.carriedFrom >= 0
                 ? kCarryKeys
                 : "arrows : choose, past the lists the buttons      X : open, preview, use   "
                   "   Return : add      Backspace : remove      Z : back");
}
