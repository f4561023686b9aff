#include "ui/rich_text_box.h"

#include <algorithm>
#include <cmath>

#include "ui/win32/window.h"

#include <commdlg.h>
#include <richedit.h>

#include "common/com/handles.h"
#include "ui/screen.h"

namespace murmelix::ui {

using com::wide;
using namespace win32;

namespace {

// By its whole path: a library of this name beside the program, or in the current directory, is not the system's.
void loadRichEdit() {
    static const HMODULE library = [] {
        wchar_t path[MAX_PATH + 16];
        const UINT length = GetSystemDirectoryW(path, MAX_PATH);
        if (length == 0 || length >= MAX_PATH) {
            return HMODULE{};
        }
        lstrcpyW(path + length, L"\\riched20.dll");
        return LoadLibraryW(path);
    }();
    if (!library) {
        throw com::Error(HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND), u"The Windows component riched20.dll is missing.");
    }
}

// NUL cannot be in a window's text; it is shown as the sign for it.
std::u16string shown(std::u16string_view text) {
    std::u16string visible(text);
    std::replace(visible.begin(), visible.end(), u'\0', u'\x2400');
    return visible;
}

constexpr wchar_t wide_class[] = L"RichEdit20W", ansi_class[] = L"RichEdit20A", ink_class[] = L"InkEdit";

// The class of the tablet's ink edit box is there on few machines: where it is not, a rich edit box gets its name.
const wchar_t* inkEditClass() {
    static const bool there = [] {
        loadRichEdit();
        WNDCLASSEXW described{};
        described.cbSize = sizeof described;
        if (!GetClassInfoExW(nullptr, wide_class, &described)) {
            return false;
        }
        described.lpszClassName = ink_class;
        described.hInstance = GetModuleHandleW(nullptr);
        described.style &= ~static_cast<UINT>(CS_GLOBALCLASS);
        return RegisterClassExW(&described) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
    }();
    return there ? ink_class : wide_class;
}

class RichWindow : public ControlWindow {
  public:
    RichWindow(Control& box, const wchar_t* window_class, DWORD style, HWND parent, const std::u16string& text)
        : ControlWindow(
              box, {(loadRichEdit(), window_class), style | WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_AUTOVSCROLL},
              parent, text) {
        SendMessageW(hwnd(), EM_EXLIMITTEXT, 0, 0x7FFFFFFE);
    }

    Size room() const override { return {scaled(12), scaled(7)}; }

    void onCommand(UINT code) override {
        if (code == EN_SETFOCUS) {
            control().onFocus();
        } else if (code == EN_KILLFOCUS) {
            control().onFocusLost();
        }
    }
};

class RichEdit : public RichWindow {
  public:
    RichEdit(Control& box, HWND parent, const std::u16string& text, const wchar_t* window_class = wide_class)
        : RichWindow(box, window_class, 0, parent, text) {
        // What other programs put in is never taken for formatted text.
        SendMessageW(hwnd(), EM_SETTEXTMODE, TM_PLAINTEXT, 0);
    }

    bool keeps(const Shortcut& key) const override { return key.key != Key::tab && key.key != Key::escape; }
};

class AnsiRichEdit final : public RichEdit {
  public:
    AnsiRichEdit(Control& box, HWND parent, const std::u16string& text) : RichEdit(box, parent, text, ansi_class) {}
};

class InkEdit final : public RichEdit {
  public:
    InkEdit(Control& box, HWND parent, const std::u16string& text) : RichEdit(box, parent, text, inkEditClass()) {}
};

class RichView : public RichWindow {
  public:
    RichView(Control& box, HWND parent, const std::u16string& text, const wchar_t* window_class = wide_class)
        : RichWindow(box, window_class, ES_READONLY | ES_NOHIDESEL, parent, text) {
        SendMessageW(hwnd(), EM_SETUNDOLIMIT, 0, 0);
        SendMessageW(hwnd(), EM_SETEVENTMASK, 0, SendMessageW(hwnd(), EM_GETEVENTMASK, 0, 0) | ENM_LINK);
    }

    void onNotify(const NMHDR& notice) override {
        if (notice.code != EN_LINK) {
            return;
        }
        const auto& link = reinterpret_cast<const ENLINK&>(notice);
        if (link.msg == WM_LBUTTONUP && selection().cpMin == selection().cpMax) {
            if (const auto& clicked = dynamic_cast<RichTextBox&>(control()).LinkClick) {
                clicked(textOfRange(link.chrg));
            }
        }
    }

    bool keeps(const Shortcut& key) const override {
        return key.key != Key::tab && key.key != Key::enter && key.key != Key::escape;
    }

