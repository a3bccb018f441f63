#!/usr/bin/env bash
# The page of a tool has a section for every subcommand that the tool has, or one of all its options
# where it has none. The sections of diff, import and remake refer to encode for the options that both have; any
# other names all options of its subcommand, by one of their names, and no others.
#
#   man_page.sh TOOL PAGE
set -euo pipefail
tool=$1
page=$2
subcommands=$("$tool" --help | sed -n '/^Subcommands:/,$s/^  \([a-z][a-z-]*\) .*/\1/p')
status=0
complain() {
    echo "$page: $1" >&2
    status=1
}

# One option a line, its names behind one another; of the tool itself without a subcommand.
options_of() {
    "$tool" "$@" --help | sed -nE '/^  -h,/d; s/^  (-[^ ]+).*/\1/p' | tr ',' ' '
}

named_in_section() {
    sed -n "/^\.S[HS] $1\$/,/^\.S[HS] /p" "$page" | sed 's/\\f[A-Z]/ /g; s/\\-/-/g' |
        grep -oE '(^|[^A-Za-z0-9-])--?[a-z][a-z-]*' | grep -oE -e '-.*'
}

has() { tr ' ' '\n' <<<"$1" | grep -qxF -e "$2"; }

# check_section SECTION OPTIONS SHARED: the section names these options, and no others; those of SHARED
# may be left out.
check_section() {
    local name names found named
    grep -qx "\.S[HS] $1" "$page" || {
        complain "nothing about $1"
        return
    }
    named=$(named_in_section "$1" || true)
    for name in $named; do
        has "$2" "$name" || complain "$1 has no $name"
    done
    while read -r names; do
        [ -n "$names" ] || continue
        found=
        for name in $names; do
            { has "$named" "$name" || has "$3" "$name"; } && found=yes
        done
        [ -n "$found" ] || complain "$1: not a word on $names"
    done <<<"$2"
}

if [ -z "$subcommands" ]; then
    options=$(options_of)
    [ -n "$options" ] || { echo "the tool has neither subcommands nor options" >&2; exit 1; }
    check_section OPTIONS "$options" ""
fi
for subcommand in $subcommands; do
    shared=
    [[ ! "$subcommand" =~ ^(diff|import|remake)$ ]] || shared=$(options_of encode)
    check_section "$subcommand" "$(options_of "$subcommand")" "$shared"
done
exit "$status"
