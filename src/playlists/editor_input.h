#pragma once
// The mouse's half of the playlist screen's handler, called once a frame before the keys' half. It
// reads `input` and drives the steps of `editor`; what the button holds is kept in the editor.

class c_keys;
class c_playlist;

void followMouse(const c_keys& input, c_playlist& editor);
