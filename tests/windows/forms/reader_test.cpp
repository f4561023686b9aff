// What a screen reader is told: every window is walked through as one does it, and what is in lists is used by it.
#include <algorithm>
#include <atomic>
#include <functional>
#include <thread>

#include <gmock/gmock.h>

#include "common/text.h"
#include "controls/cool_list_box.h"
#include "tests/forms/form_check.h"
#include "tests/forms/gallery.h"
#include "tests/windows/program/window_test.h"
#include "tests/windows/support/reader.h"
#include "ui/button.h"
#include "ui/combo_box.h"
#include "ui/label.h"
#include "ui/list_box.h"
#include "ui/tab_pages.h"
#include "ui/text_box.h"

namespace murmelix {
namespace {

using namespace test;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

bool isTold(const ui::Control& control) {
    return control.inSight() && IsWindowVisible(windowOf(control));
}

// What a reader finds wrong in a window that is shown.
std::vector<std::string> readerMistakes(ui::Form& form) {
    std::vector<std::string> mistakes;
    const std::vector<Told> all = readAll(windowOf(form));
    std::vector<const ui::Control*> controls{&form};
    for (const ui::Control* control : controlsOf(form)) {
        if (isTold(*control)) {
            controls.push_back(control);
        }
    }
    // In the order in which they were made, what is in a control after it.
    std::size_t at = 0;
    for (const ui::Control* control : controls) {
        while (at < all.size() && (all[at].child != CHILDID_SELF || all[at].role == ROLE_SYSTEM_TEXT) &&
               all[at].name != control->AccessibleName()) {
            ++at; // a row, or the field of a combo box
        }
        if (at == all.size()) {
            mistakes.push_back("not told of: " + describe(*control));
            break;
        }
        const Told& told = all[at++];
        RECT place{};
        GetWindowRect(windowOf(*control), &place);
        if (told.name != control->AccessibleName() || told.role <= 0) {
            mistakes.push_back("told \"" + written(told) + "\" of " + describe(*control));
        } else if (!EqualRect(&told.place, &place)) {
            mistakes.push_back("another place is told of " + describe(*control));
        } else if (((told.state & STATE_SYSTEM_FOCUSABLE) != 0) != (control->takesFocus() && control->reachable())) {
            mistakes.push_back("told the contrary of whether it takes the keyboard: " + describe(*control));
        } else if (told.state & STATE_SYSTEM_INVISIBLE) {
            mistakes.push_back("told to be invisible: " + describe(*control));
        }
        if (ui::AccessibleParts* parts = const_cast<ui::Control*>(control)->parts()) {
            for (int part = 0; part < parts->partCount(); ++part, ++at) {
                if (at >= all.size() || all[at].child != part + 1 || all[at].name.empty() ||
                    all[at].name != parts->partName(part)) {
                    mistakes.push_back("a row is not told of: " + describe(*control));
                    break;
                }
            }
        }
    }
    return mistakes;
}

class Reader : public testing::Test {
  protected:
    const com::Apartment apartment;
};

TEST_F(Reader, IsToldOfEveryControlOfEveryWindow) {
    std::size_t windows = 0, told = 0;
    visitAll([&](ui::Form& form, const std::string& name) {
        EXPECT_THAT(readerMistakes(form), IsEmpty()) << name << "\n" << written(readAll(windowOf(form)));
        ++windows;
        told += readAll(windowOf(form)).size();
    });
    std::printf("%zu windows, %zu things told\n", windows, told);
    EXPECT_GE(windows, 30u);
}

// One of each kind that is more than a caption.
struct Window : ui::Form {
    Window() : Form(nullptr, u"Kinds", ui::FormStyle::dialog) {
        int top = 0;
        for (ui::Control* control : std::initializer_list<ui::Control*>{&NameLbl, &NameTxt, &BoxLbl, &Box, &RowsLbl,
                                                                        &Rows, &ItemsLbl, &Items, &Pages, &Ok}) {
            const int height = control == &Rows || control == &Items ? 1500 : control == &Pages ? 900 : 375;
            control->Move({100, top, 4000, height});
            top += height + 60;
        }
        setScale(4200, top);
        Rows.setItems({u"one", u"two", u"three"});
        Rows.DblClick = [this] { done += "open " + std::to_string(Rows.ListIndex()) + "; "; };
        Rows.Click = [this] { done += "select " + std::to_string(Rows.ListIndex()) + "; "; };
        Items.setItemHeight(20);
        Items.AddItem(u"Anna", u"anna@x", u"a", true);
        Items.AddItem(u"Bert", u"", u"b", false);
        Items.DblClick = [this] { done += "use " + toUtf8(Items.GetSelectedKey()) + "; "; };
        Ok.Click = [this] { done += "ok; "; };
        NameTxt.setMasked();
        NameTxt.setText(u"secret");
        Box.setItems({u"first", u"second"});
        Box.setText(u"first");
        DefaultButton = &Ok;
        Show();
        SetForegroundWindow(windowOf(*this));
        serveAll();
    }
    std::string done;
    ui::Label NameLbl{*this, u"&Password:"};
    ui::TextBox NameTxt{*this, u""};
    ui::Label BoxLbl{*this, u"&Choice:"};
    ui::ComboBox Box{*this};
    ui::Label RowsLbl{*this, u"&Rows:"};
    ui::ListBox Rows{*this};
    ui::Label ItemsLbl{*this, u"&Items:"};
    CoolListBox Items{*this};
    ui::TabPages Pages{*this};
    ui::TabPage FirstPage{Pages, u"First"}, SecondPage{Pages, u"Second"};
    ui::Button Ok{*this, u"&Ok"};
};

class ReaderOfKinds : public Reader {
  protected:
    static Told told(const ui::Control& control, long child = CHILDID_SELF) {
        return ask(accessibleOf(windowOf(control)), child);
    }
    static HRESULT act(const ui::Control& control, long child = CHILDID_SELF) {
        const HRESULT result = accessibleOf(windowOf(control))->accDoDefaultAction(childId(child));
        serveAll();
        return result;
    }
    static long selection(const ui::Control& control) {
        com::Variant selected;
        accessibleOf(windowOf(control))->get_accSelection(selected.out());
        return numberOf(selected.raw());
    }

