// What stands on the three pages of the playlist screen.
#include <cstdio>

#include "clip/load_cost.h"
#include "core/globals.h"
#include "editor/page_painter.h"
#include "input/keys.h"
#include "layout/name_rooms.h"
#include "playlists/playlist.h"

namespace {

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

// A heading and what it is about, cut to the column.
void drawTitle(PagePainter& painter, int list, const std::string& heading,
               const std::string& subject) {
    const int x = leftOf(list);
    const int room = rightOf(list) - x;
    const int used = painter.text(heading, x, page::kTitleY, room, static_cast<int>(_colorO));
    painter.text(subject, x + used + layout::kTextGap, page::kTitleY,
                 room - used - layout::kTextGap, page::kGreyRgb);
}

void drawHint(PagePainter& painter, int list, const char* words) {
    painter.text(words, leftOf(list), rowY(0), rightOf(list) - leftOf(list), page::kGreyRgb);
}

void drawFolderSign(PagePainter& painter, int x, int y, int rgb) {
    painter.fill(x, y + 1, 4, 2, rgb);
    painter.fill(x, y + 2, 9, 6, rgb);
}

}  // namespace

int c_playlist::rowLook(int list, int row) const {
    // On the browse page the selected playlist is what the right list shows, whichever list is in
    // use; every other selection counts in its own list.
    const bool always = editPage == page::BROWSE && list == page::LEFT;
    if (row == selectedRow(list) && (always || dragSource == list)) {
        if (carriedFrom >= 0) {
            return page::ROW_CARRIED;
        }
        return focus == page::kNoButton ? page::ROW_SELECTED : page::ROW_SELECTED_ELSEWHERE;
    }
    const int pointed = page::rowAt(list, keys->mouseX, keys->mouseY);
    const bool quiet = dragging != 0 || question != ASK_NOTHING;
    if (pointed >= 0 && pointed + scroll[list].pos == row && !quiet) {
        return page::ROW_LIT;
    }
    const bool elsewhere = editPage == page::TRACKS && row == selectedRow(list);
    return elsewhere ? page::ROW_SELECTED_ELSEWHERE : page::ROW_PLAIN;
}

void c_playlist::drawFamilleRows(PagePainter& painter) {
    const ScrollBar& bar = scroll[page::LEFT];
    for (int i = 0; i < kVisibleRows && bar.pos + i < nbFamilles; ++i) {
        const Famille& famille = familles[bar.pos + i];
        const int look = rowLook(page::LEFT, bar.pos + i);
        const int ink = painter.row(page::LEFT, i, look);
        const int x = leftOf(page::LEFT);
        int end = rightOf(page::LEFT);
        painter.textRight(std::to_string(famille.nbTracks), end, rowY(i), layout::kCountColumn,
                          ink);
        end -= layout::kCountColumn;
        if (famille.nbMissing > 0) {
            end = painter.textRight(missingNote(famille.nbMissing), end, rowY(i), end - x,
                                    page::alarmRgb(look)) -
                  layout::kTextGap;
        }
        painter.text(famille.name, x, rowY(i), end - x, ink);
    }
    if (nbFamilles == 0) {
        drawHint(painter, page::LEFT, "no playlists: press create");
    }
}

// On the left of page 2 and on the right of the browse page.
void c_playlist::drawTrackRows(PagePainter& painter, int list) {
    const ScrollBar& bar = scroll[list];
    const int tracks = rowsIn(list);
    const Famille& famille = familles[editFamille];
    for (int i = 0; i < kVisibleRows && bar.pos + i < tracks; ++i) {
        const Track& track = famille.tracks[bar.pos + i];
        const int look = rowLook(list, bar.pos + i);
        const int ink = painter.row(list, i, look);
        const int numberEnd = page::kListX[list] + layout::kNumberColumn;
        const int x = numberEnd + layout::kTextGap;
        int end = rightOf(list);
        painter.textRight(std::to_string(bar.pos + i + 1), numberEnd, rowY(i),
                          layout::kNumberColumn, ink == 0 ? ink : page::kGreyRgb);
        if (track.missing != 0) {
            end = painter.textRight("missing", end, rowY(i), end - x, page::alarmRgb(look)) -
                  layout::kTextGap;
        }
        painter.text(track.path, x, rowY(i), end - x, ink);
    }
}

