#pragma once
// The real velmora-clip, run in the shell, and the files that it finds and leaves.
//
// Every test works in an empty folder of its own, below the one that takes the tool's output.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/folder.h"

namespace fs = std::filesystem;

inline const std::string kTool = VELMORA_CLIP;

inline std::string textOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

// `before` is shell text that precedes the tool's name.
inline Outcome tool(const std::string& arguments, const std::string& before = "") {
    const std::string line =
        before + "'" + kTool + "' " + arguments + " >../out.txt 2>../err.txt </dev/null";
    const int status = std::system(line.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, textOf("../out.txt"),
            textOf("../err.txt")};
}

using Names = std::vector<std::string>;

// Without what stands beside clips that are there.
inline Names filesIn(const fs::path& folder) {
    Names names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        const fs::path& path = entry.path();
        const bool origin = path.extension() == ".json" && path.stem().extension() == ".m19";
        if (!origin || !fs::exists(folder / path.stem())) {
            names.push_back(path.filename().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

inline Names filesHere() {
    return filesIn(".");
}

// With the file beside it that says where it came from.
inline void removeClip(const fs::path& clip) {
    fs::remove(clip);
    fs::remove(clip.string() + ".json");
}

class Commands : public testing::Test {
protected:
    Commands() {
        fs::create_directory("work");
        fs::current_path("work");
    }
    TemporaryFolder folder_;
};
