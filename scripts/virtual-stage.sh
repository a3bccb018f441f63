# shellcheck shell=bash
# A virtual display with Velmora in it, driven by keys and mouse. Sourced by scripts/tour and
# scripts/docs-pictures from the repo's folder, with `shots` naming the folder for the pictures.
#
#   make_stage            a folder of its own to play in: the clips and user data of $STAGE_SET (the
#                         repo by default) are copied and stay as they are
#   start_display [SIZE [DEPTH [OPTION...]]]  1280x720 and 16 bits by default; exports DISPLAY
#   start_program         waits for its window; its log is in $stage/log
#   wait_for_window TENTHS  of a second for a program that was started otherwise; gives it the keys
#   stop_program, stop_display
#   shot NAME             the screen as $shots/NN-NAME.png
#   key NAME...           one press each; press_key and release_key for the two halves; $KEY_TIME seconds
#                         down and up, for programs that take longer for a frame
#   click X Y, point X Y, press_mouse, release_mouse     at a place of the 640 x 360 picture
#   load_playlist COUNT   opens the chosen playlist, waits until COUNT of its clips began to load

root=$PWD
stage=$(mktemp -d)
server=
program=
display_size=1280x720

stop_program() {
    [ -z "$program" ] || { kill "$program" && wait "$program"; } 2>/dev/null || true
    program=
}
stop_display() {
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
    server=
}
finish() {
    stop_program
    stop_display
    rm -rf "$stage"
}
trap finish EXIT

# A display number of its own choosing; beside other servers a start may fail, so it is checked.
# Without -noreset the server starts over when the checking client leaves.
start_display() {
    local number depth=${2:-16}
    display_size=${1:-1280x720}
    shift $(($# < 2 ? $# : 2))
    for _ in 1 2 3 4 5; do
        rm -f "$stage/number"
        Xvfb -displayfd 3 -screen 0 "${display_size}x$depth" -nolisten tcp -noreset "$@" \
            3>"$stage/number" 2>/dev/null &
        server=$!
        for _ in $(seq 50); do
            number=$(cat "$stage/number" 2>/dev/null || true)
            if [ -n "$number" ] && xdpyinfo -display ":$number" >/dev/null 2>&1; then
                export DISPLAY=":$number"
                return
            fi
            sleep 0.1
        done
        kill "$server" 2>/dev/null || true
    done
    echo "no virtual display came up" >&2
    exit 2
}

count=0
shot() {
    count=$((count + 1))
    import -window root "$shots/$(printf '%02d' "$count")-$1.png"
    printf '  %02d %s\n' "$count" "$1"
}

# Long enough for the frame that samples the key.
press_key() {
    xdotool keydown "$1"
    sleep "${KEY_TIME:-0.12}"
}
release_key() {
    xdotool keyup "$1"
    sleep "${KEY_TIME:-0.12}"
}
key() {
    local name
    for name in "$@"; do
        press_key "$name"
        release_key "$name"
    done
}

point() {
    local width=${display_size%x*} height=${display_size#*x}
    xdotool mousemove $(((width - 640) / 2 + $1)) $(((height - 360) / 2 + $2))
    sleep 0.15
}
press_mouse() {
    xdotool mousedown 1
    sleep 0.12
}
# Long enough for a page that this opens to take presses again.
release_mouse() {
    xdotool mouseup 1
    sleep 0.4
}
click() {
    point "$1" "$2"
    press_mouse
    release_mouse
}

log_lines() { wc -l <"$stage/log"; }

# Waits until `count` clips have begun to load since the log was `from` lines long.
wait_for_clips() {
    local wanted=$1 from=$2
    for _ in $(seq 300); do
        [ "$(tail -n +"$((from + 1))" "$stage/log" | grep -c '^\./videos/' || true)" -lt "$wanted" ] ||
            return 0
        sleep 0.1
    done
    { echo "the clips did not load; the program said:"; cat "$stage/log"; } >&2
    return 1
}

load_playlist() {
    local from
    from=$(log_lines)
    key x
    wait_for_clips "$1" "$from"
    sleep 0.5
}

make_stage() {
    local set=${STAGE_SET:-$root}
    mkdir -p "$stage/userdata" "$stage/videos"
    ln -s "$root/data" "$stage/data"
    cp "$set"/userdata/*.xml "$stage/userdata/"
    cp -r "$set/videos/." "$stage/videos/"
}

wait_for_window() {
    local window
    for _ in $(seq "$1"); do
        window=$(xdotool search --name '^Velmora$' 2>/dev/null | head -n 1 || true)
        [ -z "$window" ] || ! xdotool windowfocus "$window" 2>/dev/null || return 0
        sleep 0.05
    done
    { echo "the program did not come up; it said:"; cat "$stage/log"; } >&2
    return 1
}

start_program() {
    (cd "$stage" && exec "$root/build/release/velmora") >"$stage/log" 2>&1 &
    program=$!
    wait_for_window 100
}
