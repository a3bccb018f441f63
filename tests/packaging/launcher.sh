#!/bin/sh
# The launcher and the stage script, installed in a folder of their own around a program that does
# what the case says. The cases StageServer_... have xinit and Xvfb, the others a double of xinit.
#
#   launcher.sh REPOSITORY CASE
#
# shellcheck disable=SC2016  # what the doubles do is for them to expand
set -eu
repository=$1
case_name=$2

# shellcheck source=tests/packaging/cases.sh
. "$(dirname "$0")/cases.sh"
share=$prefix/share/velmora
unset SDL12COMPAT_USE_GAME_CONTROLLERS

# program LINE...: what the program does.
program() {
    double "$prefix/lib/velmora/velmora" "$@"
}

install_all() {
    mkdir -p "$prefix/bin" "$prefix/lib/velmora" \
        "$share/data" "$share/demo" "$share/userdata"
    cp "$repository/packaging/velmora" "$prefix/bin/"
    cp "$repository/packaging/stage" "$repository/packaging/stick" "$prefix/lib/velmora/"
    cp "$repository/packaging/play.sh" "$share/"
    echo pictures >"$share/data/textureUI.png"
    for clip in ape bee cat; do echo "demo $clip" >"$share/demo/$clip.m19"; done
    for file in playlists prefs gamecontroller; do
        echo "demo $file" >"$share/userdata/$file.xml"
    done
    program 'exit 1'
}

# start STATUS: starts Velmora and expects that it ends so.
start() {
    start_status=0
    "$prefix/bin/velmora" >"$box/log" 2>&1 || start_status=$?
    expect "the status" "$start_status" "$1"
}

expect_whole_set() {
    for clip in ape bee cat; do content "$1/videos/$clip.m19" "demo $clip"; done
    for file in playlists prefs gamecontroller; do
        content "$1/userdata/$file.xml" "demo $file"
    done
    content "$1/data/textureUI.png" pictures
    expect "what is left of the copying" "$(find "$1" -name '*.first-start')" ""
}

FirstStart_GivesTheWholeSet() {
    program 'pwd >place' 'cat data/textureUI.png videos/bee.m19 >seen' 'exit 1'
    start 0
    expect_whole_set "$HOME/Velmora"
    content "$HOME/Velmora/place" "$HOME/Velmora"
    content "$HOME/Velmora/seen" "$(printf 'pictures\ndemo bee')"
    content "$box/log" "Velmora: copying the demo clips to $HOME/Velmora/videos (once)."
}

# meminfo KIBIBYTES: what the launcher is told to be free.
meminfo() {
    printf 'MemTotal: 9999999 kB\nMemFree: 1 kB\nMemAvailable: %8d kB\n' "$1" >"$box/meminfo"
    export VELMORA_MEMINFO="$box/meminfo"
}

Memory_IsLimitedToWhatIsFreeButForTheSystemsShare() {
    meminfo 400000
    program "ulimit -S -d >$box/limit" "ulimit -H -d >>$box/limit" 'exit 1'
    start 0
    content "$box/limit" "$(printf '%d\nunlimited' $((400000 - 32768)))"
}

Memory_OfAFullMachineLetsTheProgramStart() {
    meminfo 1000
    program "ulimit -S -d >$box/limit" 'exit 1'
    start 0
    content "$box/limit" 163840
}

Memory_SmallerLimitOfTheUserStays() {
    meminfo 400000
    # shellcheck disable=SC3045  # as in play.sh
    ulimit -S -d 200000
    program "ulimit -S -d >$box/limit" 'exit 1'
    start 0
    content "$box/limit" 200000
}

Memory_ThatIsNotToldIsNotLimited() {
    export VELMORA_MEMINFO="$box/nothing"
    program "ulimit -S -d >$box/limit" 'exit 1'
    start 0
    content "$box/limit" unlimited
    content "$box/log" "Velmora: copying the demo clips to $HOME/Velmora/videos (once)."
}

Memory_ThatIsKeptIsWhatVelmoraClipCountsWith() {
    expect "KiB" "$(sed -n 's/^PLAY_KEPT=\([0-9]*\).*/\1/p' "$share/play.sh")" \
        "$(($(sed -n 's/.*kKeptMemory = \([0-9]*\) \* kMebibyte.*/\1/p' \
            "$repository/tools/clip/reports/memory_room.h") * 1024))"
}

