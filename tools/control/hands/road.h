#pragma once
// A way to Velmora: hands, and what tells whether they reach it. Belongs to one thread.

#include <cstdint>

#include "tools/control/base/hands.h"
#include "tools/control/base/time.h"

namespace control {

class Road : public Hands {
public:
    // Readable when look() has something to see; -1: never.
    virtual int fd() const = 0;
    // Sees what has become of Velmora; to be called when fd() is readable, and once a second.
    // Throws ToolError when the road itself has ended.
    virtual void look(Time now) = 0;
    // Which run of Velmora is there, by any number; 0: none.
    virtual uint64_t stage() const = 0;
    // The keys that cannot be pressed, in words: "1, 2"; empty: all can.
    virtual std::string missingKeys() const = 0;
};

}  // namespace control
