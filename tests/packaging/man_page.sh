#!/bin/sh
# The page of velmora-clip has a section for every subcommand that the tool has.
#
#   man_page.sh VELMORA_CLIP PAGE
set -eu
subcommands=$("$1" --help | sed -n '/^Subcommands:/,$s/^  \([a-z][a-z-]*\) .*/\1/p')
[ -n "$subcommands" ] || { echo "the tool lists no subcommands" >&2; exit 1; }
status=0
for subcommand in $subcommands; do
    grep -qx "\.SS $subcommand" "$2" || {
        echo "$2 says nothing about $subcommand" >&2
        status=1
    }
done
exit "$status"
