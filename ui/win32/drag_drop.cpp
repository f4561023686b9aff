#include "ui/win32/drag_drop.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <new>
#include <optional>

#include <shlobj.h>

#include "common/ansi.h"
#include "common/com/counted.h"
#include "common/com/server.h"
#include "ui/native.h"
#include "ui/picture_box.h"
#include "ui/win32/windows.h"

namespace murmelix::ui {

namespace {

constexpr FORMATETC memoryOf(CLIPFORMAT format) {
    return {format, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
}

constexpr FORMATETC formats[] = {memoryOf(CF_UNICODETEXT), memoryOf(CF_TEXT)};

// No exception gets into COM.
template <class Action>
HRESULT guarded(Action&& action) {
    try {
        return action();
    } catch (const com::Error& error) {
        return error.result();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

class Medium {
  public:
    Medium() = default;
    Medium(const Medium&) = delete;
    Medium& operator=(const Medium&) = delete;
    ~Medium() { ReleaseStgMedium(&medium_); }
    STGMEDIUM* out() { return &medium_; }
    HGLOBAL memory() const { return medium_.tymed == TYMED_HGLOBAL ? medium_.hGlobal : nullptr; }

  private:
    STGMEDIUM medium_{};
};

// The bytes of a memory block for as long as it lives.
class Locked {
  public:
    explicit Locked(HGLOBAL memory) : memory_(memory), bytes_(GlobalLock(memory)) {}
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;
    ~Locked() {
        if (bytes_) {
            GlobalUnlock(memory_);
        }
    }
    void* bytes() const { return bytes_; }
    std::size_t size() const { return bytes_ ? GlobalSize(memory_) : 0; }

  private:
    HGLOBAL memory_;
    void* bytes_;
};

// The text with its NUL, in memory that the caller frees.
template <class Unit>
HGLOBAL inMemory(const std::basic_string<Unit>& text) {
    const std::size_t size = (text.size() + 1) * sizeof(Unit);
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
    if (!memory) {
        throw std::bad_alloc();
    }
    std::memcpy(Locked(memory).bytes(), text.c_str(), size);
    return memory;
}

// Up to the first NUL, or to the end of memory that has none.
template <class Unit>
std::basic_string<Unit> textIn(HGLOBAL memory) {
    const Locked locked(memory);
    const auto* begin = static_cast<const Unit*>(locked.bytes());
    const auto* end = begin + locked.size() / sizeof(Unit);
    return {begin, std::find(begin, end, Unit{})};
}

class TextData final : public com::Counted<IDataObject> {
  public:
    explicit TextData(std::u16string text) : text_(std::move(text)) {}

    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* format, STGMEDIUM* medium) override {
        if (!format || !medium) {
            return E_INVALIDARG;
        }
        *medium = {};
        if (const HRESULT offered = QueryGetData(format); offered != S_OK) {
            return offered;
        }
        return guarded([&] {
            medium->hGlobal = format->cfFormat == CF_TEXT ? inMemory(toAnsi(text_)) : inMemory(text_);
            medium->tymed = TYMED_HGLOBAL;
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC*, STGMEDIUM*) override { return DV_E_TYMED; }
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* format) override {
        if (!format) {
            return E_INVALIDARG;
        }
        if (format->cfFormat != CF_UNICODETEXT && format->cfFormat != CF_TEXT) {
            return DV_E_FORMATETC;
        }
        if (format->dwAspect != DVASPECT_CONTENT) {
            return DV_E_DVASPECT;
        }
        return format->tymed & TYMED_HGLOBAL ? S_OK : DV_E_TYMED;
    }
    HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC* asked, FORMATETC* same) override {
        if (!asked || !same) {
            return E_INVALIDARG;
        }
        *same = *asked;
        same->ptd = nullptr;
        return DATA_S_SAMEFORMATETC;
    }
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD direction, IEnumFORMATETC** all) override {
        if (!all) {
            return E_INVALIDARG;
        }
        *all = nullptr;
        return direction == DATADIR_GET ? SHCreateStdEnumFmtEtc(std::size(formats), formats, all) : E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override {
        return OLE_E_ADVISENOTSUPPORTED;
    }
    HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) override { return OLE_E_ADVISENOTSUPPORTED; }
    HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA**) override { return OLE_E_ADVISENOTSUPPORTED; }

  private:
    bool answers(REFIID iid) const override { return IsEqualIID(iid, IID_IDataObject); }

    std::u16string text_;
};

// The drag goes on while the left button, and no other one, is held; Escape ends it, and so does the end of the window
// it came from: where that has hidden, the system may not tell of the button's release any more.
class DropSource final : public com::Counted<IDropSource> {
  public:
    explicit DropSource(HWND form) : form_(form) {}

    HRESULT STDMETHODCALLTYPE QueryContinueDrag(BOOL escape, DWORD keys) override {
        if (escape || keys & (MK_RBUTTON | MK_MBUTTON) || !IsWindowVisible(form_)) {
            return DRAGDROP_S_CANCEL;
        }
        return keys & MK_LBUTTON ? S_OK : DRAGDROP_S_DROP;
    }
    HRESULT STDMETHODCALLTYPE GiveFeedback(DWORD) override { return DRAGDROP_S_USEDEFAULTCURSORS; }

  private:
    bool answers(REFIID iid) const override { return IsEqualIID(iid, IID_IDropSource); }

