#!/usr/bin/env bash
# What the documents call is there: every subcommand of the tools that they name in code, and every
# option behind it. An option that stands alone is one of velmora-clip encode, in the documents of
# velmora-control one of its run or one before any subcommand, in that of recording one of
# velmora-render. The doctor and the tools for
# recording have no subcommands.
#
#   documented_commands.sh VELMORA_CLIP VELMORA_CONTROL VELMORA_DOCTOR VELMORA_RECORD VELMORA_RENDER
#                          DOCUMENT...
#
# A manual page calls a tool in lines that begin with ".B velmora\-".
set -euo pipefail
declare -A tools=([velmora-clip]=$1 [velmora-control]=$2)
declare -A plain=([velmora-doctor]=$3 [velmora-record]=$4 [velmora-render]=$5)
shift 5
status=0
complain() {
    echo "$1"
    status=1
}

# options_in HELP: all names, between blanks.
options_in() {
    sed -nE 's/^  (-[^ ]+).*/\1/p' <<<"$1" | tr ',\n' '  '
}

# By "TOOL SUBCOMMAND", those of the tool itself included.
declare -A options
for tool in "${!tools[@]}"; do
    help=$("${tools[$tool]}" --help)
    subcommands=$(sed -n '/^Subcommands:/,$s/^  \([a-z][a-z-]*\) .*/\1/p' <<<"$help" | tr '\n' ' ')
    [ -n "$subcommands" ] || { echo "$tool lists no subcommands" >&2; exit 1; }
    for subcommand in $subcommands; do
        options[$tool $subcommand]="$(options_in "$help") $(options_in "$("${tools[$tool]}" "$subcommand" --help)")"
    done
done

for tool in "${!plain[@]}"; do
    options[$tool]=$(options_in "$("${plain[$tool]}" --help)")
done

# The lines and pieces of a document that are code.
code_of() {
    local mark='`'
    case $1 in
        *.1) sed -n 's/^\.B //; s/\\-/-/g; /^velmora-[cdr]/p' "$1" ;;
        *)
            sed -nE 's/^(    |\t) *//p' "$1"
            { grep -vE '^(    |\t)' "$1" | grep -oE "${mark}[^$mark]+$mark" || true; } | tr -d "$mark"
            ;;
    esac
}

# check_call DOCUMENT "TOOL SUBCOMMAND" REST: the options in REST are the subcommand's.
check_call() {
    local option
    while read -r option; do
        [[ " ${options[$2]} " = *" $option "* ]] || complain "$1: $2 has no $option"
    done < <(grep -oE '(^| )--?[a-z][a-z-]*' <<<"$3" | tr -d ' ')
}

declare -A calls=([velmora-clip]=0 [velmora-control]=0 [velmora-doctor]=0 [velmora-record]=0 [velmora-render]=0)
called_plain='^(velmora-doctor|velmora-record|velmora-render)( .*|$)'
called='(velmora-clip|velmora-control) ([a-z]+)(.*)'
for document in "$@"; do
    alone="velmora-clip encode"
    [[ ${document##*/} != *control.* ]] || alone="velmora-control run"
    [[ ${document##*/} != *recording.* ]] || alone="velmora-render"
    while IFS= read -r line; do
        if [[ $line =~ $called ]]; then
            tool=${BASH_REMATCH[1]}
            call="$tool ${BASH_REMATCH[2]}"
            calls[$tool]=$((calls[$tool] + 1))
            if [ -n "${options[$call]-}" ]; then
                check_call "$document" "$call" "${BASH_REMATCH[3]}"
            else
                complain "$document: $tool has no ${BASH_REMATCH[2]}"
            fi
        elif [[ $line =~ $called_plain ]]; then
            calls[${BASH_REMATCH[1]}]=$((calls[${BASH_REMATCH[1]}] + 1))
            check_call "$document" "${BASH_REMATCH[1]}" "${BASH_REMATCH[2]}"
        elif [[ $line = --* ]]; then
            check_call "$document" "$alone" "$line"
        fi
    done < <(code_of "$document")
done
for tool in "${!calls[@]}"; do
    [ "${calls[$tool]}" -gt 0 ] || complain "no document calls $tool"
done
exit "$status"
