#pragma once
// The parts of the playlist screen's handler: its mouse and the keys of its name page, called once
// a frame. They read `input` and drive the steps of `editor`, which keeps what the button holds.

class c_keys;
class Editor;

// One frame of the screen.
void useEditor(c_keys& input, Editor& editor);

// Both answer whether the mouse is in use, so that the keys keep still. During a preview the mouse
// ends it and does nothing else.
bool followMouse(const c_keys& input, Editor& editor);
bool clickInPreview(const c_keys& input, Editor& editor);

// The keyboard writes the name; arrows and pad choose and use the keys on the screen.
void writeName(const c_keys& input, Editor& editor);
// Escape went down, not held since another page.
bool escapes(const c_keys& input, const Editor& editor);

// Shared by the pages: pad and keyboard alike.
bool goesBack(const c_keys& input);
// Moves the lit row, key or button.
void moveByArrows(const c_keys& input, Editor& editor);
