#pragma once
// The user's three files: what the program would ignore, cut or misread in them.

#include "tools/clip/reports/findings.h"
#include "tools/clip/reports/user_files.h"

namespace maker {

void checkPlaylistsFile(const PlaylistsFile& file, Findings& findings);
void checkPrefsFile(const ElementsFile& file, Findings& findings);
void checkControllerFile(const ElementsFile& file, Findings& findings);

}  // namespace maker
