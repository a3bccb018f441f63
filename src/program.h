#pragma once
// The whole run of the program: start-up in its fixed order, the loop, and the end. Nothing is
// released on the way out but the work surface: the process ends right after. Whoever calls it has
// seeded rand().

int runProgram();  // the exit status
