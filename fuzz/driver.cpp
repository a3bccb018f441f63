// Replays files and mutations of them through a fuzz target, from a fixed seed.
//
//   fuzz_NAME ROUNDS FOLDER...   every file of the folders as it is, then ROUNDS mutations of them
//   fuzz_NAME 0 FILE...          just these files, to look at a finding
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

using Bytes = std::vector<uint8_t>;

constexpr unsigned kSeed = 20260;
constexpr size_t kLargestInput = 128 * 1024;

Bytes readFile(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::vector<Bytes> readCorpus(int count, char** arguments) {
    std::vector<Bytes> corpus;
    for (int i = 0; i < count; ++i) {
        if (!std::filesystem::is_directory(arguments[i])) {
            corpus.push_back(readFile(arguments[i]));
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(arguments[i])) {
            if (entry.is_regular_file()) {
                corpus.push_back(readFile(entry.path()));
            }
        }
    }
    return corpus;
}

// A few bytes changed, most of them near the front where headers stand; or a piece cut out or the
// end cut off.
Bytes mutate(Bytes bytes, std::mt19937& random) {
    const auto below = [&random](size_t limit) { return random() % limit; };
    if (bytes.empty()) {
        return bytes;
    }
    const size_t changes = 1 + below(8);
    for (size_t i = 0; i < changes; ++i) {
        const size_t reach = below(3) == 0 ? bytes.size() : std::min<size_t>(bytes.size(), 64);
        constexpr uint8_t kEdges[] = {0, 1, 0x7F, 0x80, 0xFF};
        const auto value = below(2) == 0 ? kEdges[below(std::size(kEdges))]
                                         : static_cast<uint8_t>(random() & 0xFF);
        bytes[below(reach)] = value;
    }
    if (below(4) == 0) {
        bytes.resize(below(bytes.size()) + 1);
    } else if (below(8) == 0) {
        const size_t from = below(bytes.size());
        const size_t to = from + below(bytes.size() - from);
        bytes.erase(bytes.begin() + static_cast<long>(from), bytes.begin() + static_cast<long>(to));
    }
    return bytes;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        fprintf(stderr, "usage: %s ROUNDS FILE-OR-FOLDER...\n", argv[0]);
        return 2;
    }
    const int rounds = atoi(argv[1]);
    const std::vector<Bytes> corpus = readCorpus(argc - 2, argv + 2);
    if (corpus.empty()) {
        fprintf(stderr, "%s: the corpus is empty\n", argv[0]);
        return 1;
    }
    for (const Bytes& input : corpus) {
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
    std::mt19937 random(kSeed);
    for (int round = 0; round < rounds; ++round) {
        const Bytes& original = corpus[random() % corpus.size()];
        if (original.size() <= kLargestInput) {
            const Bytes input = mutate(original, random);
            LLVMFuzzerTestOneInput(input.data(), input.size());
        }
    }
    fprintf(stderr, "%zu files and %d mutations, seed %u\n", corpus.size(), rounds, kSeed);
    return 0;
}
