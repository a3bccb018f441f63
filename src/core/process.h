#pragma once
// What the program needs of the process that it runs in, so that nobody who reads its lines, or
// stops reading them, can disturb the show; and whether SDL found a display at all. main() alone
// calls these.

// The first thing of all: before a file is opened and before a line is printed.
void prepareProcess();

// Before SDL starts: where there is no display, SDL must leave the terminal alone.
void keepTerminal();

// After SDL_Init, with its answer. False as well when SDL took a driver that nobody can look at.
bool displayFound(int initResult);
