#pragma once
// Names of clips made from names of media files.
//
// A clip's name holds only lower-case letters, digits and - + _, so that it can be typed, stands in
// the playlists file as it is, and differs from others in more than case. The mix screen writes it
// into a box of a certain width.

#include <set>
#include <string>

#include "layout/name_rooms.h"
#include "tools/base/texts.h"
#include "tools/clip/media/pixel_font.h"

namespace maker {

// Without folder and ending; other scripts are transliterated, accents dropped. Of a pattern of
// numbered pictures what stands before the number, or else the folder's name. Never empty.
std::string safeName(const std::string& input);

// UTF-8 as Latin-1, which the program's files hold; bytes that are no UTF-8 stay. Empty when there
// are characters that Latin-1 does not have.
std::string latin1Of(const std::string& text);

// What a layer's box on the mix screen has room for, with the same edge on both sides. In the
// panel's smaller font; the larger one takes twice as many pixels.
inline constexpr int kPanelRoom = (layout::kPanelBoxHdmi - 2 * layout::kPanelNameX) / 2;
inline constexpr int kNoRoomLimit = 1 << 20;

// The names in use. None is given twice, whatever the case of its letters.
class ClipNames {
public:
    void take(const std::string& name);
    bool taken(const std::string& name) const;

    // The name, cut to its room, with _2, _3... behind it when it is taken; takes it. The room for
    // `suffix` is left free. A name that ends in - and a number, as those of split clips do, gets _
    // in the place of the -.
    std::string give(const std::string& name, int room, const std::string& suffix = "");

private:
    std::string cutTo(std::string name, int room) const;
    int widthOf(const std::string& name) const { return font_.widthOf(fromLatin1(name)); }

    PixelFont font_{kSmallText};
    std::set<std::string> names_;
};

}  // namespace maker
