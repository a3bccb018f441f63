#include "files/preferences.h"

#include <gtest/gtest.h>

#include <numeric>

namespace {

const std::string kStart = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n";

const std::string kPreferences = kStart +
                                 "\t<mode>0</mode>\n"
                                 "\t<topbar>1</topbar>\n"
                                 "\t<fps>0</fps>\n"
                                 "\t<res_w>1024</res_w>\n"
                                 "\t<res_h>768</res_h>\n"
                                 "\t<filter>0</filter>\n"
                                 "\t<filter>1</filter>\n"
                                 "\t<filter>2</filter>\n"
                                 "\t<filter>3</filter>\n"
                                 "\t<filter>4</filter>\n"
                                 "\t<filter>5</filter>\n"
                                 "\t<filter>6</filter>\n"
                                 "\t<filter>-7</filter>\n"
                                 "\t<filter>800</filter>\n"
                                 "</all>\n";
constexpr files::Preferences kHeld = {1, 0, 1024, 768, {0, 1, 2, 3, 4, 5, 6, -7, 800}};

std::string with(const std::string& was, const std::string& is) {
    std::string text = kPreferences;
    return text.replace(text.find(was), was.size(), is);
}

TEST(Preferences, Print_ByteForByte) {
    EXPECT_EQ(files::printPreferences(kHeld), kPreferences);
}

TEST(Preferences, Parse_EveryValue) {
    const files::Preferences read = files::parsePreferences(kPreferences, {0, 1, 1280, 720, {}});
    EXPECT_EQ(read.topbar, 1);
    EXPECT_EQ(read.fps, 0);
    EXPECT_EQ(read.width, 1024);
    EXPECT_EQ(read.height, 768);
    EXPECT_EQ(read.filters, kHeld.filters);
}

TEST(Preferences, ParseFlagOfAnotherText_StaysAsItWas) {
    EXPECT_EQ(files::parsePreferences(with("1</topbar>", "yes</topbar>"), {7, 7, 0, 0, {}}).topbar,
              7);
    EXPECT_EQ(files::parsePreferences(with("0</fps>", "01</fps>"), {7, 7, 0, 0, {}}).fps, 7);
}

TEST(Preferences, ParseSizeBelowTheSmallest_StaysAsItWas) {
    const files::Preferences before = {0, 0, 1280, 720, {}};
    EXPECT_EQ(files::parsePreferences(with("1024", "799"), before).width, 1280);
    EXPECT_EQ(files::parsePreferences(with("1024", "800"), before).width, 800);
    EXPECT_EQ(files::parsePreferences(with("768", "599"), before).height, 720);
    EXPECT_EQ(files::parsePreferences(with("768", "600"), before).height, 600);
}

// Entries 8 and 9, and 10 and 11, change places.
TEST(Controller, PrintAndParse_ShouldersSwapped) {
    std::string text = kStart;
    for (const int button : {20, 21, 22, 23, 24, 25, 26, 27, 29, 28, 31, 30, 32, 33}) {
        text += "\t<button>" + std::to_string(button) + "</button>\n";
    }
    text += "</all>\n";
    files::ControllerMap map;
    std::iota(map.begin(), map.end(), 20);
    EXPECT_EQ(files::printController(map), text);
    EXPECT_EQ(files::parseController(text), map);
}

TEST(Controller, ParseNoNumbers_Zero) {
    EXPECT_EQ(files::parseController(""), files::ControllerMap{});
}

}  // namespace
