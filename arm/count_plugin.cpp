// Counts the instructions that a program executes between its marks (marks.h), inside qemu's user
// mode emulation. On the second mark it prints "instructions: N" to standard error; with the
// argument "functions" also how many of them each function took, most first:
//
//   qemu-aarch64 -plugin libcount.so PROGRAM...
//   qemu-aarch64 -d plugin -plugin libcount.so,functions=on PROGRAM...
//
// The program has one thread. The count is of instructions, not of cycles.
#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <deque>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "marks.h"
#include "qemu_plugin.h"

namespace {

struct Block {
    const char* function;
    uint64_t executed = 0;  // instructions
    uint64_t before = 0;    // of them before the first mark
};

uint64_t total = 0;
uint64_t totalBefore = 0;
bool byFunction = false;
std::deque<Block> blocks;  // the emulator keeps pointers to the counters

void countBlock(qemu_plugin_id_t, qemu_plugin_tb* tb) {
    const size_t instructions = qemu_plugin_tb_n_insns(tb);
    qemu_plugin_register_vcpu_tb_exec_inline(tb, kQemuAdd64, &total, instructions);
    if (byFunction) {
        const char* const name = qemu_plugin_insn_symbol(qemu_plugin_tb_get_insn(tb, 0));
        blocks.push_back({name != nullptr ? name : "(libraries)"});
        qemu_plugin_register_vcpu_tb_exec_inline(tb, kQemuAdd64, &blocks.back().executed,
                                                 instructions);
    }
}

void printFunctions() {
    std::map<std::string, uint64_t> functions;
    for (const Block& block : blocks) {
        functions[block.function] += block.executed - block.before;
    }
    std::vector<std::pair<uint64_t, std::string>> most;
    for (const auto& [name, count] : functions) {
        if (count != 0) {
            most.emplace_back(count, name);
        }
    }
    std::sort(most.rbegin(), most.rend());
    for (const auto& [count, name] : most) {
        fprintf(stderr, "%10" PRIu64 "  %s\n", count, name.c_str());
    }
}

void onSyscall(qemu_plugin_id_t, unsigned, int64_t, uint64_t a1, uint64_t, uint64_t, uint64_t,
               uint64_t, uint64_t, uint64_t, uint64_t) {
    const auto mark = static_cast<uint32_t>(a1);
    if (mark == kCountBegin) {
        totalBefore = total;
        for (Block& block : blocks) {
            block.before = block.executed;
        }
    } else if (mark == kCountEnd) {
        fprintf(stderr, "instructions: %" PRIu64 "\n", total - totalBefore);
        printFunctions();
    }
}

}  // namespace

int qemu_plugin_version = 1;

int qemu_plugin_install(qemu_plugin_id_t id, const qemu_info_t*, int count, char** arguments) {
    byFunction = count > 0 && strncmp(arguments[0], "functions", strlen("functions")) == 0;
    qemu_plugin_register_vcpu_tb_trans_cb(id, countBlock);
    qemu_plugin_register_vcpu_syscall_cb(id, onSyscall);
    return 0;
}
