// Rows dragged with the mouse within a program and between two, and data objects of all kinds dropped on a list.
#include <array>
#include <cstring>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

#include <windows.h>

#include <ole2.h>

#include "common/com/counted.h"
#include "common/com/server.h"
#include "common/text.h"
#include "controls/cool_list_box.h"
#include "tests/windows/program/list_neighbour.h"
#include "tests/windows/program/window_test.h"
#include "tests/windows/support/process.h"
#include "ui/form.h"
#include "ui/win32/drag_drop.h"

namespace murmelix {
namespace {

using namespace test;

using test::onScreen;
POINT onScreen(const CoolListBox& list, int x, int y) {
    return onScreen(windowOf(list.P), x, y);
}

class ListDragDrop : public testing::Test {
  protected:
    // One window for all tests: showing one takes long on a screen without a window manager.
    static void SetUpTestSuite() {
        form = std::make_unique<ui::Form>(nullptr, u"Lists", ui::FormStyle::window);
        form->setScale(6000, 3000);
        form->Show();
        SetWindowPos(windowOf(*form), HWND_TOPMOST, 10, 10, 0, 0, SWP_NOSIZE);
    }
    static void TearDownTestSuite() { form.reset(); }

    ListDragDrop() {
        from.Move({0, 0, 2900, 3000});
        to.Move({3100, 0, 2900, 3000});
        from.setItemHeight(30);
        from.AddItem(u"Ann", u"ann@x", u"1", false);
        from.AddItem(u"Zo\u00eb", u"zo\u00eb \u263a", u"2", false);
        from.setDragDropZone(1);
        to.P.setOLEDropMode(ui::DropMode::manual);
        from.DragDropCompleted = [this](ui::DropEffect effect, const CItem& item) {
            events += "completed:" + std::to_string(effect) + "," + toUtf8(item.Key) + " ";
        };
        to.DragDropAlert = [this](ui::DataObject& data, ui::DropEffect& effect, std::int16_t button, std::int16_t shift,
                                  float x, float y) {
            events += "alert:" + toUtf8(data.Text()) + "," + std::to_string(effect) + "," + std::to_string(button) +
                      "," + std::to_string(shift) + " ";
            dropped_at = {static_cast<int>(x), static_cast<int>(y)};
            if (answer) {
                effect = *answer;
            }
        };
        from.P.MouseMove = [this, move = from.P.MouseMove](int button, int shift, double x, double y) {
            move(button, shift, x, y);
            if (button == ui::left_button) {
                pulled_to = x;
            }
        };
        serveAll();
    }
    ~ListDragDrop() override {
        if (again_) {
            KillTimer(nullptr, again_);
        }
        mouse(MOUSEEVENTF_LEFTUP, {1, 1});
    }

    // What the user does once the drag has begun: nothing else is served meanwhile.
    void whenDragging(std::function<void()> go_on) {
        from.P.OLEStartDrag = [this, go_on = std::move(go_on), start = from.P.OLEStartDrag](ui::DataObject& data,
                                                                                            ui::DropEffect& allowed) {
            start(data, allowed);
            events += "start ";
            go_on();
        };
    }
    // Presses the second row and moves so far to the right.
    void pull(int pixels) {
        ASSERT_TRUE(hover(from.P, onScreen(from, 20, 45)));
        mouse(MOUSEEVENTF_LEFTDOWN, onScreen(from, 20, 45));
        mouse(0, onScreen(from, 20 + pixels, 45));
        ASSERT_TRUE(serveUntil([&] { return pulled_to == 20 + pixels; }));
    }
    // Another program can take the release of the button before the drag has the mouse: then it is let go again.
    void letGo(POINT place) {
        let_go_at_ = place;
        mouse(0, place);
        mouse(MOUSEEVENTF_LEFTUP, place);
        letGoAgain(1000);
    }
    // Over a window of another program: it is asked first whether it takes the text, and the release does not come into
    // the middle of that call.
    void letGoElsewhere(POINT place) {
        let_go_at_ = place;
        mouse(0, place);
        letGoAgain(400);
    }

