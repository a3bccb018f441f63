# shellcheck shell=bash
# shellcheck disable=SC2016  # for the shells inside to expand
# A clean Debian in a temporary folder, with the package in it. Sourced by the checks of packages from
# the repo's folder, after packages.sh; they need root (sudo).
#
#   say TEXT, fail TEXT     a heading; the end of the check
#   as_root COMMAND...      on this machine
#   inside COMMAND...       in the clean Debian, as root; what it starts ends with it
#   as_performer COMMAND... in there as its user, who knows neither this tree nor its display
#   judge_package FILE      what lintian and the validators say
#   install_in_debian FILE  by apt, with what it depends on; all libraries must be there
#   add_performer           their folder can be read from outside

work=$(mktemp -d)
debian=$work/debian
# Everything that is mounted is mounted in name spaces that end with their commands.
trap 'as_root rm -rf --one-file-system "$work"' EXIT

say() { printf '== %s\n' "$*"; }
fail() {
    echo "${0##*/}: $*" >&2
    exit 1
}
as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

inside() {
    as_root unshare --mount --pid --fork --kill-child sh -ec '
        root=$0
        mount -t proc proc "$root/proc"
        mount -t tmpfs tmpfs "$root/dev"
        mkdir "$root/dev/pts" "$root/dev/shm"
        mount -t devpts -o newinstance,ptmxmode=666 devpts "$root/dev/pts"
        mount -t tmpfs tmpfs "$root/dev/shm"
        for node in null zero full random urandom tty; do
            : >"$root/dev/$node"
            mount --bind "/dev/$node" "$root/dev/$node"
        done
        ln -s pts/ptmx "$root/dev/ptmx"
        ln -s /proc/self/fd "$root/dev/fd"
        chmod 1777 "$root/dev/shm"
        exec chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 \
            DEBIAN_FRONTEND=noninteractive "$@"' "$debian" "$@"
}
as_performer() {
    inside runuser -u performer -- env HOME=/home/performer "$@"
}

judge_package() {
    say "What lintian and the validators say"
    desktop-file-validate packaging/velmora.desktop
    mandoc -T lint -W warning packaging/*.1
    lintian --fail-on error "$1"
}

install_in_debian() {
    as_root cp "$1" "$debian/velmora.deb"
    inside apt-get install -y -qq --no-install-recommends /velmora.deb >"$work/log" 2>&1 ||
        { cat "$work/log" >&2; fail "apt did not install the package"; }
    inside sh -c 'ldd /usr/lib/velmora/velmora /usr/lib/velmora/velmora-ask \
        /usr/lib/velmora/velmora-clip-play /usr/bin/velmora-*' >"$work/log"
    ! grep 'not found' "$work/log" || fail "the package does not bring all its libraries"
}

add_performer() {
    inside useradd --create-home performer
    inside chmod 755 /home/performer
}
