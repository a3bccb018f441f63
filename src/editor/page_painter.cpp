#include "editor/page_painter.h"

#include "layout/colours.h"
#include "layout/name_rooms.h"

namespace {

constexpr int kDimX = 128;  // of the atlas
constexpr uint32_t kDimFaceRgb = 0x404040;
constexpr const char* kLabels[] = {"create", "edit", "preview", "delete", "back", "confirm", "ok",
                                   "cancel", "yes",  "no",      "rename", "copy", "move",    "add"};
constexpr int kFocusWidth = 2;  // around the button

constexpr int kLineX = 4;
constexpr int kLineRoom = 632;
constexpr int kNoticeY = 296;
constexpr int kFullTextY = 345;

constexpr uint32_t kQuestionRgb = 0x3A3A3A;
constexpr int kQuestionY = 292;
constexpr int kQuestionHeight = 48;
constexpr int kQuestionTextY = 297;
constexpr int kQuestionRoom = 620;
constexpr int kQuestionKeysX = 144;
constexpr int kQuestionKeysY = 318;

// By Question.
struct QuestionText {
    const char* question;
    const char* keysHelp;
};
constexpr QuestionText kQuestions[] = {
    {"", ""},
    {"delete this playlist ?", "arrows : choose        X : answer        Z : no"},
    {"save changes ?", "arrows : choose        X : answer        Z : go on editing"},
    {"discard this name ?", "arrows : choose        X : answer        Z, Escape : go on writing"},
};

constexpr uint32_t kTrackRgb = 0x444444;
constexpr int kMarkerWidth = 310;
constexpr int kMarkerHeight = 2;

// The thumb's arrowheads, row by row from their narrow end: columns from the thumb's left edge.
struct ArrowRow {
    int x;
    int width;
};
constexpr ArrowRow kArrowRows[] = {{4, 2}, {3, 4}, {2, 6}};
constexpr int kUpArrowY = 2;    // of the narrow end, from the thumb's top
constexpr int kDownArrowY = 3;  // of the narrow end, up from the thumb's end

// The name page.
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

void PagePainter::draw() {
    switch (model_.editPage) {
        case page::BROWSE:
            browsePage();
            break;
        case page::NEW_PLAYLIST:
            namePage();
            break;
        case page::TRACKS:
            tracksPage();
            break;
        default:
            break;
    }
}

void PagePainter::line(const std::string& words, int y, uint32_t rgb) {
    textIn(kLineRoom, words, kLineX, y, rgb);
}

// A dragged item lights the buttons that take it; a question and a carried row leave none to use.
void PagePainter::controls(const char* mouseHelp, const char* keysHelp) {
    const bool free = editor_.question == ASK_NOTHING && editor_.carriedFrom < 0;
    for (const page::ButtonPlace& place : page::buttonsOf(model_.editPage)) {
        const bool answers =
            model_.dragging != 0 ? editor_.takesDrop(place.button) : editor_.canUse(place.button);
        button(place, answers && free, place.button == editor_.focus && free);
    }
    const int helpY = page::helpY(model_.editPage);
    line(mouseHelp, helpY, colours::kWhite);
    line(keysHelp, helpY + page::kHelpLine, colours::kGrey);
    if (editor_.question != ASK_NOTHING) {
        question();
        return;
    }
    line(editor_.notice, kNoticeY, colours::kOrange);
    // The selected item in full: rows show what fits.
    const int list = model_.dragSource;
    line(editor_.selectedRow(list) < editor_.rowsIn(list) ? editor_.selectedText() : "", kFullTextY,
         colours::kGrey);
}

// The pointer's frame lies inside the button, the keys' one around it.
void PagePainter::button(const page::ButtonPlace& place, bool usable, bool focused) {
    if (atlas_ != nullptr) {
        piece(atlas_, usable ? 0 : kDimX, place.button * page::kButtonHeight, place.width,
              page::kButtonHeight, place.x, place.y);
    } else {
        Painter::button(place.x, place.y, place.width, kLabels[place.button],
                        usable ? colours::kOrange : kDimFaceRgb,
                        usable ? colours::kBlack : colours::kGrey);
    }
    if (usable &&
        page::inside(pointer_.x, pointer_.y, place.x, place.y, place.width, page::kButtonHeight)) {
        frame(place.x, place.y, place.width, page::kButtonHeight, colours::kWhite);
    }
    if (focused) {
        frame(place.x - kFocusWidth, place.y - kFocusWidth, place.width + 2 * kFocusWidth,
              page::kButtonHeight + 2 * kFocusWidth, colours::kWhite);
    }
}

void PagePainter::question() {
    const QuestionText& words = kQuestions[editor_.question];
    fill(2, kQuestionY, 636, kQuestionHeight, kQuestionRgb);
    fill(2, kQuestionY, 636, 1, colours::kOrange);
    const int used = layout::kTextGap +
                     textIn(kQuestionRoom, words.question, 10, kQuestionTextY, colours::kWhite);
    textIn(kQuestionRoom - used, questionSubject(), 10 + used, kQuestionTextY, colours::kOrange);
    for (const page::ButtonPlace& place : page::kQuestionButtons) {
        button(place, true, (place.button == page::YES) == (editor_.chosenYes != 0));
    }
    text(words.keysHelp, kQuestionKeysX, kQuestionKeysY, colours::kGrey);
}

std::string PagePainter::questionSubject() const {
    if (editor_.question == ASK_DISCARD) {
        return "'" + model_.newName + "'";
    }
    const Famille& famille = editor_.shown();
    return std::to_string(famille.nbTracks) + (famille.nbTracks == 1 ? " track" : " tracks") +
           " in '" + famille.name + "'";
}

void PagePainter::scrollBar(int list) {
    const ScrollBar& bar = model_.scroll[list];
    const int x = page::kScrollX[list];
    fill(x, kScrollTop - 1, page::kScrollWidth, kScrollTrack + 2, page::kPaperRgb);
    fill(x + 1, kScrollTop, page::kScrollWidth - 2, kScrollTrack, kTrackRgb);
    if (bar.maxPos == 0) {
        return;
    }
    const int top = thumbTop(bar);
    fill(x, top, page::kScrollWidth, bar.thumb,
         bar.active != 0 ? colours::kOrange : colours::kGrey);
    int step = 0;
    for (const ArrowRow& row : kArrowRows) {
        fill(x + row.x, top + kUpArrowY + step, row.width, 1, colours::kBlack);
        fill(x + row.x, top + bar.thumb - kDownArrowY - step, row.width, 1, colours::kBlack);
        ++step;
    }
}

void PagePainter::drag(int x, int y) {
    if (model_.dropRow < page::kNoDropRow) {
        fill(page::kListX[page::LEFT], page::kRowHeight * model_.dropRow + page::kFirstRowY,
             kMarkerWidth, kMarkerHeight, colours::kOrange);
    }
    textOn(colours::kBlue, editor_.selectedText().c_str(), x, y, colours::kWhite);
}

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
