// Replays files and mutations of them through a fuzz target, from a fixed seed.
//
//   fuzz_NAME [--keep FILE] ROUNDS FILE-OR-FOLDER...
//       every file as it is, then ROUNDS mutations of them; FILE always holds the input that runs,
//       so after a crash the one at fault
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
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

std::vector<Bytes> readCorpus(const std::vector<std::string>& names) {
    std::vector<std::filesystem::path> paths;
    for (const std::string& name : names) {
        if (!std::filesystem::is_directory(name)) {
            paths.emplace_back(name);
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(name)) {
            if (entry.is_regular_file()) {
                paths.push_back(entry.path());
            }
        }
    }
    // Folders are listed in any order; the mutations have to be the same everywhere.
    std::sort(paths.begin(), paths.end());
    std::vector<Bytes> corpus;
    std::transform(paths.begin(), paths.end(), std::back_inserter(corpus), readFile);
    return corpus;
}

class Mutator {
public:
    explicit Mutator(const std::vector<Bytes>& corpus) : corpus_(corpus) {}

    // A few bytes changed, most of them near the front where headers stand; then perhaps the end
    // cut off, a piece cut out, or a piece of another input put in.
    Bytes next() {
        Bytes bytes = any();
        if (bytes.empty()) {
            return bytes;
        }
        const size_t changes = 1 + below(8);
        for (size_t i = 0; i < changes; ++i) {
            changeByte(bytes);
        }
        switch (below(8)) {
            case 0:
                bytes.resize(below(bytes.size()) + 1);
                break;
            case 1:
                bytes.erase(bytes.begin() + at(bytes), bytes.end() - at(bytes) / 2);
                break;
            case 2:
                putIn(bytes, any());
                break;
            default:
                break;
        }
        return bytes;
    }

private:
    size_t below(size_t limit) { return random_() % limit; }
    const Bytes& any() { return corpus_[below(corpus_.size())]; }
    // An offset in the first half.
    ptrdiff_t at(const Bytes& bytes) { return static_cast<ptrdiff_t>(below(bytes.size() / 2 + 1)); }

    void changeByte(Bytes& bytes) {
        constexpr uint8_t kEdges[] = {0, 1, 0x7F, 0x80, 0xFF};
        const size_t reach = below(3) == 0 ? bytes.size() : std::min<size_t>(bytes.size(), 64);
        bytes[below(reach)] = below(2) == 0 ? kEdges[below(std::size(kEdges))]
                                            : static_cast<uint8_t>(random_() & 0xFF);
    }

    void putIn(Bytes& bytes, const Bytes& other) {
        const size_t from = below(other.size() + 1);
        const size_t count = below(other.size() - from + 1);
        bytes.insert(bytes.begin() + at(bytes), other.begin() + static_cast<ptrdiff_t>(from),
                     other.begin() + static_cast<ptrdiff_t>(from + count));
    }

    const std::vector<Bytes>& corpus_;
    std::mt19937 random_{kSeed};
};

void run(const Bytes& input, const std::string& keep) {
    if (!keep.empty()) {
        std::ofstream(keep, std::ios::binary)
            .write(reinterpret_cast<const char*>(input.data()),
                   static_cast<std::streamsize>(input.size()));
    }
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> arguments(argv + 1, argv + argc);
    std::string keep;
    if (arguments.size() > 2 && arguments[0] == "--keep") {
        // Targets work in a folder of their own.
        keep = std::filesystem::absolute(arguments[1]);
        arguments.erase(arguments.begin(), arguments.begin() + 2);
    }
    if (arguments.size() < 2) {
        fprintf(stderr, "usage: %s [--keep FILE] ROUNDS FILE-OR-FOLDER...\n", argv[0]);
        return 2;
    }
    const int rounds = atoi(arguments[0].c_str());
    const std::vector<Bytes> corpus = readCorpus({arguments.begin() + 1, arguments.end()});
    if (corpus.empty()) {
        fprintf(stderr, "%s: the corpus is empty\n", argv[0]);
        return 1;
    }
    for (const Bytes& input : corpus) {
        run(input, keep);
    }
    Mutator mutator(corpus);
    for (int round = 0; round < rounds; ++round) {
        const Bytes input = mutator.next();
        if (input.size() <= kLargestInput) {
            run(input, keep);
        }
    }
    fprintf(stderr, "%zu files and %d mutations, seed %u\n", corpus.size(), rounds, kSeed);
    return 0;
}
