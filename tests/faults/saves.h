#pragma once
// Fixture for saves that go wrong: a folder with userdata/, the four kinds of files that the
// products save, and save_once as a child that saves one of them, traced or not.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/folder.h"

namespace faults {

struct Kind {
    const char* name;  // as save_once knows it
    const char* file;  // in userdata/
};
inline constexpr Kind kKinds[] = {
    {"playlists", "playlists.xml"},
    {"prefs", "prefs.xml"},
    {"controller", "gamecontroller.xml"},
    {"clip", "loop.m19"},
};

struct Outcome {
    int status = -1;     // exit status, or 128 and the signal
    std::string output;  // standard output
    std::string errors;  // standard error
    bool saved = false;  // ended well and had nothing to say
};

// Names the cases of the tests.
std::string kindName(const ::testing::TestParamInfo<Kind>& each);

std::string fileBytes(const std::filesystem::path& path);

class SaveTest : public ::testing::TestWithParam<Kind> {
protected:
    void SetUp() override;

    // In the working directory. A traced program cannot look for leaks.
    Outcome run(const std::vector<std::string>& command, bool looksForLeaks = true);
    Outcome save(const std::string& word);
    // With strace in front, and its further options.
    Outcome traced(const std::vector<std::string>& options, const std::string& word);
    std::filesystem::path file() const;
    std::string bytes() const { return fileBytes(file()); }
    std::vector<std::string> names() const;  // in userdata/, sorted

    // Saves both and keeps their bytes.
    void learnOldAndNew();

    TemporaryFolder folder_;
    std::filesystem::path userdata_ = folder_.path() / "userdata";
    std::string old_;
    std::string new_;
};

}  // namespace faults