    static inline std::unique_ptr<ui::Form> form;
    CoolListBox from{*form}, to{*form};
    std::string events;
    double pulled_to = 0;
    POINT dropped_at{};
    std::optional<ui::DropEffect> answer;

  private:
    // As often as it takes.
    void letGoAgain(unsigned period) {
        again_ =
            SetTimer(nullptr, 0, period, [](HWND, UINT, UINT_PTR, DWORD) { mouse(MOUSEEVENTF_LEFTUP, let_go_at_); });
    }

    static inline POINT let_go_at_{};
    UINT_PTR again_ = 0;
};

TEST_F(ListDragDrop, RowIsDraggedToAnotherListOfTheWindow) {
    whenDragging([this] { letGo(onScreen(to, 33, 77)); });
    pull(6);
    EXPECT_EQ(events, "start alert:zo\xC3\xAB \xE2\x98\xBA,2,1,0 completed:2,2 ");
    EXPECT_EQ(dropped_at.x, 33);
    EXPECT_EQ(dropped_at.y, 77);
    EXPECT_EQ(from.Selected(), 2);
    EXPECT_EQ(to.GetItemCount(), 0);
}

TEST_F(ListDragDrop, LessThanFiveUnitsAreNoDrag) {
    pull(4);
    mouse(MOUSEEVENTF_LEFTUP, onScreen(from, 24, 45));
    serveAll();
    EXPECT_EQ(events, "");
    EXPECT_EQ(from.Selected(), 2);
}

TEST_F(ListDragDrop, RowsStayWhereNothingMayBeDraggedOut) {
    from.setDragDropZone(0);
    whenDragging([] {});
    pull(4);
    letGo(onScreen(to, 33, 77));
    serveAll();
    EXPECT_EQ(events, "");
}

TEST_F(ListDragDrop, EscapeEndsTheDragAndItDoesNotBeginAgain) {
    whenDragging([this] {
        mouse(0, onScreen(to, 33, 77));
        keyboard(VK_ESCAPE, true);
        keyboard(VK_ESCAPE, false);
    });
    pull(6);
    EXPECT_EQ(events, "start completed:0,2 ");
    mouse(0, onScreen(from, 60, 45)); // the button is still held
    mouse(MOUSEEVENTF_LEFTUP, onScreen(from, 60, 45));
    serveAll();
    EXPECT_EQ(events, "start completed:0,2 ");
}

TEST_F(ListDragDrop, OtherButtonEndsTheDrag) {
    whenDragging([this] {
        mouse(0, onScreen(to, 33, 77));
        mouse(MOUSEEVENTF_RIGHTDOWN, onScreen(to, 33, 77));
        mouse(MOUSEEVENTF_RIGHTUP, onScreen(to, 33, 77));
    });
    pull(6);
    EXPECT_EQ(events, "start completed:0,2 ");
}

TEST_F(ListDragDrop, RowLetGoBesideTheListsIsNotMoved) {
    whenDragging([this] { letGo(onScreen(windowOf(*form), 198, 100)); });
    pull(6);
    EXPECT_EQ(events, "start completed:0,2 ");
}

TEST_F(ListDragDrop, ListThatTakesNoDropsGetsNone) {
    to.P.setOLEDropMode(ui::DropMode::none);
    whenDragging([this] { letGo(onScreen(to, 33, 77)); });
    pull(6);
    EXPECT_EQ(events, "start completed:0,2 ");
}

TEST_F(ListDragDrop, DisabledListTakesNoDrops) {
    to.setEnabledIt(false);
    whenDragging([this] { letGo(onScreen(to, 33, 77)); });
    pull(6);
    EXPECT_EQ(events, "start completed:0,2 ");
}

TEST_F(ListDragDrop, ListThatNobodyListensToTakesNothing) {
    to.DragDropAlert = nullptr;
    whenDragging([this] { letGo(onScreen(to, 33, 77)); });
    pull(6);
    EXPECT_EQ(events, "start completed:0,2 ");
}

TEST_F(ListDragDrop, OwnerOfTheListMayRefuseTheDrop) {
    answer = ui::drop_none;
    whenDragging([this] { letGo(onScreen(to, 33, 77)); });
    pull(6);
    EXPECT_EQ(events, "start alert:zo\xC3\xAB \xE2\x98\xBA,2,1,0 completed:0,2 ");
}

TEST_F(ListDragDrop, MoveIsTheOnlyEffectAllowed) {
    answer = ui::drop_copy;
    whenDragging([this] {
        keyboard(VK_CONTROL, true);
        letGo(onScreen(to, 33, 77));
        keyboard(VK_CONTROL, false);
    });
    pull(6);
    EXPECT_EQ(events, "start alert:zo\xC3\xAB \xE2\x98\xBA,2,1,2 completed:0,2 ");
}

TEST_F(ListDragDrop, RowMayBeDroppedOnItsOwnList) {
    from.P.setOLEDropMode(ui::DropMode::manual);
    from.DragDropAlert = to.DragDropAlert;
    whenDragging([this] { letGo(onScreen(from, 50, 100)); });
    pull(6);
    EXPECT_EQ(events, "start alert:zo\xC3\xAB \xE2\x98\xBA,2,1,0 completed:2,2 ");
    EXPECT_EQ(from.GetItemCount(), 2);
}

TEST_F(ListDragDrop, DraggedRowMayBeRemovedAtTheEnd) {
    std::u16string moved;
    from.DragDropCompleted = [&](ui::DropEffect, const CItem& item) {
        from.RemoveItem(item.Key);
        moved = item.Text;
    };
    whenDragging([this] { letGo(onScreen(to, 33, 77)); });
    pull(6);
    EXPECT_EQ(from.GetItemCount(), 1);
    EXPECT_EQ(moved, u"zo\u00eb \u263a");
}

TEST_F(ListDragDrop, RowsThatVanishDuringTheDragEndItQuietly) {
    whenDragging([this] {
        from.ClearList();
        letGo(onScreen(to, 33, 77));
    });
    pull(6);
    EXPECT_EQ(events, "start alert:zo\xC3\xAB \xE2\x98\xBA,2,1,0 ");
}

TEST_F(ListDragDrop, HandlerThatFailsHarmsNobody) {
    to.DragDropAlert = [](auto&&...) { throw std::runtime_error("an owner that fails"); };
    whenDragging([this] { letGo(onScreen(to, 33, 77)); });
    pull(6);
    EXPECT_EQ(events, "start completed:0,2 ");
}

// Text goes out as any program understands it.

FORMATETC asked(CLIPFORMAT format) {
    return {format, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
}

com::Ptr<IDataObject> offeredText(const std::u16string& text) {
    ui::DataObject data;
    data.SetText(text);
    return ui::win32::offered(data);
}

std::string bytesOf(IDataObject& data, CLIPFORMAT format) {
    FORMATETC wanted = asked(format);
    STGMEDIUM medium{};
    EXPECT_EQ(data.GetData(&wanted, &medium), S_OK);
    if (!medium.hGlobal) {
        return {};
    }
    const std::string bytes(static_cast<const char*>(GlobalLock(medium.hGlobal)), GlobalSize(medium.hGlobal));
    GlobalUnlock(medium.hGlobal);
    ReleaseStgMedium(&medium);
    return bytes;
}

TEST(OfferedText, IsUnicodeAndAnsiWithANul) {
    const auto data = offeredText(u"ab");
    EXPECT_EQ(bytesOf(*data.get(), CF_UNICODETEXT), std::string("a\0b\0\0\0", 6));
    EXPECT_EQ(bytesOf(*data.get(), CF_TEXT), std::string("ab\0", 3));
    EXPECT_EQ(bytesOf(*offeredText(u"").get(), CF_TEXT), std::string("\0", 1));
}

TEST(OfferedText, ListsItsTwoFormats) {
    const auto data = offeredText(u"ab");
    com::Ptr<IEnumFORMATETC> formats;
    ASSERT_EQ(data->EnumFormatEtc(DATADIR_GET, formats.out()), S_OK);
    std::array<FORMATETC, 3> all{};
    ULONG count = 0;
    EXPECT_EQ(formats->Next(3, all.data(), &count), S_FALSE);
    ASSERT_EQ(count, 2U);
    EXPECT_EQ(all[0].cfFormat, CF_UNICODETEXT);
    EXPECT_EQ(all[1].cfFormat, CF_TEXT);
    EXPECT_EQ(data->EnumFormatEtc(DATADIR_SET, formats.out()), E_NOTIMPL);
}

TEST(OfferedText, RefusesWhatItDoesNotHave) {
    const auto data = offeredText(u"ab");
    FORMATETC picture = asked(CF_BITMAP), file = asked(CF_TEXT), icon = asked(CF_TEXT);
    file.tymed = TYMED_FILE;
    icon.dwAspect = DVASPECT_ICON;
    STGMEDIUM medium{};
    EXPECT_EQ(data->GetData(&picture, &medium), DV_E_FORMATETC);
    EXPECT_EQ(data->GetData(&file, &medium), DV_E_TYMED);
    EXPECT_EQ(data->GetData(&icon, &medium), DV_E_DVASPECT);
    EXPECT_EQ(medium.hGlobal, nullptr);
    EXPECT_EQ(data->GetData(nullptr, &medium), E_INVALIDARG);
    EXPECT_EQ(data->GetData(&picture, nullptr), E_INVALIDARG);
    EXPECT_EQ(data->QueryGetData(nullptr), E_INVALIDARG);
    EXPECT_EQ(data->EnumFormatEtc(DATADIR_GET, nullptr), E_INVALIDARG);
    EXPECT_EQ(data->GetDataHere(&file, &medium), DV_E_TYMED);
    EXPECT_EQ(data->SetData(&file, &medium, FALSE), E_NOTIMPL);
}

TEST(OfferedText, CountsItsReferences) {
    const auto data = offeredText(u"ab");
    EXPECT_TRUE(data.as<IUnknown>(IID_IUnknown));
    EXPECT_FALSE(data.as<IUnknown>(IID_IDropTarget));
    data->AddRef();
    EXPECT_EQ(data->Release(), 1U);
}

// A data object of another program, of the worst kind: gives what a test put in it.
class Foreign final : public com::Counted<IDataObject> {
  public:
    CLIPFORMAT format = CF_TEXT;
    std::string bytes;
    DWORD medium_type = TYMED_HGLOBAL;
    bool offers = true;
    HRESULT answer = S_OK;

    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* wanted, STGMEDIUM* medium) override {
        if (wanted->cfFormat != format) {
            return DV_E_FORMATETC;
        }
        medium->tymed = medium_type;
        if (medium_type == TYMED_HGLOBAL && answer == S_OK) {
            medium->hGlobal = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
            if (void* to = GlobalLock(medium->hGlobal)) {
                std::memcpy(to, bytes.data(), bytes.size());
                GlobalUnlock(medium->hGlobal);
            }
        }
        return answer;
    }
    HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* wanted) override {
        return offers && wanted->cfFormat == format ? S_OK : DV_E_FORMATETC;
    }
    HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC*, FORMATETC*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD, IEnumFORMATETC**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA**) override { return E_NOTIMPL; }

