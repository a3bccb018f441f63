#pragma once
// What X and the kernel call the keys.

#include <X11/keysym.h>
#include <linux/input-event-codes.h>

#include <array>

#include "tools/control/base/key.h"

namespace control {

struct KeyCode {
    unsigned long symbol;  // of X
    uint16_t code;         // of the kernel
};

inline constexpr std::array<KeyCode, kKeys> kKeyCodes = {{
    {XK_q, KEY_Q},          {XK_w, KEY_W},         {XK_e, KEY_E},
    {XK_r, KEY_R},          {XK_t, KEY_T},         {XK_y, KEY_Y},
    {XK_u, KEY_U},          {XK_i, KEY_I},         {XK_o, KEY_O},
    {XK_a, KEY_A},          {XK_s, KEY_S},         {XK_z, KEY_Z},
    {XK_x, KEY_X},          {XK_f, KEY_F},         {XK_1, KEY_1},
    {XK_2, KEY_2},          {XK_3, KEY_3},         {XK_4, KEY_4},
    {XK_5, KEY_5},          {XK_6, KEY_6},         {XK_Up, KEY_UP},
    {XK_Right, KEY_RIGHT},  {XK_Down, KEY_DOWN},   {XK_Left, KEY_LEFT},
    {XK_Tab, KEY_TAB},      {XK_space, KEY_SPACE}, {XK_BackSpace, KEY_BACKSPACE},
    {XK_Return, KEY_ENTER},
}};

}  // namespace control
