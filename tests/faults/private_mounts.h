#pragma once
// File systems of a test's own, which nobody else sees: small ones that are full at once, and ones
// that are read-only also for root. No rights are needed, but a kernel that gives every user
// namespaces of their own; where it does not, the tests say so and are skipped.

#include <string>

namespace faults {

// Puts this process, and the children that it starts from now on, into mount and user namespaces of
// their own. Empty, or why there are none. The second call does nothing.
std::string enterPrivateMounts();

// A file system in memory on a folder that there is; gone, with all it holds, when this goes.
class SmallDisk {
public:
    SmallDisk(const std::string& folder, const std::string& size);  // "64k"; throws runtime_error
    ~SmallDisk();
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    // Takes all the room that is left, and gives it back.
    void fill();
    void makeRoom();
    void setReadOnly(bool readOnly);

private:
    std::string folder_;
};

}  // namespace faults
