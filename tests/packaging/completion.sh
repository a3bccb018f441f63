#!/usr/bin/env bash
# What bash completes: every command and option that --help names, values, playlists, and files of the
# right kind.
#
#   completion.sh COMPLETION TOOL...
set -euo pipefail
completion=$1
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/bin" "$work/there"
for tool in "$@"; do
    ln -s "$tool" "$work/bin/"
done
PATH=$work/bin:$PATH
cd "$work/there"
mkdir -p userdata clips
: >loop.m19
: >night.score
: >set.velmora
: >film.mp4
printf '<all>\n\t<playlist>\n\t\t<name>La nuit</name>\n\t</playlist>\n\t<playlist>\n\t\t<name>neon</name>\n' \
    >userdata/playlists.xml
unset VELMORA_HOME
# shellcheck source=packaging/velmora-completion.bash
. "$completion"
status=0

# completed WORD...: what the last word may become, sorted, between blanks.
completed() {
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    _velmora "$1" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
    printf '%s\n' "${COMPREPLY[@]}" | sort -u | tr '\n' ' '
}

# expect WANTED WORD...
expect() {
    local wanted=$1 seen
    shift
    seen=$(completed "$@")
    seen=${seen% }
    if [ "$seen" != "$wanted" ]; then
        echo "'$*': '$seen', not '$wanted'"
        status=1
    fi
}

for tool in velmora-clip velmora-control velmora-doctor velmora-record velmora-render; do
    help=$("$tool" --help)
    commands=$(sed -n '/^Subcommands:/,$s/^  \([a-z][a-z-]*\) .*/\1/p' <<<"$help" | sort -u | tr '\n' ' ')
    [ -z "$commands" ] || expect "${commands% }" "$tool" ""
    for command in '' $commands; do
        # shellcheck disable=SC2086
        options=$("$tool" $command --help | sed -nE 's/^  (-[^ ]+).*/\1/p' | tr ',' '\n' | sort -u | tr '\n' ' ')
        # shellcheck disable=SC2086
        expect "${options% }" "$tool" $command -
    done
done
expect "encode export" velmora-clip e
expect "clips loop.m19 userdata" velmora-clip play ""
expect "loop.m19" velmora-clip play l
expect "clips loop.m19 userdata" velmora-clip verify ""
expect "clips set.velmora userdata" velmora-clip unpack ""
expect "clips userdata" velmora-clip unpack set.velmora --to ""
expect 'La\ nuit neon' velmora-clip pack ""
expect "neon" velmora-clip import film.mp4 --playlist n
expect "contain cover" velmora-clip encode film.mp4 --fit co
expect "film.mp4" velmora-clip encode f
expect "clips night.score userdata" velmora-render ""
expect "1280x720 640x360" velmora-render night.score --size ""
expect "clips night.score userdata" velmora-render night.score --diff ""
expect "clips night.score userdata" velmora-render --interface ""
expect "clips userdata" velmora-record --folder ""
expect "" velmora-render night.score --from ""
exit "$status"
