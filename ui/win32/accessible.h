// Answers screen readers (WM_GETOBJECT) for windows: what the system's own object does not know comes from a source.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <windows.h>

#include "ui/accessible.h"

namespace murmelix::ui::win32 {

// What there is to be told of one window; asked by its thread alone.
class AccessibleSource {
  public:
    virtual ~AccessibleSource() = default;
    virtual HWND hwnd() const = 0;
    virtual long role() const = 0;  // ROLE_SYSTEM_…
    virtual long state() const = 0; // STATE_SYSTEM_…, all of them
    virtual std::u16string name() const = 0;
    virtual std::u16string value() const { return {}; }
    virtual std::u16string description() const { return {}; }
    virtual std::u16string shortcut() const { return {}; }
    virtual std::u16string action() const { return {}; } // empty: none
    virtual void act() {}
    virtual AccessibleParts* parts() const { return nullptr; }
    // The windows in it that a reader is led to, in their order, and those that it is one of.
    virtual std::vector<HWND> children() const { return {}; }
    virtual std::vector<HWND> siblings() const { return {}; }
};

// The answer to a WM_GETOBJECT; 0 where it asks for something that is the system's to tell. Whoever keeps the object
// longer than there is a source hears that it is gone.
LRESULT answerReader(const std::shared_ptr<AccessibleSource>& source, WPARAM wparam, LPARAM lparam);

// `part` from 0, or no_part.
void tellReader(HWND hwnd, AccessibleEvent event, int part);

} // namespace murmelix::ui::win32