SecondStart_GivesOnlyWhatIsMissing() {
    start 0
    rm "$HOME/Velmora/videos/bee.m19" "$HOME/Velmora/userdata/prefs.xml"
    start 0
    absent "$HOME/Velmora/videos/bee.m19"
    content "$HOME/Velmora/userdata/prefs.xml" "demo prefs"
    content "$box/log" ""
}

OwnFiles_Stay() {
    mkdir -p "$HOME/Velmora/videos" "$HOME/Velmora/userdata"
    echo mine >"$HOME/Velmora/videos/bee.m19"
    echo mine >"$HOME/Velmora/userdata/prefs.xml"
    ln -s /nowhere "$HOME/Velmora/videos/cat.m19"
    start 0
    content "$HOME/Velmora/videos/bee.m19" mine
    content "$HOME/Velmora/userdata/prefs.xml" mine
    expect "the link" "$(readlink "$HOME/Velmora/videos/cat.m19")" /nowhere
    content "$HOME/Velmora/videos/ape.m19" "demo ape"
}

OwnPlaylists_BringNoDemo() {
    mkdir -p "$HOME/Velmora/userdata"
    echo mine >"$HOME/Velmora/userdata/playlists.xml"
    start 0
    content "$HOME/Velmora/userdata/playlists.xml" mine
    expect "the clips" "$(ls "$HOME/Velmora/videos")" ""
    content "$HOME/Velmora/userdata/prefs.xml" "demo prefs"
}

Doctor_GetsItsWords() {
    { echo '#!/bin/sh'; echo 'printf "%s|" "$@"'; echo 'exit 3'; } >"$prefix/bin/velmora-doctor"
    chmod +x "$prefix/bin/velmora-doctor"
    start_status=0
    "$prefix/bin/velmora" doctor --folder "a b" >"$box/log" 2>&1 || start_status=$?
    expect "the status" "$start_status" 3
    content "$box/log" "--folder|a b|"
    absent "$HOME/Velmora"
}

HomeVariable_NamesTheFolder() {
    export VELMORA_HOME="$box/my set's folder"
    start 0
    expect_whole_set "$VELMORA_HOME"
    absent "$HOME/Velmora"
}

# The first clip arrives, the second one is cut in the middle together with the launcher.
CutShort_NextStartMends() {
    instead cp 'case $1 in *bee*) printf "de" >"$2"; kill -KILL $PPID; exit 1 ;; esac' \
        'exec /bin/cp "$@"'
    start 137
    content "$HOME/Velmora/videos/ape.m19" "demo ape"
    absent "$HOME/Velmora/videos/bee.m19"
    absent "$HOME/Velmora/userdata/playlists.xml"
    restore
    start 0
    expect_whole_set "$HOME/Velmora"
}

DiskFull_PlaysAndNextStartMends() {
    instead cp 'case $1 in *bee*) printf "de" >"$2"; exit 1 ;; esac' 'exec /bin/cp "$@"'
    program 'echo playing' 'exit 1'
    start 0
    absent "$HOME/Velmora/videos/bee.m19"
    grep -q 'not complete; the next start tries again' "$box/log" || fail "nothing was said"
    grep -q playing "$box/log" || fail "it did not play"
    restore
    start 0
    expect_whole_set "$HOME/Velmora"
}

# The first one is still copying when the second one comes.
TwoStartsAtOnce_GiveOneWholeSet() {
    instead cp "echo >>$box/copies" 'sleep 0.2' 'exec /bin/cp "$@"'
    "$prefix/bin/velmora" >/dev/null &
    "$prefix/bin/velmora" >/dev/null
    wait
    expect_whole_set "$HOME/Velmora"
    # Three clips and three files.
    expect "the number of copies" "$(wc -l <"$box/copies")" 6
}

LinkOfAnotherInstallation_IsSetRight() {
    start 0
    rm "$HOME/Velmora/data"
    ln -s /gone/share/velmora/data "$HOME/Velmora/data"
    start 0
    expect "the link" "$(readlink "$HOME/Velmora/data")" "$share/data"
}

OwnDataLink_Stays() {
    mkdir -p "$HOME/Velmora" "$box/art"
    ln -s "$box/art" "$HOME/Velmora/data"
    start 0
    expect "the link" "$(readlink "$HOME/Velmora/data")" "$box/art"
}