  private:
    bool answers(REFIID iid) const override { return IsEqualIID(iid, IID_IDataObject); }
};

class ForeignDrop : public testing::Test {
  protected:
    ForeignDrop() {
        form.setScale(3000, 3000);
        list.Move({0, 0, 3000, 3000});
        list.P.setOLEDropMode(ui::DropMode::manual);
        list.DragDropAlert = [this](ui::DataObject& data, ui::DropEffect&, std::int16_t, std::int16_t, float, float) {
            ++alerts;
            text = data.Text();
        };
        target = ui::win32::dropTarget(list.P);
    }
    // From entering to letting go; the effect that the source hears of.
    DWORD drop(DWORD allowed = DROPEFFECT_COPY | DROPEFFECT_MOVE) {
        const POINT place = onScreen(list, 5, 5);
        DWORD effect = allowed;
        EXPECT_EQ(target->DragEnter(foreign.get(), MK_LBUTTON, {place.x, place.y}, &effect), S_OK);
        effect = allowed;
        EXPECT_EQ(target->DragOver(MK_LBUTTON, {place.x, place.y}, &effect), S_OK);
        effect = allowed;
        EXPECT_EQ(target->Drop(foreign.get(), 0, {place.x, place.y}, &effect), S_OK);
        return effect;
    }

