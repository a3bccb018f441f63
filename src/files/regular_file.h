#pragma once
// Opens regular files for reading, and nothing else: a pipe would hold the program up for good.
//
// Both say in `errno` why there is none: open()'s reason, EINVAL for what is no regular file, and
// ENOMEM, also from openRegularFile(), for want of memory and then alone.

#include <cstdio>
#include <string>

// A descriptor, which the caller closes; -1 when there is none.
int openRegular(const std::string& path);

// A stream of bytes, likewise; null when there is none.
FILE* openRegularFile(const std::string& path);
