#pragma once
// libzip's account of what went wrong, let go at the end.

#include <zip.h>

#include <string>

namespace maker {

class ZipError {
public:
    ZipError() { zip_error_init(&error_); }
    ~ZipError() { zip_error_fini(&error_); }
    ZipError(const ZipError&) = delete;
    ZipError& operator=(const ZipError&) = delete;

    zip_error_t* get() { return &error_; }
    std::string text() { return zip_error_strerror(&error_); }

private:
    zip_error_t error_;
};

}  // namespace maker
