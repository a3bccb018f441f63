#pragma once
// What we use of the interface that QEMU offers to its plugins, version 1, in declarations of our
// own: Debian's packages of QEMU 7 come without a header for it. A plugin is a shared library that
// defines the two symbols at the end; the emulator defines the rest.
//
// Code is translated block by block: `tb` is a block of guest instructions with one entry, valid
// while the callback that got it runs.

#include <cstddef>
#include <cstdint>

extern "C" {

using qemu_plugin_id_t = uint64_t;
struct qemu_plugin_tb;
struct qemu_plugin_insn;
struct qemu_info_t;

using QemuBlockCallback = void (*)(qemu_plugin_id_t id, qemu_plugin_tb* tb);
using QemuSyscallCallback = void (*)(qemu_plugin_id_t id, unsigned cpu, int64_t number, uint64_t a1,
                                     uint64_t a2, uint64_t a3, uint64_t a4, uint64_t a5,
                                     uint64_t a6, uint64_t a7, uint64_t a8);

// Called for each block when it is translated, and for each system call before it is made.
void qemu_plugin_register_vcpu_tb_trans_cb(qemu_plugin_id_t id, QemuBlockCallback callback);
void qemu_plugin_register_vcpu_syscall_cb(qemu_plugin_id_t id, QemuSyscallCallback callback);

// Each run of the block adds `value` to the 64 bits at `counter`.
inline constexpr int kQemuAdd64 = 0;
void qemu_plugin_register_vcpu_tb_exec_inline(qemu_plugin_tb* tb, int operation, void* counter,
                                              uint64_t value);

size_t qemu_plugin_tb_n_insns(const qemu_plugin_tb* tb);
qemu_plugin_insn* qemu_plugin_tb_get_insn(const qemu_plugin_tb* tb, size_t index);
// The function that the instruction is in; null where the emulator does not know: in libraries, and
// everywhere without its option "-d plugin".
const char* qemu_plugin_insn_symbol(const qemu_plugin_insn* instruction);

// The plugin's own.
extern __attribute__((visibility("default"))) int qemu_plugin_version;
__attribute__((visibility("default"))) int qemu_plugin_install(qemu_plugin_id_t id,
                                                               const qemu_info_t* info, int count,
                                                               char** arguments);
}
