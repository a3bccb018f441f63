// The name page: the name as typed so far, and the keys to click.
#include "editor/page_painter.h"
#include "layout/colours.h"

namespace {

constexpr int kNameX = 11;
constexpr int kNameY = 24;
constexpr int kNameRoom = 610;
constexpr int kTitleRoom = 240;
constexpr int kCaretHeight = 18;
constexpr int kCaretPeriodMs = 1000;
constexpr int kNameLengthX = 307;  // right end
constexpr int kNameLengthRoom = 50;
constexpr uint32_t kKeyRgb = 0x333333;
constexpr uint32_t kDimKeyRgb = 0x222222;
constexpr int kSmallTextHeight = 10;
constexpr int kLargeTextHeight = 20;

}  // namespace

void PagePainter::name() {
    const std::string title =
        editor_.renaming != 0 ? "rename '" + editor_.shown().name + "'" : "create a new playlist";
    textIn(kTitleRoom, title, kNameX, page::kTitleY, colours::kOrange);
    textUpTo(kNameLengthX, kNameLengthRoom,
             std::to_string(model_.newName.size()) + " / " + std::to_string(page::kLongestName),
             page::kTitleY, colours::kGrey);
    // Of an old name that is too long its end is seen: there the typing goes on.
    std::string seen = model_.newName;
    while (widthOf(seen, kLargeFont) > kNameRoom) {
        seen.erase(0, 1);
    }
    text(seen.c_str(), kNameX, kNameY, colours::kWhite, kLargeFont);
    if (editor_.takesLetters() && now_ % kCaretPeriodMs < kCaretPeriodMs / 2) {
        fill(kNameX + widthOf(seen, kLargeFont) + 1, kNameY, 2, kCaretHeight, colours::kOrange);
    }
}

void PagePainter::keys() {
    const bool full = model_.newName.size() >= page::kLongestName;
    for (int key = 0; key < page::kKeys; ++key) {
        const int x = page::kKeysX + key % page::kKeyColumns * page::kKeySize;
        const int y = page::kKeysY + key / page::kKeyColumns * page::kKeySize;
        const bool usable = key >= page::kKeyDel ? !model_.newName.empty() : !full;
        const bool lit =
            usable && key == model_.keyUnderPointer && editor_.focus == page::kNoButton;
        const uint32_t face = lit ? colours::kOrange : usable ? kKeyRgb : kDimKeyRgb;
        const uint32_t ink = lit ? colours::kBlack : usable ? colours::kWhite : colours::kGrey;
        fill(x + 1, y + 1, page::kKeySize - 2, page::kKeySize - 2, face);
        const bool word = key >= page::kKeyDel;
        const int font = word ? kSmallFont : kLargeFont;
        const int height = word ? kSmallTextHeight : kLargeTextHeight;
        const char* words = page::keyText(key);
        text(words, x + (page::kKeySize - widthOf(words, font)) / 2 + (word ? 0 : 1),
             y + (page::kKeySize - height) / 2, ink, font);
    }
}

void PagePainter::namePage() {
    name();
    keys();
    controls("Type its name, or click the letters, or choose them with the arrows; then OK",
             "Space or the pad : the lit letter      Backspace : delete      Return : OK      "
             "Escape : back, Z writes a z");
}