    ui::Form form{nullptr, u"Lists", ui::FormStyle::window};
    CoolListBox list{form};
    com::Ptr<Foreign> foreign = com::make<Foreign>();
    com::Ptr<IDropTarget> target;
    int alerts = 0;
    std::u16string text = u"none yet";
};

TEST_F(ForeignDrop, AnsiTextIsTaken) {
    foreign->bytes = std::string("ann@x\0 and more", 15);
    EXPECT_EQ(drop(), DWORD{DROPEFFECT_MOVE});
    EXPECT_EQ(text, u"ann@x");
}

TEST_F(ForeignDrop, CopyIsTakenWhereNothingElseIsAllowed) {
    foreign->bytes = "ann@x";
    EXPECT_EQ(drop(DROPEFFECT_COPY), DWORD{DROPEFFECT_COPY});
    EXPECT_EQ(alerts, 1);
    EXPECT_EQ(drop(DROPEFFECT_LINK), DWORD{DROPEFFECT_NONE});
    EXPECT_EQ(alerts, 1);
}

TEST_F(ForeignDrop, TextWithoutNulEndsWithItsMemory) {
    foreign->bytes = std::string(4096, 'x');
    drop();
    EXPECT_TRUE(text.starts_with(u"xxx"));
    EXPECT_GE(text.size(), 4096U);
    foreign->format = CF_UNICODETEXT;
    foreign->bytes = "a"; // not even one unit
    drop();
    EXPECT_LE(text.size(), 8U) << "no more than the memory that was given";
    EXPECT_EQ(alerts, 2);
}

