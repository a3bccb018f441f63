// Any bytes as an OSC packet: what is heard keeps its limits, and a bad packet leaves nothing.
#include <algorithm>
#include <cmath>
#include <memory>

#include "fuzz/input.h"
#include "tools/control/ears/osc_bytes.h"

namespace {

using fuzz::require;

constexpr size_t kLargestDatagram = 8192;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const size_t length = std::min(size, kLargestDatagram);
    const auto packet = std::make_unique<uint8_t[]>(length);
    std::copy_n(data, length, packet.get());
    std::vector<control::Heard> heard(1);
    const bool good = control::heardOfOsc({packet.get(), length}, heard);
    require(good || heard.size() == 1, "a bad packet leaves nothing");
    require(heard.size() <= 1 + control::kMostOscMessages, "messages are bounded");
    for (size_t i = 1; i < heard.size(); ++i) {
        const control::Heard& one = heard[i];
        require(one.kind == control::HeardKind::OSC, "all of it is OSC");
        require(one.address.starts_with('/') && one.address.size() <= control::kLongestAddress,
                "addresses are bounded");
        require(!one.value || std::isfinite(*one.value), "values are finite");
        require(one.text.size() <= control::kLongestText &&
                    std::none_of(one.text.begin(), one.text.end(),
                                 [](unsigned char c) { return c < ' ' || c == 0x7F; }),
                "texts are bounded and tidy");
    }
    require(std::equal(packet.get(), packet.get() + length, data), "the packet is only read");
    return 0;
}