OwnDataFolder_Stays() {
    mkdir -p "$HOME/Velmora/data"
    echo mine >"$HOME/Velmora/data/textureUI.png"
    start 0
    content "$HOME/Velmora/data/textureUI.png" mine
}

DiskWithoutLinks_GetsACopyThatIsKeptRight() {
    instead ln 'exit 1'
    start 0
    content "$HOME/Velmora/data/textureUI.png" pictures
    echo newer >"$share/data/textureUI.png"
    start 0
    content "$HOME/Velmora/data/textureUI.png" newer
    restore
    start 0
    expect "the link" "$(readlink "$HOME/Velmora/data")" "$share/data"
}

QuitOfTheProgram_Is0() {
    program 'exit 1'
    start 0
}

OtherStatus_IsHandedOn() {
    program 'exit 3'
    start 3
}

# SIGSEGV is signal 11.
Crash_Is128AndTheSignal() {
    program 'kill -SEGV $$'
    start 139
}

UnusableFolder_Is78() {
    program "touch $box/played"
    VELMORA_HOME=/dev/null/set start 78
    absent "$box/played"
}

UnknownArgument_Is2() {
    program "touch $box/played"
    argument_status=0
    "$prefix/bin/velmora" --fast >"$box/log" 2>&1 || argument_status=$?
    expect "the status" "$argument_status" 2
    absent "$box/played"
}

# The program quits on SIGTERM, as it does when its window is closed.
Terminated_AsksTheProgramToQuit() {
    program "trap 'echo >$box/asked; exit 1' TERM" "echo >$box/ready" \
        'for i in $(seq 200); do sleep 0.05; done'
    "$prefix/bin/velmora" >"$box/log" 2>&1 &
    launcher=$!
    for _ in $(seq 100); do
        [ ! -e "$box/ready" ] || break
        sleep 0.05
    done
    kill "$launcher"
    terminated_status=0
    wait "$launcher" || terminated_status=$?
    expect "the status" "$terminated_status" 0
    [ -e "$box/asked" ] || fail "the program was not asked"
}

PadMode_IsOnUnlessSet() {
    program 'echo "$SDL12COMPAT_USE_GAME_CONTROLLERS" >mode' 'exit 1'
    start 0
    content "$HOME/Velmora/mode" 1
    SDL12COMPAT_USE_GAME_CONTROLLERS=0 start 0
    content "$HOME/Velmora/mode" 0
}

# stage STATUS [ARGUMENT...]: the stage script, on a server of these arguments.
stage() {
    stage_expected=$1
    shift
    stage_status=0
    "$prefix/lib/velmora/stage" -- "$server" "$number" "$@" >"$box/log" 2>&1 || stage_status=$?
    expect "the status" "$stage_status" "$stage_expected"
}
# xinit_that_starts [REFUSED]: starts what is inside, unless the server gets REFUSED as its last
# arguments. The servers that it is asked for go to $box/servers, without names that change.
xinit_that_starts() {
    instead xinit 'inside=' 'until [ "$1" = -- ]; do inside="$inside $1"; shift; done' shift \
        "echo \"\$*\" | sed 's:serve [^ ]*:serve FOLDER:' >>$box/servers" \
        "case \"\$*\" in *' ${1-no server}') exit 1 ;; esac" '$inside' 'exit 0'
    instead xset 'exit 0'
}
server=/bin/server
number=:0
server_by_stage="$prefix/lib/velmora/stage :0 serve FOLDER /bin/server"

# screen WIDTH LINE...: what xrandr tells; what it is asked to do goes to $box/asked.
screen() {
    screen_width=$1
    shift
    printf '%s\n' "Screen 0: minimum 320 x 200, current $screen_width x 720, maximum 8192 x 8192" \
        "$@" >"$box/outputs"
    instead xrandr "[ \$# -gt 0 ] || exec cat $box/outputs" "echo \"\$*\" >>$box/asked"
    instead ratpoison 'exit 0'
    xinit_that_starts
    program "echo \"\${SDL_VIDEO_X11_VIDMODE-unset}\" >$box/vidmode" 'exit 1'
}

Stage_QuitIs0() {
    xinit_that_starts
    program "touch $box/played" 'exit 1'
    stage 0
    [ -e "$box/played" ] || fail "it did not play"
}

