// What the last step to the display costs, in processor time of this program and of the X server
// together: SDL's own way, the program's, and XRender's from a pixmap of 16 bits, for pictures of
// which all rows, every tenth and none have changed. Beside it stands a copy of the bytes that
// reach the server, timed in turns; ratios are to that copy. Before anything is timed each way must
// show what the surface holds.
//
//   bench_present SERVER [PICTURES]    SERVER: the process of the X server that DISPLAY names
//
// bench/present starts servers for it.
#include <SDL.h>
#include <SDL_syswm.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "common/limits.h"
#include "core/all.h"
#include "core/present.h"
#include "xrender_road.h"

namespace {

constexpr int kRounds = 5;
constexpr int kPauseMs = 4;  // the server has done its work and other programs have had the caches
constexpr size_t kWideBytes = size_t{kHdmiWidth} * kHdmiHeight * sizeof(uint32_t);

struct Road {
    const char* name;
    std::function<void(SDL_Surface*)> show;
};

struct Motion {
    const char* name;
    int rowsApart;  // of those that change; 0: none does
};
constexpr Motion kMotions[] = {{"all rows", 1}, {"every tenth row", 10}, {"no row", 0}};

struct Cost {
    double program = 0;  // microseconds a picture
    double server = 0;
    double both() const { return program + server; }
};

// Microseconds of processor time.
double ownTime() {
    timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}
double serverTime(const char* process) {
    unsigned long long nanoseconds = 0;
    FILE* file = fopen(("/proc/" + std::string(process) + "/schedstat").c_str(), "r");
    if (file == nullptr || fscanf(file, "%llu", &nanoseconds) != 1) {
        fprintf(stderr, "there is no process %s\n", process);
        exit(1);
    }
    fclose(file);
    return static_cast<double>(nanoseconds) / 1e3;
}

// New noise in the rows that the motion changes.
void changeRows(SDL_Surface* surface, const Motion& motion) {
    static std::mt19937 random(565);
    for (int y = 0; motion.rowsApart != 0 && y < surface->h; y += motion.rowsApart) {
        auto* row = reinterpret_cast<uint32_t*>(static_cast<uint8_t*>(surface->pixels) +
                                                static_cast<ptrdiff_t>(y) * surface->pitch);
        std::generate(row, row + surface->w / 2, [] { return static_cast<uint32_t>(random()); });
    }
}

Cost measure(const Road& road, const Motion& motion, SDL_Surface* surface, const char* server,
             int pictures) {
    Cost best = {1e12, 1e12};
    for (int round = 0; round < kRounds; ++round) {
        Cost cost;
        cost.server = -serverTime(server);
        for (int i = 0; i < pictures; ++i) {
            changeRows(surface, motion);
            cost.program -= ownTime();
            road.show(surface);
            cost.program += ownTime();
            usleep(kPauseMs * 1000);
        }
        cost.server += serverTime(server);
        cost.program /= pictures;
        cost.server /= pictures;
        best = cost.both() < best.both() ? cost : best;
    }
    return best;
}

// The bytes that reach the server, copied once.
Road copying() {
    return {"memcpy", [from = std::vector<char>(kWideBytes, 1), to = std::vector<char>(kWideBytes)](
                          SDL_Surface*) mutable { memcpy(to.data(), from.data(), to.size()); }};
}

// What stands in the window, against the surface: the number of pixels that differ in colour.
int differences(SDL_Surface* surface) {
    const std::vector<uint32_t> window = windowPixels(surface->w, surface->h);
    SDL_Surface* expected = SDL_CreateRGBSurface(SDL_SWSURFACE, surface->w, surface->h, 32,
                                                 0xFF0000, 0x00FF00, 0x0000FF, 0);
    SDL_BlitSurface(surface, nullptr, expected, nullptr);
    const auto* pixels = static_cast<const uint32_t*>(expected->pixels);
    int count = 0;
    for (size_t i = 0; i < window.size(); ++i) {
        count += ((window[i] ^ pixels[i]) & 0xFFFFFF) != 0 ? 1 : 0;
    }
    SDL_FreeSurface(expected);
    return count;
}

void check(const Road& road, SDL_Surface* surface) {
    for (const Motion& motion : kMotions) {
        changeRows(surface, motion);
        road.show(surface);
    }
    const int count = differences(surface);
    if (count != 0) {
        printf("%s: %d of %d pixels have other colours than SDL gives them\n", road.name, count,
               surface->w * surface->h);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        fputs("bench_present SERVER [PICTURES]\n", stderr);
        return 1;
    }
    const int pictures = argc > 2 ? atoi(argv[2]) : 60;
    SDL_Init(SDL_INIT_VIDEO);
    SDL_Surface* surface = SDL_SetVideoMode(kHdmiWidth, kHdmiHeight, 16, 0);
    if (surface == nullptr) {
        fputs("there is no display\n", stderr);
        return 1;
    }
    std::vector<Road> roads = {
        {"SDL_UpdateRect", [](SDL_Surface* s) { SDL_UpdateRect(s, 0, 0, 0, 0); }},
        {"present()", present},
    };
    if (openXRender(surface->w, surface->h)) {
        roads.push_back({"XRender", showByXRender});
    }
    for (const Road& road : roads) {
        presentAnew();
        check(road, surface);
    }
    const double copy = measure(copying(), kMotions[0], surface, argv[1], pictures).program;
    printf("a copy of %.1f MB: %.0f microseconds\n\n", static_cast<double>(kWideBytes) / 1e6, copy);
    printf("%-16s %-16s %8s %8s %8s  copies\n", "microseconds", "changed", "program", "server",
           "both");
    for (const Motion& motion : kMotions) {
        for (const Road& road : roads) {
            presentAnew();
            road.show(surface);
            road.show(surface);
            const Cost cost = measure(road, motion, surface, argv[1], pictures);
            printf("%-16s %-16s %8.0f %8.0f %8.0f  %5.2f\n", road.name, motion.name, cost.program,
                   cost.server, cost.both(), cost.both() / copy);
        }
    }
    SDL_Quit();
    return 0;
}
