// velmora-clip check: a whole set before the show.

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "tools/clip/commands.h"
#include "tools/clip/reports/check_set.h"

namespace maker {

namespace {

struct CheckOptions {
    std::string folder = ".";
    bool json = false;
    std::string memory;  // empty unless given
};

// Binary units, as makers of machines count: 512M is 512 times 1024 times 1024.
std::optional<size_t> bytesIn(const std::string& text) {
    constexpr size_t kMost = 1'000'000;
    constexpr std::string_view kUnits = "KMG";
    size_t count = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, count);
    const size_t unit = rest + 1 == end ? kUnits.find(*rest) : std::string_view::npos;
    if (error != std::errc() || unit == std::string_view::npos || count == 0 || count > kMost) {
        return std::nullopt;
    }
    constexpr size_t kBitsPerUnit = 10;
    const uint64_t bytes = uint64_t{count} << kBitsPerUnit * (unit + 1);
    return static_cast<size_t>(std::min<uint64_t>(bytes, std::numeric_limits<size_t>::max()));
}

std::optional<size_t> machineOf(const CheckOptions& options) {
    if (options.memory.empty()) {
        return std::nullopt;
    }
    const std::optional<size_t> bytes = bytesIn(options.memory);
    if (!bytes) {
        throw CLI::ValidationError("--memory", "takes a number and K, M or G, as in 512M");
    }
    return bytes;
}

bool check(const CheckOptions& options) {
    const SetReport report = checkSet(options.folder, machineOf(options));
    if (options.json) {
        std::puts(asJson(options.folder, report).c_str());
    } else {
        std::fputs(asText(report).c_str(), stdout);
    }
    return report.findings.problems() == 0;
}

}  // namespace

void addCheck(CLI::App& app, int& status) {
    auto options = std::make_shared<CheckOptions>();
    CLI::App* command = app.add_subcommand("check", "check a whole set before the show");
    command
        ->add_option("folder", options->folder,
                     "the folder with videos/ and userdata/ (default: this one)")
        ->option_text("FOLDER");
    command->add_flag("--json", options->json, "as a JSON object");
    command
        ->add_option("--memory", options->memory,
                     "say which playlists fit a machine with so much memory, as in 512M")
        ->option_text("SIZE");
    command->footer(
        "Looks for clips that are missing or broken, clips too low for the top layer, values in\n"
        "the user's files that Velmora would ignore or misread, names that are too long, and\n"
        "clips that no playlist names; tells how long each playlist loads. The exit status is 1\n"
        "when something would go wrong on stage; notes alone leave it 0.");
    command->callback([options, &status] { status = check(*options) ? kExitOk : kExitFailed; });
}

}  // namespace maker
