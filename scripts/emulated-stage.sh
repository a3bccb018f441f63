# shellcheck shell=bash
# shellcheck disable=SC2154  # who sources this names the folder $machine
# The card for a Raspberry Pi in an emulated machine, driven by its keyboard. Sourced from the repo's
# folder; every file stays in $machine, a folder that the caller has made.
#
#   new_card MB                  $machine/card.raw: the image on a card of that size
#   into_card FILE... FOLDER     copies into the card's partition for clips; out_of_card FILE prints one
#   start_machine MEMORY SIZE    qemu's virt machine, with a screen of SIZE; the kernel gets
#                                $KERNEL_WORDS, by default those that have it tell all it does; $DRIVE
#                                is the card as qemu's -drive takes it, by default card.raw
#   stop_machine                 as if the plug were pulled
#   says PATTERN SECONDS         waits for a line of the kernel, the system or the program; prints it
#   when_said PATTERN            seconds since the kernel started
#   key NAME..., see FILE        keys, a screenshot
#   ask COMMAND...               what scripts/ask-qemu knows

image=build/image/velmora-arm64.img
qemu=
TALKING="console=ttyAMA0 loglevel=6 systemd.journald.forward_to_console=1"

new_card() {
    rm -f "$machine/card.raw"
    cp --sparse=always "$image" "$machine/card.raw"
    truncate -s "$1M" "$machine/card.raw"
}

# The third partition as mtools names it.
clips_of() { echo "$1@@$(($(sfdisk -J "$1" | jq '.partitiontable.partitions[2].start') * 512))"; }

into_card() {
    local into=${!#}
    set -- "${@:1:$#-1}"
    mcopy -o -i "$(clips_of "$machine/card.raw")" "$@" "::$into"
}
out_of_card() { mtype -i "$(clips_of "$machine/card.raw")" "::$1"; }

start_machine() {
    local memory=$1 size=$2
    rm -f "$machine/log" "$machine/monitor"
    qemu-system-aarch64 -M virt -cpu cortex-a72 -smp 2 -m "$memory" -display "${WINDOW:-none}" -nic none \
        -kernel build/image/boot/vmlinuz -initrd build/image/boot/initrd.img \
        -append "vt.global_cursor_default=0 ${KERNEL_WORDS-$TALKING}" \
        -drive "${DRIVE:-file=$machine/card.raw,format=raw},if=virtio" \
        -device "virtio-gpu-pci,xres=${size%x*},yres=${size#*x}" -device virtio-keyboard-pci \
        -serial "file:$machine/log" -qmp "unix:$machine/monitor,server,nowait" 2>"$machine/qemu.log" &
    qemu=$!
}
stop_machine() {
    [ -z "$qemu" ] || { kill -9 "$qemu" && wait "$qemu"; } 2>/dev/null || true
    qemu=
}

said() { [ -e "$machine/log" ] && tr -d '\r' <"$machine/log" | grep -aE -- "$1"; }
says() {
    local second
    for ((second = 0; second < $2; ++second)); do
        said "$1" && return
        kill -0 "$qemu" 2>/dev/null || break
        sleep 1
    done
    echo "the machine did not say '$1' in $2 seconds; its log ends with" >&2
    tail -n 30 "$machine/log" >&2
    return 1
}
when_said() { said "$1" | tail -n 1 | sed -nE 's/^\[ *([0-9.]+)\].*/\1/p'; }

ask() { scripts/ask-qemu "$machine/monitor" "$@"; }
key() {
    local name
    for name; do
        ask "press $(tr '[:upper:]' '[:lower:]' <<<"$name" | sed 's/^return$/ret/')"
    done
}
see() {
    rm -f "$1"
    ask "see $1"
}
