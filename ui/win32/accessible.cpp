#include "ui/win32/accessible.h"

#include <algorithm>
#include <utility>

#include <oleacc.h>

#include "common/com/counted.h"
#include "common/com/handles.h"
#include "ui/screen.h"

namespace murmelix::ui::win32 {

namespace {

using com::Ptr;

constexpr HRESULT gone = static_cast<HRESULT>(0x800401FD); // CO_E_OBJNOTCONNECTED

RECT placeOf(HWND hwnd) {
    RECT place{};
    GetWindowRect(hwnd, &place);
    return place;
}

bool has(const RECT& place, LONG x, LONG y) {
    return PtInRect(&place, {x, y});
}

Ptr<IDispatch> objectOf(HWND hwnd, DWORD id = static_cast<DWORD>(OBJID_CLIENT)) {
    void* found = nullptr;
    if (FAILED(AccessibleObjectFromWindow(hwnd, id, IID_IDispatch, &found))) {
        return {};
    }
    return Ptr<IDispatch>::adopt(static_cast<IDispatch*>(found));
}

HRESULT giveNumber(VARIANT* to, long number) {
    to->vt = VT_I4;
    to->lVal = number;
    return S_OK;
}

HRESULT giveObject(VARIANT* to, HWND hwnd) {
    Ptr<IDispatch> object = objectOf(hwnd);
    if (!object) {
        return S_FALSE;
    }
    to->vt = VT_DISPATCH;
    to->pdispVal = object.detach();
    return S_OK;
}

HRESULT giveText(BSTR* to, const std::u16string& text) {
    if (text.empty()) {
        return S_FALSE;
    }
    *to = com::Bstr(text).detach();
    return S_OK;
}

// One window as a reader has it. A child is the window itself (0), one of its parts, or one of the windows in it, which
// are counted after the parts and have an object of their own.
class AccessibleObject final : public com::Counted<IAccessible> {
  public:
    explicit AccessibleObject(const std::shared_ptr<AccessibleSource>& source) : source_(source) {}

    HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override {
        return answer(parent, [&](AccessibleSource& source) {
            HWND around = GetAncestor(source.hwnd(), GA_PARENT);
            const bool is_top = GetAncestor(source.hwnd(), GA_ROOT) == source.hwnd();
            *parent = (is_top ? objectOf(source.hwnd(), static_cast<DWORD>(OBJID_WINDOW)) : objectOf(around)).detach();
            return *parent ? S_OK : S_FALSE;
        });
    }

    HRESULT STDMETHODCALLTYPE get_accChildCount(long* count) override {
        return answer(count, [&](AccessibleSource& source) {
            *count = partCount(source) + static_cast<long>(source.children().size());
            return S_OK;
        });
    }

    HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) override {
        return answer(object, [&](AccessibleSource& source) {
            const std::vector<HWND> windows = source.children();
            const long parts = partCount(source);
            if (child.vt != VT_I4 || child.lVal < 0 || child.lVal > parts + static_cast<long>(windows.size())) {
                return E_INVALIDARG;
            }
            if (child.lVal <= parts) {
                return S_FALSE; // it is told of by this object
            }
            *object = objectOf(windows[static_cast<std::size_t>(child.lVal - parts - 1)]).detach();
            return *object ? S_OK : S_FALSE;
        });
    }

    HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override {
        return of(child, name, [&](AccessibleSource& source, int part) {
            return giveText(name, part == no_part ? source.name() : source.parts()->partName(part));
        });
    }

    HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) override {
        return of(child, value, [&](AccessibleSource& source, int part) {
            return part == no_part ? giveText(value, source.value()) : S_FALSE;
        });
    }

    HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT child, BSTR* description) override {
        return of(child, description, [&](AccessibleSource& source, int part) {
            return part == no_part ? giveText(description, source.description()) : S_FALSE;
        });
    }

    HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override {
        return of(child, role, [&](AccessibleSource& source, int part) {
            return giveNumber(role, part == no_part                           ? source.role()
                                    : source.parts()->partRole() == Role::tab ? ROLE_SYSTEM_PAGETAB
                                                                              : ROLE_SYSTEM_LISTITEM);
        });
    }

    HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override {
        return of(child, state, [&](AccessibleSource& source, int part) {
            return giveNumber(state, part == no_part ? source.state() : partState(source, part));
        });
    }

    HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT, BSTR*) override { return DISP_E_MEMBERNOTFOUND; }
    HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR*, VARIANT, long*) override { return DISP_E_MEMBERNOTFOUND; }

    HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT child, BSTR* shortcut) override {
        return of(child, shortcut, [&](AccessibleSource& source, int part) {
            return part == no_part ? giveText(shortcut, source.shortcut()) : S_FALSE;
        });
    }

    HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* child) override {
        return answer(child, [&](AccessibleSource& source) {
            HWND focus = GetFocus();
            if (focus == source.hwnd()) {
                const int selected = source.parts() ? source.parts()->selectedPart() : no_part;
                return giveNumber(child, isPart(source, selected) ? selected + 1 : CHILDID_SELF);
            }
            for (HWND window : source.children()) {
                if (focus && (focus == window || IsChild(window, focus))) {
                    return giveObject(child, window);
                }
            }
            return S_FALSE;
        });
    }

    HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* children) override {
        return answer(children, [&](AccessibleSource& source) {
            const int selected = source.parts() ? source.parts()->selectedPart() : no_part;
            return isPart(source, selected) ? giveNumber(children, selected + 1) : S_FALSE;
        });
    }

    HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* action) override {
        return of(child, action, [&](AccessibleSource& source, int part) {
            return giveText(action, part == no_part ? source.action() : source.parts()->partAction());
        });
    }

    HRESULT STDMETHODCALLTYPE accSelect(long flags, VARIANT child) override {
        return of(child, [&](AccessibleSource& source, int part) {
            constexpr long known = SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION;
            if (flags == 0 || (flags & ~known) || ((flags & SELFLAG_TAKESELECTION) && part == no_part)) {
                return E_INVALIDARG;
            }
            if (!usable(source)) {
                return S_FALSE;
            }
            later([part, flags](AccessibleSource& then) {
                if (flags & SELFLAG_TAKEFOCUS) {
                    SetFocus(then.hwnd());
                }
                if (isPart(then, part)) {
                    then.parts()->selectPart(part);
                }
            });
            return S_OK;
        });
    }

    HRESULT STDMETHODCALLTYPE accLocation(long* left, long* top, long* width, long* height, VARIANT child) override {
        if (!left || !top || !width || !height) {
            return E_POINTER;
        }
        *left = *top = *width = *height = 0;
        return of(child, [&](AccessibleSource& source, int part) {
            const RECT place = part == no_part ? placeOf(source.hwnd()) : partPlace(source, part);
            *left = place.left;
            *top = place.top;
            *width = place.right - place.left;
            *height = place.bottom - place.top;
            return S_OK;
        });
    }

    HRESULT STDMETHODCALLTYPE accNavigate(long direction, VARIANT start, VARIANT* end) override {
        return of(start, end, [&](AccessibleSource& source, int part) {
            const long parts = partCount(source), all = parts + static_cast<long>(source.children().size());
            switch (direction) {
            case NAVDIR_FIRSTCHILD:
            case NAVDIR_LASTCHILD:
                return part == no_part ? giveChild(source, direction == NAVDIR_FIRSTCHILD ? 1 : all, end) : S_FALSE;
            case NAVDIR_NEXT:
            case NAVDIR_DOWN:
            case NAVDIR_RIGHT:
                return part == no_part ? giveSibling(source, 1, end) : giveChild(source, part + 2, end);
            case NAVDIR_PREVIOUS:
            case NAVDIR_UP:
            case NAVDIR_LEFT:
                return part == no_part ? giveSibling(source, -1, end) : giveChild(source, part, end);
            default:
                return E_INVALIDARG;
            }
        });
    }

    HRESULT STDMETHODCALLTYPE accHitTest(long x, long y, VARIANT* child) override {
        return answer(child, [&](AccessibleSource& source) {
            if (!has(placeOf(source.hwnd()), x, y)) {
                return S_FALSE;
            }
            for (HWND window : source.children()) {
                if (has(placeOf(window), x, y)) {
                    return giveObject(child, window);
                }
            }
            for (int part = 0; part < partCount(source); ++part) {
                if (has(partPlace(source, part), x, y)) {
                    return giveNumber(child, part + 1);
                }
            }
            return giveNumber(child, CHILDID_SELF);
        });
    }

    // What it does can open a window that waits for the user: the reader does not wait for that.
    HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT child) override {
        return of(child, [&](AccessibleSource& source, int part) {
            if (part == no_part && source.action().empty()) {
                return DISP_E_MEMBERNOTFOUND;
            }
            if (!usable(source)) {
                return S_FALSE;
            }
            later([part](AccessibleSource& then) {
                if (part == no_part) {
                    then.act();
                } else if (isPart(then, part)) {
                    then.parts()->doPart(part);
                }
            });
            return S_OK;
        });
    }

    HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) override { return DISP_E_MEMBERNOTFOUND; }

    // The system knows how its fields are filled in.
    HRESULT STDMETHODCALLTYPE put_accValue(VARIANT child, BSTR value) override {
        return of(child, [&](AccessibleSource& source, int part) {
            void* found = nullptr;
            if (part != no_part ||
                FAILED(CreateStdAccessibleObject(source.hwnd(), OBJID_CLIENT, __uuidof(IAccessible), &found))) {
                return DISP_E_MEMBERNOTFOUND;
            }
            return Ptr<IAccessible>::adopt(static_cast<IAccessible*>(found))->put_accValue(child, value);
        });
    }

    // Readers call by the table of the interface.
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (!count) {
            return E_POINTER;
        }
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return E_NOTIMPL;
    }

  private:
    bool answers(REFIID iid) const override {
        return IsEqualIID(iid, IID_IDispatch) || IsEqualIID(iid, __uuidof(IAccessible));
    }

    static void clear(VARIANT* result) { VariantInit(result); }
    template <class T>
    static void clear(T* result) {
        *result = T{};
    }

    // Calls with the source while there is one; what it throws stays here.
    template <class Call>
    HRESULT withSource(Call&& call) const {
        const auto source = source_.lock();
        if (!source) {
            return gone;
        }
        try {
            return call(*source);
        } catch (...) {
            return E_FAIL;
        }
    }

    template <class Result, class Call>
    HRESULT answer(Result* result, Call&& call) const {
        if (!result) {
            return E_POINTER;
        }
        clear(result);
        return withSource(std::forward<Call>(call));
    }

    // The same, with the part that a child is.
    template <class Call>
    HRESULT of(const VARIANT& child, Call&& call) const {
        return withSource([&](AccessibleSource& source) -> HRESULT {
            if (child.vt != VT_I4 || (child.lVal != CHILDID_SELF && !isPart(source, child.lVal - 1L))) {
                return E_INVALIDARG;
            }
            return call(source, static_cast<int>(child.lVal) - 1);
        });
    }
    template <class Result, class Call>
    HRESULT of(const VARIANT& child, Result* result, Call&& call) const {
        if (!result) {
            return E_POINTER;
        }
        clear(result);
        return of(child, std::forward<Call>(call));
    }

    template <class Deed>
    void later(Deed deed) const {
        post([source = source_, deed] {
            if (const auto still = source.lock(); still && usable(*still)) {
                deed(*still);
            }
        });
    }

    static bool usable(const AccessibleSource& source) {
        HWND form = GetAncestor(source.hwnd(), GA_ROOT);
        return IsWindowVisible(source.hwnd()) && IsWindowEnabled(source.hwnd()) && IsWindowEnabled(form);
    }

    static long partCount(const AccessibleSource& source) { return source.parts() ? source.parts()->partCount() : 0; }
    static bool isPart(const AccessibleSource& source, long index) { return index >= 0 && index < partCount(source); }

    static RECT partPlace(const AccessibleSource& source, int part) {
        const Rect inside = source.parts()->partPlace(part);
        RECT place{inside.left, inside.top, inside.left + inside.width, inside.top + inside.height};
        if (inside.width > 0 && inside.height > 0) {
            MapWindowPoints(source.hwnd(), nullptr, reinterpret_cast<POINT*>(&place), 2);
        }
        return place;
    }

    static long partState(const AccessibleSource& source, int part) {
        const long around = source.state();
        const Rect place = source.parts()->partPlace(part);
        long state = around & (STATE_SYSTEM_UNAVAILABLE | STATE_SYSTEM_INVISIBLE);
        if (!(state & STATE_SYSTEM_UNAVAILABLE)) {
            state |= STATE_SYSTEM_SELECTABLE | STATE_SYSTEM_FOCUSABLE;
        }
        if (place.width <= 0 || place.height <= 0) {
            state |= STATE_SYSTEM_INVISIBLE | STATE_SYSTEM_OFFSCREEN;
        }
        if (part == source.parts()->selectedPart()) {
            state |= STATE_SYSTEM_SELECTED | (around & STATE_SYSTEM_FOCUSED);
        }
        return state;
    }

    // `child` from 1: parts, then windows.
    static HRESULT giveChild(const AccessibleSource& source, long child, VARIANT* end) {
        const long parts = partCount(source);
        const std::vector<HWND> windows = source.children();
        if (child < 1 || child > parts + static_cast<long>(windows.size())) {
            return S_FALSE;
        }
        return child <= parts ? giveNumber(end, child)
                              : giveObject(end, windows[static_cast<std::size_t>(child - parts - 1)]);
    }

    // The window before or after it.
    static HRESULT giveSibling(const AccessibleSource& source, long by, VARIANT* end) {
        const std::vector<HWND> around = source.siblings();
        const auto self = std::find(around.begin(), around.end(), source.hwnd());
        if (self == around.end() || (by < 0 && self == around.begin()) || (by > 0 && self + 1 == around.end())) {
            return S_FALSE;
        }
        return giveObject(end, *(self + by));
    }

    std::weak_ptr<AccessibleSource> source_;
};

