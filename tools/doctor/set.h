#pragma once
// Velmora's folder: the pictures of the menus, the rights, the user's files, and every playlist
// with its clips.

#include <filesystem>
#include <optional>

#include "files/preferences.h"
#include "tools/clip/reports/check_set.h"
#include "tools/doctor/remarks.h"

namespace doctor {

// What the program draws its screens with, below data/.
void judgeData(const std::filesystem::path& folder, Remarks& remarks);

// Whether what is saved can be written, and what is there can be read.
void judgeRights(const std::filesystem::path& folder, Remarks& remarks);

// `freeMemory` in bytes, where it is known. What is wrong with the controller's file matters only
// where there is a controller.
void judgeSet(const maker::SetReport& set, std::optional<size_t> freeMemory, bool withController,
              Remarks& remarks);

// Null when the file is missing or cannot be read.
std::optional<files::ControllerMap> controllerMapIn(const std::filesystem::path& folder);

}  // namespace doctor
