#include "ui/rich_text_box.h"

#include <algorithm>

#include "common/text.h"
#include "tests/fakes/ui/handles.h"
#include "tests/fakes/ui/windows.h"

namespace murmelix::ui::native {

Handle createRichEdit(Control& control, Handle, const std::u16string&) {
    return newHandle(control);
}

Handle createAnsiRichEdit(Control& control, Handle parent, const std::u16string& text) {
    return createRichEdit(control, parent, text);
}

Handle createInkEdit(Control& control, Handle parent, const std::u16string& text) {
    return createRichEdit(control, parent, text);
}

Handle createAnsiRichView(Control& control, Handle parent, const std::u16string& text) {
    return createRichView(control, parent, text);
}

Handle createRichView(Control& control, Handle, const std::u16string&) {
    return newHandle(control);
}

std::u16string richText(Handle box) {
    return fakes::screen().texts[box];
}

void replaceSelection(Handle box, const std::u16string& text) {
    fakes::screen().texts[box] += text;
}

void appendRich(Handle box, std::u16string_view text, const RichTextBox::Looks& looks) {
    fakes::screen().texts[box] += text;
    fakes::screen().runs[box].push_back({std::u16string(text), looks});
}

namespace {

// A line end counts as one.
int lengthOf(std::u16string_view text) {
    return static_cast<int>(text.size() - static_cast<std::size_t>(std::count(text.begin(), text.end(), u'\r')));
}

std::size_t unitsOf(std::u16string_view text, int length) {
    std::size_t units = 0;
    for (; units < text.size() && length > 0; ++units) {
        length -= text[units] == u'\r' ? 0 : 1;
    }
    return units;
}

// The runs between the positions stand alone then; the first of them and the one after the last.
std::pair<std::size_t, std::size_t> part(std::vector<fakes::Run>& runs, int from, int length) {
    const auto split = [&](int at) {
        for (std::size_t i = 0; i < runs.size(); ++i) {
            if (at <= 0) {
                return i;
            }
            const int here = lengthOf(runs[i].text);
            if (at < here) {
                fakes::Run rest = runs[i];
                const std::size_t units = unitsOf(runs[i].text, at);
                rest.text.erase(0, units);
                runs[i].text.resize(units);
                runs.insert(runs.begin() + static_cast<std::ptrdiff_t>(i) + 1, rest);
                return i + 1;
            }
            at -= here;
        }
        return runs.size();
    };
    const std::size_t first = split(from);
    return {first, std::max(first, split(from + length))};
}

void spell(Handle box) {
    std::u16string& text = fakes::screen().texts[box];
    text.clear();
    for (const fakes::Run& run : fakes::screen().runs[box]) {
        text += run.text;
    }
}

} // namespace

int richLength(Handle box) {
    return lengthOf(fakes::screen().texts[box]);
}

void removeRich(Handle box, int from, int length) {
    auto& runs = fakes::screen().runs[box];
    const auto [first, end] = part(runs, from, length);
    runs.erase(runs.begin() + static_cast<std::ptrdiff_t>(first), runs.begin() + static_cast<std::ptrdiff_t>(end));
    spell(box);
}

void setRichLooks(Handle box, int from, int length, const RichTextBox::Looks& looks) {
    auto& runs = fakes::screen().runs[box];
    const auto [first, end] = part(runs, from, length);
    for (std::size_t i = first; i < end; ++i) {
        runs[i].looks.colour = looks.colour;
        runs[i].looks.bold = looks.bold;
        runs[i].looks.link = looks.link;
    }
}

bool findRich(Handle box, const std::u16string& text, bool back) {
    const std::u16string all = murmelix::toLower(fakes::screen().texts[box]), wanted = murmelix::toLower(text);
    auto& place = fakes::screen().found[box];
    std::size_t next = std::u16string::npos;
    if (back) {
        next = place == 0 ? next : all.rfind(wanted, place - 1);
        next = next == std::u16string::npos ? all.rfind(wanted) : next;
    } else {
        next = all.find(wanted, place);
        next = next == std::u16string::npos ? all.find(wanted) : next;
    }
    if (next == std::u16string::npos) {
        return false;
    }
    place = back ? next : next + wanted.size();
    fakes::screen().selected_text[box] = fakes::screen().texts[box].substr(next, wanted.size());
    return true;
}

void showRichEnd(Handle box) {
    fakes::screen().end_shown.push_back(box);
}

void beginUpdate(Handle) {}
void endUpdate(Handle) {}

} // namespace murmelix::ui::native