Stage_AsksForTheBitsOfThePicture() {
    xinit_that_starts
    stage 0 vt1 -keeptty
    content "$box/servers" "$server_by_stage vt1 -keeptty -depth 16"
    ! grep '^stage: ' "$box/log" || fail "something was said"
}

# xinit has a number of its own then.
Stage_NeedsNoDisplayNumber() {
    xinit_that_starts
    "$prefix/lib/velmora/stage" -- /bin/server vt1 >"$box/log" 2>&1 || fail "it ended with $?"
    content "$box/servers" "$prefix/lib/velmora/stage serve FOLDER /bin/server vt1 -depth 16"
}

expect_restart() {
    content "$box/servers" "$server_by_stage -depth 16
/bin/server :0"
    grep -qx 'stage: not with 16 bits a pixel; the server starts as it is' "$box/log" || fail "nothing was said"
}

Stage_RefusedBitsStartTheServerAsItIs() {
    xinit_that_starts '-depth 16'
    program "echo >>$box/played" 'exit 1'
    stage 0
    expect_restart
    expect "the number of shows" "$(wc -l <"$box/played")" 1
}

Stage_NamedDepthStaysAlone() {
    xinit_that_starts
    stage 0 -depth 24 vt1
    content "$box/servers" "/bin/server :0 -depth 24 vt1"
}

Stage_RefusedNamedDepthIs1() {
    xinit_that_starts '-depth 30'
    stage 1 -depth 30
    content "$box/servers" "/bin/server :0 -depth 30"
}

Stage_CrashIsHandedOn() {
    xinit_that_starts
    program 'kill -SEGV $$'
    stage 139
    content "$box/servers" "$server_by_stage -depth 16"
}

Stage_CrashAfterARefusalIsHandedOn() {
    xinit_that_starts '-depth 16'
    program 'kill -SEGV $$'
    stage 139
    expect_restart
}

Stage_ServerThatDoesNotComeUpIs1() {
    instead xinit 'exit 0'
    stage 1
}

# The program ends as when it is quit.
Stage_ServerThatGoesIs1AndStaysGone() {
    xinit_that_starts
    instead xset 'exit 1'
    program 'exit 1'
    stage 1
    content "$box/servers" "$server_by_stage -depth 16"
}

Stage_TakesTheModeOf1280x720() {
    screen 1920 'HDMI-1 connected primary 1920x1080+0+0 (normal left) 530mm x 300mm' \
        '   1920x1080     60.00*+  50.00' '   1280x720      60.00    50.00' \
        'HDMI-2 disconnected (normal left)'
    stage 0
    content "$box/asked" "--output HDMI-1 --pos 0x0 --mode 1280x720 --scale 1x1"
    content "$box/vidmode" unset
}

# SDL would take the larger mode for full screen, and show a part of it.
Stage_ScalesAScreenWithoutThatMode() {
    screen 1024 'DSI-1 connected 1024x600+0+0 (normal left) 154mm x 86mm' '   1024x600      59.85*+'
    stage 0
    content "$box/asked" "--output DSI-1 --pos 0x0 --scale-from 1280x720"
    content "$box/vidmode" 0
}

# Outputs that are off stay off.
Stage_ShowsTheSameOnTwoScreens() {
    screen 3200 'HDMI-1 connected 1280x1024+0+0 (normal left) 376mm x 301mm' \
        '   1280x1024     60.02*+' 'DP-1 connected (normal left)' '   1280x720      60.00 +' \
        'HDMI-2 connected 1920x1080+1280+0 (normal left) 530mm x 300mm' \
        '   1920x1080     60.00*+' '   1280x720      60.00'
    stage 0
    content "$box/asked" "--output HDMI-1 --pos 0x0 --scale-from 1280x720 \
--output HDMI-2 --pos 0x0 --mode 1280x720 --scale 1x1"
}

Stage_LeavesACompositeScreenAsItIs() {
    screen 720 'Composite-1 connected 720x576+0+0 (normal left) 0mm x 0mm' '   720x576       50.00*+'
    stage 0
    absent "$box/asked"
    content "$box/vidmode" unset
}

