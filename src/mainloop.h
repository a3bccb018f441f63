#pragma once
// One turn of the program: while no frame is due it sleeps until one is and returns; else it reads
// the input, lets the current screen act, draws it and shows the result.

// The value of isExit: 1 go on, 0 stop.
int mainLoop();
