// What stands on the name page: the name as typed so far, and the keys to click.
#include "core/globals.h"
#include "editor/page_painter.h"
#include "playlists/playlist.h"

namespace {

constexpr int kNameX = 11;
constexpr int kNameY = 24;
constexpr int kNameRoom = 610;
constexpr int kTitleRoom = 240;
constexpr int kCaretHeight = 18;
constexpr int kCaretPeriodMs = 1000;
constexpr int kNameLengthX = 307;  // right end
constexpr int kNameLengthRoom = 50;
constexpr int kKeyRgb = 0x333333;
constexpr int kDimKeyRgb = 0x222222;
constexpr int kSmallTextHeight = 10;
constexpr int kLargeTextHeight = 20;

}  // namespace

void c_playlist::drawName(PagePainter& painter) {
    if (renaming != 0) {
        painter.text("rename '" + familles[editFamille].name + "'", kNameX, page::kTitleY,
                     kTitleRoom, static_cast<int>(_colorO));
    } else {
        painter.text("create a new playlist", kNameX, page::kTitleY, kTitleRoom,
                     static_cast<int>(_colorO));
    }
    painter.textRight(std::to_string(newName.size()) + " / " + std::to_string(page::kLongestName),
                      kNameLengthX, page::kTitleY, kNameLengthRoom, page::kGreyRgb);
    // Of an old name that is too long its end is seen: there the typing goes on.
    std::string seen = newName;
    while (painter.widthOf(seen, 1) > kNameRoom) {
        seen.erase(0, 1);
    }
    painter.largeText(seen, kNameX, kNameY, page::kWhiteRgb);
    if (takesLetters() && tempsActuel % kCaretPeriodMs < kCaretPeriodMs / 2) {
        painter.fill(kNameX + painter.widthOf(seen, 1) + 1, kNameY, 2, kCaretHeight,
                     static_cast<int>(_colorO));
    }
}

void c_playlist::drawKeys(PagePainter& painter) {
    const bool full = newName.size() >= page::kLongestName;
    for (int key = 0; key < page::kKeys; ++key) {
        const int x = page::kKeysX + key % page::kKeyColumns * page::kKeySize;
        const int y = page::kKeysY + key / page::kKeyColumns * page::kKeySize;
        const bool usable = key >= page::kKeyDel ? !newName.empty() : !full;
        const bool lit = usable && key == keyUnderPointer && focus == page::kNoButton;
        const int ink = lit ? 0 : usable ? page::kWhiteRgb : page::kGreyRgb;
        painter.fill(x + 1, y + 1, page::kKeySize - 2, page::kKeySize - 2,
                     lit      ? static_cast<int>(_colorO)
                     : usable ? kKeyRgb
                              : kDimKeyRgb);
        const char* words = edit_char(key);
        if (key >= page::kKeyDel) {
            painter.text(words, x + (page::kKeySize - painter.widthOf(words, 0)) / 2,
                         y + (page::kKeySize - kSmallTextHeight) / 2, page::kKeySize, ink);
        } else {
            painter.largeText(words, x + (page::kKeySize - painter.widthOf(words, 1)) / 2 + 1,
                              y + (page::kKeySize - kLargeTextHeight) / 2, ink);
        }
    }
}

void c_playlist::drawNamePage(PagePainter& painter) {
    drawName(painter);
    drawKeys(painter);
    drawButtons(painter);
    painter.help(editPage,
                 "Type its name, or click the letters, or choose them with the arrows; then OK",
                 "Space or the pad : the lit letter      Backspace : delete      Return : OK      "
                 "Escape : back, Z writes a z");
    drawQuestion(painter);
}
