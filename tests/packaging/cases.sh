# shellcheck shell=sh disable=SC2034,SC2154  # of who sources it
# What the cases of shell scripts share. Sourced with `case_name` set; it makes an empty folder, `box`,
# which goes at the end, and takes the user's home there.
#
#   fail TEXT                     ends the case, with what was said in $box/{log,console,journal}
#   expect WHAT IS WANTED, content FILE WANTED, absent FILE
#   double FILE LINE...           a program that does this
#   instead NAME LINE...          a command that is found before the real one, until `restore`

box=$(mktemp -d)
trap 'rm -rf "$box"' EXIT
prefix=$box/usr
export HOME="$box/user"
unset VELMORA_HOME DISPLAY
mkdir -p "$box/bin" "$HOME"
PATH=$box/bin:$PATH

fail() {
    echo "$case_name: $1" >&2
    for said in log console journal; do
        [ ! -e "$box/$said" ] || sed "s/^/    $said: /" "$box/$said" >&2
    done
    exit 1
}
expect() {
    [ "$2" = "$3" ] || fail "$1 is \"$2\", not \"$3\""
}
content() {
    expect "$1" "$(cat "$1" 2>&1)" "$2"
}
absent() {
    [ ! -e "$1" ] || fail "$1 is there"
}

double() {
    double_file=$1
    shift
    { echo '#!/bin/sh'; printf '%s\n' "$@"; } >"$double_file"
    chmod +x "$double_file"
}
instead() {
    instead_name=$1
    shift
    double "$box/bin/$instead_name" "$@"
}
restore() {
    rm -f "$box"/bin/*
}
