# Lets the kernel run Arm programs by qemu's user-mode emulator. Sourced, after packages.sh.
#
#   need_binfmt PROCESSOR...   aarch64 or arm; says what to do and ends with 77 where that is not to be

binfmt=/proc/sys/fs/binfmt_misc

need_binfmt() {
    local processor sudo=()
    [ "$(id -u)" -eq 0 ] || sudo=(sudo)
    need "running Arm programs" qemu-user-static
    install_needed
    [ -e "$binfmt/register" ] || "${sudo[@]}" mount -t binfmt_misc binfmt_misc "$binfmt" 2>/dev/null || true
    for processor; do
        [ -e "$binfmt/qemu-$processor" ] ||
            "${sudo[@]}" tee "$binfmt/register" <"/usr/lib/binfmt.d/qemu-$processor.conf" >/dev/null 2>&1 || true
        grep -qs '^flags: .*F' "$binfmt/qemu-$processor" && continue
        cat >&2 <<END
This machine does not run programs for $processor. As root, outside of any container:
  mount -t binfmt_misc binfmt_misc $binfmt
  cat /usr/lib/binfmt.d/qemu-$processor.conf >$binfmt/register
END
        exit 77
    done
}
