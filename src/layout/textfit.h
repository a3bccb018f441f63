#pragma once
// Texts cut to their column. Texts are bytes, drawn as layout/latin1.h says and cut between the
// letters drawn; widths are pixels as the caller measures them.

#include <functional>
#include <string>

// The text, or as much of its beginning as fits into `room` with "..." behind it. Empty when not
// even the dots fit.
std::string fitText(const std::string& text, int room,
                    const std::function<int(const std::string&)>& widthOf);
