#include "tools/score/keys.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using maker::keyName;
using maker::keyOf;

TEST(Keys, Every_IsFoundByItsName) {
    std::set<std::string> names;
    for (int key = 1; key < SDLK_LAST; ++key) {
        EXPECT_EQ(keyOf(keyName(key)), key);
        names.insert(keyName(key));
    }
    EXPECT_EQ(names.size(), static_cast<size_t>(SDLK_LAST - 1));
}

TEST(Keys, Names_AreSdlsKeys) {
    EXPECT_EQ(keyOf("q"), SDLK_q);
    EXPECT_EQ(keyOf("7"), SDLK_7);
    EXPECT_EQ(keyOf("return"), SDLK_RETURN);
    EXPECT_EQ(keyOf("backspace"), SDLK_BACKSPACE);
    EXPECT_EQ(keyOf("tab"), SDLK_TAB);
    EXPECT_EQ(keyOf("space"), SDLK_SPACE);
    EXPECT_EQ(keyOf("escape"), SDLK_ESCAPE);
    EXPECT_EQ(keyOf("delete"), SDLK_DELETE);
    EXPECT_EQ(keyOf("up"), SDLK_UP);
    EXPECT_EQ(keyOf("down"), SDLK_DOWN);
    EXPECT_EQ(keyOf("right"), SDLK_RIGHT);
    EXPECT_EQ(keyOf("left"), SDLK_LEFT);
    EXPECT_EQ(keyOf("insert"), SDLK_INSERT);
    EXPECT_EQ(keyOf("home"), SDLK_HOME);
    EXPECT_EQ(keyOf("end-key"), SDLK_END);
    EXPECT_EQ(keyOf("page-up"), SDLK_PAGEUP);
    EXPECT_EQ(keyOf("page-down"), SDLK_PAGEDOWN);
    EXPECT_EQ(keyName(SDLK_LSHIFT), "key304");
}

TEST(Keys, Others_AreNone) {
    for (const char* name : {"", "Q", "key", "key0", "key323", "key-1", "key1x", "ctrl", "?"}) {
        EXPECT_EQ(keyOf(name), std::nullopt) << name;
    }
}

TEST(Keys, UsualCharacter_IsThatOfAscii) {
    EXPECT_EQ(maker::usualCharacter(SDLK_q), 'q');
    EXPECT_EQ(maker::usualCharacter(SDLK_RETURN), 13);
    EXPECT_EQ(maker::usualCharacter(SDLK_LEFT), 0);
    EXPECT_EQ(maker::usualCharacter(SDLK_LSHIFT), 0);
}

}  // namespace
