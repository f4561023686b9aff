// A list 200 pixels wide on the imitated screen, with rows 20 pixels high, and what is heard of it.
#pragma once

#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "common/text.h"
#include "controls/cool_list_box.h"
#include "tests/fakes/ui/drag_drop.h"
#include "tests/fakes/ui/windows.h"
#include "ui/form.h"

namespace murmelix {

class CoolListBoxTest : public testing::Test {
  protected:
    CoolListBoxTest() {
        fakes::screen() = {};
        fakes::dragDrop() = {};
        list.OnSelect = [this] { events += "select "; };
        list.Click = [this] { events += "click "; };
        list.DblClick = [this] { events += "double "; };
        list.setItemHeight(20);
        setHeight(100);
        list.PropertyChanged = [this](std::u16string_view name) { events += toUtf8(name) + " "; };
    }
    void setHeight(int pixels) { list.Move({0, 0, 200 * 15, pixels * 15}); }
    void fill(int rows) {
        for (int i = 1; i <= rows; ++i) {
            const std::u16string number = toText(i);
            list.AddItem(u"Caption " + number, u"Text " + number, u"k" + number, false);
        }
    }
    const std::vector<fakes::Drawing>& drawings() { return fakes::drawings(list.P.surface()); }
    int refreshes() { return fakes::refreshes(list.P.surface()); }
    std::vector<std::u16string> printed() {
        std::vector<std::u16string> texts;
        for (const fakes::Drawing& drawing : drawings()) {
            if (drawing.kind == fakes::Drawing::Kind::text) {
                texts.push_back(drawing.text);
            }
        }
        return texts;
    }

    ui::Form form{nullptr, u"", ui::FormStyle::window};
    CoolListBox list{form};
    std::string events; // and, between them, the properties that were announced
};

} // namespace murmelix