DWORD numberOf(AccessibleEvent event) {
    constexpr DWORD live_region_changed = 0x8019; // EVENT_OBJECT_LIVEREGIONCHANGED, of Windows 8 and later
    switch (event) {
    case AccessibleEvent::focus:
        return EVENT_OBJECT_FOCUS;
    case AccessibleEvent::selection:
        return EVENT_OBJECT_SELECTION;
    case AccessibleEvent::parts:
        return EVENT_OBJECT_REORDER;
    case AccessibleEvent::value:
        return EVENT_OBJECT_VALUECHANGE;
    case AccessibleEvent::news:
        return live_region_changed;
    case AccessibleEvent::name:
        break;
    }
    return EVENT_OBJECT_NAMECHANGE;
}

} // namespace

LRESULT answerReader(const std::shared_ptr<AccessibleSource>& source, WPARAM wparam, LPARAM lparam) {
    if (static_cast<LONG>(lparam) != OBJID_CLIENT) {
        return 0;
    }
    // The object is called by way of the thread's apartment, which lasts as long as the thread.
    static thread_local const HRESULT entered = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    if (entered == RPC_E_CHANGED_MODE) {
        return 0;
    }
    const auto object = Ptr<IAccessible>::adopt(new AccessibleObject(source));
    return LresultFromObject(__uuidof(IAccessible), wparam, object.get());
}

void tellReader(HWND hwnd, AccessibleEvent event, int part) {
    if (!IsWindowVisible(hwnd)) {
        return;
    }
    if (event == AccessibleEvent::news) {
        NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, hwnd, OBJID_CLIENT, part + 1);
    }
    NotifyWinEvent(numberOf(event), hwnd, OBJID_CLIENT, part + 1);
}

} // namespace murmelix::ui::win32
