#pragma once
// Numbers with a fixed count of digits behind the point, for the lines that the tool prints.

#include <cstdio>
#include <string>

namespace maker {

inline std::string decimals(double value, int digits) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", digits, value);
    return text;
}

}  // namespace maker
