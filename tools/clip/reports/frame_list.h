#pragma once
// Frames of a clip named by numbers and ranges, such as "0,5,10-20"; 20-10 counts backwards.

#include <string>
#include <vector>

namespace maker {

// Whether the text has that form.
bool isFrameList(const std::string& text);

// In the order given; an empty text names all. Throws ToolError for a frame that a clip of `count`
// frames does not have.
std::vector<int> framesOf(const std::string& text, int count);

}  // namespace maker
