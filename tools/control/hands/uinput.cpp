#include "tools/control/hands/uinput.h"

#include <fcntl.h>
#include <linux/uinput.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <utility>

#include "common/geometry.h"
#include "common/limits.h"
#include "tools/base/errors.h"
#include "tools/control/hands/key_codes.h"

namespace control {

namespace {

constexpr const char* kDevice = "/dev/uinput";
constexpr const char* kProcess = "velmora";

// Velmora's window fills the screen and is 1280 x 720 pixels, or scaled to it.
constexpr Point kScreen = {kHdmiWidth, kHdmiHeight};

struct Axis {
    uint16_t code;
    int size;
};
constexpr std::array<Axis, 2> kAxes = {{{ABS_X, kScreen.x}, {ABS_Y, kScreen.y}}};

void makeDevice(int file) {
    bool made = ioctl(file, UI_SET_EVBIT, EV_KEY) == 0 && ioctl(file, UI_SET_EVBIT, EV_ABS) == 0 &&
                ioctl(file, UI_SET_KEYBIT, BTN_LEFT) == 0;
    for (const KeyCode& each : kKeyCodes) {
        made = made && ioctl(file, UI_SET_KEYBIT, each.code) == 0;
    }
    for (const Axis& axis : kAxes) {
        uinput_abs_setup setup{};
        setup.code = axis.code;
        setup.absinfo.maximum = axis.size - 1;
        made = made && ioctl(file, UI_ABS_SETUP, &setup) == 0;
    }
    uinput_setup setup{};
    setup.id.bustype = BUS_VIRTUAL;
    std::strcpy(setup.name, "Velmora control");
    made = made && ioctl(file, UI_DEV_SETUP, &setup) == 0 && ioctl(file, UI_DEV_CREATE) == 0;
    if (!made) {
        const std::string why = std::strerror(errno);
        close(file);
        throw maker::ToolError(std::string(kDevice).append(" makes no keyboard: ").append(why));
    }
}

}  // namespace

uint64_t velmoraProcess() {
    std::error_code error;
    for (std::filesystem::directory_iterator each("/proc", error), end; !error && each != end;
         each.increment(error)) {
        const std::string name = each->path().filename().string();
        uint64_t process = 0;
        const auto [rest, wrong] = std::from_chars(name.data(), name.data() + name.size(), process);
        std::string command;
        if (wrong == std::errc() && rest == name.data() + name.size() &&
            std::getline(std::ifstream(each->path() / "comm"), command) && command == kProcess) {
            return process;
        }
    }
    return 0;
}

int openUinput() {
    const int file = open(kDevice, O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (file < 0) {
        std::string why = std::string("cannot open ").append(kDevice).append(": ");
        why.append(std::strerror(errno));
        if (errno == EACCES) {
            why.append("; `sudo usermod -aG input $USER` and a new login give the right to");
        } else if (errno == ENOENT || errno == ENODEV) {
            why.append("; `sudo modprobe uinput` may bring it");
        }
        throw maker::ToolError(why);
    }
    makeDevice(file);
    return file;
}

UinputHands::UinputHands(int device, uint64_t (*process)())
    : device_(device), process_(process), stage_(process()) {}

UinputHands::~UinputHands() {
    letGo();
    close(device_);
}

void UinputHands::send(uint16_t type, uint16_t code, int32_t value) const {
    input_event event{};
    event.type = type;
    event.code = code;
    event.value = value;
    [[maybe_unused]] const ssize_t written = write(device_, &event, sizeof event);
}

void UinputHands::key(Key key, bool down) {
    bool& now = down_[indexOf(key)];
    if (now != down && (!down || reachesVelmora())) {
        now = down;
        send(EV_KEY, kKeyCodes[indexOf(key)].code, down ? 1 : 0);
        send(EV_SYN, SYN_REPORT, 0);
    }
}

void UinputHands::button(bool down) {
    if (buttonDown_ != down && (!down || reachesVelmora())) {
        buttonDown_ = down;
        send(EV_KEY, BTN_LEFT, down ? 1 : 0);
        send(EV_SYN, SYN_REPORT, 0);
    }
}

void UinputHands::point(int x, int y) {
    if (!reachesVelmora()) {
        return;
    }
    const Point picture = pictureOffset(kScreen.x, kScreen.y);
    send(EV_ABS, ABS_X, picture.x + x);
    send(EV_ABS, ABS_Y, picture.y + y);
    send(EV_SYN, SYN_REPORT, 0);
}

void UinputHands::letGo() {
    for (size_t i = 0; i < kKeys; ++i) {
        key(keyAt(i), false);
    }
    button(false);
}

void UinputHands::look(Time now) {
    if (now - looked_ < milliseconds(1000)) {
        return;
    }
    looked_ = now;
    const uint64_t before = std::exchange(stage_, process_());
    if (stage_ != before) {
        letGo();
    }
}

}  // namespace control
