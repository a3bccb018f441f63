#!/bin/sh
# The stage script asks the doctor before the show, on a terminal of the test's own. The doctor, the
# question, the offer of sticks and the X server are doubles.
#
#   doctor.sh REPOSITORY CASE
#
# shellcheck disable=SC2016  # what the doubles do is for them to expand
set -eu
repository=$1
case_name=$2

# shellcheck source=tests/packaging/cases.sh
. "$(dirname "$0")/cases.sh"
lib=$prefix/lib/velmora

# doctor STATUS LINE...: what it is told, says and ends with.
doctor() {
    doctor_status=$1
    shift
    double "$prefix/bin/velmora-doctor" "echo \"\$*\" >>$box/examined" "$@" "exit $doctor_status"
}

install_all() {
    mkdir -p "$HOME/Velmora" "$prefix/bin" "$lib"
    cp "$repository/packaging/stage" "$lib/"
    double "$lib/stick" 'exit 0'
    double "$lib/velmora-ask" "echo \"\$*\" >>$box/asked" 'exit 1'
    double "$prefix/bin/velmora" "echo >>$box/played" 'exit 0'
    for name in xset xrandr ratpoison; do instead "$name" 'exit 0'; done
    instead xinit 'inside=' 'until [ "$1" = -- ]; do inside="$inside $1"; shift; done' \
        '$inside'
    doctor 1 'echo "Hurts the show"'
    touch "$HOME/Velmora/doctor"
}

# stage: a start; the show is played whatever the doctor says.
stage() {
    script -qec "'$lib/stage' -- /bin/server :0 -depth 24 2>>'$box/journal'" /dev/null \
        </dev/null >"$box/console" || fail "it ended with $?"
    expect "the number of shows" "$(wc -l <"$box/played")" 1
}
shows() {
    tr -d '\r' <"$box/$1" | grep -qxF "$2" || fail "the $1 has no \"$2\""
}

Stage_SaysWhatHurtsAndWaits() {
    stage
    expect "what the doctor is told" "$(cat "$box/examined")" "--quick --folder $HOME/Velmora"
    shows console "Hurts the show"
    shows console "Any key or button of a controller starts the show, and so do 20 seconds."
    shows journal "Hurts the show"
    expect "the question" "$(cat "$box/asked")" "--seconds 20"
}

Stage_ReadyDoesNotWait() {
    doctor 0 'echo "Ready for the show."'
    stage
    expect "the console" "$(cat "$box/console")" ""
    absent "$box/asked"
}

Stage_NobodyAsksWithoutTheFile() {
    rm "$HOME/Velmora/doctor"
    stage
    absent "$box/examined"
}

Stage_OtherFolderHasItsOwnFile() {
    mkdir "$box/other"
    export VELMORA_HOME="$box/other"
    stage
    absent "$box/examined"
    touch "$box/other/doctor"
    rm "$box/played"
    stage
    expect "what the doctor is told" "$(cat "$box/examined")" "--quick --folder $box/other"
}

# Nothing is asked in the middle of a night.
Stage_CrashAsksNobody() {
    double "$lib/stick" '[ "$1" != offer ]'
    stage
    absent "$box/examined"
}

Stage_DoctorThatIsMissingIsSaid() {
    rm "$prefix/bin/velmora-doctor"
    stage
    grep -q velmora-doctor "$box/console" || fail "nobody said it"
}

Stage_DoctorThatHangsIsLeft() {
    sed -i 's/^LOOK_SECONDS=60/LOOK_SECONDS=1/' "$lib/stage"
    doctor 0 'sleep 50'
    stage
    expect "the question" "$(cat "$box/asked")" "--seconds 20"
}

install_all
"$case_name"
