#include "tools/doctor/bridge.h"

#include <cstdio>
#include <filesystem>
#include <sstream>
#include <string_view>

namespace doctor {

namespace fs = std::filesystem;

std::string askBridge() {
    std::error_code ignored;
    const fs::path program =
        fs::read_symlink("/proc/self/exe", ignored).parent_path() / "velmora-control";
    if (!fs::exists(program, ignored)) {
        return "";
    }
    std::string lines;
    // Folders of programs have no quotes in their names; where one has, the shell says so.
    const std::string command = said("'", program.string(), "' doctor 2>&1 </dev/null");
    if (FILE* const output = popen(command.c_str(), "r")) {
        char buffer[512];
        size_t length = 0;
        while ((length = fread(buffer, 1, sizeof buffer, output)) > 0) {
            lines.append(buffer, length);
        }
        pclose(output);
    }
    return lines;
}

void judgeBridge(const std::string& lines, Remarks& remarks) {
    constexpr std::string_view kMissing = "MISSING ";
    std::istringstream stream(lines);
    std::string line;
    bool fine = !lines.empty();
    while (std::getline(stream, line)) {
        if (line.starts_with(kMissing)) {
            fine = false;
            remarks.hurts("velmora-control", line.substr(kMissing.size()), "");
        }
    }
    if (fine) {
        remarks.fine("velmora-control", "finds all that its map asks for");
    }
}

}  // namespace doctor
