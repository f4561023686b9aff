#include "companions/messenger/automation/window_object.h"

namespace messenger_client {

using murmelix::com::Error;
using murmelix::com::Members;
using murmelix::com::method;
using murmelix::com::property;
using murmelix::com::Variant;
using murmelix::platform::WindowPlace;

namespace {

// Windows cannot be larger, or farther away.
constexpr std::int32_t farthest = 32'767;

struct ReadSide {
    WindowObject::Side side;
    std::int32_t operator()(WindowObject& window) const { return window.side(side); }
};

struct WriteSide {
    WindowObject::Side side;
    void operator()(WindowObject& window, std::int32_t pixels) const { window.setSide(side, pixels); }
};

} // namespace

const Members<WindowObject>& WindowObject::table() {
    using Self = WindowObject;
    constexpr char16_t properties[] = u"properties of windows";
    static const Members<Self> rows{
        property(L"HWND", 2048, &Self::handle),
        property(L"Left", 2049, ReadSide{&WindowPlace::left}, WriteSide{&WindowPlace::left}),
        property(L"Top", 2050, ReadSide{&WindowPlace::top}, WriteSide{&WindowPlace::top}),
        property(L"Width", 2051, ReadSide{&WindowPlace::width}, WriteSide{&WindowPlace::width}),
        property(L"Height", 2052, ReadSide{&WindowPlace::height}, WriteSide{&WindowPlace::height}),
        method(L"Close", 2053, &Self::close),
        method(L"Show", 2054, &Self::show),
        property(L"IsClosed", 2055, &Self::isClosed),
        property(L"Property", 2056, Unavailable<Self, Variant>{properties},
                 Unavailable<Self, Variant, Variant>{properties}, {L"property"}),
    };
    return rows;
}

std::int32_t WindowObject::handle() {
    return static_cast<std::int32_t>(window()); // the low 32 bits of a handle are all of it
}

WindowPlace WindowObject::place() {
    const auto place = murmelix::platform::windowPlace(window());
    if (!place) {
        throw Error(HRESULT_FROM_WIN32(ERROR_INVALID_WINDOW_HANDLE), u"The window is gone.");
    }
    return *place;
}

std::int32_t WindowObject::side(Side side) {
    return place().*side;
}

void WindowObject::setSide(Side side, std::int32_t pixels) {
    if (pixels < -farthest || pixels > farthest) {
        invalid(u"No screen is that large.");
    }
    WindowPlace wanted = place();
    wanted.*side = pixels;
    if (!murmelix::platform::placeWindow(window(), wanted)) {
        throw Error(E_FAIL, u"The window cannot be placed there.");
    }
}

} // namespace messenger_client
