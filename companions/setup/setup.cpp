#include "companions/setup/setup.h"

#include <cwchar>
#include <memory>
#include <type_traits>

#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include "common/com/handles.h"
#include "common/text.h"

namespace setup {

using murmelix::com::narrow;
using murmelix::com::wide;

namespace {

void writeLine(const std::u16string& line) {
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    if (!output || output == INVALID_HANDLE_VALUE) {
        return; // a program with windows has an output only where its starter gave it one
    }
    const std::string bytes = murmelix::toUtf8(line) + "\r\n";
    DWORD written = 0;
    WriteFile(output, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

std::u16string marked(const Result& result) {
    switch (result.outcome) {
    case Outcome::done:
        return result.text;
    case Outcome::kept:
        return u"Left alone: " + result.text;
    case Outcome::failed:
        return u"Failed: " + result.text;
    }
    return result.text;
}

std::u16string lastLine(const Plan& plan, bool failed) {
    return failed ? u"Not everything could be done. The lines marked \"Failed\" say what and why." : plan.success;
}

Result carryOutStep(const Step& step) {
    try {
        return step.carryOut();
    } catch (const std::exception& error) {
        return {Outcome::failed, step.what + u": " + murmelix::fromUtf8(error.what())};
    }
}

constexpr UINT next_step_message = WM_APP;
constexpr int done_button_id = IDOK;

// Pixels for a length at 96 dots per inch.
int px(int length) {
    static const int dpi = [] {
        const HDC screen = GetDC(nullptr);
        const int value = GetDeviceCaps(screen, LOGPIXELSY);
        ReleaseDC(nullptr, screen);
        return value;
    }();
    return MulDiv(length, dpi, 96);
}

const int width = px(560), height = px(380), margin = px(14), line_height = px(20);
const int button_width = px(96), button_height = px(28);

struct DeleteFont {
    void operator()(HFONT font) const { DeleteObject(font); }
};
using Font = std::unique_ptr<std::remove_pointer_t<HFONT>, DeleteFont>;

Font messageFont() {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    return Font(CreateFontIndirectW(&metrics.lfMessageFont));
}

// The window: what is about to happen, a progress bar, what has happened line by line, and the button that closes it.
class Window {
  public:
    explicit Window(const Plan& plan) : plan_(plan) {}

    int run() {
        const INITCOMMONCONTROLSEX controls{sizeof(INITCOMMONCONTROLSEX), ICC_PROGRESS_CLASS};
        InitCommonControlsEx(&controls);
        WNDCLASSEXW window_class{};
        window_class.cbSize = sizeof(window_class);
        window_class.lpfnWndProc = procedure;
        window_class.hInstance = GetModuleHandleW(nullptr);
        window_class.hIcon = LoadIconW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(1));
        window_class.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)); // the arrow
        window_class.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
        window_class.lpszClassName = L"MurmelixSetup";
        RegisterClassExW(&window_class);
        const DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;
        RECT bounds{0, 0, width, height};
        AdjustWindowRect(&bounds, style, FALSE);
        window_ = CreateWindowExW(0, window_class.lpszClassName, wide(plan_.title), style, CW_USEDEFAULT, CW_USEDEFAULT,
                                  bounds.right - bounds.left, bounds.bottom - bounds.top, nullptr, nullptr,
                                  window_class.hInstance, this);
        if (!window_) {
            return exit_failed;
        }
        ShowWindow(window_, SW_SHOWNORMAL);
        PostMessageW(window_, next_step_message, 0, 0);
        MSG message;
        while (GetMessageW(&message, nullptr, 0, 0) > 0) {
            if (IsDialogMessageW(window_, &message)) {
                continue;
            }
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        return failed_ ? exit_failed : exit_ready;
    }

  private:
    HWND addControl(const wchar_t* kind, const wchar_t* caption, DWORD style, RECT bounds, int id, DWORD extended = 0) {
        const HWND control =
            CreateWindowExW(extended, kind, caption, WS_CHILD | WS_VISIBLE | style, bounds.left, bounds.top,
                            bounds.right - bounds.left, bounds.bottom - bounds.top, window_,
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), TRUE);
        return control;
    }

