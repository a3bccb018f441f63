#include "faults/saves.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "app/child.h"

namespace faults {

namespace fs = std::filesystem;

namespace {

constexpr int kPatienceMs = 60000;

}  // namespace

std::string kindName(const ::testing::TestParamInfo<Kind>& each) {
    return each.param.name;
}

std::string fileBytes(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void SaveTest::SetUp() {
    fs::create_directory(userdata_);
}

Outcome SaveTest::run(const std::vector<std::string>& command, bool looksForLeaks) {
    app::ChildSetup setup;
    setup.command = command;
    if (!looksForLeaks) {
        setup.environment = {"ASAN_OPTIONS=detect_leaks=0"};
    }
    setup.folder = folder_.path();
    setup.output = folder_.path() / "output";
    setup.errors = folder_.path() / "errors";
    app::Child child;
    child.start(setup);
    Outcome outcome;
    outcome.status = child.waitExit(kPatienceMs).value_or(-1);
    outcome.output = fileBytes(setup.output);
    outcome.errors = fileBytes(setup.errors);
    outcome.saved = outcome.status == 0 && outcome.output == "goes on\n";
    return outcome;
}

Outcome SaveTest::save(const std::string& word) {
    return run({SAVE_ONCE, GetParam().name, word});
}

Outcome SaveTest::traced(const std::vector<std::string>& options, const std::string& word) {
    std::vector<std::string> command = {"strace", "-qq", "-o", "trace"};
    command.insert(command.end(), options.begin(), options.end());
    command.insert(command.end(), {SAVE_ONCE, GetParam().name, word});
    return run(command, false);
}

fs::path SaveTest::file() const {
    return userdata_ / GetParam().file;
}

std::vector<std::string> SaveTest::names() const {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(userdata_)) {
        names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
}

void SaveTest::learnOldAndNew() {
    const Outcome first = save("new");
    ASSERT_TRUE(first.saved) << first.output << first.errors;
    new_ = bytes();
    ASSERT_TRUE(save("old").saved);
    old_ = bytes();
    ASSERT_NE(old_, new_);
    ASSERT_EQ(names(), std::vector<std::string>{GetParam().file});
}

}  // namespace faults
