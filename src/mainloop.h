#pragma once
// One turn of the program: while no frame is due it sleeps until one is and returns; else it reads
// the input, lets the current screen act, draws it and shows the result. And the global objects,
// created once, in this order.

void allocateBuffers();
void createFirstObjects();  // after SDL has started
void createScreens();       // these read the application resolution and the work surface

// The value of isExit: 1 go on, 0 stop.
int mainLoop();

// Its steps once a frame is due. Each fetches the objects that it works on.
void actAndDraw();  // input, the screen's actions, its picture
void drawScreen();
void drawMix();  // of the mix screen: loader, clips, mixer, panel, list
void showFrame();
