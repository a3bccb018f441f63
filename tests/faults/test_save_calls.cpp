// A save that is killed, or told that the disk is full or broken, at each of its system calls in
// turn: the file is the old or the new one, whole, and the next save works and tidies up.
#include <algorithm>
#include <csignal>
#include <iterator>

#include "faults/save_marks.h"
#include "faults/saves.h"

namespace faults {

namespace {

// The calls on files and descriptors; memory is no matter of a save.
constexpr const char* kTraced = "trace=%file,%desc";
constexpr const char* kNotTraced[] = {"mmap", "munmap", "mprotect"};

struct Call {
    std::string name;
    int ordinal;  // among the calls of that name since the program began, from 1
};

// The calls between the marks, of a trace with one call a line.
std::vector<Call> callsOfSave(const std::string& trace) {
    std::vector<Call> all;
    std::vector<Call> saves;
    bool saving = false;
    for (size_t at = 0; at < trace.size();) {
        const size_t end = trace.find('\n', at);
        const std::string line = trace.substr(at, end - at);
        at = end == std::string::npos ? trace.size() : end + 1;
        const std::string name = line.substr(0, line.find('('));
        const auto ofName = [&](const Call& call) { return call.name == name; };
        all.push_back({name, static_cast<int>(std::count_if(all.begin(), all.end(), ofName)) + 1});
        if (line.find(kSaveEnds) != std::string::npos) {
            saving = false;
        }
        if (saving &&
            std::find(std::begin(kNotTraced), std::end(kNotTraced), name) == std::end(kNotTraced)) {
            saves.push_back(all.back());
        }
        if (line.find(kSaveStarts) != std::string::npos) {
            saving = true;
        }
    }
    return saves;
}

std::string injection(const Call& call, const std::string& fault) {
    return "inject=" + call.name + ":" + fault + ":when=" + std::to_string(call.ordinal);
}

class SaveCalls : public SaveTest {
protected:
    void SetUp() override {
        SaveTest::SetUp();
        const Outcome plain = traced({"-e", kTraced}, "new");
        if (plain.status != 0) {
            GTEST_SKIP() << "no program can be traced here (package strace, and the right to use "
                            "it): "
                         << plain.errors;
        }
        learnOldAndNew();
        traced({"-e", kTraced}, "old");
        calls_ = callsOfSave(fileBytes("trace"));
        ASSERT_GE(calls_.size(), 6u) << fileBytes("trace");
    }

    // Nothing but the file and, after a kill, what the save had begun.
    void expectWhole(bool killed) {
        const std::string found = bytes();
        EXPECT_TRUE(found == old_ || found == new_) << found.size() << " bytes";
        const std::vector<std::string> left = names();
        EXPECT_LE(left.size(), killed ? 2u : 1u) << testing::PrintToString(left);
    }
    // Back to the old file, for the next fault.
    void expectNextSaveTidies() {
        EXPECT_TRUE(save("old").saved);
        ASSERT_TRUE(bytes() == old_);
        EXPECT_EQ(names(), std::vector<std::string>{GetParam().file});
    }

    std::vector<Call> calls_;
};

TEST_P(SaveCalls, KilledAtEach_OldOrNewFileAndTheNextSaveTidies) {
    for (const Call& call : calls_) {
        SCOPED_TRACE(injection(call, "signal=KILL"));
        const Outcome outcome =
            traced({"-e", kTraced, "-e", injection(call, "signal=KILL")}, "new");
        EXPECT_EQ(outcome.status, 128 + SIGKILL);
        EXPECT_NE(fileBytes("trace").find(kSaveStarts), std::string::npos);
        EXPECT_EQ(fileBytes("trace").find(kSaveEnds), std::string::npos);
        expectWhole(true);
        expectNextSaveTidies();
    }
}

TEST_P(SaveCalls, ErrorAtEach_SaysSoWhenTheOldFileStaysAndGoesOn) {
    for (const Call& call : calls_) {
        for (const char* error : {"error=ENOSPC", "error=EIO"}) {
            SCOPED_TRACE(injection(call, error));
            const Outcome outcome = traced({"-e", kTraced, "-e", injection(call, error)}, "new");
            EXPECT_NE(fileBytes("trace").find("(INJECTED)"), std::string::npos);
            EXPECT_EQ(outcome.status, 0);
            EXPECT_EQ(outcome.errors, "");
            EXPECT_NE(outcome.output.find("goes on\n"), std::string::npos) << outcome.output;
            expectWhole(false);
            EXPECT_EQ(outcome.saved, bytes() == new_) << outcome.output;
            expectNextSaveTidies();
        }
    }
}

// The disk is so broken that not even the half-written file can be removed.
TEST_P(SaveCalls, WriteAndCleaningFail_TheNextSaveTidies) {
    const Outcome outcome = traced(
        {"-e", kTraced, "-e", "inject=fsync:error=EIO", "-e", "inject=unlink:error=EIO"}, "new");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_FALSE(outcome.saved);
    EXPECT_TRUE(bytes() == old_);
    EXPECT_EQ(names().size(), 2u);
    expectNextSaveTidies();
}

INSTANTIATE_TEST_SUITE_P(Files, SaveCalls, ::testing::ValuesIn(kKinds), kindName);

}  // namespace

}  // namespace faults
