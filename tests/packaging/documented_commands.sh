#!/usr/bin/env bash
# What the documents call is there: every subcommand of velmora-clip that they name in code, and
# every option behind it. An option that stands alone in a document is one of encode.
#
#   documented_commands.sh VELMORA_CLIP DOCUMENT...
#
# A manual page calls the tool in lines that begin with ".B velmora\-clip".
set -euo pipefail
tool=$1
shift
status=0
complain() {
    echo "$1"
    status=1
}

subcommands=$("$tool" --help | sed -n '/^Subcommands:/,$s/^  \([a-z][a-z-]*\) .*/\1/p' | tr '\n' ' ')
[ -n "$subcommands" ] || { echo "the tool lists no subcommands" >&2; exit 1; }
declare -A options
for subcommand in $subcommands; do
    options[$subcommand]=$("$tool" "$subcommand" --help | sed -nE 's/^  (-[^ ]+).*/\1/p' | tr ',\n' '  ')
done

# The lines and pieces of a document that are code.
code_of() {
    local mark='`'
    case $1 in
        *.1) sed -n 's/^\.B //; s/\\-/-/g; /^velmora-clip/p' "$1" ;;
        *)
            sed -nE 's/^(    |\t)//p' "$1"
            { grep -vE '^(    |\t)' "$1" | grep -oE "${mark}[^$mark]+$mark" || true; } | tr -d "$mark"
            ;;
    esac
}

# check_call DOCUMENT SUBCOMMAND REST: the options in REST are the subcommand's.
check_call() {
    local option
    while read -r option; do
        [[ " ${options[$2]} " = *" $option "* ]] || complain "$1: $2 has no $option"
    done < <(grep -oE '(^| )--?[a-z][a-z-]*' <<<"$3" | tr -d ' ')
}

calls=0
called='velmora-clip ([a-z]+)(.*)'
for document in "$@"; do
    while IFS= read -r line; do
        if [[ $line =~ $called ]]; then
            calls=$((calls + 1))
            subcommand=${BASH_REMATCH[1]}
            if [ -n "${options[$subcommand]-}" ]; then
                check_call "$document" "$subcommand" "${BASH_REMATCH[2]}"
            else
                complain "$document: velmora-clip has no $subcommand"
            fi
        elif [[ $line = --* ]]; then
            check_call "$document" encode "$line"
        fi
    done < <(code_of "$document")
done
[ "$calls" -gt 0 ] || complain "no document calls the tool"
exit "$status"
