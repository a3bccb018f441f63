#!/usr/bin/env bash
# File managers know clips, sets and scores, by name and by content, and the thumbnailer's line makes
# the picture that they ask for.
#
#   mime.sh PACKAGING VELMORA_CLIP CLIP
set -euo pipefail
packaging=$1
tool=$2
clip=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() {
    echo "$1" >&2
    exit 1
}

mkdir -p "$work/share/mime/packages" "$work/files" "$work/bin"
cp "$packaging/velmora-mime.xml" "$work/share/mime/packages/velmora.xml"
update-mime-database "$work/share/mime"

# expect FILE TYPE: what a file manager takes it for.
expect() {
    local seen
    seen=$(XDG_DATA_DIRS=$work/share XDG_DATA_HOME=$work/none \
        gio info -a standard::content-type "$work/files/$1" 2>/dev/null | sed -n 's/.*content-type: //p')
    [ "$seen" = "$2" ] || fail "$1 is taken for $seen, not for $2"
}
cp "$clip" "$work/files/loop.m19"
cp "$clip" "$work/files/without-ending"
printf 'PK\003\004 and so on' >"$work/files/night.velmora"
echo "velmora score 1" >"$work/files/night"
cp "$work/files/night" "$work/files/night.score"
expect loop.m19 application/x-velmora-clip
expect without-ending application/x-velmora-clip
expect night.velmora application/x-velmora-set
expect night text/x-velmora-score
expect night.score text/x-velmora-score

desktop-file-validate "$packaging/velmora-clip.desktop"
grep -q 'MimeType=application/x-velmora-clip;' "$packaging/velmora-clip.desktop" ||
    fail "nothing opens a clip"

# As a file manager calls it: a name without an ending.
ln -s "$tool" "$work/bin/velmora-clip"
line=$(sed -n 's/^Exec=//p' "$packaging/velmora-clip.thumbnailer")
line=${line//%i/$work/files/without-ending}
line=${line//%o/$work/picture}
line=${line//%s/128}
PATH=$work/bin:$PATH $line
[ "$(head -c 4 "$work/picture" | tail -c 3)" = PNG ] || fail "the thumbnailer makes no PNG file"
