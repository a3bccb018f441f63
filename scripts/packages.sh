# Debian packages that the commands need, and why. Sourced by run and test; works on Debian 12 and
# Raspberry Pi OS.
#
#   need "what for" PACKAGE...   notes the packages that are not installed yet
#   install_needed               says what is missing and why, and installs it
#   debian_mirror                where this machine gets Debian's main archive from
#
# PACKAGE may be "first|second": either will do, the first is installed.

needed_packages=()
needed_reasons=()

package_installed() {
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

need() {
    local reason=$1 choice name found missing=()
    shift
    for choice in "$@"; do
        found=
        for name in ${choice//|/ }; do
            package_installed "$name" && found=yes
        done
        [ -n "$found" ] || missing+=("${choice%%|*}")
    done
    [ ${#missing[@]} -eq 0 ] && return
    needed_packages+=("${missing[@]}")
    needed_reasons+=("  $reason: ${missing[*]}")
}

install_needed() {
    local sudo=()
    [ ${#needed_packages[@]} -eq 0 ] && return
    echo "Installing what is missing:"
    printf '%s\n' "${needed_reasons[@]}"
    if [ "$(id -u)" -ne 0 ]; then
        sudo=(sudo)
        echo "(with sudo, so it may ask for your password)"
    fi
    "${sudo[@]}" apt-get update -qq
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${needed_packages[@]}" >/dev/null
}

debian_mirror() {
    local mirror
    # shellcheck disable=SC2016  # for apt-get to expand
    mirror=$(apt-get indextargets --format '$(SITE) $(RELEASE)' 'Created-By: Packages' \
        'Origin: Debian' 'Component: main' |
        awk -v suite="$(. /etc/os-release && echo "$VERSION_CODENAME")" '$2 == suite { print $1; exit }')
    [ -n "$mirror" ] || {
        echo "apt knows no archive of Debian here" >&2
        return 1
    }
    echo "$mirror"
}

need_build() {
    need "compiler and build system" g++ cmake ninja-build pkg-config
    need "picture, input and text" 'libsdl1.2-dev|libsdl1.2-compat-dev' libsdl-image1.2-dev \
        libsdl-ttf2.0-dev
    need "pictures straight to the X server" libxcb1-dev libxcb-shm0-dev libx11-dev
    need "pixels by vectors" libhwy-dev
    need "reading videos for the clip tool" libavformat-dev libavcodec-dev libswscale-dev \
        libavutil-dev
    need "command lines of the tools" libcli11-dev nlohmann-json3-dev
    need "names of clips in plain letters" libicu-dev
    need "checks and contact sheets of the clip tool" libpugixml-dev libfreetype-dev \
        libavfilter-dev
    need "sets in one file" libzip-dev
    need "MIDI, OSC and maps of the control tool" librtmidi-dev liblo-dev libtomlplusplus-dev \
        libxtst-dev
}

need_virtual_display() {
    need "virtual display and its keyboard" xvfb xauth xdotool x11-utils
    need "screenshots" imagemagick
}

need_drawings() {
    need "drawings of the documents" librsvg2-bin python3
}

need_sheets() {
    need "contact sheets of the demo clips" imagemagick
}

need_art() {
    need "rendering art/ into data/" python3 python3-fonttools python3-numpy python3-pil
}

need_package() {
    need "the package and its icons" dpkg-dev file imagemagick
}

need_package_check() {
    need "a clean Debian to install the package in" debootstrap
    need "what is said about the package" lintian desktop-file-utils mandoc
    need "a virtual screen that is scaled" gcc pkg-config xserver-xorg-dev
    need "comparing screenshots" imagemagick
}

need_arm() {
    need "cross compilers and build system" g++ g++-aarch64-linux-gnu g++-arm-linux-gnueabihf cmake \
        ninja-build pkg-config
    need "the other processors' packages" mmdebstrap
    need "running their programs" qemu-user
}

need_image() {
    need "the card's system" mmdebstrap kmod cpio zstd squashfs-tools
    need "the card's partitions" fdisk dosfstools mtools
}

need_emulated_machine() {
    need "an emulated machine" qemu-system-arm qemu-utils python3
    need "what is on its card" fdisk dosfstools mtools jq
    need "comparing screenshots" imagemagick
}

need_tests() {
    need "tests and their data" libgtest-dev zlib1g-dev libpng-dev
    need "benchmarks" libxcb-render0-dev
    need "tests with real windows and keys" xvfb libx11-dev libxext-dev libxtst-dev
    need "tests with other layouts of the keyboard" x11-xkb-utils
    need "the stage script on a real server" xinit
    need "what file managers take files for" shared-mime-info libglib2.0-bin desktop-file-utils
    need "sets packed by other tools" python3
    need "saves disturbed at each of their system calls" strace
    need "MIDI devices of the tests' own" jackd2
}

need_check() {
    need "format and rules of the sources" clang-format clang-tidy git python3 universal-ctags
}

need_fuzz() {
    need "fuzzing" clang xz-utils 'libclang-rt-dev|libclang-rt-14-dev|libclang-rt-19-dev'
}

need_coverage() {
    need "which lines the tests reach" gcovr
}

need_valgrind() {
    need "memory errors of the release build" valgrind
}
