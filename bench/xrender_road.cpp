#include "xrender_road.h"

#include <SDL_syswm.h>
#include <sys/ipc.h>
#include <sys/shm.h>
#include <xcb/render.h>
#include <xcb/shm.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>

namespace {

constexpr uint8_t kPixmapDepth = 16;
constexpr uint8_t kWindowDepth = 24;

xcb_connection_t* x = nullptr;
xcb_window_t window = XCB_NONE;
uint8_t* shared = nullptr;
xcb_render_picture_t from = XCB_NONE;
xcb_render_picture_t to = XCB_NONE;

void findWindow() {
    SDL_SysWMinfo info;
    SDL_VERSION(&info.version);
    SDL_GetWMInfo(&info);
    window = static_cast<xcb_window_t>(info.info.x11.window);
    x = x != nullptr ? x : xcb_connect(nullptr, nullptr);
}

// RGB565 or 8 bits a channel, whichever has the depth; 0 when the server has none.
xcb_render_pictformat_t formatOf(uint8_t depth) {
    auto* all = xcb_render_query_pict_formats_reply(x, xcb_render_query_pict_formats(x), nullptr);
    xcb_render_pictformat_t found = 0;
    if (all == nullptr) {
        return found;
    }
    auto each = xcb_render_query_pict_formats_formats_iterator(all);
    for (; each.rem > 0; xcb_render_pictforminfo_next(&each)) {
        const uint16_t redShift = depth == kPixmapDepth ? 11 : 16;
        if (each.data->depth == depth && each.data->direct.red_shift == redShift &&
            each.data->direct.alpha_mask == 0) {
            found = each.data->id;
        }
    }
    free(all);
    return found;
}

xcb_pixmap_t sharedPixmap(int width, int height) {
    const size_t bytes = static_cast<size_t>(width) * static_cast<size_t>(height) * 2;
    const int memory = shmget(IPC_PRIVATE, bytes, IPC_CREAT | 0600);
    shared = static_cast<uint8_t*>(shmat(memory, nullptr, 0));
    const xcb_shm_seg_t segment = xcb_generate_id(x);
    auto* refusal =
        xcb_request_check(x, xcb_shm_attach_checked(x, segment, static_cast<uint32_t>(memory), 0));
    shmctl(memory, IPC_RMID, nullptr);
    if (refusal != nullptr) {
        free(refusal);
        return XCB_NONE;
    }
    const xcb_pixmap_t pixmap = xcb_generate_id(x);
    xcb_shm_create_pixmap(x, pixmap, window, static_cast<uint16_t>(width),
                          static_cast<uint16_t>(height), kPixmapDepth, segment, 0);
    return pixmap;
}

void waitForServer() {
    free(xcb_get_input_focus_reply(x, xcb_get_input_focus(x), nullptr));
}

}  // namespace

bool openXRender(int width, int height) {
    findWindow();
    const auto* shm = xcb_get_extension_data(x, &xcb_shm_id);
    const xcb_render_pictformat_t narrow = formatOf(kPixmapDepth);
    const xcb_render_pictformat_t wide = formatOf(kWindowDepth);
    if (shm->present == 0 || narrow == 0 || wide == 0) {
        return false;
    }
    const xcb_pixmap_t pixmap = sharedPixmap(width, height);
    if (pixmap == XCB_NONE) {
        return false;
    }
    from = xcb_generate_id(x);
    to = xcb_generate_id(x);
    xcb_render_create_picture(x, from, pixmap, narrow, 0, nullptr);
    xcb_render_create_picture(x, to, window, wide, 0, nullptr);
    return true;
}

// The server has read the pixmap before the next picture is written there.
void showByXRender(SDL_Surface* surface) {
    memcpy(shared, surface->pixels, static_cast<size_t>(surface->h) * surface->pitch);
    xcb_render_composite(x, XCB_RENDER_PICT_OP_SRC, from, XCB_NONE, to, 0, 0, 0, 0, 0, 0,
                         static_cast<uint16_t>(surface->w), static_cast<uint16_t>(surface->h));
    waitForServer();
}

std::vector<uint32_t> windowPixels(int width, int height) {
    findWindow();
    waitForServer();
    auto* image = xcb_get_image_reply(
        x,
        xcb_get_image(x, XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0, static_cast<uint16_t>(width),
                      static_cast<uint16_t>(height), ~0u),
        nullptr);
    std::vector<uint32_t> pixels(static_cast<size_t>(width) * static_cast<size_t>(height));
    if (image != nullptr) {
        memcpy(pixels.data(), xcb_get_image_data(image), pixels.size() * sizeof pixels[0]);
    }
    free(image);
    return pixels;
}
