# What Raspberry Pis of 64 and of 32 bits are built against. Sourced by the scripts that build for
# them, after packages.sh.
#
#   make_arm_root ARCHITECTURE   build/arm-root/ARCHITECTURE holds what Debian 12 has for it: unpacked,
#                                nothing of it is run. 2 GB; made once, and anew when other packages
#                                are needed
#   arm_admin_folder ARCHITECTURE  what dpkg would know there, for dpkg-shlibdeps --admindir

# The packages by which this machine builds and tests, those that are libraries.
arm_packages() (
    package_installed() { false; }
    need_build
    need_tests
    printf '%s\n' libc6-dev libstdc++-12-dev "${needed_packages[@]}" | grep -e '-dev$' | sort -u |
        paste -sd ,
)

arm_admin_folder() { echo "$PWD/build/arm-root/$1.dpkg"; }

# Libraries that Debian's alternatives choose when a package is installed: link LIBRARY FOLDER.
choose_alternatives() {
    local folder=$1/usr/lib/$2 name
    for name in blas lapack; do
        [ ! -e "$folder/$name/lib$name.so.3" ] || ln -sf "$name/lib$name.so.3" "$folder/lib$name.so.3"
    done
}

# What dpkg notes of each package as it installs it. The files' names are those of this machine.
note_packages() {
    local root=$1 archives=$2 admin=$3 package name
    rm -rf "$admin"
    mkdir -p "$admin/info" "$admin/updates"
    printf 'amd64\narm64\narmhf\n' >"$admin/arch"
    echo 1 >"$admin/info/format"
    for package in "$archives"/*.deb; do
        name=$(dpkg-deb -W --showformat '${Package}:${Architecture}' "$package")
        case $name in *:all) continue ;; esac # holds no library
        [ "$(dpkg-deb -f "$package" Multi-Arch)" = same ] || name=${name%:*}
        dpkg-deb -f "$package" | sed '/^Package:/aStatus: install ok installed' >>"$admin/status"
        echo >>"$admin/status"
        dpkg-deb --fsys-tarfile "$package" | tar -t | sed "s|^\./|$root/|; s|/\$||" >"$admin/info/$name.list"
        dpkg-deb -e "$package" "$admin/control"
        for name_of in symbols shlibs; do
            [ ! -e "$admin/control/$name_of" ] || cp "$admin/control/$name_of" "$admin/info/$name.$name_of"
        done
        rm -r "$admin/control"
    done
}

# Complete or not there.
make_arm_root() {
    local root=$PWD/build/arm-root/$1 triplet packages mirror
    packages=$(arm_packages)
    # The emulator would show programs these in place of this machine's.
    rm -rf "$root/dev" "$root/tmp"
    if [ -e "$root" ] && [ "$(cat "$root.packages" 2>/dev/null)" = "$packages" ]; then
        return
    fi
    echo "Unpacking $1 packages (once)."
    case $1 in arm64) triplet=aarch64-linux-gnu ;; *) triplet=arm-linux-gnueabihf ;; esac
    # The main archive alone: a mirror's other parts may be behind, and are not needed.
    mirror=$(debian_mirror)
    rm -rf "$root" "$root.new" "$root.packages"
    mkdir -p "$root.debs"
    mmdebstrap --quiet --variant=extract --arch="$1" --include="$packages" \
        --extract-hook="cp \"\$1\"/var/cache/apt/archives/*.deb '$root.debs'" \
        bookworm "$root.new" "$mirror" 2>"$root.log" || {
        tail -n 20 "$root.log"
        exit 1
    }
    choose_alternatives "$root.new" "$triplet"
    rm -rf "$root.new/dev" "$root.new/tmp"
    note_packages "$root" "$root.debs" "$root.dpkg"
    rm -r "$root.debs"
    mv "$root.new" "$root"
    echo "$packages" >"$root.packages"
}
