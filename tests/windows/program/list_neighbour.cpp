#include "tests/windows/program/list_neighbour.h"

#include <array>

#include "common/com/handles.h"
#include "common/text.h"
#include "controls/cool_list_box.h"
#include "tests/windows/program/window_test.h"
#include "ui/form.h"
#include "ui/screen.h"

namespace murmelix::test {

namespace {

class ListWindow : public ui::Form {
  public:
    ListWindow()
        : Form(nullptr, std::u16string(com::narrow(neighbour_caption, std::size(neighbour_caption) - 1)),
               ui::FormStyle::window) {
        setScale(3000, 3000);
        List.Move({0, 0, 3000, 3000});
        List.setItemHeight(40);
        List.SetPos(8, 4, 8, 20, 0, 0);
        List.setDragDropZone(1);
        List.P.setOLEDropMode(ui::DropMode::manual);
        List.AddItem(u"Caption", u"Zo\u00eb \u263a", u"key", false);
        List.P.OLEStartDrag = [this, start = List.P.OLEStartDrag](ui::DataObject& data, ui::DropEffect& allowed) {
            start(data, allowed);
            setCaption(allowed == ui::drop_none ? u"nothing to drag" : u"dragging");
        };
        List.DragDropCompleted = [this](ui::DropEffect effect, const CItem& item) {
            setCaption(u"completed: " + toText(effect) + u", " + item.Text);
        };
        List.DragDropAlert = [this](ui::DataObject& data, ui::DropEffect& effect, std::int16_t, std::int16_t, float,
                                    float) { setCaption(u"dropped: " + toText(effect) + u", " + data.Text()); };
    }
    void onClose() override { PostQuitMessage(0); }

    CoolListBox List{*this};
};

} // namespace

int serveListWindow(int left, int top) {
    const com::Apartment apartment;
    ListWindow window;
    window.Show();
    SetWindowPos(windowOf(window), HWND_TOPMOST, left, top, 0, 0, SWP_NOSIZE);
    ui::runMessageLoop();
    return 0;
}

namespace {

// What follows the mouse during a drag is no window of the other program's own.
bool dragHasTheMouse(HWND window) {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
    return info.hwndCapture && info.hwndCapture != window && !IsChild(window, info.hwndCapture);
}

} // namespace

bool pullRow(HWND window) {
    return serveUntil([window] {
        if (told(window) == u"dragging") {
            return dragHasTheMouse(window);
        }
        // A window that was just shown is not under the mouse at once: then the press is lost.
        mouse(MOUSEEVENTF_LEFTUP, onScreen(window, 50, 8));
        mouse(MOUSEEVENTF_LEFTDOWN, onScreen(window, 50, 8));
        mouse(0, onScreen(window, 50, 14));
        return false;
    });
}

std::u16string told(HWND window) {
    std::array<wchar_t, 256> text{};
    const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
    return std::u16string(com::narrow(text.data(), static_cast<std::size_t>(length)));
}

} // namespace murmelix::test