# The server may have switched the output off by then.
Stage_SwitchesOnAgainWhatCannotScale() {
    screen 1920 'DUMMY0 connected 1920x1080+0+0 (normal left) 0mm x 0mm' '   1920x1080     60.00*+'
    instead xrandr "[ \$# -gt 0 ] || exec cat $box/outputs" "echo \"\$*\" >>$box/asked" \
        'case $* in *--scale-from*) exit 1 ;; esac'
    stage 0 -depth 24
    content "$box/asked" "--output DUMMY0 --pos 0x0 --scale-from 1280x720
--output DUMMY0 --auto"
    content "$box/vidmode" unset
}

# The picture from edge to edge comes before the bits.
Stage_ScalesWithTheServersOwnBitsWhenItMust() {
    screen 1920 'DUMMY0 connected 1920x1080+0+0 (normal left) 0mm x 0mm' '   1920x1080     60.00*+'
    instead xrandr "[ \$# -gt 0 ] || exec cat $box/outputs" "echo \"\$*\" >>$box/asked" \
        "[ \$(wc -l <$box/servers) -eq 2 ]"
    program "echo \"\${SDL_VIDEO_X11_VIDMODE-unset}\" >>$box/vidmode" 'exit 1'
    stage 0
    expect_restart
    content "$box/vidmode" 0
}

Stage_HandsTheKeysToTheWindow() {
    screen 1280
    instead ratpoison "cat \"\$2\" >$box/settings"
    program 'sleep 0.5' 'exit 1'
    stage 0
    grep -qx 'set border 0' "$box/settings" || fail "the window manager was told $(cat "$box/settings")"
}

# bridge LINE...: velmora-control, and a map for it.
bridge() {
    { echo '#!/bin/sh'; printf '%s\n' "$@"; } >"$prefix/bin/velmora-control"
    chmod +x "$prefix/bin/velmora-control"
    mkdir -p "$HOME/.config/velmora"
    echo >"$HOME/.config/velmora/control.toml"
    unset XDG_CONFIG_HOME
}

Stage_PlaysPadsWithAMap() {
    screen 1280
    bridge "echo \"\$*\" >$box/bridge"
    program 'sleep 0.5' 'exit 1'
    stage 0
    content "$box/bridge" run
}

Stage_WithoutAMapNoPads() {
    screen 1280
    bridge "echo \"\$*\" >$box/bridge"
    rm "$HOME/.config/velmora/control.toml"
    program 'sleep 0.5' 'exit 1'
    stage 0
    absent "$box/bridge"
}

Stage_PadsThatFailStopNothing() {
    screen 1280
    bridge 'exit 1'
    program 'sleep 0.5' 'exit 139'
    stage 139
    rm "$prefix/bin/velmora-control"
    program 'sleep 0.5' 'exit 1'
    stage 0
}

# real_server LINE...: a server that xinit itself starts, on a display of its own. It runs LINE first
# and counts its starts in $box/starts.
real_server() {
    number=:$((1000 + $$ % 50000))
    server=$box/bin/server
    instead server "echo >>$box/starts" "$@" "exec Xvfb $number -nolisten tcp"
    instead xset 'exit 0'
    instead xrandr 'exit 0'
    instead ratpoison 'exit 0'
}
# show_soon STATUS STARTS: xinit waits 15 seconds for a server from which it hears nothing.
show_soon() {
    before=$(date +%s)
    stage "$1"
    [ $(($(date +%s) - before)) -lt 14 ] || fail "it took $(($(date +%s) - before)) seconds"
    expect "the number of starts" "$(wc -l <"$box/starts")" "$2"
}

StageServer_ThatTakesTheBitsStartsOnce() {
    real_server 'case $* in *" -depth 16") ;; *) exit 1 ;; esac'
    program "echo \$DISPLAY >$box/display" 'exit 1'
    show_soon 0 1
    content "$box/display" "$number"
}

StageServer_RefusalTakesNoTime() {
    real_server 'case $* in *-depth*) exit 1 ;; esac'
    program "echo \$DISPLAY >$box/display" 'exit 1'
    show_soon 0 2
    content "$box/display" "$number"
}

StageServer_KilledInTheShowIs1AndStaysGone() {
    real_server "echo \$\$ >$box/pid"
    program "kill -KILL \$(cat $box/pid)" 'sleep 1' 'exit 1'
    show_soon 1 1
}

install_all
"$case_name"