    void addControls() {
        const LONG right = width - margin;
        LONG top = margin;
        addControl(L"STATIC", wide(plan_.introduction), SS_LEFT | SS_NOPREFIX,
                   {margin, top, right, top + 2 * line_height}, 10);
        top += 2 * line_height + px(8);
        current_ = addControl(L"STATIC", L"", SS_LEFT | SS_NOPREFIX | SS_PATHELLIPSIS,
                              {margin, top, right, top + line_height}, 11);
        top += line_height;
        progress_ = addControl(PROGRESS_CLASSW, L"", 0, {margin, top, right, top + px(16)}, 12);
        SendMessageW(progress_, PBM_SETRANGE32, 0, static_cast<LPARAM>(plan_.steps.size()));
        top += px(16 + 10);
        const LONG button_top = height - margin - button_height;
        lines_ = addControl(L"EDIT", L"", ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | WS_VSCROLL | WS_TABSTOP,
                            {margin, top, right, button_top - px(10)}, 13, WS_EX_CLIENTEDGE);
        done_ = addControl(L"BUTTON", L"&Done", BS_DEFPUSHBUTTON | WS_TABSTOP | WS_DISABLED,
                           {right - button_width, button_top, right, button_top + button_height}, done_button_id);
    }

    void addLine(const std::u16string& line) {
        const int end = GetWindowTextLengthW(lines_);
        SendMessageW(lines_, EM_SETSEL, static_cast<WPARAM>(end), end);
        SendMessageW(lines_, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(wide(line + u"\r\n")));
        writeLine(line);
    }

    void showCurrent() {
        SetWindowTextW(current_, next_ < plan_.steps.size() ? wide(plan_.steps[next_].what) : L"");
        SendMessageW(progress_, PBM_SETPOS, next_, 0);
        UpdateWindow(window_);
    }

    void carryOutNext() {
        showCurrent();
        if (next_ < plan_.steps.size()) {
            // A step may run the message loop: the next is posted only after it.
            const Result result = carryOutStep(plan_.steps[next_]);
            failed_ = failed_ || result.outcome == Outcome::failed;
            addLine(marked(result));
            ++next_;
            PostMessageW(window_, next_step_message, 0, 0);
            return;
        }
        addLine(lastLine(plan_, failed_));
        finished_ = true;
        EnableWindow(done_, TRUE);
        SetFocus(done_);
    }

    LRESULT handle(UINT message, WPARAM wparam, LPARAM lparam) {
        switch (message) {
        case WM_CREATE:
            addControls();
            return 0;
        case next_step_message:
            carryOutNext();
            return 0;
        case WM_COMMAND:
            if ((LOWORD(wparam) == done_button_id || LOWORD(wparam) == IDCANCEL) && finished_) {
                DestroyWindow(window_);
            }
            return 0;
        case WM_CLOSE:
            if (finished_) { // half a setup helps nobody: it takes a moment only
                DestroyWindow(window_);
            }
            return 0;
        case WM_DESTROY:
            PostQuitMessage(0);
            return 0;
        default:
            return DefWindowProcW(window_, message, wparam, lparam);
        }
    }

    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
        if (message == WM_NCCREATE) {
            auto* self = static_cast<Window*>(reinterpret_cast<CREATESTRUCTW*>(lparam)->lpCreateParams);
            self->window_ = window;
            SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
        }
        auto* self = reinterpret_cast<Window*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        return self ? self->handle(message, wparam, lparam) : DefWindowProcW(window, message, wparam, lparam);
    }

    const Plan& plan_;
    const Font font_ = messageFont();
    HWND window_ = nullptr, current_ = nullptr, progress_ = nullptr, lines_ = nullptr, done_ = nullptr;
    std::size_t next_ = 0;
    bool failed_ = false;
    bool finished_ = false;
};

} // namespace

CommandLine readCommandLine() {
    CommandLine result;
    int count = 0;
    LPWSTR* arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int i = 1; arguments && i < count; ++i) {
        const std::u16string argument(narrow(arguments[i], wcslen(arguments[i])));
        const auto is = [&](const char16_t* name) {
            return murmelix::sameText(argument, name, murmelix::LetterCase::ignored);
        };
        if (is(u"/quiet")) {
            result.quiet = true;
        } else if (is(u"/uninstall")) {
            result.uninstall = true;
        } else if (result.unknown.empty()) {
            result.unknown = argument.empty() ? u"\"\"" : argument;
        }
    }
    LocalFree(arguments);
    return result;
}

int carryOut(const Plan& plan, const CommandLine& command_line) {
    if (!command_line.quiet) {
        return Window(plan).run();
    }
    bool failed = false;
    for (const Step& step : plan.steps) {
        const Result result = carryOutStep(step);
        failed = failed || result.outcome == Outcome::failed;
        writeLine(marked(result));
    }
    writeLine(lastLine(plan, failed));
    return failed ? exit_failed : exit_ready;
}

int refuse(const std::u16string& title, const CommandLine& command_line) {
    const std::u16string text =
        u"\"" + command_line.unknown + u"\" is not understood. The switches are /quiet and /uninstall.";
    writeLine(text);
    if (!command_line.quiet) {
        MessageBoxW(nullptr, wide(text), wide(title), MB_OK | MB_ICONERROR);
    }
    return exit_usage;
}

} // namespace setup
