#include "tools/doctor/remarks.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tools/base/texts.h"

namespace doctor {

namespace {

struct GradeNames {
    Grade grade;
    const char* heading;
    const char* key;
};

constexpr GradeNames kGrades[] = {
    {Grade::STOPS, "Stops the show", "stops"},
    {Grade::HURTS, "Hurts the show", "hurts"},
    {Grade::NOTE, "Good to know", "note"},
    {Grade::FINE, "In order", "fine"},
};

const char* keyOf(Grade grade) {
    return std::ranges::find(kGrades, grade, &GradeNames::grade)->key;
}

std::string lineOf(const Remark& remark) {
    std::string line = said("  ", remark.about, ": ", remark.text, "\n");
    if (!remark.mend.empty()) {
        line += said("      ", remark.mend, "\n");
    }
    return line;
}

}  // namespace

std::vector<Remark> Remarks::worstFirst() const {
    std::vector<Remark> sorted = all_;
    std::ranges::stable_sort(sorted, {}, &Remark::grade);
    return sorted;
}

Grade Remarks::worst() const {
    const auto worst = std::ranges::min_element(all_, {}, &Remark::grade);
    return worst == all_.end() ? Grade::FINE : worst->grade;
}

std::string asText(const Remarks& remarks) {
    const std::vector<Remark> sorted = remarks.worstFirst();
    std::string text;
    for (const GradeNames& each : kGrades) {
        std::string lines;
        for (const Remark& remark : sorted) {
            lines += remark.grade == each.grade ? lineOf(remark) : "";
        }
        text += lines.empty() ? "" : said(each.heading, "\n", lines);
    }
    const auto countOf = [&](Grade grade) {
        return static_cast<size_t>(std::ranges::count(sorted, grade, &Remark::grade));
    };
    const size_t stopping = countOf(Grade::STOPS);
    const size_t hurting = countOf(Grade::HURTS);
    if (stopping + hurting == 0) {
        return text + "Ready for the show.\n";
    }
    return text + maker::counted(stopping, "thing") + (stopping == 1 ? " stops" : " stop") +
           " the show, " + std::to_string(hurting) + (hurting == 1 ? " hurts" : " hurt") + " it.\n";
}

std::string asJson(const Remarks& remarks) {
    using Json = nlohmann::ordered_json;
    Json list = Json::array();
    for (const Remark& remark : remarks.worstFirst()) {
        list.push_back({{"grade", keyOf(remark.grade)},
                        {"about", remark.about},
                        {"text", remark.text},
                        {"mend", remark.mend}});
    }
    const Json json{{"worst", keyOf(remarks.worst())}, {"remarks", list}};
    return json.dump(2, ' ', false, Json::error_handler_t::replace);
}

}  // namespace doctor
