# shellcheck shell=sh
# What the program wants around it and what its status means. Sourced by ./run and by the launcher of
# the package; plain sh, fine under set -eu.
#
#   play PROGRAM   runs it in the current directory; 0 after a normal quit, else the program's status

PLAY_KEPT=32768  # KiB that stay free for the system: its caches, the X server's share of the picture
PLAY_LEAST=163840 # KiB with which the program starts in any case, and a small playlist plays

# Lets the program have what is free, and no more: memory is promised to a program until there is
# none, and then the kernel ends one. With a limit the clip that no longer fits is refused instead.
# Swap does not count: a clip on the card's swap would hold the picture up.
play_within_memory() {
    play_room=$(sed -n 's/^MemAvailable: *\([0-9][0-9]*\) kB$/\1/p' \
        "${VELMORA_MEMINFO:-/proc/meminfo}" 2>/dev/null) || return 0
    [ -n "$play_room" ] || return 0
    play_room=$((play_room - PLAY_KEPT))
    [ "$play_room" -ge "$PLAY_LEAST" ] || play_room=$PLAY_LEAST
    # shellcheck disable=SC3045  # dash and bash both have -S and -d
    case $(ulimit -S -d) in
        unlimited) ulimit -S -d "$play_room" ;;
        # Who has set a smaller one keeps it.
        *) [ "$(ulimit -S -d)" -le "$play_room" ] || ulimit -S -d "$play_room" ;;
    esac 2>/dev/null || true
}

play() {
    # Over SDL's compatibility layer every known pad has the same button numbers then, its cross
    # included; userdata/gamecontroller.xml fits them. Classic SDL 1.2 does not look at it.
    export SDL12COMPAT_USE_GAME_CONTROLLERS="${SDL12COMPAT_USE_GAME_CONTROLLERS:-1}"
    # A desktop finds the window's icon by this name.
    export SDL_VIDEO_X11_WMCLASS="${SDL_VIDEO_X11_WMCLASS:-velmora}"
    (
        play_within_memory
        exec "$1"
    ) <&0 &
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