    Window window;
};

TEST_F(ReaderOfKinds, HearsNoPassword) {
    const Told field = told(window.NameTxt);
    EXPECT_EQ(field.name, u"Password");
    EXPECT_EQ(field.role, ROLE_SYSTEM_TEXT);
    EXPECT_EQ(field.value, u"");
    EXPECT_EQ(field.shortcut, u"Alt+P");
    EXPECT_TRUE(field.state & STATE_SYSTEM_PROTECTED);
}

TEST_F(ReaderOfKinds, HearsTheFieldOfAComboBoxByTheNameOfTheBox) {
    EXPECT_EQ(told(window.Box).value, u"first");
    const Told field = ask(accessibleOf(GetWindow(windowOf(window.Box), GW_CHILD)));
    EXPECT_EQ(field.name, u"Choice");
    EXPECT_EQ(field.role, ROLE_SYSTEM_TEXT);
    EXPECT_EQ(field.value, u"first");
}

TEST_F(ReaderOfKinds, PressesButtons) {
    const Told button = told(window.Ok);
    EXPECT_EQ(button.role, ROLE_SYSTEM_PUSHBUTTON);
    EXPECT_EQ(button.action, u"Press");
    EXPECT_TRUE(button.state & STATE_SYSTEM_DEFAULT);
    EXPECT_EQ(act(window.Ok), S_OK);
    EXPECT_EQ(window.done, "ok; ");
    window.Ok.setEnabled(false);
    EXPECT_EQ(act(window.Ok), S_FALSE);
    EXPECT_EQ(window.done, "ok; ") << "what is disabled does nothing";
    EXPECT_TRUE(told(window.Ok).state & STATE_SYSTEM_UNAVAILABLE);
    EXPECT_EQ(act(window.RowsLbl), DISP_E_MEMBERNOTFOUND);
}

TEST_F(ReaderOfKinds, SelectsAndOpensRows) {
    EXPECT_EQ(told(window.Rows).role, ROLE_SYSTEM_LIST);
    EXPECT_EQ(told(window.Rows, 2).name, u"two");
    EXPECT_EQ(told(window.Rows, 2).role, ROLE_SYSTEM_LISTITEM);
    EXPECT_EQ(selection(window.Rows), -1);
    const auto list = accessibleOf(windowOf(window.Rows));
    EXPECT_EQ(list->accSelect(SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION, childId(2)), S_OK);
    serveAll();
    EXPECT_EQ(selection(window.Rows), 2);
    EXPECT_EQ(window.done, "select 1; ");
    EXPECT_EQ(window.focused(), &window.Rows);
    EXPECT_TRUE(told(window.Rows, 2).state & STATE_SYSTEM_SELECTED);
    EXPECT_TRUE(told(window.Rows, 2).state & STATE_SYSTEM_FOCUSED);
    EXPECT_FALSE(told(window.Rows, 1).state & STATE_SYSTEM_SELECTED);
    com::Variant focus;
    EXPECT_EQ(list->get_accFocus(focus.out()), S_OK);
    EXPECT_EQ(numberOf(focus.raw()), 2);
    EXPECT_EQ(told(window.Rows, 3).action, u"Double Click");
    EXPECT_EQ(act(window.Rows, 3), S_OK);
    EXPECT_EQ(window.done, "select 1; select 2; open 2; ");
    EXPECT_EQ(list->accSelect(SELFLAG_TAKESELECTION, childId(4)), E_INVALIDARG) << "there is no such row";
    EXPECT_EQ(list->accSelect(SELFLAG_ADDSELECTION, childId(1)), E_INVALIDARG) << "one is selected at a time";
    EXPECT_EQ(act(window.Rows, 4), E_INVALIDARG);
}

TEST_F(ReaderOfKinds, HearsBothLinesOfTheListsOwnRows) {
    EXPECT_EQ(told(window.Items.P).role, ROLE_SYSTEM_LIST);
    EXPECT_EQ(told(window.Items.P).name, u"Items");
    EXPECT_EQ(told(window.Items.P, 1).name, u"Anna, anna@x");
    EXPECT_EQ(told(window.Items.P, 2).name, u"Bert");
    EXPECT_EQ(selection(window.Items.P), 1);
    EXPECT_EQ(act(window.Items.P, 2), S_OK);
    EXPECT_EQ(selection(window.Items.P), 2);
    EXPECT_EQ(window.done, "use b; ");
    window.Items.ClearList();
    EXPECT_EQ(selection(window.Items.P), -1);
    long count = -1;
    EXPECT_EQ(accessibleOf(windowOf(window.Items.P))->get_accChildCount(&count), S_OK);
    EXPECT_EQ(count, 0);
}

TEST_F(ReaderOfKinds, FindsRowsByTheirPlace) {
    const auto list = accessibleOf(windowOf(window.Items.P));
    const RECT second = told(window.Items.P, 2).place;
    EXPECT_EQ(second.bottom - second.top, 20);
    com::Variant hit;
    EXPECT_EQ(list->accHitTest(second.left + 5, second.top + 5, hit.out()), S_OK);
    EXPECT_EQ(numberOf(hit.raw()), 2);
    EXPECT_EQ(list->accHitTest(second.left + 5, second.bottom + 25, hit.out()), S_OK);
    EXPECT_EQ(numberOf(hit.raw()), CHILDID_SELF) << "below the last row";
    EXPECT_EQ(list->accHitTest(0, 0, hit.out()), S_FALSE);
    // From the window down, as what is under the mouse is found.
    const auto form = accessibleOf(windowOf(window));
    EXPECT_EQ(form->accHitTest(second.left + 5, second.top + 5, hit.out()), S_OK);
    EXPECT_EQ(hit.type(), VT_DISPATCH);
}

TEST_F(ReaderOfKinds, GoesFromRowToRowAndFromControlToControl) {
    const auto list = accessibleOf(windowOf(window.Rows));
    const auto goes = [&](long from, long way) {
        com::Variant to;
        list->accNavigate(way, childId(from), to.out());
        return numberOf(to.raw());
    };
    EXPECT_EQ(goes(CHILDID_SELF, NAVDIR_FIRSTCHILD), 1);
    EXPECT_EQ(goes(CHILDID_SELF, NAVDIR_LASTCHILD), 3);
    EXPECT_EQ(goes(1, NAVDIR_NEXT), 2);
    EXPECT_EQ(goes(3, NAVDIR_NEXT), -1);
    EXPECT_EQ(goes(2, NAVDIR_UP), 1);
    EXPECT_EQ(goes(1, NAVDIR_PREVIOUS), -1);
    com::Variant next;
    EXPECT_EQ(accessibleOf(windowOf(window.RowsLbl))->accNavigate(NAVDIR_NEXT, childId(CHILDID_SELF), next.out()),
              S_OK);
    ASSERT_EQ(next.type(), VT_DISPATCH);
    EXPECT_EQ(ask(next.toObject().as<IAccessible>(__uuidof(IAccessible))).role, ROLE_SYSTEM_LIST);
    IDispatch* parent = nullptr;
    ASSERT_EQ(list->get_accParent(&parent), S_OK);
    EXPECT_EQ(ask(com::Ptr<IDispatch>::adopt(parent).as<IAccessible>(__uuidof(IAccessible))).name, u"Kinds");
}

TEST_F(ReaderOfKinds, SwitchesPages) {
    EXPECT_EQ(told(window.Pages).role, ROLE_SYSTEM_PAGETABLIST);
    EXPECT_EQ(told(window.Pages, 2).role, ROLE_SYSTEM_PAGETAB);
    EXPECT_EQ(told(window.Pages, 2).name, u"Second");
    EXPECT_EQ(selection(window.Pages), 1);
    EXPECT_EQ(act(window.Pages, 2), S_OK);
    EXPECT_EQ(window.Pages.Selected(), 1);
    EXPECT_EQ(told(window.SecondPage).role, ROLE_SYSTEM_PROPERTYPAGE);
}

TEST_F(ReaderOfKinds, HearsThatAControlIsGone) {
    auto more = std::make_unique<ui::Button>(window, u"More");
    const auto object = accessibleOf(windowOf(*more));
    EXPECT_EQ(ask(object).name, u"More");
    more.reset();
    com::Bstr name;
    EXPECT_EQ(object->get_accName(childId(CHILDID_SELF), name.out()), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(object->accDoDefaultAction(childId(CHILDID_SELF)), CO_E_OBJNOTCONNECTED);
}

TEST_F(ReaderOfKinds, WrongQuestionsAreRefused) {
    const auto list = accessibleOf(windowOf(window.Rows));
    com::Bstr name;
    VARIANT text = childId(1);
    text.vt = VT_BSTR;
    text.bstrVal = nullptr;
    EXPECT_EQ(list->get_accName(text, name.out()), E_INVALIDARG);
    EXPECT_EQ(list->get_accName(childId(-1), name.out()), E_INVALIDARG);
    EXPECT_EQ(list->get_accName(childId(0x7FFFFFFF), name.out()), E_INVALIDARG);
    EXPECT_EQ(list->get_accName(childId(1), nullptr), E_POINTER);
    EXPECT_EQ(list->accLocation(nullptr, nullptr, nullptr, nullptr, childId(0)), E_POINTER);
    com::Variant end;
    EXPECT_EQ(list->accNavigate(99, childId(1), end.out()), E_INVALIDARG);
}

// Another program calls by way of the thread's messages; so does another thread.
TEST_F(ReaderOfKinds, IsAnsweredElsewhere) {
    std::string read;
    HWND hwnd = windowOf(window);
    std::atomic<bool> over = false;
    std::thread reader([&] {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        read = written(readAll(hwnd));
        CoUninitialize();
        over = true;
    });
    EXPECT_TRUE(serveUntil([&] { return over.load(); }));
    reader.join();
    EXPECT_EQ(read, written(readAll(hwnd)));
    EXPECT_THAT(read, testing::HasSubstr("Anna, anna@x"));
}

// What is told by itself. Hooks are called with the messages of their thread.
class Hook {
  public:
    explicit Hook(std::vector<std::string>& heard) {
        heard_ = &heard;
        hook_ = SetWinEventHook(EVENT_MIN, EVENT_MAX, nullptr, &Hook::hear, GetCurrentProcessId(), 0,
                                WINEVENT_OUTOFCONTEXT);
    }
    ~Hook() { UnhookWinEvent(hook_); }

  private:
    static void CALLBACK hear(HWINEVENTHOOK, DWORD event, HWND hwnd, LONG object, LONG child, DWORD, DWORD) {
        const char* what = event == EVENT_OBJECT_FOCUS         ? "focus"
                           : event == EVENT_OBJECT_SELECTION   ? "selection"
                           : event == EVENT_OBJECT_REORDER     ? "parts"
                           : event == EVENT_OBJECT_NAMECHANGE  ? "name"
                           : event == EVENT_OBJECT_VALUECHANGE ? "value"
                           : event == 0x8019                   ? "news"
                                                               : nullptr;
        if (what && object == OBJID_CLIENT) {
            heard_->push_back(std::string(what) + " " + toUtf8(ask(accessibleOf(hwnd), child).name));
        }
    }
    static inline std::vector<std::string>* heard_;
    HWINEVENTHOOK hook_;
};

TEST_F(ReaderOfKinds, HearsWhatHappensInLists) {
    std::vector<std::string> heard;
    const Hook hook(heard);
    window.Items.P.SetFocus();
    serveAll();
    EXPECT_THAT(heard, Contains("focus Anna, anna@x"));
    heard.clear();
    window.Items.SelectKey(u"b", true);
    serveAll();
    EXPECT_THAT(heard, ElementsAre("selection Bert", "focus Bert"));
    heard.clear();
    window.Items.EditItemText(u"b", u"away");
    window.Items.AddItem(u"Cy", u"", u"c", false);
    window.Items.RemoveItem(u"c");
    serveAll();
    EXPECT_THAT(heard, ElementsAre("name Bert, away", "parts Items", "parts Items"));
    heard.clear();
    window.Rows.InsertItem(3, u"four");
    window.Rows.setItem(0, u"zero");
    serveAll();
    EXPECT_THAT(heard, Contains("parts Rows"));
    EXPECT_THAT(heard, Contains("name zero"));
    heard.clear();
    window.RowsLbl.setTellsNews();
    window.RowsLbl.setCaption(u"&Lines:");
    serveAll();
    EXPECT_THAT(heard, Contains("news Lines"));
}

} // namespace
} // namespace murmelix
