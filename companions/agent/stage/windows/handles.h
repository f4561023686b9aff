// Owners of what GDI and USER hand out.
#pragma once

#include <memory>
#include <type_traits>

#include <windows.h>

namespace agent::stage {

struct DeleteGdiObject {
    void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
struct DeleteDeviceContext {
    void operator()(HDC context) const { DeleteDC(context); }
};
struct DestroyMenuHandle {
    void operator()(HMENU menu) const { DestroyMenu(menu); }
};
struct DestroyWindowHandle {
    void operator()(HWND window) const { DestroyWindow(window); }
};

template <class Handle>
using GdiObject = std::unique_ptr<std::remove_pointer_t<Handle>, DeleteGdiObject>;
using MemoryContext = std::unique_ptr<std::remove_pointer_t<HDC>, DeleteDeviceContext>;
using MenuHandle = std::unique_ptr<std::remove_pointer_t<HMENU>, DestroyMenuHandle>;
using WindowHandle = std::unique_ptr<std::remove_pointer_t<HWND>, DestroyWindowHandle>;

// An object that is selected into a context for as long as it lives.
class Selected {
  public:
    Selected(HDC context, HGDIOBJ object) : context_(context), before_(SelectObject(context, object)) {}
    ~Selected() { SelectObject(context_, before_); }
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;

  private:
    HDC context_;
    HGDIOBJ before_;
};

} // namespace agent::stage
