#pragma once
// Every text that the program prints on standard output. Format strings say so in their name
// and end their line; the others go through puts(), which ends it.

namespace msg {

inline constexpr const char* kStarting = "Starting Velmora\n";  // an empty line follows
inline constexpr const char* kScreenResolutionFormat = "Current screen resolution : %d x %d\n";
inline constexpr const char* kAppResolutionFormat = "Current app resolution : %d x %d\n";
inline constexpr const char* kUseHdmiSize =
    "When using HDMI, please set the screen resolution to 1280 x 720.";
inline constexpr const char* kOverscanAdvice =
    "Overscan should be disabled ( see: "
    "https://www.raspberrypi.com/documentation/computers/configuration.html ).";
inline constexpr const char* kOverscanMoreInfos =
    "Overscan should be disabled ( more infos: "
    "https://www.raspberrypi.com/documentation/computers/configuration.html )";
inline constexpr const char* kNoDisplay =
    "No display found. Start Velmora on this machine's desktop or X server (see raspberry-pi.md).";
inline constexpr const char* kNoWindowA = "Could not create main window A";
inline constexpr const char* kNoWindowB = "Could not create main window B";
inline constexpr const char* kNoWindowC = "Could not create main window C";
inline constexpr const char* kCompositeDetected =
    "Composite OutPut detected, adjusting app resolution.";
inline constexpr const char* kNewResolutionRefused = "Could not set the new resolution";
inline constexpr const char* kFullScreenRefused = "Could not set full screen window";

inline constexpr const char* kClipVanished = "video n'existe pas";
inline constexpr const char* kClipDestroyed = "- - - destroy";
inline constexpr const char* kNoMemoryForClip = "Not enough memory for this clip";

inline constexpr const char* kNoPlaylistsFile = "can't find playlists XML file";
inline constexpr const char* kNoPrefsFile = "can't find prefs file";
inline constexpr const char* kNoControllerFile = "can't find controller xml file";
inline constexpr const char* kNoDirectory = "Couldn't open the directory";
inline constexpr const char* kDropFormat = "%d\n%d\n";  // where a clip was let go
inline constexpr const char* kSaveFailedFormat = "Could not save %s/%s\n";  // folder, file

inline constexpr const char* kNoMemory = "Not enough memory";
inline constexpr const char* kNoMemoryToStart = "Not enough memory to start";

}  // namespace msg
