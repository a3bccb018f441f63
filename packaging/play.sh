# shellcheck shell=sh
# What the program wants around it and what its status means. Sourced by ./run and by the launcher of
# the package; plain sh, fine under set -eu.
#
#   play PROGRAM   runs it in the current directory; 0 after a normal quit, else the program's status

play() {
    # Over SDL's compatibility layer every known pad has the same button numbers then, its cross
    # included; userdata/gamecontroller.xml fits them. Classic SDL 1.2 does not look at it.
    export SDL12COMPAT_USE_GAME_CONTROLLERS="${SDL12COMPAT_USE_GAME_CONTROLLERS:-1}"
    # A desktop finds the window's icon by this name.
    export SDL_VIDEO_X11_WMCLASS="${SDL_VIDEO_X11_WMCLASS:-velmora}"
    "$1" <&0 &
    play_program=$!
    # Who ends this script means the program, which then quits as if its window were closed.
    play_stopped=
    trap 'play_stopped=yes; kill "$play_program" 2>/dev/null || true' HUP INT TERM
    play_status=0
    wait "$play_program" || play_status=$?
    # The signal ended the wait, not yet the program.
    while [ -n "$play_stopped" ]; do
        play_stopped=
        play_status=0
        wait "$play_program" || play_status=$?
    done
    trap - HUP INT TERM
    # The program ends with status 1 when all is well.
    [ "$play_status" -ne 1 ] || play_status=0
    return "$play_status"
}
