#pragma once
// Where things stand on the two options pages, and where the mouse finds them. Pixels from the top
// left of the 640 x 360 picture; as a click area both ends of a rectangle belong to it, so that it
// answers one pixel further to the right and below than it is drawn. Numbers that drawing and
// clicking share stand here once; where they differ on purpose both are here, side by side.

#include "common/geometry.h"
#include "common/limits.h"
#include "px/filters.h"

namespace layout {

struct Area {
    int x;
    int y;
    int w;
    int h;
};

// Page 0: one box for each filter letter.
inline constexpr int kSlotStep = 60;
inline constexpr int kSlotSize = 44;
constexpr Area slotBox(int slot) {
    return {10 + kSlotStep * slot, 200, kSlotSize, kSlotSize};
}

// Page 0: the palette, a chip for each filter.
inline constexpr Area kFirstChip = {7, 140, 56, 20};
inline constexpr int kChipStep = 60;
static_assert(kFirstChip.x + kChipStep * (kFilterIds - 1) + kFirstChip.w <= kFrameWidth,
              "every filter has a chip inside the picture");
// Deliberate: the palette answers from its first chip to 580 pixels on, gaps included, which leaves
// out the right 16 pixels of the last chip; further to the right would name a filter more.
// [quirk_last_chip_ends_early]
inline constexpr Area kPaletteArea = {7, 140, kChipStep* kFilterIds - 20, 20};

// Deliberate: four more places to drop a filter on, a cross of squares that nothing marks. They
// stand for the first four letters; performers who know them use them.
// [quirk_unmarked_drop_squares]
inline constexpr Area kDropSquares[] = {
    {368, 16, 32, 32}, {400, 48, 32, 32}, {368, 80, 32, 32}, {336, 48, 32, 32}};

// Page 0: check boxes.
inline constexpr int kCheckBoxSize = 24;
struct OfferedSize {
    int width;  // of the application
    int height;
    const char* label;
    Point box;
};
inline constexpr OfferedSize kOfferedSizes[] = {{1280, 720, "1280 x 720", {20, 50}},
                                                {1024, 768, "1024 x 768", {170, 50}}};
inline constexpr Point kBoxTopbar = {340, 30};
inline constexpr Point kBoxFps = {340, 70};
// Deliberate: a check box answers over its label too, but not in its lowest rows.
// [quirk_check_boxes_answer_over_their_labels]
constexpr Area checkBoxArea(Point box) {
    return {box.x, box.y, 120, 20};
}

inline constexpr Area kConfigure = {7, 330, 128, 24};
// Deliberate: "configure controller" answers to a second area too, which reaches below it and to
// the left. [quirk_configure_has_a_second_area]
inline constexpr Area kConfigureToo = {5, 335, 48, 25};

// Deliberate: the back button stands below the picture's lower edge, where it covers nothing, and
// answers one row further down than it is drawn. [quirk_back_stands_below_the_picture]
inline constexpr Point kBackPiece = {576, 370};
inline constexpr Area kBackArea = {576, 370, 64, 25};

// Page 1: the box that waits for a button.
inline constexpr Area kWaitingBox = {100, 100, 440, 160};
inline constexpr Area kCancel = {105, 230, 64, 24};
inline constexpr Area kNoButton = {179, 230, 64, 24};

// Page 1: the squares on the picture of the controller. Neighbours of the cross share a corner.
inline constexpr int kAnchorSize = 30;
inline constexpr Point kAnchors[kPadEntries] = {
    {140, 90},  {170, 120}, {140, 150}, {110, 120}, {475, 80},  {525, 120}, {475, 160},
    {430, 120}, {140, 10},  {475, 10},  {140, -30}, {475, -30}, {360, 120}, {260, 120}};

// Page 1: two lines beside each square say what it does on stage.
inline constexpr Point kAnchorLabels[kPadEntries] = {
    {140, 66},  {204, 124}, {140, 182}, {80, 96},   {509, 89},  {559, 124}, {509, 164},
    {430, 152}, {174, 14},  {509, 19},  {174, -21}, {509, -21}, {345, 94},  {245, 94}};

// What each entry of the controller map does on stage, in the mix unless it says otherwise. A
// square shows the role of its entry, which kMapEntries names.
struct PadRole {
    const char* name;
    const char* onStage;  // empty: nothing
};
inline constexpr PadRole kPadRoles[kPadEntries] = {
    {"up", "top layer"},
    {"right", "next clip"},
    {"down", "bottom layer"},
    {"left", "previous clip"},
    {"no use", ""},
    {"back", "list: home"},
    {"confirm", "reverse; list: load"},
    {"no use", ""},
    {"no use", ""},
    {"block", "held: no reverse"},
    {"no use", ""},
    {"no use", ""},
    {"hold", "with show: list"},
    {"show", "the panel"},
};

// Deliberate: squares and file name the shoulder buttons the other way round than the controller
// map: 8 and 9, and 10 and 11, change places. Page, reader and writer agree, so what a square was
// given is what it shows, saves and lights up for. [quirk_controller_file_swaps_shoulders]
// [quirk_controller_page_swaps_shoulders]
inline constexpr int kMapEntries[kPadEntries] = {0, 1, 2, 3, 4, 5, 6, 7, 9, 8, 11, 10, 12, 13};

}  // namespace layout
