// The controls of the playlist screen's pages: buttons, the question, the line that says what went
// wrong.
#include "core/globals.h"
#include "editor/page_painter.h"
#include "input/keys.h"
#include "playlists/playlist.h"

namespace {

constexpr int kGap = 8;  // between two texts in a line
constexpr int kNoticeY = 296;
constexpr int kFullTextY = 345;

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

}  // namespace

// A dragged item lights the buttons that take it; a question and a carried row leave none to use.
void c_playlist::drawButtons(PagePainter& painter) {
    const bool free = question == ASK_NOTHING && carriedFrom < 0;
    for (const page::ButtonPlace& place : page::buttonsOf(editPage)) {
        const bool under = page::inside(keys->mouseX, keys->mouseY, place.x, place.y, place.width,
                                        page::kButtonHeight);
        const bool answers = dragging != 0 ? takesDrop(place.button) : canUse(place.button);
        painter.button(place, answers && free, under, place.button == focus && free);
    }
}

void c_playlist::drawQuestion(PagePainter& painter) {
    if (question == ASK_NOTHING) {
        painter.line(notice, kNoticeY, static_cast<int>(_colorO));
        painter.line(fullText(), kFullTextY, page::kGreyRgb);
        return;
    }
    const QuestionText& words = kQuestions[question];
    painter.fill(2, kQuestionY, 636, kQuestionHeight, page::kLitRgb);
    painter.fill(2, kQuestionY, 636, 1, static_cast<int>(_colorO));
    const int used =
        painter.text(words.question, 10, kQuestionTextY, kQuestionRoom, page::kWhiteRgb);
    painter.text(questionSubject(), 10 + used + kGap, kQuestionTextY, kQuestionRoom - used - kGap,
                 static_cast<int>(_colorO));
    for (const page::ButtonPlace& place : page::kQuestionButtons) {
        const bool under = page::inside(keys->mouseX, keys->mouseY, place.x, place.y, place.width,
                                        page::kButtonHeight);
        painter.button(place, true, under, (place.button == page::YES) == (chosenYes != 0));
    }
    painter.text(words.keysHelp, kQuestionKeysX, kQuestionKeysY, 480, page::kGreyRgb);
}

std::string c_playlist::questionSubject() const {
    if (question == ASK_DISCARD) {
        return "'" + newName + "'";
    }
    const Famille& famille = familles[editFamille];
    return std::to_string(famille.nbTracks) + (famille.nbTracks == 1 ? " track" : " tracks") +
           " in '" + famille.name + "'";
}

// The selected item in full: rows show what fits.
std::string c_playlist::fullText() const {
    return selectedRow(dragSource) < rowsIn(dragSource) ? draggedText() : "";
}