    HWND form_;
};

int shiftOf(DWORD keys) {
    return (keys & MK_SHIFT ? shift_key : 0) | (keys & MK_CONTROL ? control_key : 0) | (keys & MK_ALT ? alt_key : 0);
}

class DropTarget final : public com::Counted<IDropTarget> {
  public:
    explicit DropTarget(Control& control) : control_(&control) {}

    // The control takes no drops any more, or is no more.
    void abandon() { control_ = nullptr; }

    HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* data, DWORD keys, POINTL place, DWORD* effect) override {
        has_text_ =
            data && std::ranges::any_of(formats, [&](FORMATETC format) { return data->QueryGetData(&format) == S_OK; });
        return over(DragState::enter, keys, place, effect);
    }
    HRESULT STDMETHODCALLTYPE DragOver(DWORD keys, POINTL place, DWORD* effect) override {
        return over(DragState::over, keys, place, effect);
    }
    HRESULT STDMETHODCALLTYPE DragLeave() override {
        const com::Ptr<DropTarget> alive_during_call(this);
        if (!std::exchange(has_text_, false) || !control_) {
            return S_OK;
        }
        return guarded([&] {
            control_->onDragOver(drop_none, 0, 0, 0, DragState::leave);
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, DWORD keys, POINTL place, DWORD* effect) override {
        const com::Ptr<DropTarget> alive_during_call(this);
        if (!data || !effect) {
            return E_INVALIDARG;
        }
        const auto allowed = static_cast<DropEffect>(std::exchange(*effect, DROPEFFECT_NONE));
        if (!std::exchange(has_text_, false) || !control_) {
            return S_OK;
        }
        return guarded([&] {
            DataObject text = win32::received(*data);
            if (!control_) { // giving the text lets events in
                return S_OK;
            }
            const POINT inside = within(place);
            // The button was let go: it is the one that dragged.
            *effect = static_cast<DWORD>(control_->onDrop(text, allowed, buttons_, shiftOf(keys), inside.x, inside.y));
            return S_OK;
        });
    }

  private:
    bool answers(REFIID iid) const override { return IsEqualIID(iid, IID_IDropTarget); }

    HRESULT over(DragState state, DWORD keys, POINTL place, DWORD* effect) {
        const com::Ptr<DropTarget> alive_during_call(this);
        if (!effect) {
            return E_INVALIDARG;
        }
        buttons_ = win32::buttonsOf(keys);
        const auto allowed = static_cast<DropEffect>(std::exchange(*effect, DROPEFFECT_NONE));
        if (!control_ || !has_text_) {
            return S_OK;
        }
        return guarded([&] {
            const POINT inside = within(place);
            *effect = static_cast<DWORD>(control_->onDragOver(allowed, shiftOf(keys), inside.x, inside.y, state));
            return S_OK;
        });
    }
    POINT within(POINTL place) const {
        POINT inside{place.x, place.y};
        ScreenToClient(reinterpret_cast<HWND>(control_->handle()), &inside);
        return inside;
    }

    Control* control_;
    bool has_text_ = false;
    int buttons_ = 0;
};

std::map<std::uintptr_t, com::Ptr<DropTarget>>& targets() {
    static std::map<std::uintptr_t, com::Ptr<DropTarget>> all;
    return all;
}

// Nothing where the data object does not give it.
template <class Unit>
std::optional<std::basic_string<Unit>> textAs(CLIPFORMAT format, IDataObject& data) {
    FORMATETC wanted = memoryOf(format);
    Medium medium;
    if (FAILED(data.GetData(&wanted, medium.out())) || !medium.memory()) {
        return std::nullopt;
    }
    return textIn<Unit>(medium.memory());
}

} // namespace

com::Ptr<IDataObject> win32::offered(const DataObject& data) {
    return com::Ptr<IDataObject>(com::make<TextData>(data.Text()).get());
}

DataObject win32::received(IDataObject& data) {
    DataObject text;
    if (const auto unicode = textAs<char16_t>(CF_UNICODETEXT, data)) {
        text.SetText(*unicode);
    } else {
        text.SetText(fromAnsi(textAs<char>(CF_TEXT, data).value_or(std::string())));
    }
    return text;
}

com::Ptr<IDropTarget> win32::dropTarget(const Control& control) {
    const auto found = targets().find(control.handle());
    return found == targets().end() ? nullptr : com::Ptr<IDropTarget>(found->second.get());
}

DropEffect native::drag(Handle from, const DataObject& data, DropEffect allowed) {
    const auto object = win32::offered(data);
    const auto source = com::make<DropSource>(GetAncestor(reinterpret_cast<HWND>(from), GA_ROOT));
    DWORD effect = DROPEFFECT_NONE;
    const HRESULT result = DoDragDrop(object.get(), source.get(), static_cast<DWORD>(allowed), &effect);
    return result == DRAGDROP_S_DROP ? static_cast<DropEffect>(effect) & allowed : drop_none;
}

void native::acceptDrops(Control& control, bool accepts) {
    HWND window = reinterpret_cast<HWND>(control.handle());
    if (accepts) {
        const auto target = com::make<DropTarget>(control);
        com::check(RegisterDragDrop(window, target.get()));
        targets()[control.handle()] = target;
    } else if (auto target = targets().extract(control.handle())) {
        target.mapped()->abandon();
        RevokeDragDrop(window);
    }
}

} // namespace murmelix::ui