TEST_F(ForeignDrop, EmptyMemoryIsEmptyText) {
    EXPECT_EQ(drop(), DWORD{DROPEFFECT_MOVE});
    EXPECT_EQ(alerts, 1);
    EXPECT_EQ(text, u"");
}

TEST_F(ForeignDrop, HugeTextIsTakenWhole) {
    foreign->bytes.assign(std::size_t{32} << 20, 'x');
    foreign->bytes.back() = '\0';
    drop();
    EXPECT_EQ(text.size(), (std::size_t{32} << 20) - 1);
}

TEST_F(ForeignDrop, DataWithoutTextIsRefused) {
    foreign->format = CF_BITMAP;
    EXPECT_EQ(drop(), DWORD{DROPEFFECT_NONE});
    EXPECT_EQ(alerts, 0);
}

TEST_F(ForeignDrop, TextThatIsOfferedButNotGivenIsEmpty) {
    foreign->answer = E_FAIL;
    EXPECT_EQ(drop(), DWORD{DROPEFFECT_MOVE});
    EXPECT_EQ(alerts, 1);
    EXPECT_EQ(text, u"");
}

TEST_F(ForeignDrop, MediumOfAnotherKindIsEmptyText) {
    foreign->medium_type = TYMED_NULL;
    drop();
    EXPECT_EQ(text, u"");
    foreign->medium_type = TYMED_ISTREAM; // and no stream
    drop();
    EXPECT_EQ(text, u"");
}

