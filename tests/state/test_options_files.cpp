// Preferences and controller map: the rules that a performer meets.
#include "state/stage.h"

namespace {

constexpr const char* kHead = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n";

class OptionsFiles : public StageTest {
protected:
    // Preferences with these four values and filter 3 in every slot.
    static std::string prefs(const std::string& topbar, const std::string& fps,
                             const std::string& width, const std::string& height) {
        std::string text = std::string(kHead) + "\t<mode>0</mode>\n\t<topbar>" + topbar +
                           "</topbar>\n\t<fps>" + fps + "</fps>\n\t<res_w>" + width +
                           "</res_w>\n\t<res_h>" + height + "</res_h>\n";
        for (int slot = 0; slot < kFilterSlots; ++slot) {
            text += "\t<filter>3</filter>\n";
        }
        return text + "</all>\n";
    }
    static void read(const std::string& text) {
        writeFile("userdata/prefs.xml", text);
        _options->lireXML();
    }
    static std::string saved() {
        _options->saveXML();
        return readFile("userdata/prefs.xml");
    }
};

TEST_F(OptionsFiles, WidthBelow800_IsIgnored) {
    read(prefs("0", "0", "640", "720"));
    EXPECT_EQ(all->appW, 1280);
    read(prefs("0", "0", "799", "599"));
    EXPECT_EQ(all->appW, 1280);
    EXPECT_EQ(all->appH, 720);
}

TEST_F(OptionsFiles, WidthOf1280_SetsIt) {
    all->appW = 1024;
    read(prefs("0", "0", "1280", "600"));
    EXPECT_EQ(all->appW, 1280);
    EXPECT_EQ(all->appH, 600);
}

TEST_F(OptionsFiles, TopbarYes_LeavesItAsItWas) {
    _options->topbar = 1;
    _options->fps = 0;
    read(prefs("yes", "2", "1280", "720"));
    EXPECT_EQ(_options->topbar, 1);
    EXPECT_EQ(_options->fps, 0);
}

TEST_F(OptionsFiles, Filters_GoToBothLayers) {
    read(prefs("1", "1", "1280", "720"));
    for (int slot = 0; slot < kFilterSlots; ++slot) {
        EXPECT_EQ(_filters->slots[0][slot].id, FILTER_INVERT);
        EXPECT_EQ(_filters->slots[1][slot].id, FILTER_INVERT);
    }
}

TEST_F(OptionsFiles, SavedAndRead_BothLayersHoldTheBottomLayersFilters) {
    for (int slot = 0; slot < kFilterSlots; ++slot) {
        _filters->slots[0][slot].id = 9 - slot;
        _filters->slots[1][slot].id = 1;
    }
    _options->saveXML();
    _filters->initFilters();
    _options->lireXML();
    for (int slot = 0; slot < kFilterSlots; ++slot) {
        EXPECT_EQ(_filters->slots[0][slot].id, 9 - slot);
        EXPECT_EQ(_filters->slots[1][slot].id, 9 - slot);
    }
}

TEST_F(OptionsFiles, quirk_odd_flags_are_not_saved) {
    _options->topbar = 2;
    _options->fps = 1;
    const std::string text = saved();
    EXPECT_EQ(text.find("topbar"), std::string::npos);
    EXPECT_NE(text.find("\t<fps>1</fps>\n"), std::string::npos);
}

TEST_F(OptionsFiles, quirk_prefs_are_read_here_and_written_there) {
    std::filesystem::create_directories("elsewhere/userdata");
    const std::filesystem::path start = std::filesystem::current_path();
    std::filesystem::current_path("elsewhere");
    writeFile("userdata/prefs.xml", prefs("1", "0", "1280", "720"));
    _options->lireXML();
    EXPECT_EQ(_options->topbar, 1) << "read from the current directory";
    _options->fps = 1;
    _options->saveXML();
    std::filesystem::current_path(start);
    EXPECT_NE(readFile("userdata/prefs.xml").find("<fps>1</fps>"), std::string::npos)
        << "written to the directory of the start";
}

TEST_F(OptionsFiles, quirk_controller_file_swaps_shoulders) {
    for (int entry = 0; entry < kPadEntries; ++entry) {
        keys->padButton[entry] = 20 + entry;
    }
    _options->saveXMLController();
    std::string expected = kHead;
    for (const int button : {20, 21, 22, 23, 24, 25, 26, 27, 29, 28, 31, 30, 32, 33}) {
        expected += "\t<button>" + std::to_string(button) + "</button>\n";
    }
    EXPECT_EQ(readFile("userdata/gamecontroller.xml"), expected + "</all>\n");
    keys->initController();
    _options->lireXMLController();
    EXPECT_EQ(keys->padButton[8], 28);
    EXPECT_EQ(keys->padButton[13], 33);
}

TEST_F(OptionsFiles, MissingFiles_SaySoAndKeepEverything) {
    keys->padButton[3] = 7;
    EXPECT_EQ(printedBy([] { _options->lireXML(); }), "can't find prefs file\n");
    EXPECT_EQ(printedBy([] { _options->lireXMLController(); }), "can't find controller xml file\n");
    EXPECT_EQ(keys->padButton[3], 7);
    EXPECT_EQ(_options->topbar, 0);
    EXPECT_EQ(all->appW, 1280);
}

TEST_F(OptionsFiles, SaveThatFails_LeavesTheOldFileAndSaysSo) {
    writeFile("userdata/prefs.xml", "old");
    std::filesystem::create_directories("userdata/prefs.xml.tmp");
    const std::string path = _options->homeDir + "/userdata/prefs.xml";
    EXPECT_EQ(printedBy([] { _options->saveXML(); }), "Could not save " + path + "\n");
    EXPECT_EQ(readFile("userdata/prefs.xml"), "old");
}

// A folder in the file's place. Each file goes its own way.
TEST_F(OptionsFiles, PrefsThatCannotBeRead_KeepEverythingAndAreNeverWrittenOver) {
    std::filesystem::create_directories("userdata/prefs.xml");
    _options->topbar = 1;
    all->appW = 1024;
    _filters->slots[1][8].id = 4;
    EXPECT_EQ(printedBy([] { _options->lireXML(); }), "can't find prefs file\n");
    EXPECT_EQ(_options->topbar, 1);
    EXPECT_EQ(all->appW, 1024);
    EXPECT_EQ(_filters->slots[1][8].id, 4);
    EXPECT_EQ(_options->file, nullptr);
    std::filesystem::remove("userdata/prefs.xml");
    writeFile("userdata/prefs.xml", "mine");
    const std::string path = _options->homeDir + "/userdata/prefs.xml";
    EXPECT_EQ(printedBy([] { EXPECT_FALSE(_options->saveXML()); }),
              "Could not save " + path + "\n");
    EXPECT_EQ(readFile("userdata/prefs.xml"), "mine");
    EXPECT_EQ(printedBy([] { EXPECT_TRUE(_options->saveXMLController()); }), "");
}

// Links that lead round.
TEST_F(OptionsFiles, ControllerThatCannotBeRead_KeepsTheMapAndIsNeverWrittenOver) {
    std::filesystem::create_directory("userdata");
    std::filesystem::create_symlink("gamecontroller.xml", "userdata/gamecontroller.xml");
    keys->padButton[3] = 7;
    EXPECT_EQ(printedBy([] { _options->lireXMLController(); }), "can't find controller xml file\n");
    EXPECT_EQ(keys->padButton[3], 7);
    EXPECT_EQ(_options->file, nullptr);
    std::filesystem::remove("userdata/gamecontroller.xml");
    writeFile("userdata/gamecontroller.xml", "mine");
    const std::string path = _options->homeDir + "/userdata/gamecontroller.xml";
    EXPECT_EQ(printedBy([] { EXPECT_FALSE(_options->saveXMLController()); }),
              "Could not save " + path + "\n");
    EXPECT_EQ(readFile("userdata/gamecontroller.xml"), "mine");
    EXPECT_EQ(printedBy([] { EXPECT_TRUE(_options->saveXML()); }), "");
}

TEST_F(OptionsFiles, LinkedFiles_AreReplacedBehindTheirLinks) {
    writeFile("far/prefs.xml", prefs("1", "0", "1280", "720"));
    std::filesystem::create_directory("userdata");
    std::filesystem::create_symlink("../far/prefs.xml", "userdata/prefs.xml");
    std::filesystem::create_symlink("../far/pad.xml", "userdata/gamecontroller.xml");
    _options->lireXML();
    EXPECT_EQ(_options->topbar, 1);
    _options->topbar = 0;
    EXPECT_TRUE(_options->saveXML());
    EXPECT_TRUE(_options->saveXMLController());
    EXPECT_TRUE(std::filesystem::is_symlink("userdata/prefs.xml"));
    EXPECT_TRUE(std::filesystem::is_symlink("userdata/gamecontroller.xml"));
    EXPECT_NE(readFile("far/prefs.xml").find("<topbar>0</topbar>"), std::string::npos);
    EXPECT_NE(readFile("far/pad.xml").find("<button>"), std::string::npos);
}

TEST_F(OptionsFiles, Leaving_SavesAndGoesHome) {
    all->state = STATE_OPTIONS;
    _options->page = 1;
    _options->waitingButton = 1;
    _options->topbar = 1;
    _options->quitOptions();
    EXPECT_EQ(all->state, STATE_HOME);
    EXPECT_EQ(_options->page, 0);
    EXPECT_EQ(_options->waitingButton, 0);
    EXPECT_NE(readFile("userdata/prefs.xml").find("<topbar>1</topbar>"), std::string::npos);
}

TEST_F(OptionsFiles, SkippingToAWord_StopsBehindItOrAtTheEndOfAll) {
    writeFile("userdata/prefs.xml", "<all><fps>1</fps></all>");
    _options->file = fopen("userdata/prefs.xml", "r");
    ASSERT_NE(_options->file, nullptr);
    EXPECT_EQ(_options->lireMot("<fps>"), "");
    EXPECT_EQ(_options->finLigne(), '1');
    EXPECT_EQ(_options->lireMot("<topbar>"), "</all>");
    fclose(_options->file);
    _options->file = nullptr;
}

}  // namespace
