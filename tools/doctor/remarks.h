#pragma once
// What a doctor says: one remark for each thing that was looked at, the worst first.

#include <string>
#include <string_view>
#include <vector>

namespace doctor {

enum class Grade {
    STOPS,  // there will be no show
    HURTS,  // something will be missing on stage, or go wrong there
    NOTE,   // good to know
    FINE,
};

struct Remark {
    Grade grade = Grade::FINE;
    std::string about;  // in a word or two: "display", or a playlist's name
    std::string text;   // without a full stop
    std::string mend;   // what to do about it, a sentence; empty where there is nothing to do
};

class Remarks {
public:
    void stops(std::string_view about, std::string_view text, std::string_view mend) {
        add(Grade::STOPS, about, text, mend);
    }
    void hurts(std::string_view about, std::string_view text, std::string_view mend) {
        add(Grade::HURTS, about, text, mend);
    }
    void note(std::string_view about, std::string_view text, std::string_view mend = "") {
        add(Grade::NOTE, about, text, mend);
    }
    void fine(std::string_view about, std::string_view text) { add(Grade::FINE, about, text, ""); }
    void add(Grade grade, std::string_view about, std::string_view text, std::string_view mend) {
        all_.push_back({grade, std::string(about), std::string(text), std::string(mend)});
    }

    // The worst first; what is equally bad in the order in which it was found.
    std::vector<Remark> worstFirst() const;
    Grade worst() const;

private:
    std::vector<Remark> all_;
};

// For people: a heading for each grade that there is, and a last line with the counts.
std::string asText(const Remarks& remarks);

// One JSON object, without a line end.
std::string asJson(const Remarks& remarks);

// A sentence of several pieces.
template <typename... Pieces>
std::string said(const Pieces&... pieces) {
    std::string text;
    (text.append(pieces), ...);
    return text;
}

}  // namespace doctor