TEST_F(ForeignDrop, CallsWithoutArgumentsAreRefused) {
    DWORD effect = DROPEFFECT_MOVE;
    EXPECT_EQ(target->DragEnter(nullptr, 0, {0, 0}, &effect), S_OK);
    EXPECT_EQ(effect, DWORD{DROPEFFECT_NONE});
    EXPECT_EQ(target->DragOver(0, {0, 0}, nullptr), E_INVALIDARG);
    EXPECT_EQ(target->Drop(nullptr, 0, {0, 0}, &effect), E_INVALIDARG);
    EXPECT_EQ(target->DragLeave(), S_OK);
    EXPECT_EQ(alerts, 0);
}

TEST_F(ForeignDrop, DropWithoutEnteringBringsNothing) {
    foreign->bytes = "ann@x";
    DWORD effect = DROPEFFECT_MOVE;
    EXPECT_EQ(target->Drop(foreign.get(), 0, {0, 0}, &effect), S_OK);
    EXPECT_EQ(effect, DWORD{DROPEFFECT_NONE});
    EXPECT_EQ(alerts, 0);
}

TEST_F(ForeignDrop, TargetOutlivesItsListUnharmed) {
    foreign->bytes = "ann@x";
    list.P.setOLEDropMode(ui::DropMode::none);
    EXPECT_FALSE(ui::win32::dropTarget(list.P));
    EXPECT_EQ(drop(), DWORD{DROPEFFECT_NONE});
    list.P.setOLEDropMode(ui::DropMode::manual);
    target = ui::win32::dropTarget(list.P);
    EXPECT_EQ(drop(), DWORD{DROPEFFECT_MOVE});
}

TEST_F(ForeignDrop, ListMayStopTakingDropsInTheMiddleOfOne) {
    foreign->bytes = "ann@x";
    list.DragDropAlert = [this](auto&&...) { list.P.setOLEDropMode(ui::DropMode::none); };
    target.reset();
    target = ui::win32::dropTarget(list.P);
    EXPECT_EQ(drop(), DWORD{DROPEFFECT_MOVE});
    EXPECT_FALSE(ui::win32::dropTarget(list.P));
}

// Another process with a list.
class TwoPrograms : public ListDragDrop {
  protected:
    static std::u16string command() {
        std::array<wchar_t, MAX_PATH> program{};
        const DWORD length = GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
        std::u16string line = u"\"";
        line += com::narrow(program.data(), length);
        return line + u"\" " + fromUtf8(neighbour_switch) + u" 600 10";
    }
    void SetUp() override {
        ASSERT_TRUE(serveUntil([this] {
            window = FindWindowW(nullptr, neighbour_caption);
            RECT area{};
            return window && GetWindowRect(window, &area) && area.left == 600 && area.top == 10;
        }));
    }

    Process neighbour{command()};
    HWND window = nullptr;
};

TEST_F(TwoPrograms, RowIsDraggedToTheOther) {
    whenDragging([this] { letGoElsewhere(onScreen(window, 50, 100)); });
    pull(6);
    EXPECT_EQ(events, "start completed:2,2 ");
    EXPECT_EQ(told(window), u"dropped: 2, zo\u00eb \u263a");
}

TEST_F(TwoPrograms, RowIsDraggedFromTheOther) {
    ASSERT_TRUE(pullRow(window));
    letGo(onScreen(to, 33, 77));
    EXPECT_TRUE(serveUntil([this] { return told(window) != u"dragging"; }));
    EXPECT_EQ(told(window), u"completed: 2, Zo\u00eb \u263a");
    EXPECT_EQ(events, "alert:Zo\xC3\xAB \xE2\x98\xBA,2,1,0 ");
    EXPECT_EQ(dropped_at.x, 33);
    EXPECT_EQ(dropped_at.y, 77);
}

} // namespace
} // namespace murmelix
