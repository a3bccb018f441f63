#include "core/pacing.h"
#include "tools/base/texts.h"
#include "tools/doctor/pace.h"

namespace doctor {

namespace {

constexpr int kStageRate = 25;

std::string milliseconds(double time) {
    return maker::decimals(time, 1) + " ms";
}

}  // namespace

void judgePace(const PaceFacts& pace, Remarks& remarks) {
    // A frame starts this long after the one before at the earliest.
    const double between = frameInterval(kStageRate) + 1;
    const double whole = pace.made + pace.shown.value_or(0);
    const std::string share =
        said("with every filter on both layers a frame takes ", milliseconds(whole), " of the ",
             milliseconds(between), " that it has");
    const std::string display = pace.shown
                                    ? said(" (", milliseconds(*pace.shown), " of them to show it)")
                                    : std::string(" (the display not counted)");
    if (whole > between) {
        remarks.hurts(
            "pace",
            said(share, display, ": ", maker::decimals(1000 / whole, 0), " pictures a second then"),
            "Fewer filters at once; end other programs; let a hot machine cool down.");
    } else {
        remarks.fine("pace", share + display);
    }
}

}  // namespace doctor
