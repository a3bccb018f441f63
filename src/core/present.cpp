#include "core/present.h"

#include <SDL_syswm.h>
#include <sys/ipc.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <xcb/shm.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "common/rgb565.h"
#include "core/display.h"
#include "px/operations.h"

namespace {

// How a window stores its pixels.
struct PixelForm {
    int depth;  // bits that count, which is what the server knows the form by
    int bits;   // with those that do not
    uint32_t red, green, blue;
};
constexpr PixelForm kSurfaceForm = {px::kDepth, px::kDepth, px::kRedMask, px::kGreenMask,
                                    px::kBlueMask};
constexpr PixelForm kWideForm = {24, 32, 0xFF0000, 0x00FF00, 0x0000FF};
// Rows that did not change between two that did are put along, rather than in a request of their
// own.
constexpr int kRowsBetween = 8;
// What SDL does about an uncovered window comes after ours when the news reaches us first: it puts
// its own picture, an old one, when it reads its events in the next frame.
constexpr int kPicturesAfterNews = 2;

template <typename Reply>
using Answer = std::unique_ptr<Reply, decltype(&free)>;

template <typename Reply>
Answer<Reply> answer(Reply* reply) {
    return {reply, free};
}

// Memory that the server reads where it stands, or `segment` none and its bytes go through the
// connection.
struct Image {
    uint8_t* bytes = nullptr;
    xcb_shm_seg_t segment = XCB_NONE;
};

// What a picture goes to. Two are the same as long as no video mode changes it.
struct Target {
    xcb_window_t window = XCB_NONE;
    int width = 0;
    int height = 0;

    bool operator==(const Target&) const = default;
};

struct Road {
    xcb_connection_t* connection = nullptr;
    Target target;  // looked at last, whether the road was taken or not
    bool taken = false;

