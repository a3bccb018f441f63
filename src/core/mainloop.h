#pragma once
// One turn of the program: returns at once (after a millisecond of sleep) while no frame is due;
// else reads the input, lets the current screen act, draws it and shows the result.

// The value of isExit: 1 go on, 0 stop.
int mainLoop();