// Frames and seconds until it has loaded as one of the later clips. Returns where its name ends.
int c_playlist::drawClipFacts(PagePainter& painter, int entry, int visibleRow, int look, int ink) {
    const ClipFacts& facts = clipFacts[entry];
    const int end = rightOf(page::RIGHT);
    const int y = rowY(visibleRow);
    const int quietInk = ink == 0 ? ink : page::kGreyRgb;
    if (facts.state == clip::SURVEY_BROKEN) {
        painter.textRight("broken", end, y, kClipColumns, page::alarmRgb(look));
    } else if (facts.state == clip::SURVEY_GOES_ON) {
        painter.textRight("...", end, y, kLoadColumn, quietInk);
    } else {
        char seconds[16];
        snprintf(seconds, sizeof seconds, "%.1f s", clip::kStepSeconds * facts.steps);
        painter.textRight(seconds, end, y, kLoadColumn, quietInk);
        painter.textRight(std::to_string(facts.frames), end - kLoadColumn, y, kFramesColumn,
                          quietInk);
    }
    return end - kClipColumns;
}

void c_playlist::drawEntryRows(PagePainter& painter) {
    lookIntoClips();
    const ScrollBar& bar = scroll[page::RIGHT];
    for (int i = 0; i < kVisibleRows && bar.pos + i < nbEntries; ++i) {
        const int entry = bar.pos + i;
        const int look = rowLook(page::RIGHT, entry);
        const int ink = painter.row(page::RIGHT, i, look);
        const int x = leftOf(page::RIGHT) + kFolderWidth + 2;
        int end = rightOf(page::RIGHT);
        if (entryIsDir[entry] != 0) {
            drawFolderSign(painter, leftOf(page::RIGHT), rowY(i),
                           ink == 0 ? ink : static_cast<int>(_colorO));
        } else {
            end = drawClipFacts(painter, entry, i, look, ink);
        }
        painter.text(entries[entry], x, rowY(i), end - x, ink);
    }
    if (nbEntries == 0) {
        drawHint(painter, page::RIGHT, "no clips in the videos folder");
    }
}

// Says when the folder holds more than the list, and what the columns behind the names are.
void c_playlist::drawExplorerTitle(PagePainter& painter) {
    const int x = leftOf(page::RIGHT);
    int end = rightOf(page::RIGHT);
    painter.textRight("load", end, page::kTitleY, kLoadColumn, page::kGreyRgb);
    end = painter.textRight("frames", end - kLoadColumn, page::kTitleY, kFramesColumn,
                            page::kGreyRgb) -
          layout::kTextGap;
    int at = x +
             painter.text("files explorer", x, page::kTitleY, end - x, static_cast<int>(_colorO)) +
             layout::kTextGap;
    if (nbFound > nbListed) {
        const std::string part =
            "first " + std::to_string(nbListed) + " of " + std::to_string(nbFound);
        at += painter.text(part, at, page::kTitleY, end - at, page::kWhiteRgb) + layout::kTextGap;
    }
    painter.text("videos/" + browsedFolder(), at, page::kTitleY, end - at, page::kGreyRgb);
}

void c_playlist::drawBrowsePage(PagePainter& painter) {
    drawTitle(painter, page::LEFT, "playlists",
              std::to_string(nbFamilles) + " of " + std::to_string(kPlaylists));
    drawFamilleRows(painter);
    drawScroll(painter.surface(), page::LEFT);
    if (nbFamilles > 0) {
        drawTitle(painter, page::RIGHT, "'" + familles[editFamille].name + "' playlist tracks", "");
        drawTrackRows(painter, page::RIGHT);
        if (familles[editFamille].nbTracks == 0) {
            drawHint(painter, page::RIGHT, "no tracks: press edit");
        }
    }
    drawScroll(painter.surface(), page::RIGHT);
    drawButtons(painter);
    painter.help(editPage, "Drag & drop elements on top of buttons",
                 carriedFrom >= 0 ? kCarryKeys
                                  : "arrows : choose, past the lists the buttons        "
                                    "X : edit, preview, use        Backspace : delete        "
                                    "Z : home");
    drawQuestion(painter);
}

void c_playlist::drawTracksPage(PagePainter& painter) {
    const Famille& famille = familles[editFamille];
    drawTitle(painter, page::LEFT, "tracks",
              std::to_string(famille.nbTracks) + " of " + std::to_string(kEditorTracks) + " in '" +
                  famille.name + "'");
    drawTrackRows(painter, page::LEFT);
    if (famille.nbTracks == 0) {
        drawHint(painter, page::LEFT, "drag clips from the right to here");
    }
    drawScroll(painter.surface(), page::LEFT);
    drawExplorerTitle(painter);
    drawEntryRows(painter);
    drawScroll(painter.surface(), page::RIGHT);
    drawButtons(painter);
    painter.help(editPage, "Drag & drop files from the right to the left column",
                 carriedFrom >= 0
                     ? kCarryKeys
                     : "arrows : choose, past the lists the buttons      X : open, preview, use   "
                       "   Return : add      Backspace : remove      Z : back");
    drawQuestion(painter);
}
