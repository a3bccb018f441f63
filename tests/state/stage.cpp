#include "state/stage.h"

#include <SDL_ttf.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <utility>

#include "tests/support/stage_objects.h"

namespace fs = std::filesystem;

namespace {

constexpr uint32_t kFrameMs = 40;

void destroyScreens() {
    if (_home != nullptr) {
        SDL_FreeSurface(_home->background);
    }
    if (_intro != nullptr) {
        SDL_FreeSurface(_intro->logo);
    }
    if (_options != nullptr) {
        SDL_FreeSurface(_options->controllerPicture);
    }
    if (_lib != nullptr) {
        SDL_FreeSurface(_lib->scratch);
    }
    delete std::exchange(_home, nullptr);
    delete std::exchange(_intro, nullptr);
    delete std::exchange(_options, nullptr);
    delete std::exchange(_lib, nullptr);
    delete std::exchange(overMenu, nullptr);
    if (ttf != nullptr) {
        for (TTF_Font* font : ttf->fonts) {
            if (font != nullptr) {
                TTF_CloseFont(font);
            }
        }
        delete std::exchange(ttf, nullptr);
        TTF_Quit();
    }
}

}  // namespace

std::string printedBy(const std::function<void()>& act) {
    testing::internal::CaptureStdout();
    act();
    return testing::internal::GetCapturedStdout();
}

void writeFile(const std::string& path, const std::string& content) {
    const fs::path folder = fs::path(path).parent_path();
    if (!folder.empty()) {
        fs::create_directories(folder);
    }
    std::ofstream(path, std::ios::binary) << content;
}

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void destroyGlobals() {
    destroyScreens();
    destroyObjects();
    SDL_FreeSurface(std::exchange(_textureUI, nullptr));
    SDL_FreeSurface(std::exchange(screen[0], nullptr));
    screen[1] = nullptr;
    isExit = 1;
    g_bMainLoop = true;
    tempsActuel = tempsPrecedent = fps = 0;
    _nbJoySticks = _debugInt = 0;
    joy = nullptr;
}

Stage::Stage(int displayWidth, int displayHeight) {
    fs::create_directory_symlink(PRODUCT_DATA, "data");
    resetScript();
    scripted().displayWidth = displayWidth;
    scripted().displayHeight = displayHeight;
    printedBy([] {
        createObjects();
        all->checkComposite();
        screen[1] = SDL_SetVideoMode(all->appW, all->appH, 16, 0);
        screen[0] = SDL_ConvertSurface(screen[1], screen[1]->format, 0);
        createScreens();
    });
    _options->topbar = 0;
    _options->fps = 0;
    scripted().modeCalls.clear();
    scripted().calls.clear();
}

Stage::~Stage() {
    destroyGlobals();
    resetScript();
}

std::string numbered(const std::string& prefix, int number) {
    std::string text = prefix;
    text += std::to_string(number);
    return text;
}

int addFamille(const std::string& name, const std::vector<std::string>& paths) {
    Famille& famille = playlist->familles[playlist->nbFamilles];
    famille.name = name;
    famille.nbTracks = static_cast<int32_t>(paths.size());
    for (size_t t = 0; t < paths.size(); ++t) {
        famille.tracks[t].path = paths[t];
    }
    return playlist->nbFamilles++;
}

std::vector<std::string> familleNames() {
    std::vector<std::string> names;
    for (int f = 0; f < playlist->nbFamilles; ++f) {
        names.push_back(playlist->familles[f].name);
    }
    return names;
}

void placeClip(const std::string& clip, const std::string& as) {
    const fs::path target = fs::path("videos") / as;
    fs::create_directories(target.parent_path());
    fs::copy_file(fs::path(TEST_DATA) / "clips" / clip, target);
}

void loadClip(int slot, const std::string& name) {
    moxel[slot].init("", name);
    int result = 1;
    printedBy([&] {
        while (result == 1) {
            result = moxel[slot].loopLoad(65000);
        }
    });
    ASSERT_EQ(result, 2) << name;
}

void pretendClip(int slot, int frames) {
    moxel[slot].state = CLIP_READY;
    moxel[slot].frameCount = static_cast<uint16_t>(frames);
}

void setKeys(const std::vector<int>& pressed, const std::vector<int>& held) {
    std::fill(std::begin(keys->gKeys), std::end(keys->gKeys), 0);
    for (const int slot : pressed) {
        keys->gKeys[slot] = KEY_PRESSED;
    }
    for (const int slot : held) {
        keys->gKeys[slot] = KEY_HELD;
    }
}

int runFrame() {
    scripted().ticks += kFrameMs;
    return mainLoop();
}
