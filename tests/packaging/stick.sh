#!/bin/sh
# The offer of a USB stick before the show, on a terminal of the test's own. Disks are doubles of lsblk
# and udisksctl, the stick is a folder; what asks and what unpacks are doubles as well, but in the
# cases Real_...
#
#   stick.sh REPOSITORY VELMORA_CLIP VELMORA_ASK CASE
#
# shellcheck disable=SC2016  # what the doubles do is for them to expand
set -eu
repository=$1
real_clip=$2
real_ask=$3
case_name=$4

# shellcheck source=tests/packaging/cases.sh
. "$(dirname "$0")/cases.sh"
lib=$prefix/lib/velmora
export RUNTIME_DIRECTORY="$box/run"
unset VELMORA_STICK_SECONDS XDG_STATE_HOME XDG_RUNTIME_DIR
stick=$box/media/BLUE

# answer STATUS: what velmora-ask says; it counts how often it is asked.
answer() {
    double "$lib/velmora-ask" "echo >>$box/asked" "exit $1"
}
# unpacker LINE...: what velmora-clip does when it is not to count.
unpacker() {
    double "$prefix/bin/velmora-clip" \
        'case $* in *--count) echo "3 playlists, 41 clips"; exit ;; esac' \
        "printf '%s\n' \"\$*\" >>$box/unpacked" "$@"
}
# partition NAME REMOVABLE DISK SYSTEM [PLACE]: its line of lsblk.
partition() {
    echo "$1 part $2 $2 $3 $4 ${5-}"
}
# disks LINE...: what lsblk lists.
disks() {
    printf '%s\n' "$@" >"$box/disks"
}

install_all() {
    mkdir -p "$RUNTIME_DIRECTORY" "$prefix/bin" "$lib" "$stick"
    cp "$repository/packaging/stick" "$lib/"
    echo BLUE >"$box/label"
    echo "$stick" >"$box/mount"
    disks '/dev/sda disk 1 1   ' "$(partition /dev/sda1 1 /dev/sda vfat /media/pi/BLUE)"
    instead lsblk 'case $2 in' "LABEL) cat $box/label ;;" "MOUNTPOINT) cat $box/mount ;;" \
        "*) cat $box/disks ;;" 'esac'
    instead udevadm 'exit 0'
    instead sleep 'exec /bin/sleep 0.02'
    instead udisksctl "echo \"\$*\" >>$box/mounts" 'exit 1'
    answer 0
    unpacker 'echo "3 playlists, 41 clips"'
    echo "a set" >"$stick/set.velmora"
    # Hands that do nothing: an end of input would come as a key.
    mkfifo "$box/hands"
    exec 9<>"$box/hands"
}

