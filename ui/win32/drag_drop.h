// The toolkit's drag and drop as COM has it.
#pragma once

#include <windows.h>

#include <oleidl.h>

#include "common/com/handles.h"
#include "ui/picture_box.h"

namespace murmelix::ui::win32 {

// Offers the text as CF_UNICODETEXT and CF_TEXT.
com::Ptr<IDataObject> offered(const DataObject& data);

// The text of another one's data object, cut at its NUL; an empty one where it offers text and does not give it.
DataObject received(IDataObject& data);

// What takes drops on the control; null where it takes none.
com::Ptr<IDropTarget> dropTarget(const Control& control);

} // namespace murmelix::ui::win32