    xcb_gcontext_t context = XCB_NONE;
    PixelForm form = {};
    int left = 0;  // of the surface in the window
    int top = 0;
    Image image;            // what the window shows, once the server has read it
    int wholePictures = 0;  // still to be put whole
    bool unread = false;    // the server may be reading the image
    xcb_get_input_focus_cookie_t read = {};
};

Road road;

size_t rowBytes() {
    return static_cast<size_t>(road.target.width) * static_cast<size_t>(road.form.bits / 8);
}
uint8_t* imageRow(int row) {
    return road.image.bytes + static_cast<size_t>(row) * rowBytes();
}

bool isLocal(xcb_connection_t* connection) {
    sockaddr_storage address = {};
    socklen_t length = sizeof address;
    return getsockname(xcb_get_file_descriptor(connection), reinterpret_cast<sockaddr*>(&address),
                       &length) == 0 &&
           address.ss_family == AF_UNIX;
}

bool hasSharedMemory(xcb_connection_t* connection) {
    const xcb_query_extension_reply_t* shm = xcb_get_extension_data(connection, &xcb_shm_id);
    return isLocal(connection) && shm != nullptr && shm->present != 0;
}

// The segment goes by itself once the server and we have let go of it.
bool shareImage(size_t bytes) {
    const int memory = shmget(IPC_PRIVATE, bytes, IPC_CREAT | 0600);
    if (memory < 0) {
        return false;
    }
    void* const attached = shmat(memory, nullptr, 0);
    bool shared = attached != reinterpret_cast<void*>(-1);
    if (shared) {
        const xcb_shm_seg_t segment = xcb_generate_id(road.connection);
        const auto refusal = answer(xcb_request_check(
            road.connection,
            xcb_shm_attach_checked(road.connection, segment, static_cast<uint32_t>(memory), 1)));
        shared = refusal == nullptr && xcb_connection_has_error(road.connection) == 0;
        if (shared) {
            road.image = {static_cast<uint8_t*>(attached), segment};
        } else {
            shmdt(attached);
        }
    }
    shmctl(memory, IPC_RMID, nullptr);
    return shared;
}

// Black, as the window is.
bool makeImage() {
    const size_t bytes = rowBytes() * static_cast<size_t>(road.target.height);
    if (!hasSharedMemory(road.connection) || !shareImage(bytes)) {
        road.image = {new (std::nothrow) uint8_t[bytes](), XCB_NONE};
    }
    return road.image.bytes != nullptr;
}

void freeImage() {
    if (road.image.segment != XCB_NONE) {
        xcb_shm_detach(road.connection, road.image.segment);
        shmdt(road.image.bytes);
    } else {
        delete[] road.image.bytes;
    }
    road.image = {};
}

const xcb_visualtype_t* visualType(const xcb_setup_t* setup, xcb_visualid_t id) {
    for (auto screen = xcb_setup_roots_iterator(setup); screen.rem > 0; xcb_screen_next(&screen)) {
        auto depth = xcb_screen_allowed_depths_iterator(screen.data);
        for (; depth.rem > 0; xcb_depth_next(&depth)) {
            auto visual = xcb_depth_visuals_iterator(depth.data);
            for (; visual.rem > 0; xcb_visualtype_next(&visual)) {
                if (visual.data->visual_id == id) {
                    return visual.data;
                }
            }
        }
    }
    return nullptr;
}

int bitsAPixel(const xcb_setup_t* setup, int depth) {
    auto format = xcb_setup_pixmap_formats_iterator(setup);
    for (; format.rem > 0; xcb_format_next(&format)) {
        if (format.data->depth == depth) {
            return format.data->bits_per_pixel;
        }
    }
    return 0;
}

bool hasForm(const xcb_setup_t* setup, const xcb_visualtype_t& visual, int depth,
             const PixelForm& form) {
    return depth == form.depth && bitsAPixel(setup, depth) == form.bits &&
           visual.red_mask == form.red && visual.green_mask == form.green &&
           visual.blue_mask == form.blue;
}

// The form of a window's pixels, when it is one that is made here. SDL 1.2 itself is as good where
// nothing is converted.
bool findForm(int depth, xcb_visualid_t visualId) {
    const xcb_setup_t* const setup = xcb_get_setup(road.connection);
    const xcb_visualtype_t* const visual = visualType(setup, visualId);
    if (visual == nullptr || setup->image_byte_order != XCB_IMAGE_ORDER_LSB_FIRST ||
        std::endian::native != std::endian::little) {
        return false;
    }
    if (hasForm(setup, *visual, depth, kWideForm)) {
        road.form = kWideForm;
        return true;
    }
    road.form = kSurfaceForm;
    return overSdl2() && hasForm(setup, *visual, depth, kSurfaceForm);
}

// Where the surface stands in the window, when it is one that we can write.
bool lookAtWindow() {
    xcb_connection_t* const x = road.connection;
    const xcb_window_t window = road.target.window;
    const auto placeAsked = xcb_get_geometry(x, window);
    const auto kindAsked = xcb_get_window_attributes(x, window);
    const auto place = answer(xcb_get_geometry_reply(x, placeAsked, nullptr));
    const auto kind = answer(xcb_get_window_attributes_reply(x, kindAsked, nullptr));
    if (place == nullptr || kind == nullptr || !findForm(place->depth, kind->visual)) {
        return false;
    }
    road.left = (place->width - road.target.width) / 2;
    road.top = (place->height - road.target.height) / 2;
    const bool fits = road.left == 0 && road.top == 0;
    // In a larger window SDL 1.2 centres the surface. The layer scales it.
    return fits || (road.left >= 0 && road.top >= 0 && !overSdl2());
}

// News of the window come to us as well as to SDL.
void watchWindow() {
    const uint32_t news = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(road.connection, road.target.window, XCB_CW_EVENT_MASK, &news);
    const uint32_t noNews = 0;
    road.context = xcb_generate_id(road.connection);
    xcb_create_gc(road.connection, road.context, road.target.window, XCB_GC_GRAPHICS_EXPOSURES,
                  &noNews);
}

void waitForServer() {
    if (road.unread) {
        answer(xcb_get_input_focus_reply(road.connection, road.read, nullptr));
        road.unread = false;
    }
}

// What the server still has to say of this window is not taken for news, or errors, of the next
// one.
void leaveRoad() {
    if (road.taken) {
        waitForServer();
        while (answer(xcb_poll_for_event(road.connection)) != nullptr) {
        }
        freeImage();
        xcb_free_gc(road.connection, road.context);
        xcb_flush(road.connection);
    }
    road.taken = false;
}

bool connect(const SDL_SysWMinfo& info) {
    if (road.connection != nullptr && xcb_connection_has_error(road.connection) != 0) {
        xcb_disconnect(road.connection);
        road.connection = nullptr;
    }
    if (road.connection == nullptr) {
        road.connection = xcb_connect(DisplayString(info.info.x11.display), nullptr);
    }
    return xcb_connection_has_error(road.connection) == 0;
}

void takeRoad(const SDL_SysWMinfo& info) {
    if (!connect(info) || !lookAtWindow() || !makeImage()) {
        return;
    }
    watchWindow();
    road.taken = true;
    road.wholePictures = kPicturesAfterNews;
    road.unread = false;
}

// SDL's window, when it has one that the video mode is converted for.
bool findTarget(const SDL_Surface* video, SDL_SysWMinfo& info, Target& target) {
    SDL_VERSION(&info.version);
    if (video->format->BitsPerPixel != kSurfaceForm.depth || SDL_MUSTLOCK(video) ||
        SDL_GetWMInfo(&info) != 1 || info.subsystem != SDL_SYSWM_X11) {
        return false;
    }
    target = {static_cast<xcb_window_t>(info.info.x11.window), video->w, video->h};
    return target.window != XCB_NONE;
}

// False when the road is not to be taken any more.
bool hearNews() {
    while (const auto news = answer(xcb_poll_for_event(road.connection))) {
        if (news->response_type == 0) {
            return false;
        }
        road.wholePictures = kPicturesAfterNews;
    }
    return xcb_connection_has_error(road.connection) == 0;
}

void putThrough(int first, int count) {
    constexpr size_t kHeadOfRequest = 64;  // and more than that
    const size_t room =
        size_t{4} * xcb_get_maximum_request_length(road.connection) - kHeadOfRequest;
    const int atOnce = std::max(1, static_cast<int>(room / rowBytes()));
    for (int row = first; row < first + count; row += atOnce) {
        const int rows = std::min(atOnce, first + count - row);
        xcb_put_image(road.connection, XCB_IMAGE_FORMAT_Z_PIXMAP, road.target.window, road.context,
                      static_cast<uint16_t>(road.target.width), static_cast<uint16_t>(rows),
                      static_cast<int16_t>(road.left), static_cast<int16_t>(road.top + row), 0,
                      static_cast<uint8_t>(road.form.depth),
                      static_cast<uint32_t>(static_cast<size_t>(rows) * rowBytes()), imageRow(row));
    }
}

void putRows(int first, int count) {
    if (road.image.segment == XCB_NONE) {
        putThrough(first, count);
        return;
    }
    const auto width = static_cast<uint16_t>(road.target.width);
    xcb_shm_put_image(road.connection, road.target.window, road.context, width,
                      static_cast<uint16_t>(road.target.height), 0, static_cast<uint16_t>(first),
                      width, static_cast<uint16_t>(count), static_cast<int16_t>(road.left),
                      static_cast<int16_t>(road.top + first), static_cast<uint8_t>(road.form.depth),
                      XCB_IMAGE_FORMAT_Z_PIXMAP, 0, road.image.segment, 0);
}

// Brings a row of the image up to the surface; false when it is there already.
bool takeRow(const SDL_Surface* video, int row) {
    const uint8_t* const now =
        static_cast<const uint8_t*>(video->pixels) + static_cast<ptrdiff_t>(row) * video->pitch;
    uint8_t* const shown = imageRow(row);
    if (road.form.bits == kWideForm.bits) {
        return px::operations().widenChanged(reinterpret_cast<uint32_t*>(shown),
                                             reinterpret_cast<const uint16_t*>(now),
                                             road.target.width);
    }
    if (memcmp(shown, now, rowBytes()) == 0) {
        return false;
    }
    memcpy(shown, now, rowBytes());
    return true;
}

void show(const SDL_Surface* video) {
    waitForServer();
    const bool whole = road.wholePictures > 0;
    road.wholePictures = std::max(0, road.wholePictures - 1);
    int first = 0;
    int end = 0;  // of the rows that are to be put
    bool put = false;
    for (int row = 0; row < road.target.height; ++row) {
        if (!takeRow(video, row) && !whole) {
            continue;
        }
        if (put && row - end > kRowsBetween) {
            putRows(first, end - first);
            put = false;
        }
        first = put ? first : row;
        end = row + 1;
        put = true;
    }
    if (put) {
        putRows(first, end - first);
        road.read = xcb_get_input_focus(road.connection);
        road.unread = true;
        xcb_flush(road.connection);
    }
}

}  // namespace

void present(SDL_Surface* video) {
    SDL_SysWMinfo info = {};
    Target target;
    if (!findTarget(video, info, target)) {
        SDL_UpdateRect(video, 0, 0, 0, 0);
        return;
    }
    if (target != road.target) {
        leaveRoad();
        road.target = target;
        takeRoad(info);
    }
    if (road.taken && !hearNews()) {
        leaveRoad();
    }
    if (road.taken) {
        show(video);
    } else {
        SDL_UpdateRect(video, 0, 0, 0, 0);
    }
}

void presentAnew() {
    leaveRoad();
    road.target = {};
}
