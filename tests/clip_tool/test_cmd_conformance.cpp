// conformance on the command line, its checksums against the tests' own decoder.
#include <nlohmann/json.hpp>

#include "clip_tool/reference.h"
#include "clip_tool/tool.h"
#include "support/frames.h"

namespace {

using nlohmann::json;

class ConformanceCommand : public Commands {};

std::vector<uint8_t> bytesOf(const fs::path& path) {
    const std::string text = textOf(path);
    return {text.begin(), text.end()};
}

void expectSums(const json& entry, const std::vector<uint8_t>& bytes) {
    const reference::Clip clip = reference::parse(bytes);
    const std::vector<reference::Picture> pictures = reference::decode(clip);
    EXPECT_EQ(entry.at("width"), 640);
    EXPECT_EQ(entry.at("height"), clip.height);
    EXPECT_EQ(entry.at("alpha"), clip.alpha == 1);
    ASSERT_EQ(entry.at("frames"), pictures.size());
    ASSERT_EQ(entry.at("pixels").size(), pictures.size());
    ASSERT_EQ(entry.contains("levels"), clip.alpha == 1);
    for (size_t i = 0; i < pictures.size(); ++i) {
        const reference::Picture& picture = pictures[i];
        EXPECT_EQ(entry.at("pixels")[i],
                  frames::crc(picture.pixels.data(), 2 * picture.pixels.size()));
        if (clip.alpha == 1) {
            EXPECT_EQ(entry.at("levels")[i],
                      frames::crc(picture.alpha.data(), picture.alpha.size()));
        }
    }
}

// Called where the clips are.
void expectVerdicts(const json& clips) {
    std::string arguments = "verify";
    for (const json& entry : clips) {
        arguments += " " + entry.at("file").get<std::string>();
    }
    std::istringstream verdicts(tool(arguments).out);
    for (const json& entry : clips) {
        std::string verdict;
        std::getline(verdicts, verdict);
        const std::string file = entry.at("file");
        if (entry.at("expected") == "ok") {
            EXPECT_TRUE(verdict.starts_with(file + ": plays")) << verdict;
        } else {
            const json& fault = entry.at("fault");
            EXPECT_TRUE(verdict.starts_with(file + ": broken")) << verdict;
            EXPECT_TRUE(verdict.find("at offset " + fault.at("offset").dump() + ": " +
                                     fault.at("message").get<std::string>()) != std::string::npos)
                << verdict;
        }
    }
}

TEST_F(ConformanceCommand, NewFolder_HoldsTheClipsThatListAndPageAndVerifyTellOf) {
    const Outcome outcome = tool("conformance new/corpus");
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    fs::current_path("new/corpus");
    const json clips = json::parse(textOf("conformance.json")).at("clips");
    EXPECT_EQ(outcome.out, "new/corpus: " + std::to_string(clips.size()) +
                               " clips, README.md, conformance.json\n");
    Names names{"README.md", "conformance.json"};
    const std::string page = textOf("README.md");
    for (const json& entry : clips) {
        SCOPED_TRACE(entry.at("file"));
        names.push_back(entry.at("file"));
        EXPECT_EQ(entry.at("bytes"), fs::file_size(names.back()));
        const std::string expected = entry.at("expected");
        const std::string result = expected == "ok" ? "" : expected + " | ";
        const std::string what = entry.at("what");
        EXPECT_NE(page.find("| `" + names.back() + "` | " + result + what + " |\n"),
                  std::string::npos);
        if (expected == "ok") {
            expectSums(entry, bytesOf(names.back()));
        }
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(filesHere(), names);
    expectVerdicts(clips);
}

// In another place and language, and in a folder that is there but empty.
TEST_F(ConformanceCommand, SecondTime_WritesTheSameFiles) {
    fs::create_directory("two");
    ASSERT_EQ(tool("conformance one").status, 0);
    ASSERT_EQ(tool("conformance two/", "LC_ALL=de_DE.UTF-8 ").status, 0);
    for (const fs::directory_entry& entry : fs::directory_iterator("one")) {
        EXPECT_EQ(textOf(entry), textOf("two" / entry.path().filename())) << entry;
    }
}

TEST_F(ConformanceCommand, FolderThatHoldsSomething_IsLeftAlone) {
    fs::create_directory("mine");
    std::ofstream("mine/notes.txt") << "keep";
    std::ofstream("file") << "keep";
    for (const std::string name : {"mine", "file"}) {
        const Outcome outcome = tool("conformance " + name);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.err,
                  "velmora-clip: " + name + " is not an empty folder: name a new one\n");
    }
    EXPECT_EQ(textOf("file"), "keep");
    fs::current_path("mine");
    EXPECT_EQ(filesHere(), Names{"notes.txt"});
}

TEST_F(ConformanceCommand, WithoutFolder_IsWrongUse) {
    EXPECT_EQ(tool("conformance").status, 2);
}

}  // namespace
