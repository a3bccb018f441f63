#include "tools/doctor/machine.h"

#include <gtest/gtest.h>

#include <fstream>

#include "support/folder.h"
#include "tests/doctor/said.h"
#include "tools/doctor/pace.h"

namespace doctor {
namespace {

const std::string kSupply = "Take the power supply that belongs to the board, and a short cable.";

Remarks judged(const MachineFacts& facts) {
    Remarks remarks;
    judgeMachine(facts, remarks);
    return remarks;
}

Remarks withPower(unsigned bits) {
    MachineFacts facts;
    facts.throttled = bits;
    return judged(facts);
}

Remarks withSpace(uint64_t bytes) {
    MachineFacts facts;
    facts.freeSpace = bytes;
    return judged(facts);
}

TEST(Machine, Kernel_TellsIt) {
    const TemporaryFolder folder;
    std::ofstream("memory") << "MemTotal:  1000 kB\nMemFree: 10 kB\nMemAvailable:     300 kB\n";
    std::ofstream("throttled") << "50005\n";
    std::ofstream("temperature") << "81250\n";
    const MachineFacts facts = machineAt({"memory", "throttled", "temperature"}, ".");
    EXPECT_EQ(facts.freeMemory, 300U * 1024);
    EXPECT_EQ(facts.throttled, 0x50005U);
    EXPECT_EQ(facts.temperature, 81.25);
    EXPECT_GT(facts.freeSpace.value_or(0), 0U);
    const MachineFacts nothing = machineAt({"no", "no", "no"}, "no");
    EXPECT_FALSE(nothing.freeMemory || nothing.throttled || nothing.temperature ||
                 nothing.freeSpace);
    EXPECT_EQ(judged(nothing).worstFirst().size(), 0U);
}

TEST(Machine, ThisOne_TellsItsMemory) {
    EXPECT_GT(machineAt({}, ".").freeMemory.value_or(0), 1'000'000U);
}

TEST(JudgeMachine, FullDisk_Hurts) {
    EXPECT_TRUE(says(withSpace(3'999'999), Grade::HURTS, "disk", "it is full: nothing can be saved",
                     "Delete what is not needed."));
}

TEST(JudgeMachine, LittleRoom_IsNoted) {
    EXPECT_TRUE(
        says(withSpace(4'000'000), Grade::NOTE, "disk", "4 MB are free, which a few clips fill"));
    EXPECT_TRUE(says(withSpace(200'000'000), Grade::FINE, "disk", "200 MB are free"));
}

TEST(JudgeMachine, Power_IsToldByItsBits) {
    EXPECT_TRUE(says(withPower(0), Grade::FINE, "power", "enough of it since the machine started"));
    EXPECT_TRUE(says(withPower(0x1), Grade::HURTS, "power", "the voltage is too low", kSupply));
    EXPECT_TRUE(says(withPower(0x10000), Grade::NOTE, "power",
                     "the voltage was too low since the machine started", kSupply));
    for (const unsigned bit : {0x4U, 0x8U}) {
        EXPECT_TRUE(says(withPower(bit), Grade::HURTS, "power",
                         "the processor has been slowed down, for heat or want of power",
                         "Let it cool down; a fan or a heat sink keeps it fast."));
        EXPECT_TRUE(says(withPower(bit << 16), Grade::NOTE, "power",
                         "the processor was slowed down since the machine started",
                         "A fan or a heat sink keeps it fast."));
    }
}

TEST(JudgeMachine, Heat_Hurts) {
    MachineFacts facts;
    facts.temperature = 79.9;
    EXPECT_TRUE(atWorst(judged(facts), Grade::FINE));
    facts.temperature = 80;
    EXPECT_TRUE(says(judged(facts), Grade::HURTS, "heat",
                     "the processor has 80 degrees Celsius, and slows down", "Let air to it."));
}

Remarks ofPace(const PaceFacts& facts) {
    Remarks remarks;
    judgePace(facts, remarks);
    return remarks;
}

TEST(JudgePace, EnoughTime_IsInOrder) {
    EXPECT_TRUE(says(ofPace({10, 4.5}), Grade::FINE, "pace",
                     "with every filter on both layers a frame takes 14.5 ms of the 39.0 ms that "
                     "it has (4.5 ms of them to show it)"));
    EXPECT_TRUE(says(ofPace({39, std::nullopt}), Grade::FINE, "pace",
                     "with every filter on both layers a frame takes 39.0 ms of the 39.0 ms that "
                     "it has (the display not counted)"));
}

TEST(JudgePace, TooSlow_Hurts) {
    EXPECT_TRUE(says(ofPace({30, 20}), Grade::HURTS, "pace",
                     "with every filter on both layers a frame takes 50.0 ms of the 39.0 ms that "
                     "it has (20.0 ms of them to show it): 20 pictures a second then",
                     "Fewer filters at once; end other programs; let a hot machine cool down."));
}

}  // namespace
}  // namespace doctor
