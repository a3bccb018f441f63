// A start for which there is not enough memory: one line and the end, whatever it was for.
#include <dlfcn.h>

#include "state/stage.h"
#include "support/failing_memory.h"

int velmoraMain(int argc, char** argv);

namespace {

constexpr const char* kNoStart = "\nNot enough memory to start\n";
constexpr const char* kScanLine = "\nNot enough memory for this clip\n";
constexpr long kMostCalls = 2000;

int convertedToFailure = 0;

class ShortStart : public testing::Test {
protected:
    ShortStart() {
        std::filesystem::create_directory_symlink(TEST_DATA "/../../data", "data");
        placeClip("one-frame-8.m19", "folder-with-a-name/clip.m19");
        writeFile("userdata/playlists.xml",
                  "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n\t<playlist>\n"
                  "\t\t<name>a playlist with a name</name>\n"
                  "\t\t<track>folder-with-a-name/clip.m19</track>\n\t</playlist>\n</all>\n");
        convertedToFailure = 0;
    }
    ~ShortStart() override { end(); }

    static void end() {
        destroyGlobals();
        resetScript();
    }
    // Until the window is closed in the first frame; whether memory was short.
    bool run(long call, Shortage shortage) {
        resetScript();
        scripted().ticksEachCall = 40;
        scripted().events = {plainEvent(SDL_QUIT)};
        bool failed = false;
        output = printedBy([&] {
            failed = withFailingMemory(call, shortage, [&] { status = velmoraMain(0, nullptr); });
        });
        if (!g_bMainLoop) {
            screen[0] = nullptr;  // released at the end of a run
        }
        return failed;
    }
    bool refused() const {
        return output.size() > 28 && output.substr(output.size() - 28) == kNoStart;
    }

    TemporaryFolder folder;
    std::string output;
    int status = -1;
};

class EveryCall : public ShortStart, public testing::WithParamInterface<Shortage> {};

TEST_P(EveryCall, OfAStartFails_EndsOrComesUp) {
    long call = 1;
    int refusals = 0;
    while (call < kMostCalls && !HasFailure() && run(call, GetParam())) {
        SCOPED_TRACE(call);
        EXPECT_EQ(status, 1);
        EXPECT_EQ(scripted().calls.empty() ? "" : scripted().calls.back(), "SDL_Quit");
        refusals += refused() ? 1 : 0;
        // A track that could not be looked at is no reason not to start.
        EXPECT_EQ(scripted().updated.size(), refused() ? 0u : 1u) << output;
        EXPECT_TRUE(refused() || output.find(kScanLine) != std::string::npos) << output;
        end();
        ++call;
    }
    EXPECT_GT(refusals, 20);
    ASSERT_LT(call, kMostCalls);
    ASSERT_FALSE(refused()) << output;
    EXPECT_EQ(playlist->familles[0].nbMissing, 0);
}

INSTANTIATE_TEST_SUITE_P(Shortages, EveryCall,
                         testing::Values(Shortage::ONE_CALL, Shortage::FROM_THEN_ON),
                         [](const auto& each) {
                             return each.param == Shortage::ONE_CALL ? "OneCall" : "FromThenOn";
                         });

// The second of the two surfaces that a start converts is the one that boxes are drawn through.
TEST_F(ShortStart, NoScratchSurface_Ends) {
    convertedToFailure = 2;
    EXPECT_FALSE(run(0, Shortage::ONE_CALL));
    EXPECT_EQ(status, 1);
    EXPECT_TRUE(refused()) << output;
    EXPECT_EQ(scripted().calls.back(), "SDL_Quit");
    EXPECT_TRUE(scripted().updated.empty());
}

}  // namespace

extern "C" SDL_Surface* SDL_ConvertSurface(SDL_Surface* from, SDL_PixelFormat* format,
                                           Uint32 flags) {
    if (convertedToFailure > 0 && --convertedToFailure == 0) {
        return nullptr;
    }
    using Function = SDL_Surface* (*)(SDL_Surface*, SDL_PixelFormat*, Uint32);
    static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "SDL_ConvertSurface"));
    return real(from, format, flags);
}
