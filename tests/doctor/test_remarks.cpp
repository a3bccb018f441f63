#include "tools/doctor/remarks.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace doctor {
namespace {

TEST(Remarks, Text_HasTheWorstFirst) {
    Remarks remarks;
    remarks.fine("a", "one");
    remarks.note("b", "two", "Do this.");
    remarks.hurts("c", "three", "Do that.");
    remarks.stops("d", "four", "Do it.");
    remarks.hurts("e", "five", "");
    EXPECT_EQ(asText(remarks),
              "Stops the show\n"
              "  d: four\n"
              "      Do it.\n"
              "Hurts the show\n"
              "  c: three\n"
              "      Do that.\n"
              "  e: five\n"
              "Good to know\n"
              "  b: two\n"
              "      Do this.\n"
              "In order\n"
              "  a: one\n"
              "1 thing stops the show, 2 hurt it.\n");
    EXPECT_EQ(remarks.worst(), Grade::STOPS);
}

TEST(Remarks, NotesAlone_AreReady) {
    Remarks remarks;
    EXPECT_EQ(remarks.worst(), Grade::FINE);
    remarks.note("a", "one");
    remarks.fine("b", "two");
    EXPECT_EQ(asText(remarks), "Good to know\n  a: one\nIn order\n  b: two\nReady for the show.\n");
    EXPECT_EQ(remarks.worst(), Grade::NOTE);
}

TEST(Remarks, Counts_AreInPlainEnglish) {
    Remarks remarks;
    remarks.hurts("a", "one", "");
    EXPECT_TRUE(asText(remarks).ends_with("0 things stop the show, 1 hurts it.\n"));
}

TEST(Remarks, Json_SaysTheSame) {
    Remarks remarks;
    remarks.note("b", "two");
    remarks.hurts("a", "one \xff", "Do it.");
    const auto json = nlohmann::json::parse(asJson(remarks));
    EXPECT_EQ(json["worst"], "hurts");
    ASSERT_EQ(json["remarks"].size(), 2U);
    EXPECT_EQ(json["remarks"][0]["grade"], "hurts");
    EXPECT_EQ(json["remarks"][0]["about"], "a");
    EXPECT_EQ(json["remarks"][0]["mend"], "Do it.");
    EXPECT_EQ(json["remarks"][1]["grade"], "note");
    EXPECT_EQ(json["remarks"][1]["text"], "two");
}

}  // namespace
}  // namespace doctor
