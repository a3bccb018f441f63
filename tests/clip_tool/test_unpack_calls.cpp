// An unpack that is killed, or told that the disk is full, at each of the system calls that change
// something: the playlists file is the old or the new one, every clip that it names is there and
// whole, and the next unpack finishes the work and tidies up.
#include <map>
#include <sstream>

#include "clip_tool/sets.h"
#include "clip_tool/tool.h"

namespace {

using sets::clipText;
using sets::kSums;
using sets::kXml;
using sets::listing;
using sets::Listing;
using sets::write;
using sets::xmlOf;

struct Call {
    std::string name;
    int ordinal;  // among the calls of that name, from 1
};

constexpr const char* kTraced = "openat,write,fsync,rename,mkdir,unlink,rmdir,fchmod,fchown";

class UnpackCalls : public Commands {
protected:
    void SetUp() override {
        unsetenv("VELMORA_HOME");
        // The sanitizer's leak check cannot run in a traced program.
        setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
        setenv("XDG_CONFIG_HOME", (fs::current_path() / "there/config").c_str(), 1);
        makeSet();
        makeTarget();
        old_ = stateOf("there");
        if (traced("").status != 0) {
            GTEST_SKIP() << "no program can be traced here (package strace, and the right to use "
                            "it): "
                         << textOf("../err.txt");
        }
        calls_ = callsThatChange(textOf("../trace"));
        new_ = stateOf("there");
        ASSERT_NE(old_, new_);
        ASSERT_GE(calls_.size(), 15u) << textOf("../trace");
    }

    static void makeSet() {
        write("home/videos/a.m19", clipText("gaps-64", 1));
        write("home/videos/sub/b.m19", clipText("gaps-64", 2));
        write(std::string("home/") + kXml, xmlOf({{"one", {"a.m19", "sub/b.m19"}}}));
        write("home/userdata/prefs.xml", "the set's");
        ASSERT_EQ(tool("pack --from home -o set.velmora").status, 0);
    }
    static void makeTarget() {
        fs::remove_all("there");
        write("there/videos/a.m19", clipText("one-frame-8"));
        write(std::string("there/") + kXml, xmlOf({{"old", {"a.m19"}}}));
    }

    static Outcome traced(const std::string& options) {
        return tool("unpack set.velmora --to there",
                    std::string("strace -qq -o ../trace -e trace=") + kTraced + options + " ");
    }
    static std::string injection(const Call& call, const std::string& fault) {
        return " -e inject=" + call.name + ":" + fault + ":when=" + std::to_string(call.ordinal);
    }

    // Between two of them it makes no difference when it is killed.
    static std::vector<Call> callsThatChange(const std::string& trace) {
        std::map<std::string, int> counts;
        std::vector<Call> calls;
        std::istringstream lines(trace);
        for (std::string line; std::getline(lines, line);) {
            const std::string name = line.substr(0, line.find('('));
            const int ordinal = ++counts[name];
            const bool reads = name == "openat" && line.find("O_CREAT") == std::string::npos;
            if (!reads) {
                calls.push_back({name, ordinal});
            }
        }
        return calls;
    }

    // Checksums that are noted for later are no part of the set.
    static Listing stateOf(const fs::path& folder) {
        Listing all = listing(folder);
        all.erase(kSums);
        return all;
    }

    void expectWhole() {
        const Listing now = listing("there");
        const std::string xml = now.at(kXml);
        EXPECT_EQ(now.at("videos/a.m19"), old_.at("videos/a.m19"));
        if (xml == old_.at(kXml)) {
            return;
        }
        EXPECT_EQ(xml, new_.at(kXml));
        for (const char* name : {"videos/a_2.m19", "videos/sub/b.m19", "userdata/prefs.xml"}) {
            EXPECT_TRUE(now.contains(name) && now.at(name) == new_.at(name)) << name;
        }
    }

    Listing old_;
    Listing new_;
    std::vector<Call> calls_;
};

TEST_F(UnpackCalls, KilledAtEach_OldOrNewSetAndTheNextUnpackTidies) {
    for (const Call& call : calls_) {
        SCOPED_TRACE(injection(call, "signal=KILL"));
        makeTarget();
        EXPECT_EQ(traced(injection(call, "signal=KILL")).status, 128 + 9);
        expectWhole();
        const Outcome next = tool("unpack set.velmora --to there");
        EXPECT_EQ(next.status, 0) << next.err;
        EXPECT_TRUE(stateOf("there") == new_);
    }
}

TEST_F(UnpackCalls, FullDiskAtEach_AllOrNothing) {
    for (const Call& call : calls_) {
        SCOPED_TRACE(injection(call, "error=ENOSPC"));
        makeTarget();
        traced(injection(call, "error=ENOSPC"));
        EXPECT_NE(textOf("../trace").find("(INJECTED)"), std::string::npos);
        const Listing now = stateOf("there");
        EXPECT_TRUE(now == old_ || now == new_);
        EXPECT_EQ(tool("unpack set.velmora --to there").status, 0);
        EXPECT_TRUE(stateOf("there") == new_);
    }
}

}  // namespace
