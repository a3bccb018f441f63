#pragma once
// The parts of the playlist screen's handler, called once a frame. They read `input` and drive the
// steps of `editor`, which keeps what the button holds.

class c_keys;
class Editor;

// One frame of the screen.
void useEditor(c_keys& input, Editor& editor);

// Both answer whether the mouse is in use, so that the keys keep still. During a preview the mouse
// ends it and does nothing else.
bool followMouse(const c_keys& input, Editor& editor);
bool clickInPreview(const c_keys& input, Editor& editor);
