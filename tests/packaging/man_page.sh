#!/usr/bin/env bash
# The page of velmora-clip, or of velmora-control, has a section for every subcommand that the tool
# has. The sections of diff, import and remake refer to encode for the options that both have; any
# other names all options of its subcommand, by one of their names, and no others.
#
#   man_page.sh TOOL PAGE
set -euo pipefail
tool=$1
page=$2
subcommands=$("$tool" --help | sed -n '/^Subcommands:/,$s/^  \([a-z][a-z-]*\) .*/\1/p')
[ -n "$subcommands" ] || { echo "the tool lists no subcommands" >&2; exit 1; }
status=0
complain() {
    echo "$page: $1" >&2
    status=1
}

# One option a line, its names behind one another.
options_of() {
    "$tool" "$1" --help | sed -nE '/^  -h,/d; s/^  (-[^ ]+).*/\1/p' | tr ',' ' '
}

named_in_section() {
    sed -n "/^\.SS $1\$/,/^\.S[HS] /p" "$page" | sed 's/\\f[A-Z]/ /g; s/\\-/-/g' |
        grep -oE '(^|[^A-Za-z0-9-])--?[a-z][a-z-]*' | grep -oE -e '-.*'
}

has() { tr ' ' '\n' <<<"$1" | grep -qxF -e "$2"; }

for subcommand in $subcommands; do
    grep -qx "\.SS $subcommand" "$page" || {
        complain "nothing about $subcommand"
        continue
    }
    options=$(options_of "$subcommand")
    named=$(named_in_section "$subcommand" || true)
    for name in $named; do
        has "$options" "$name" || complain "$subcommand has no $name"
    done
    shared=
    [[ ! "$subcommand" =~ ^(diff|import|remake)$ ]] || shared=$(options_of encode)
    while read -r names; do
        [ -n "$names" ] || continue
        found=
        for name in $names; do
            { has "$named" "$name" || has "$shared" "$name"; } && found=yes
        done
        [ -n "$found" ] || complain "$subcommand: not a word on $names"
    done <<<"$options"
done
exit "$status"
