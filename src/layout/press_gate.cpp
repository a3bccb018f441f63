#include "layout/press_gate.h"

namespace {

constexpr int kSettleMs = 300;

enum GateState : int32_t { GATE_OPEN = 0, GATE_BUTTON_DOWN, GATE_SETTLES };

}  // namespace

void closeGate(PressGate& gate, bool buttonDown, int32_t now) {
    gate.state = buttonDown ? GATE_BUTTON_DOWN : GATE_SETTLES;
    gate.upMs = now;
}

// The first time that the button comes up counts: whoever goes on clicking waits no longer.
bool gateHolds(PressGate& gate, bool buttonDown, int32_t now) {
    if (gate.state == GATE_OPEN) {
        return false;
    }
    if (gate.state == GATE_BUTTON_DOWN) {
        closeGate(gate, buttonDown, now);
        return true;
    }
    const int64_t passed = msBetween(gate.upMs, now);
    if (passed < 0) {
        gate.upMs = now;
    }
    if (passed < kSettleMs) {
        return true;
    }
    gate.state = GATE_OPEN;
    return false;
}

int64_t msBetween(int32_t since, int32_t now) {
    return now < since ? -1 : static_cast<int64_t>(now) - since;
}
