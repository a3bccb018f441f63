# shellcheck shell=bash
# Completion of the tools beside Velmora in bash: commands, options, their values, and files of the
# right kind, all taken from what --help of the tool says.

# The help of a tool, or of its subcommand.
_velmora_help() {
    "$@" --help 2>/dev/null
}

# What follows this option, as its line of the help says behind one blank; the meaning comes behind
# more of them.
_velmora_value() {
    local option=${2//-/\\-}
    sed -nE "s/^  (-[^ ,]+,)*$option(,-[^ ,]+)* ([^ ]+).*/\\3/p" <<<"$1"
}

_velmora_playlists() {
    local folder
    for folder in "${VELMORA_HOME:-}" . ~/Velmora; do
        if [ -n "$folder" ] && [ -r "$folder/userdata/playlists.xml" ]; then
            sed -n 's|.*<name>\(.*\)</name>.*|\1|p' "$folder/userdata/playlists.xml"
            return
        fi
    done
}

# _velmora_files ENDING WORD: files of this ending and folders; all files without one.
_velmora_files() {
    compopt -o filenames 2>/dev/null
    if [ -z "$1" ]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$2")
    else
        mapfile -t COMPREPLY < <(compgen -f -X "!*$1" -- "$2" && compgen -d -- "$2")
    fi
}

# _velmora_kind WHAT WORD: completes what the help calls WHAT; false for what nobody can know.
_velmora_kind() {
    local name quoted
    case $1 in
        *'|'*) mapfile -t COMPREPLY < <(compgen -W "${1//|/ }" -- "$2") ;;
        PLAYLIST* | NAME)
            COMPREPLY=()
            while IFS= read -r name; do
                if [[ $name = "$2"* ]]; then
                    printf -v quoted %q "$name"
                    COMPREPLY+=("$quoted")
                fi
            done < <(_velmora_playlists)
            ;;
        CLIP_OR_FOLDER* | CLIP*) _velmora_files .m19 "$2" ;;
        SCORE*) _velmora_files .score "$2" ;;
        SET*) _velmora_files .velmora "$2" ;;
        FOLDER*)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -d -- "$2")
            ;;
        FILE* | INPUT* | SOURCE*) _velmora_files "" "$2" ;;
        *) return 1 ;;
    esac
}

_velmora() {
    local tool=$1 word=$2 before=$3 help commands command='' what at
    COMPREPLY=()
    help=$(_velmora_help "$tool")
    commands=$(sed -n '/^Subcommands:/,$s/^  \([a-z][a-z-]*\) .*/\1/p' <<<"$help")
    for ((at = 1; at < COMP_CWORD; at++)); do
        if grep -qxF -e "${COMP_WORDS[at]}" <<<"$commands"; then
            command=${COMP_WORDS[at]}
            help=$(_velmora_help "$tool" "$command")
            break
        fi
    done
    if [[ $before = -* ]]; then
        what=$(_velmora_value "$help" "$before")
        if [ -n "$what" ]; then
            _velmora_kind "$what" "$word" || true
            return
        fi
    fi
    if [[ $word = -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$(sed -nE 's/^  (-[^ ]+).*/\1/p' <<<"$help" | tr ',\n' '  ')" -- "$word")
    elif [ -n "$commands" ] && [ -z "$command" ]; then
        mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$word")
    else
        what=$(sed -nE '/^Positionals:/,/^$/s/^  [a-z0-9]+ ([A-Z][A-Z_0-9.]*).*/\1/p' <<<"$help" | tail -n 1)
        _velmora_kind "${what%...}" "$word" || true
    fi
}

complete -F _velmora velmora-clip velmora-control velmora-doctor velmora-record velmora-render
