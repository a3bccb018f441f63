// Fills the clip slots with a playlist, one bounded step a frame.
#include "clip/load_cost.h"
#include "core/all.h"
#include "core/globals.h"
#include "moxel/moxel.h"
#include "playlists/playlist.h"

void c_playlist::clearMix() {
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
    moxel[0].init(all->prefix, familles[index].tracks[0].path);
    if (familles[index].nbTracks == 0) {
        endLoad();
    }
}

void c_playlist::endLoad() {
    loadDone = 1;
    loading = 0;
}

void c_playlist::loopLoadPlaylist() {
    if (loading == 0) {
        return;
    }
    c_moxel& clip = moxel[loadSlot];
    const int budget = loadSlot == 0 ? clip::kFirstClipBudget : clip::kOtherClipBudget;
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
    moxel[loadSlot].init(all->prefix, famille.tracks[loadTrack].path);
}
