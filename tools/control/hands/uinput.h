#pragma once
// Hands on the kernel's own keyboard and pointer, for where there is no X server: made by
// /dev/uinput, and gone with their process, whatever ends it.

#include <array>
#include <cstdint>

#include "tools/control/hands/road.h"

namespace control {

// The process of Velmora, by its name; 0: it does not run.
uint64_t velmoraProcess();

// Opens /dev/uinput and makes the device. Throws ToolError, which says how to get the right to.
int openUinput();

class UinputHands : public Road {
public:
    // Owns `device`, and writes its events there. `process` tells which Velmora runs.
    explicit UinputHands(int device, uint64_t (*process)() = velmoraProcess);
    ~UinputHands() override;

    void key(Key key, bool down) override;
    void button(bool down) override;
    // The picture is taken for the middle half of the screen, as with 1280 x 720.
    void point(int x, int y) override;
    bool reachesVelmora() override { return stage_ != 0; }
    std::string road() const override { return "uinput"; }

    int fd() const override { return -1; }
    void look(Time now) override;
    uint64_t stage() const override { return stage_; }
    std::string missingKeys() const override { return ""; }

private:
    void send(uint16_t type, uint16_t code, int32_t value) const;
    void letGo();

    int device_;
    uint64_t (*process_)();
    std::array<bool, kKeys> down_{};
    bool buttonDown_ = false;
    uint64_t stage_ = 0;
    Time looked_{};
};

}  // namespace control
