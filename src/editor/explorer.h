#pragma once
// The files explorer of the playlist screen's tracks page: it reads a folder below ./videos into
// the model's listing and looks into the clips that the page shows, one at a time and a bounded bit
// a frame, so that the page is there at once however slow the card is.

#include <cstdint>
#include <string>

#include "clip/survey.h"
#include "playlists/playlist.h"

// What the explorer says about a clip.
struct ClipFacts {
    clip::SurveyState state = clip::SURVEY_GOES_ON;
    int32_t frames = 0;
    int32_t steps = 0;  // of the loader
};

class Explorer {
public:
    void enter(c_playlist& model, const std::string& entry);  // a folder listed, or ".. back"
    void lookInto(const c_playlist& model);  // the first row in view of which nothing is known

    int32_t found = 0;   // clips and folders in the browsed folder
    int32_t listed = 0;  // how many of them stand in the listing
    ClipFacts facts[kExplorerRows];

private:
    void list(c_playlist& model);

    clip::Survey survey_;     // of the clip that is being looked into
    int32_t surveyRow_ = -1;  // its row, -1 none
};
