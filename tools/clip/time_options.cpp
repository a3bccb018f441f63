// The options of the command line that say which part of an input a clip shows, and how fast.

#include "tools/clip/commands.h"

namespace maker {

namespace {

CLI::Option* addTime(CLI::App& command, const char* option, BeatTime& time, const char* help) {
    return command
        .add_option_function<std::string>(
            option, [&time](const std::string& text) { readBeatTime(text, time); }, help)
        ->check(CLI::Validator(
            [](const std::string& text) {
                BeatTime ignored;
                return readBeatTime(text, ignored)
                           ? ""
                           : text + " is not a time like 62.5, 1:02.5, 16b (beats) or 0.4+16b";
            },
            ""))
        ->option_text("SECONDS|H:M:S|BEATSb");
}

void addTempo(CLI::App& command, const char* option, double& bpm, const char* help) {
    command.add_option(option, bpm, help)->check(CLI::Range(10.0, 1000.0))->option_text("BPM");
}

}  // namespace

void addTimeOptions(CLI::App& command, EncodeArguments& arguments) {
    BeatWishes& beats = arguments.beats;
    addTime(command, "--start", beats.start, "begin at this second, or beat, of the input");
    addTime(command, "--duration", beats.duration, "take this many seconds, or beats")
        ->check(CLI::Validator(
            [](const std::string& text) {
                BeatTime time;
                readBeatTime(text, time);
                return time.seconds > 0 || time.beats > 0 ? "" : text + " is no time at all";
            },
            ""));
    addTempo(command, "--bpm", beats.bpm, "the input's tempo, beats a minute");
    command
        .add_option("--beats", beats.beats,
                    "make a clip that lasts this many beats on stage, of as many of the input, or "
                    "of the duration given; with --loop best, look for such a loop")
        ->check(CLI::Range(0.01, 1e6))
        ->option_text("N");
    addTempo(command, "--to-bpm", beats.toBpm, "play it at this tempo instead");
    command.add_flag("--reverse", arguments.settings.reverse, "turn the clip round: backwards");
    command
        .add_option("--fps", arguments.settings.fps,
                    "frames a second of the clip: 25.6, the stage's own pace, keeps the input's "
                    "speed, more slows it down; each picture of an image sequence is one frame")
        ->check(CLI::Range(0.01, 1000.0))
        ->option_text("RATE (25.6)");
}

}  // namespace maker
