// What the keys do on the options screen.
#include "core/globals.h"
#include "input/keys.h"
#include "input/slots.h"
#include "options/options.h"

void c_keys::actionsOptionsScreen0() {
    if (pressed(KEY_Z) || pressed(PAD_BACK)) {
        _options->quitOptions();
    }
}

void c_keys::actionsOptionsScreen1() {
    actionsOptionsScreen0();
}
