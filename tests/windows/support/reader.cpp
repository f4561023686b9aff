#include "tests/windows/support/reader.h"

#include <oleacc.h>

#include "common/text.h"

namespace murmelix::test {

VARIANT childId(long child) {
    VARIANT id;
    VariantInit(&id);
    id.vt = VT_I4;
    id.lVal = child;
    return id;
}

namespace {

using TextOf = HRESULT (STDMETHODCALLTYPE IAccessible::*)(VARIANT, BSTR*);

std::u16string textOf(const com::Ptr<IAccessible>& object, long child, TextOf member) {
    com::Bstr text;
    (object.get()->*member)(childId(child), text.out());
    return text.text();
}

void walk(const com::Ptr<IAccessible>& object, std::size_t depth, std::vector<Told>& all) {
    Told self = ask(object);
    self.depth = depth;
    all.push_back(self);
    long count = 0;
    if (depth > 20 || FAILED(object->get_accChildCount(&count))) {
        return;
    }
    for (long child = 1; child <= count; ++child) {
        IDispatch* found = nullptr;
        const HRESULT result = object->get_accChild(childId(child), &found);
        const auto owner = com::Ptr<IDispatch>::adopt(found);
        if (result == S_OK && owner) {
            if (const auto inner = owner.as<IAccessible>(__uuidof(IAccessible))) {
                walk(inner, depth + 1, all);
            }
        } else {
            all.push_back(ask(object, child));
            all.back().depth = depth + 1;
        }
    }
}

} // namespace

HRESULT Told::doIt() const {
    return object->accDoDefaultAction(childId(child));
}

long numberOf(const VARIANT& value) {
    return value.vt == VT_I4 ? value.lVal : -1;
}

com::Ptr<IAccessible> accessibleOf(HWND window) {
    void* found = nullptr;
    if (FAILED(AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible), &found))) {
        return {};
    }
    return com::Ptr<IAccessible>::adopt(static_cast<IAccessible*>(found));
}

Told ask(const com::Ptr<IAccessible>& object, long child) {
    Told told;
    told.object = object;
    told.child = child;
    com::Variant role, state;
    object->get_accRole(childId(child), role.out());
    object->get_accState(childId(child), state.out());
    told.role = numberOf(role.raw());
    told.state = numberOf(state.raw());
    told.name = textOf(object, child, &IAccessible::get_accName);
    told.value = textOf(object, child, &IAccessible::get_accValue);
    told.description = textOf(object, child, &IAccessible::get_accDescription);
    told.shortcut = textOf(object, child, &IAccessible::get_accKeyboardShortcut);
    told.action = textOf(object, child, &IAccessible::get_accDefaultAction);
    long left = 0, top = 0, width = 0, height = 0;
    object->accLocation(&left, &top, &width, &height, childId(child));
    told.place = {left, top, left + width, top + height};
    return told;
}

std::vector<Told> readAll(HWND window) {
    std::vector<Told> all;
    if (const auto object = accessibleOf(window)) {
        walk(object, 0, all);
    }
    return all;
}

std::string written(const Told& told) {
    wchar_t role[100] = L"";
    GetRoleTextW(static_cast<DWORD>(told.role), role, 100);
    std::string text(2 * told.depth, ' ');
    text += toUtf8(com::narrow(role, wcslen(role))) + " \"" + toUtf8(told.name) + "\"";
    if (!told.value.empty()) {
        text += " = \"" + toUtf8(told.value.substr(0, 40)) + "\"";
    }
    if (!told.shortcut.empty()) {
        text += " " + toUtf8(told.shortcut);
    }
    if (!told.action.empty()) {
        text += " [" + toUtf8(told.action) + "]";
    }
    return text;
}

std::string written(const std::vector<Told>& all) {
    std::string text;
    for (const Told& told : all) {
        text += written(told) + "\n";
    }
    return text;
}

} // namespace murmelix::test
