// Page 0 of the options: what each click, drag and key does, at both ends of every area.
#include "state/options_screen.h"

namespace {

class OptionsActions : public OptionsTest {
protected:
    using OptionsTest::OptionsTest;
    static void mouseAt(int x, int y) {
        keys->mouseX = x;
        keys->mouseY = y;
    }
    // The frame of a click.
    static void click(int x, int y) {
        mouseAt(x, y);
        keys->mouseClick = 1;
        keys->mouseHeld = 0;
        keys->actions();
        keys->mouseClick = 0;
    }
    // A frame with the button held, and one with it up.
    static void holdAt(int x, int y) {
        mouseAt(x, y);
        keys->mouseHeld = 1;
        keys->actions();
    }
    static void dropAt(int x, int y) {
        mouseAt(x, y);
        keys->mouseHeld = 0;
        keys->actions();
    }
    // `acts(x, y)` answers on x0 to x1, y0 to y1, ends included, and not one pixel outside.
    template <typename Acts>
    static void expectArea(int x0, int x1, int y0, int y1, Acts acts) {
        for (const int x : {x0, x1}) {
            for (const int y : {y0, y1}) {
                EXPECT_TRUE(acts(x, y)) << x << ", " << y;
            }
        }
        const int midX = (x0 + x1) / 2;
        const int midY = (y0 + y1) / 2;
        const int outside[][2] = {{x0 - 1, midY}, {x1 + 1, midY}, {midX, y0 - 1}, {midX, y1 + 1}};
        for (const auto& [x, y] : outside) {
            EXPECT_FALSE(acts(x, y)) << x << ", " << y;
        }
    }
    static bool leavesBy(int x, int y) {
        all->state = STATE_OPTIONS;
        click(x, y);
        return all->state == STATE_HOME;
    }
    static bool opensControllerBy(int x, int y) {
        _options->page = 0;
        click(x, y);
        return _options->page == 1;
    }
    // The slot, or -1, that takes HUE dropped at (x, y); both layers agree.
    static int takenBy(int x, int y) {
        _filters->initFilters();
        _options->dragging = 1;
        _options->draggedFilter = FILTER_HUE;
        dropAt(x, y);
        EXPECT_EQ(_options->dragging, 0);
        int taken = -1;
        for (int slot = 0; slot < 9; ++slot) {
            EXPECT_EQ(_filters->slots[0][slot].id, _filters->slots[1][slot].id);
            if (_filters->slots[0][slot].id == FILTER_HUE) {
                EXPECT_EQ(taken, -1);
                taken = slot;
            }
        }
        return taken;
    }
};

class CompositeOptionsActions : public OptionsActions {
protected:
    CompositeOptionsActions() : OptionsActions(720, 576) {}
};

TEST_F(OptionsActions, BackByKeyOrController_SavesAndGoesHome) {
    for (const int slot : {1, 36}) {
        all->state = STATE_OPTIONS;
        _options->dragging = 1;
        _options->topbar = slot == 1 ? 1 : 0;
        setKeys({slot});
        keys->actions();
        EXPECT_EQ(all->state, STATE_HOME) << slot;
        EXPECT_EQ(_options->dragging, 0) << "nothing hangs at the mouse on the next visit";
        const std::string line = slot == 1 ? "<topbar>1</topbar>" : "<topbar>0</topbar>";
        EXPECT_NE(readFile("userdata/prefs.xml").find(line), std::string::npos);
    }
    all->state = STATE_OPTIONS;
    setKeys({}, {1, 36});
    keys->actions();
    EXPECT_EQ(all->state, STATE_OPTIONS) << "held on is not pressed";
}

// Every way out, in one frame with what else the page answers: nothing of that happens.
TEST_F(OptionsActions, Back_StopsBeforeTheClick) {
    for (const int slot : {1, 36}) {
        for (const auto& [x, y] :
             {std::pair{60, 340}, {180, 60}, {350, 40}, {350, 80}, {130, 150}}) {
            all->state = STATE_OPTIONS;
            setKeys({slot});
            click(x, y);
            EXPECT_EQ(all->state, STATE_HOME);
            EXPECT_EQ(_options->page, 0) << "configure controller";
            EXPECT_EQ(all->appW, 1280);
            EXPECT_EQ(_options->topbar, 0);
            EXPECT_EQ(_options->fps, 0);
            EXPECT_EQ(_options->dragging, 0);
        }
    }
}

TEST_F(OptionsActions, Back_StopsBeforeTheDrop) {
    for (const int slot : {1, 36}) {
        all->state = STATE_OPTIONS;
        _options->dragging = 1;
        _options->draggedFilter = FILTER_HUE;
        setKeys({slot});
        dropAt(80, 220);
        EXPECT_EQ(all->state, STATE_HOME);
        EXPECT_EQ(_filters->slots[0][1].id, FILTER_NONE);
    }
}

TEST_F(OptionsActions, quirk_back_stands_below_the_picture) {
    expectArea(576, 640, 370, 395, leavesBy);
    // Drawn from 370 to 393.
    draw();
    EXPECT_NE(countPixels(screen[1], 320 + 576, 180 + 393, 64, 1, 0), 64);
    EXPECT_EQ(countPixels(screen[1], 320 + 576, 180 + 394, 64, 2, 0), 128);
}

TEST_F(OptionsActions, Configure_OpensThePageOfTheController) {
    for (const auto& [x, y] : {std::pair{7, 330}, {135, 330}, {135, 354}, {7, 354}}) {
        EXPECT_TRUE(opensControllerBy(x, y)) << x << ", " << y;
    }
    for (const auto& [x, y] : {std::pair{6, 330}, {7, 329}, {136, 340}, {100, 355}}) {
        EXPECT_FALSE(opensControllerBy(x, y)) << x << ", " << y;
    }
}

TEST_F(OptionsActions, quirk_configure_has_a_second_area) {
    for (const auto& [x, y] : {std::pair{5, 335}, {5, 360}, {53, 360}, {53, 335}}) {
        EXPECT_TRUE(opensControllerBy(x, y)) << x << ", " << y;
    }
    for (const auto& [x, y] : {std::pair{4, 340}, {5, 334}, {54, 360}, {30, 361}}) {
        EXPECT_FALSE(opensControllerBy(x, y)) << x << ", " << y;
    }
}

TEST_F(OptionsActions, ResolutionBoxes_SetSizeAndOffsetAtOnceAndTheModeOnLeaving) {
    const auto chooses = [](int width, int height, int offsetX, int offsetY) {
        return [=](int x, int y) {
            all->applyResolution(800, 600);
            click(x, y);
            return all->appW == width && all->appH == height && _options->offset.x == offsetX &&
                   _options->offset.y == offsetY;
        };
    };
    expectArea(20, 140, 50, 70, chooses(1280, 720, 320, 180));
    expectArea(170, 290, 50, 70, chooses(1024, 768, 192, 204));
    click(170, 50);
    EXPECT_TRUE(scripted().modeCalls.empty());
    setKeys({1});
    keys->actions();
    ASSERT_EQ(scripted().modeCalls.size(), 1U);
    EXPECT_EQ(scripted().modeCalls[0].width, 1024);
    EXPECT_EQ(scripted().modeCalls[0].height, 768);
    EXPECT_NE(readFile("userdata/prefs.xml").find("<res_w>1024</res_w>\n\t<res_h>768</res_h>"),
              std::string::npos);
}

TEST_F(CompositeOptionsActions, ResolutionBoxes_DoNothing) {
    for (const auto& [x, y] : {std::pair{30, 60}, {130, 60}, {180, 60}, {280, 60}}) {
        click(x, y);
        EXPECT_EQ(all->appW, 720) << x;
        EXPECT_EQ(all->appH, 576) << x;
        EXPECT_EQ(_options->offset.x, 40) << x;
        EXPECT_EQ(_options->offset.y, 108) << x;
    }
    setKeys({1});
    keys->actions();
    EXPECT_EQ(all->state, STATE_HOME);
    for (const ModeCall& call : scripted().modeCalls) {
        EXPECT_EQ(call.width, 720);
        EXPECT_EQ(call.height, 576);
    }
    setKeys({});
    all->state = STATE_OPTIONS;
    click(350, 40);
    EXPECT_EQ(_options->topbar, 1) << "the other boxes answer";
}

TEST_F(OptionsActions, quirk_check_boxes_answer_over_their_labels) {
    const auto flips = [](int32_t& flag) {
        return [&flag](int x, int y) {
            const int32_t before = flag;
            click(x, y);
            return flag == 1 - before;
        };
    };
    expectArea(340, 460, 30, 50, flips(_options->topbar));
    expectArea(340, 460, 70, 90, flips(_options->fps));
    // The piece is drawn down to row 53 and 93.
    const int32_t topbar = _options->topbar;
    click(350, 53);
    EXPECT_EQ(_options->topbar, topbar);
}

TEST_F(OptionsActions, Flags_FlipThereAndBack) {
    click(350, 40);
    EXPECT_EQ(_options->topbar, 1);
    EXPECT_EQ(_options->fps, 0);
    click(350, 80);
    EXPECT_EQ(_options->fps, 1);
    click(350, 40);
    click(350, 80);
    EXPECT_EQ(_options->topbar, 0);
    EXPECT_EQ(_options->fps, 0);
}

TEST_F(OptionsActions, Palette_EveryChipIsTakenFromItsStep) {
    expectArea(7, 587, 140, 160, [](int x, int y) {
        _options->dragging = 0;
        click(x, y);
        return _options->dragging == 1;
    });
    for (int id = 0; id < 10; ++id) {
        click(7 + 60 * id, 150);
        EXPECT_EQ(_options->draggedFilter, id);
        if (id < 9) {
            click(66 + 60 * id, 150);  // the gap belongs to the chip before it
            EXPECT_EQ(_options->draggedFilter, id);
        }
    }
}

// The last chip is drawn from 547 to 602.
TEST_F(OptionsActions, quirk_last_chip_ends_early) {
    draw();
    EXPECT_EQ(pixelAt(screen[1], 320 + 602, 180 + 141), 0x4208);
    click(587, 150);
    EXPECT_EQ(_options->dragging, 1);
    EXPECT_EQ(_options->draggedFilter, FILTER_SNOW);
    dropAt(0, 0);
    click(588, 150);
    EXPECT_EQ(_options->dragging, 0);
}

TEST_F(OptionsActions, Drag_LastsUntilTheButtonIsUp) {
    click(130, 150);  // SCROLL
    EXPECT_EQ(_options->dragging, 1) << "in the frame of the click";
    holdAt(80, 220);
    EXPECT_EQ(_options->dragging, 1);
    EXPECT_EQ(_filters->slots[0][1].id, FILTER_NONE);
    dropAt(80, 220);
    EXPECT_EQ(_options->dragging, 0);
    EXPECT_EQ(_filters->slots[0][1].id, FILTER_SCROLL);
    EXPECT_EQ(_filters->slots[1][1].id, FILTER_SCROLL);
}

TEST_F(OptionsActions, SlotBoxes_TakeTheFilterOnBothLayers) {
    for (int k = 0; k < 9; ++k) {
        expectArea(10 + 60 * k, 54 + 60 * k, 200, 244,
                   [k](int x, int y) { return takenBy(x, y) == k; });
    }
}

TEST_F(OptionsActions, DropBetweenTwoSlotBoxes_ChangesNothing) {
    for (int k = 0; k < 9; ++k) {
        for (int x = 55 + 60 * k; x <= 69 + 60 * k; ++x) {
            EXPECT_EQ(takenBy(x, 220), -1) << x;
        }
    }
}

TEST_F(OptionsActions, Drop_KeepsDirectionSwitchAndCoefficient) {
    _filters->slots[1][3] = {FILTER_ZOOM, 2, 1, 77};
    _options->dragging = 1;
    _options->draggedFilter = FILTER_NONE;
    dropAt(200, 210);
    EXPECT_EQ(_filters->slots[1][3].id, FILTER_NONE);
    EXPECT_EQ(_filters->slots[1][3].dir, 2);
    EXPECT_EQ(_filters->slots[1][3].on, 1);
    EXPECT_EQ(_filters->slots[1][3].coef, 77);
}

TEST_F(OptionsActions, quirk_unmarked_drop_squares) {
    const int squares[][2] = {{368, 16}, {400, 48}, {368, 80}, {336, 48}};
    for (int slot = 0; slot < 4; ++slot) {
        const auto& [x, y] = squares[slot];
        EXPECT_EQ(takenBy(x + 1, y + 1), slot);
        EXPECT_EQ(takenBy(x + 31, y + 31), slot);
        for (const auto& [edgeX, edgeY] :
             {std::pair{x, y + 16}, {x + 32, y + 16}, {x + 16, y}, {x + 16, y + 32}}) {
            EXPECT_EQ(takenBy(edgeX, edgeY), slot) << edgeX << ", " << edgeY;
        }
    }
    // Outside the cross and in its middle.
    for (const auto& [x, y] : {std::pair{384, 64}, {335, 64}, {433, 64}, {384, 15}, {384, 113}}) {
        EXPECT_EQ(takenBy(x, y), -1) << x << ", " << y;
    }
    // The arms are not drawn: only ground beside the texts.
    draw();
    EXPECT_EQ(countPixels(screen[1], 320 + 368, 180 + 98, 33, 15, 0x2104), 33 * 15);
}

TEST_F(OptionsActions, DropAnywhereElse_ChangesNothing) {
    for (const auto& [x, y] :
         {std::pair{-50, -50}, {9, 220}, {539, 220}, {30, 199}, {30, 245}, {640, 360}, {30, 150}}) {
        EXPECT_EQ(takenBy(x, y), -1) << x << ", " << y;
    }
}

TEST_F(OptionsActions, ClickOnNothing_DoesNothing) {
    click(300, 300);
    EXPECT_EQ(all->state, STATE_OPTIONS);
    EXPECT_EQ(_options->page, 0);
    EXPECT_EQ(_options->dragging, 0);
    EXPECT_EQ(all->appW, 1280);
}

// From window events to the slot: press, move, release.
TEST_F(OptionsActions, EventsOfTheWindow_BindAFilter) {
    isExit = 1;
    const auto frame = [](std::deque<SDL_Event> events) {
        scripted().events = std::move(events);
        runFrame();
    };
    frame(
        {mouseMoved(320 + 190, 180 + 150), mouseButton(SDL_MOUSEBUTTONDOWN, 320 + 190, 180 + 150)});
    EXPECT_EQ(_options->draggedFilter, FILTER_INVERT);
    frame({mouseMoved(320 + 500, 180 + 230)});
    EXPECT_EQ(_options->dragging, 1);
    frame({mouseButton(SDL_MOUSEBUTTONUP, 320 + 500, 180 + 230)});
    EXPECT_EQ(_filters->slots[0][8].id, FILTER_INVERT);
    EXPECT_EQ(_filters->slots[1][8].id, FILTER_INVERT);
}

}  // namespace
