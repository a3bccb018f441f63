// Fills the clip slots with a playlist, one bounded step a frame.
#include "clip/load_cost.h"
#include "core/all.h"
#include "core/globals.h"
#include "moxel/moxel.h"
#include "playlists/playlist.h"

namespace {

// A card that brings nothing for so long is failing: the list's steps read for themselves then.
constexpr int kPatience = 50;  // frames

}  // namespace

void c_playlist::clearMix() {
    ahead.close();
    for (int slot = 0; slot < kClipSlots; ++slot) {
        if (moxel[slot].hasRAM != 0) {
            moxel[slot].killRAM();
        }
        moxel[slot].state = CLIP_LOADING;
    }
    loadSlot = 0;
    loading = 0;
}

void c_playlist::initLoad(int index) {
    for (int slot = 0; slot < kClipSlots; ++slot) {
        if (moxel[slot].hasRAM == 1) {
            moxel[slot].destroy();
        }
    }
    loadTrack = 0;
    loadSlot = 0;
    loadDone = 0;
    loading = 1;
    currentFamille = index;
    framesWaited = 0;
    startTrack(familles[index].tracks[0].path);
    if (familles[index].nbTracks == 0) {
        endLoad();
    }
}

void c_playlist::startTrack(const std::string& track) {
    c_moxel& clip = moxel[loadSlot];
    clip.init(all->prefix, track);
    ahead.open(clip.path);
}

// A step that would wait for the card is put off to the next frame, so that the mix keeps its pace.
bool c_playlist::stepWaits(int budget) {
    const c_moxel::Reach reach = moxel[loadSlot].nextReach(budget);
    if (reach.end == 0) {
        return false;
    }
    // What a step asks for helps the next ones, too, when it does not wait itself.
    const bool come = ahead.haveCome(reach.from, reach.end);
    if (framesWaited == kPatience || !loadWaits) {
        return false;
    }
    framesWaited = come ? 0 : framesWaited + 1;
    return !come && framesWaited < kPatience;
}

void c_playlist::endLoad() {
    ahead.close();
    loadDone = 1;
    loading = 0;
}

void c_playlist::loopLoadPlaylist() {
    if (loading == 0) {
        return;
    }
    c_moxel& clip = moxel[loadSlot];
    const int budget = loadSlot == 0 ? clip::kFirstClipBudget : clip::kOtherClipBudget;
    if (clip.state != CLIP_READY && stepWaits(budget)) {
        return;
    }
    const int result = clip.state == CLIP_READY ? LOAD_FAILED : clip.loopLoad(budget);
    if (result != LOAD_FAILED && result != LOAD_FINISHED) {
        return;
    }
    ++loadTrack;
    if (result == LOAD_FINISHED) {
        ++loadSlot;
    }
    const Famille& famille = familles[currentFamille];
    // The 50th filled slot ends the load even when tracks remain.
    if (loadTrack >= famille.nbTracks || loadSlot == kClipSlots) {
        endLoad();
        return;
    }
    startTrack(famille.tracks[loadTrack].path);
}