    // What is there can be read in whatever colours the user has now; which of it was grey is not known any more.
    void restyle() override {
        const View view = look();
        RichWindow::restyle();
        if (const COLORREF ground = GetSysColor(COLOR_WINDOW); std::exchange(ground_, ground) != ground) {
            CHARFORMAT2W format{};
            format.cbSize = sizeof format;
            format.dwMask = CFM_COLOR;
            format.dwEffects = CFE_AUTOCOLOR;
            SendMessageW(hwnd(), EM_SETCHARFORMAT, SCF_ALL, reinterpret_cast<LPARAM>(&format));
        }
        show(view);
    }

    // Of another width it has other lines: the end stays in sight, or else what stood first.
    void move(const Rect& pixels) override {
        const View view = look();
        RichWindow::move(pixels);
        show(view);
    }

    void beginUpdate() {
        if (updates_++ == 0) {
            view_ = look();
            SendMessageW(hwnd(), WM_SETREDRAW, FALSE, 0);
        }
    }

    void endUpdate() {
        if (--updates_ > 0) {
            return;
        }
        select(view_.selection);
        if (!view_.follows) {
            show(view_);
        }
        SendMessageW(hwnd(), WM_SETREDRAW, TRUE, 0);
        if (view_.follows) {
            showEnd();
        }
        RedrawWindow(hwnd(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME);
    }

    void append(std::u16string_view text, const RichTextBox::Looks& looks) {
        select({0x7FFFFFFE, 0x7FFFFFFE});
        const CHARFORMAT2W format = formatOf(looks);
        const auto insert = [&](std::u16string_view part) {
            SendMessageW(hwnd(), EM_SETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
            SendMessageW(hwnd(), EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(wide(shown(part))));
        };
        // The line end first: the lines after it take over its indentation.
        if (text.starts_with(u"\r\n")) {
            insert(u"\r\n");
            text.remove_prefix(2);
            PARAFORMAT2 paragraph{};
            paragraph.cbSize = sizeof paragraph;
            paragraph.dwMask = PFM_STARTINDENT | PFM_SPACEBEFORE;
            paragraph.dxStartIndent = looks.indent;
            paragraph.dySpaceBefore = looks.space_before;
            SendMessageW(hwnd(), EM_SETPARAFORMAT, 0, reinterpret_cast<LPARAM>(&paragraph));
        }
        insert(text);
    }

    LONG length() const {
        GETTEXTLENGTHEX what{GTL_NUMCHARS | GTL_PRECISE, 1200}; // UTF-16; without GTL_USECRLF a line end is one
        return static_cast<LONG>(SendMessageW(hwnd(), EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&what), 0));
    }

    void remove(LONG from, LONG count) {
        const LONG end = std::min(from + count, length());
        if (from < 0 || end <= from) {
            return;
        }
        select({from, end});
        // Wine's control, where it keeps nothing to be undone, forgets to free the end of each line that goes.
        SendMessageW(hwnd(), EM_SETUNDOLIMIT, 1, 0);
        SendMessageW(hwnd(), EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(L""));
        SendMessageW(hwnd(), EM_EMPTYUNDOBUFFER, 0, 0);
        SendMessageW(hwnd(), EM_SETUNDOLIMIT, 0, 0);
        for (LONG* place : {&view_.first, &view_.selection.cpMin, &view_.selection.cpMax}) {
            *place = *place >= end ? *place - (end - from) : std::min(*place, from);
        }
    }

    void setLooks(LONG from, LONG count, const RichTextBox::Looks& looks) {
        select({from, from + count});
        const CHARFORMAT2W format = formatOf(looks);
        SendMessageW(hwnd(), EM_SETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
    }

    bool find(const std::u16string& text, bool back) {
        const CHARRANGE selected = selection();
        const auto found = [&](LONG from, LONG to) {
            FINDTEXTEXW what{{from, to}, wide(text), {}};
            if (SendMessageW(hwnd(), EM_FINDTEXTEXW, back ? 0 : FR_DOWN, reinterpret_cast<LPARAM>(&what)) < 0) {
                return false;
            }
            select(what.chrgText);
            SendMessageW(hwnd(), EM_SCROLLCARET, 0, 0);
            return true;
        };
        return back ? found(selected.cpMin, 0) || found(length(), 0) : found(selected.cpMax, -1) || found(0, -1);
    }

    void showEnd() { SendMessageW(hwnd(), WM_VSCROLL, SB_BOTTOM, 0); }

  private:
    // What the user sees and has selected.
    struct View {
        bool follows = true; // the end, which is in sight
        CHARRANGE selection{};
        LONG first = 0; // the character that begins the first line in sight
        LONG top = 0;   // where it stands; pixels
    };

    View look() const {
        const auto first = static_cast<LONG>(SendMessageW(hwnd(), EM_LINEINDEX, static_cast<WPARAM>(firstLine()), 0));
        return {atEnd(), selection(), first, placeOf(first).y};
    }

    void show(const View& view) {
        if (view.follows) {
            return showEnd();
        }
        POINT scrolled{};
        SendMessageW(hwnd(), EM_GETSCROLLPOS, 0, reinterpret_cast<LPARAM>(&scrolled));
        scrolled.y += placeOf(view.first).y - view.top;
        SendMessageW(hwnd(), EM_SETSCROLLPOS, 0, reinterpret_cast<LPARAM>(&scrolled));
    }

    static CHARFORMAT2W formatOf(const RichTextBox::Looks& looks) {
        CHARFORMAT2W format{};
        format.cbSize = sizeof format;
        format.dwMask = CFM_COLOR | CFM_BOLD | CFM_LINK | CFM_UNDERLINE;
        format.dwEffects = (looks.bold ? CFE_BOLD : 0u) | (looks.link ? CFE_LINK | CFE_UNDERLINE : 0u);
        format.crTextColor = toColorRef(looks.colour);
        return format;
    }

    CHARRANGE selection() const {
        CHARRANGE selected{};
        SendMessageW(hwnd(), EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selected));
        return selected;
    }

    void select(CHARRANGE range) { SendMessageW(hwnd(), EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range)); }

