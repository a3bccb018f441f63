// The program is runProgram(); here is what belongs to the process alone.
#include <cstdlib>
#include <ctime>

#include "program.h"

namespace {

// The snow effect draws from rand(): every run has its own snow.
struct RandomSeed {
    RandomSeed() { srand(static_cast<unsigned>(time(nullptr))); }
};
const RandomSeed randomSeed;

}  // namespace

int main(int, char**) {
    return runProgram();
}
