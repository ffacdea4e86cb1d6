// Input made by the program itself: it enters where the display's own input does.

#include <Injection.h>

#include <cstring>

#include "server/screen/Displays.h"
#include "server/screen/KeyTable.h"
#include "server/screen/ScreenWindow.h"
#include "server/screen/Stage.h"
#include "support/UTF8Characters.h"

using namespace server;

// Runs `action` on the window whose content or decoration holds a place.
template <class Action>
static void on_window(float x, float y, Action action)
{
    StageLock lock;
    ScreenWindow* window = stage().FrameAt(BPoint(x, y));
    if (window != nullptr)
        action(*window);
}

static void press_and_release(int32 key) REQUIRES(gStageLock)
{
    stage().ChangeKey(key, true);
    stage().ChangeKey(key, false);
}

extern "C" {

void inject_pointer(float x, float y)
{
    StageLock lock;
    stage().MovePointer(BPoint(x, y));
}

void inject_button(int32_t button, bool down)
{
    StageLock lock;
    stage().ChangeButton(button, down);
}

void inject_key(int32_t key, bool down)
{
    StageLock lock;
    stage().ChangeKey(key, down);
}

void inject_text(const char* text)
{
    const int32 kShift = 0x4b;
    if (text == nullptr)
        return;
    StageLock lock;
    while (*text != '\0') {
        int32 key;
        bool shift;
        if (!KeyForCharacter(*text, &key, &shift)) {
            const std::string character(text, BPrivate::utf8_piece_length(text));
            stage().TypeCharacter(character.c_str());
            text += character.size();
            continue;
        }
        text++;
        // Caps Lock stands for Shift on a letter.
        if (KeyIsLetter(key) && (stage().Keys().Modifiers() & B_CAPS_LOCK) != 0)
            shift = !shift;
        shift = shift && !stage().Keys().IsDown(kShift);
        if (shift)
            stage().ChangeKey(kShift, true);
        press_and_release(key);
        if (shift)
            stage().ChangeKey(kShift, false);
    }
}

void inject_composition(const char* text, int32_t caret, const char* committed)
{
    Composition composing;
    composing.text = text != nullptr ? text : "";
    composing.selectionStart = composing.selectionEnd = caret;
    composing.clauses = {0, int32(composing.text.size())};
    StageLock lock;
    stage().Compose(std::move(composing), committed != nullptr ? committed : "");
}

bool inject_composition_place(float place[4])
{
    StageLock lock;
    const ScreenWindow* window = stage().Active();
    if (window == nullptr || !window->CompositionPlace().IsValid())
        return false;
    const BRect rect = window->CompositionPlace().OffsetByCopy(window->Frame().LeftTop());
    place[0] = rect.left;
    place[1] = rect.top;
    place[2] = rect.right;
    place[3] = rect.bottom;
    return true;
}

void inject_wheel(float dx, float dy)
{
    StageLock lock;
    stage().TurnWheel(dx, dy);
}

void inject_file_drop(float x, float y, const char* const* paths, int32_t count)
{
    Event event;
    event.kind = EventKind::FilesDropped;
    for (int32_t i = 0; paths != nullptr && i < count; i++) {
        if (paths[i] != nullptr)
            event.paths.emplace_back(paths[i]);
    }
    if (event.paths.empty())
        return;
    StageLock lock;
    stage().Drop(BPoint(x, y), event);
}

void inject_window_close(float x, float y)
{
    on_window(x, y, [](ScreenWindow& window) REQUIRES(gStageLock) { window.CloseByUser(); });
}

void inject_window_move(float x, float y, float left, float top)
{
    on_window(x, y, [=](ScreenWindow& window) REQUIRES(gStageLock) {
        window.MoveByUser(BPoint(left, top));
    });
}

void inject_window_resize(float x, float y, float width, float height)
{
    on_window(x, y, [=](ScreenWindow& window) REQUIRES(gStageLock) {
        window.ResizeByUser(width, height);
    });
}

void inject_window_minimize(float x, float y, bool minimize)
{
    StageLock lock;
    ScreenWindow* window = minimize ? stage().FrameAt(BPoint(x, y)) : stage().IconAt(BPoint(x, y));
    if (window != nullptr)
        window->MinimizeByUser(minimize);
}

void inject_window_zoom(float x, float y)
{
    on_window(x, y, [](ScreenWindow& window) REQUIRES(gStageLock) { window.ZoomByUser(); });
}

void inject_window_activate(float x, float y)
{
    on_window(x, y, [](ScreenWindow& window) REQUIRES(gStageLock) { window.ActivateByUser(); });
}

void inject_display_scale(float scale) { SetScreenScale(scale); }

int32_t inject_save_screen(const char* png_path) { return SaveScreen(png_path); }

}  // extern "C"
