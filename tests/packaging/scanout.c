/* A module for Xorg: its virtual screens learn what the screen of a real machine can, to be scaled by
   the server. What such a screen then shows is the file that SCANOUT names in the environment, its
   rows one after the other, with 16 or 32 bits a pixel as the server has them.

   The driver "dummy" scans nothing out, so it has no memory for a scaled picture, and without that
   the server refuses to scale. The memory comes from here. */
#include <fcntl.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <unistd.h>

#include <xorg-server.h>

#include <xf86.h>
#include <xf86Crtc.h>
#include <xf86Module.h>
#include <xf86RandR12.h>

static int rowBytes(xf86CrtcPtr crtc, int width) {
    return width * crtc->scrn->bitsPerPixel / 8;
}

static void* allocateShadow(xf86CrtcPtr crtc, int width, int height) {
    const size_t size = (size_t)rowBytes(crtc, width) * (size_t)height;
    const char* path = getenv("SCANOUT");
    const int file = path == NULL ? -1 : open(path, O_RDWR | O_CREAT | O_TRUNC, 0644);
    void* pixels = MAP_FAILED;
    if (file >= 0 && ftruncate(file, (off_t)size) == 0) {
        pixels = mmap(NULL, size, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    }
    if (file >= 0) {
        close(file);
    }
    return pixels == MAP_FAILED ? NULL : pixels;
}

static PixmapPtr createShadow(xf86CrtcPtr crtc, void* pixels, int width, int height) {
    if (pixels == NULL) {
        pixels = allocateShadow(crtc, width, height);
    }
    return pixels == NULL ? NULL
                          : GetScratchPixmapHeader(crtc->scrn->pScreen, width, height,
                                                   crtc->scrn->depth, crtc->scrn->bitsPerPixel,
                                                   rowBytes(crtc, width), pixels);
}

/* The pixels stay mapped: a run of the tests has few of them. */
static void destroyShadow(xf86CrtcPtr crtc, PixmapPtr pixmap, void* pixels) {
    (void)crtc;
    (void)pixels;
    if (pixmap != NULL) {
        FreeScratchPixmapHeader(pixmap);
    }
}

static void giveShadows(void) {
    for (int s = 0; s < screenInfo.numScreens; ++s) {
        ScreenPtr screen = screenInfo.screens[s];
        xf86CrtcConfigPtr config = XF86_CRTC_CONFIG_PTR(xf86ScreenToScrn(screen));
        for (int c = 0; c < config->num_crtc; ++c) {
            xf86CrtcFuncsRec* functions = malloc(sizeof *functions);
            *functions = *config->crtc[c]->funcs;
            functions->shadow_allocate = allocateShadow;
            functions->shadow_create = createShadow;
            functions->shadow_destroy = destroyShadow;
            config->crtc[c]->funcs = functions;
        }
        xf86RandR12SetTransformSupport(screen, TRUE);
    }
}

static const ExtensionModule extension = {giveShadows, "SCANOUT", NULL};

static void* setUp(void* module, void* options, int* major, int* minor) {
    (void)options;
    (void)major;
    (void)minor;
    LoadExtensionList(&extension, 1, FALSE);
    return module;
}

static XF86ModuleVersionInfo version = {"scanout",
                                        "Velmora",
                                        MODINFOSTRING1,
                                        MODINFOSTRING2,
                                        XORG_VERSION_CURRENT,
                                        1,
                                        0,
                                        0,
                                        ABI_CLASS_EXTENSION,
                                        ABI_EXTENSION_VERSION,
                                        MOD_CLASS_NONE,
                                        {0, 0, 0, 0}};

_X_EXPORT XF86ModuleData scanoutModuleData = {&version, setUp, NULL};