# offer: at a start of the machine; it ends with 0 whatever comes of it.
offer() {
    : >"$box/journal"
    rm -f "$RUNTIME_DIRECTORY"/*
    offer_again
}
# offer_again [STATUS]: another start of the show; 1 says that it was no time to ask.
offer_again() {
    offer_status=0
    script -qec "'$lib/stick' offer 2>>'$box/journal'" /dev/null <&9 >"$box/console" || offer_status=$?
    expect "the status" "$offer_status" "${1-0}"
}
# Keys that were pressed and the line of progress may stand before it in its line.
expect_said() {
    tr -d '\r' <"$box/console" |
        awk -v text="$1" 'substr($0, length($0) - length(text) + 1) == text { said = 1 } END { exit !said }' ||
        fail "nobody said \"$1\""
    grep -qxF "stick: $1" "$box/journal" || fail "the journal has no \"$1\""
}
expect_silence() {
    expect "what the console shows" "$(cat "$box/console")" ""
    absent "$box/asked"
    absent "$box/unpacked"
}
question='Any key or button of a controller takes it, the show starts in 15 seconds.'

Offer_YesTakesTheSet() {
    offer
    expect_said "The stick BLUE holds set.velmora: 3 playlists, 41 clips. $question"
    expect_said "Taking it."
    expect_said "Taken: 3 playlists, 41 clips. The show starts."
    expect "what was unpacked" "$(cat "$box/unpacked")" \
        "unpack $stick/set.velmora --name BLUE --to $HOME/Velmora --progress /dev/fd/3"
}

Offer_NobodyIsNo() {
    answer 1
    offer
    expect_said "Nobody answered. The show starts without it."
    absent "$box/unpacked"
}

Offer_NoWayToAskIsNo() {
    rm "$lib/velmora-ask"
    offer
    expect_said "There was no way to ask. The show starts without it."
    absent "$box/unpacked"
}

Offer_LooseClipsGoByTheLabel() {
    rm "$stick/set.velmora"
    mkdir "$stick/loops"
    echo >"$stick/loops/a.m19"
    offer
    expect_said "The stick BLUE holds loose clips: 3 playlists, 41 clips. $question"
    expect "what was unpacked" "$(cat "$box/unpacked")" \
        "unpack $stick --name BLUE --to $HOME/Velmora --progress /dev/fd/3"
}

Offer_NamelessStickHasAName() {
    : >"$box/label"
    offer
    expect_said "The stick holds set.velmora: 3 playlists, 41 clips. $question"
    grep -q -- ' --name stick ' "$box/unpacked" || fail "no name"
}

# It comes back a second after a crash, and nobody is asked then.
Offer_CrashIsNotAsked() {
    answer 1
    offer
    offer_again 1
    expect "the questions" "$(wc -l <"$box/asked")" 1
    expect "what the console shows" "$(cat "$box/console")" ""
    "$lib/stick" over
    offer_again
    expect "the questions" "$(wc -l <"$box/asked")" 2
}

# A stick that is put in while the show runs is not asked for after a crash either.
Offer_StartWithoutAStickCountsToo() {
    disks '/dev/mmcblk0 disk 0 1   '
    offer
    disks "$(partition /dev/sda1 1 /dev/sda vfat /media/pi/BLUE)"
    offer_again 1
    expect_silence
}

Offer_NoPlaceForTheNoteAsksNobody() {
    RUNTIME_DIRECTORY='' offer_again 1
    expect_silence
    RUNTIME_DIRECTORY=/nowhere offer_again 1
    expect_silence
}

Offer_NoConsoleDoesNothing() {
    console_status=0
    "$lib/stick" offer </dev/null >"$box/console" 2>"$box/journal" || console_status=$?
    expect "the status" "$console_status" 1
    expect_silence
}

Offer_TakenSetIsNotOfferedAgain() {
    offer
    offer
    expect "the questions" "$(wc -l <"$box/asked")" 1
    touch -d 2020-01-01 "$stick/set.velmora"
    offer
    expect "the questions" "$(wc -l <"$box/asked")" 1
    echo "b set" >"$stick/set.velmora"
    offer
    expect "the questions" "$(wc -l <"$box/asked")" 2
}

Offer_TakenClipsAreOfferedAgainWithANewOne() {
    rm "$stick/set.velmora"
    echo >"$stick/a.m19"
    offer
    offer
    expect "the questions" "$(wc -l <"$box/asked")" 1
    echo >"$stick/b.m19"
    offer
    expect "the questions" "$(wc -l <"$box/asked")" 2
}

Offer_DeclinedSetIsOfferedAtTheNextStart() {
    answer 1
    offer
    offer
    expect "the questions" "$(wc -l <"$box/asked")" 2
}

Offer_UnmountedStickIsMountedForReadingAndUnmounted() {
    disks '/dev/sda disk 1 1   ' "$(partition /dev/sda1 1 /dev/sda vfat)"
    : >"$box/mount"
    instead udisksctl "echo \"\$*\" >>$box/mounts" "[ \$1 != mount ] || echo $stick >$box/mount"
    offer
    expect_said "Taken: 3 playlists, 41 clips. The show starts."
    expect "the mounts" "$(cat "$box/mounts")" \
        "mount --no-user-interaction -o ro -b /dev/sda1
unmount --no-user-interaction -b /dev/sda1"
}

Offer_MountedStickStaysMounted() {
    offer
    absent "$box/mounts"
}

Offer_StickThatDoesNotMountIsPassedOver() {
    disks "$(partition /dev/sda1 1 /dev/sda vfat)"
    : >"$box/mount"
    offer
    expect_silence
}

# A machine that runs from a stick, its swap, a disk that is not removable, and one without a file
# system.
Offer_DisksOfTheSystemAreNoSticks() {
    disks '/dev/sda disk 1 1   ' "$(partition /dev/sda1 1 /dev/sda vfat)" \
        "$(partition /dev/sda2 1 /dev/sda ext4 /)" "$(partition /dev/sdb1 1 /dev/sdb swap)" \
        "$(partition /dev/sdc1 0 /dev/sdc ext4 /mnt/films)" '/dev/sdd disk 1 1   ' \
        "$(partition /dev/sde1 1 /dev/sde vfat /srv/music)"
    offer
    expect_silence
}

Offer_StickThatIsPlayedFromIsNotOffered() {
    mkdir -p "$stick/Velmora/videos"
    export VELMORA_HOME="$stick/Velmora"
    offer
    expect_silence
    unset VELMORA_HOME
    mkdir -p "$HOME/Velmora"
    ln -s "$stick" "$HOME/Velmora/videos"
    offer
    expect_silence
}

Offer_LinkIsNoSet() {
    mv "$stick/set.velmora" "$box/elsewhere"
    ln -s "$box/elsewhere" "$stick/set.velmora"
    offer
    expect "what was unpacked" "$(cut -d' ' -f2 "$box/unpacked")" "$stick"
}

Fault_BrokenSetIsOneSentence() {
    unpacker "echo \"velmora-clip: cannot unpack $stick/set.velmora: its 'videos/a.m19' is damaged\" >&2" \
        'exit 1'
    offer
    expect_said "Nothing was taken: its 'videos/a.m19' is damaged. The show starts."
    offer
    expect "the questions" "$(wc -l <"$box/asked")" 2
}

Fault_NoSetAtAllIsOneSentenceAndNoQuestion() {
    double "$prefix/bin/velmora-clip" \
        "echo \"velmora-clip: cannot unpack $stick/set.velmora: it is no whole set\" >&2" 'exit 1'
    offer
    expect_said "The stick BLUE cannot be taken: it is no whole set."
    absent "$box/asked"
}

Fault_StickWithoutClipsIsPassedOver() {
    rm "$stick/set.velmora"
    double "$prefix/bin/velmora-clip" \
        "echo \"velmora-clip: cannot unpack $stick: it holds no clip\" >&2" 'exit 1'
    offer
    expect_silence
}

Fault_PulledOutIsOneSentence() {
    unpacker "mv $stick $box/pocket" 'echo "velmora-clip: cannot read" >&2' 'exit 1'
    offer
    expect_said "Nothing was taken: the stick was pulled out. The show starts."
}

Fault_TooSlowIsOneSentence() {
    unpacker 'exec /bin/sleep 60'
    VELMORA_STICK_SECONDS=1 offer
    expect_said "Nothing was taken: it took too long. The show starts."
}

# Ctrl-C on the console.
Fault_StoppedByHandIsOneSentence() {
    unpacker 'exit 130'
    offer
    expect_said "Nothing was taken: it was stopped. The show starts."
}

Fault_MissingUnpackerIsOneSentence() {
    rm "$prefix/bin/velmora-clip"
    offer
    expect_said "The stick BLUE cannot be taken: it broke off."
    absent "$box/asked"
}

# Where not even a kill helps, each look at the time finds it a minute later.
Fault_DiskThatNeverAnswersIsLeftAlone() {
    unpacker "echo \$\$ >$box/stuck" 'exec /bin/sleep 600'
    instead timeout 'while [ "${1#-}" != "$1" ]; do [ "$1" != -k ] || shift; shift; done; shift' 'exec "$@"'
    instead cut "[ \"\$2\" = -f1 ] || exec /usr/bin/cut \"\$@\"" "[ ! -e $box/stuck ] || echo >>$box/looks" \
        "touch $box/looks" "echo \$((60 * \$(wc -l <$box/looks)))"
    offer
    kill "$(cat "$box/stuck")"
    expect_said "The stick does not answer. The show starts."
}

Fault_ClipsThatAreLeftOutAreCounted() {
    unpacker 'echo "1 playlist, 2 clips"' 'echo "velmora-clip: a is left out: it is broken" >&2' 'exit 1'
    offer
    expect_said "Taken: 1 playlist, 2 clips; 1 that cannot be played left out. The show starts."
}

Fault_ControlCharactersDoNotReachTheConsole() {
    printf 'B\007LUE\n' >"$box/label"
    offer
    expect_said "The stick BLUE holds set.velmora: 3 playlists, 41 clips. $question"
    ! grep -q "$(printf '\007')" "$box/console" || fail "it rang"
}

# use_real: with what is installed, and a set that it made.
use_real() {
    ln -sf "$real_clip" "$prefix/bin/velmora-clip"
    ln -sf "$real_ask" "$lib/velmora-ask"
    rm -f "$box/bin/sleep"
    mkdir -p "$box/home/videos/live" "$box/home/userdata" "$HOME/Velmora/videos" "$HOME/Velmora/userdata"
    clips=$repository/tests/data/clips
    cp "$clips/runs-360.m19" "$box/home/videos/runs.m19"
    cp "$clips/flat-200.m19" "$box/home/videos/live/flat.m19"
    printf '%s\n' '<?xml version="1.0" encoding="iso-8859-1"?>' '' '<all>' '	<playlist>' \
        '		<name>friday</name>' '		<track>runs.m19</track>' \
        '		<track>live/flat.m19</track>' '	</playlist>' '</all>' >"$box/home/userdata/playlists.xml"
    "$real_clip" pack --from "$box/home" -o "$stick/set.velmora" >/dev/null
}
# with_key: as offer_again, and somebody who presses a key now and then.
with_key() {
    rm -f "$RUNTIME_DIRECTORY"/* "$box/ended"
    : >"$box/journal"
    while [ ! -e "$box/ended" ]; do
        printf x 2>/dev/null || break
        sleep 0.4
    done | {
        script -qec "'$lib/stick' offer 2>>'$box/journal'" /dev/null >"$box/console" || fail "it ended with $?"
        touch "$box/ended"
    }
}

Real_KeyTakesTheSet() {
    use_real
    with_key
    expect_said "The stick BLUE holds set.velmora: 1 playlist, 2 clips. $question"
    expect_said "Taken: 1 playlist, 2 clips. The show starts."
    grep -q "$(printf '\033')\[K" "$box/console" || fail "no line of progress was there"
    for clip in runs.m19 live/flat.m19; do
        cmp "$box/home/videos/$clip" "$HOME/Velmora/videos/$clip" || fail "$clip"
    done
    grep -q friday "$HOME/Velmora/userdata/playlists.xml" || fail "no playlist"
}

Real_KeyTakesLooseClipsOnAFirstStart() {
    use_real
    rm -r "$stick/set.velmora" "$HOME/Velmora"
    mkdir "$stick/loops"
    cp "$box/home/videos/runs.m19" "$stick/loops/"
    with_key
    expect_said "The stick BLUE holds loose clips: 1 playlist, 1 clip. $question"
    expect_said "Taken: 1 playlist, 1 clip. The show starts."
    cmp "$stick/loops/runs.m19" "$HOME/Velmora/videos/loops/runs.m19" || fail "no clip"
    grep -q '<name>BLUE</name>' "$HOME/Velmora/userdata/playlists.xml" || fail "no playlist"
}

# What every system leaves on a stick.
Real_StickWithoutClipsIsPassedOver() {
    use_real
    rm "$stick/set.velmora"
    mkdir -p "$stick/System Volume Information" "$stick/.Trash-1000/files"
    cp "$box/home/videos/runs.m19" "$stick/.Trash-1000/files/"
    echo clip >"$stick/._runs.m19"
    offer
    expect_silence
}

# The program asks for a terminal, and finds one, on which nobody presses a key.
Real_NobodyIsNo() {
    use_real
    printf '#!/bin/sh\nexec "%s" --seconds 1\n' "$real_ask" >"$box/ask"
    chmod +x "$box/ask" && ln -sf "$box/ask" "$lib/velmora-ask"
    offer
    expect_said "Nobody answered. The show starts without it."
    expect "the clips" "$(ls "$HOME/Velmora/videos")" ""
}

Real_CutSetIsOneSentence() {
    use_real
    head -c 3000 "$stick/set.velmora" >"$box/cut" && mv "$box/cut" "$stick/set.velmora"
    offer
    grep -q 'The stick BLUE cannot be taken: it is no whole set' "$box/console" || fail "nothing was said"
    expect "the clips" "$(ls "$HOME/Velmora/videos")" ""
}

# stage RESULT: the show of a double of xinit, which ends with that.
stage() {
    cp "$repository/packaging/stage" "$lib/"
    echo "$1" >"$box/result"
    instead xinit 'while [ "$1" != inside ]; do shift; done' "cat $box/result >\$2/status" \
        "echo played >>$box/played"
    stage_status=0
    script -qec "'$lib/stage' -- /bin/server -depth 24 2>>'$box/journal'" /dev/null <&9 \
        >"$box/console" || stage_status=$?
    expect "the status" "$stage_status" "$1"
}

Stage_AsksOnceUntilQuit() {
    answer 1
    stage 139
    stage 139
    expect "the questions" "$(wc -l <"$box/asked")" 1
    stage 0
    expect "the questions" "$(wc -l <"$box/asked")" 1
    stage 0
    expect "the questions" "$(wc -l <"$box/asked")" 2
    expect "the shows" "$(wc -l <"$box/played")" 4
}

Stage_PlaysWhateverTheStickDoes() {
    double "$lib/stick" 'exit 9'
    stage 0
    rm "$lib/stick"
    stage 0
    expect "the shows" "$(wc -l <"$box/played")" 2
}

install_all
"$case_name"