    std::u16string textOfRange(CHARRANGE range) const {
        std::u16string text(static_cast<std::size_t>(std::max<LONG>(range.cpMax - range.cpMin, 0)) + 1, u'\0');
        TEXTRANGEW what{range, reinterpret_cast<wchar_t*>(text.data())};
        text.resize(
            static_cast<std::size_t>(SendMessageW(hwnd(), EM_GETTEXTRANGE, 0, reinterpret_cast<LPARAM>(&what))));
        return text;
    }

    LRESULT firstLine() const { return SendMessageW(hwnd(), EM_GETFIRSTVISIBLELINE, 0, 0); }

    POINTL placeOf(LRESULT character) const {
        POINTL place{};
        SendMessageW(hwnd(), EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&place), character);
        return place;
    }

    bool atEnd() const {
        SCROLLINFO info{};
        info.cbSize = sizeof info;
        info.fMask = SIF_ALL;
        if (!GetScrollInfo(hwnd(), SB_VERT, &info) || info.nMax <= 0) {
            return true;
        }
        return info.nPos + static_cast<int>(info.nPage) >= info.nMax - scaled(24);
    }

    COLORREF ground_ = GetSysColor(COLOR_WINDOW);
    int updates_ = 0;
    View view_; // as it was before the updates
};

class AnsiRichView final : public RichView {
  public:
    AnsiRichView(Control& box, HWND parent, const std::u16string& text) : RichView(box, parent, text, ansi_class) {}
};

} // namespace

native::Handle native::createRichEdit(Control& box, Handle parent, const std::u16string& text) {
    return make<RichEdit>(box, parent, text);
}

native::Handle native::createAnsiRichEdit(Control& box, Handle parent, const std::u16string& text) {
    return make<AnsiRichEdit>(box, parent, text);
}

native::Handle native::createInkEdit(Control& box, Handle parent, const std::u16string& text) {
    return make<InkEdit>(box, parent, text);
}

native::Handle native::createAnsiRichView(Control& box, Handle parent, const std::u16string& text) {
    return make<AnsiRichView>(box, parent, text);
}

native::Handle native::createRichView(Control& box, Handle parent, const std::u16string& text) {
    return make<RichView>(box, parent, text);
}

std::u16string native::richText(Handle box) {
    return textOf(windowOf(box));
}

void native::replaceSelection(Handle box, const std::u16string& text) {
    SendMessageW(windowOf(box), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(wide(text)));
}

void native::appendRich(Handle box, std::u16string_view text, const RichTextBox::Looks& looks) {
    at<RichView>(box).append(text, looks);
}

int native::richLength(Handle box) {
    return at<RichView>(box).length();
}

void native::removeRich(Handle box, int from, int length) {
    at<RichView>(box).remove(from, length);
}

void native::setRichLooks(Handle box, int from, int length, const RichTextBox::Looks& looks) {
    at<RichView>(box).setLooks(from, length, looks);
}

bool native::findRich(Handle box, const std::u16string& text, bool back) {
    return at<RichView>(box).find(text, back);
}

void native::showRichEnd(Handle box) {
    at<RichView>(box).showEnd();
}

void native::beginUpdate(Handle box) {
    at<RichView>(box).beginUpdate();
}

void native::endUpdate(Handle box) {
    at<RichView>(box).endUpdate();
}

} // namespace murmelix::ui
