#include <gtest/gtest.h>

#include <windows.h>

#include "platform/foreign_window.h"

namespace murmelix::platform {
namespace {

class ForeignWindowTest : public testing::Test {
  protected:
    ~ForeignWindowTest() override { DestroyWindow(parent_); }
    std::intptr_t add(const char* class_name, const char* caption, HWND parent = nullptr) {
        HWND made = CreateWindowExA(0, class_name, caption, WS_CHILD, 0, 0, 10, 10, parent ? parent : parent_, nullptr,
                                    GetModuleHandleA(nullptr), nullptr);
        SetWindowPos(made, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
        return reinterpret_cast<std::intptr_t>(made);
    }
    std::intptr_t parent() const { return reinterpret_cast<std::intptr_t>(parent_); }

  private:
    HWND parent_ = CreateWindowExA(0, "Static", "parent", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr, nullptr,
                                   GetModuleHandleA(nullptr), nullptr);
};

TEST_F(ForeignWindowTest, ChildrenAreFoundByTheirClassInTheirOrder) {
    const std::intptr_t before = add("Button", "before"), first = add("Edit", ""), frame = add("Static", ""),
                        deeper = add("Button", "&Send", reinterpret_cast<HWND>(frame)), second = add("Edit", ""),
                        send = add("Button", "&Send");
    EXPECT_EQ(childWindow(parent(), "Edit"), first);
    EXPECT_EQ(childWindow(parent(), "EDIT"), first);
    EXPECT_EQ(childWindow(parent(), "Button"), before);
    EXPECT_EQ(childWindow(parent(), "Button", "&Send"), send);
    EXPECT_EQ(childWindow(parent(), "Button", "Send"), 0);
    EXPECT_EQ(childWindow(frame, "Button"), deeper);
    EXPECT_EQ(childWindow(parent(), "ListBox"), 0);
    EXPECT_EQ(nextChildWindow(parent(), first, "Edit"), second);
    EXPECT_EQ(nextChildWindow(parent(), first, "edit"), second);
    EXPECT_EQ(nextChildWindow(parent(), second, "Edit"), 0);
    EXPECT_EQ(nextChildWindow(parent(), first, "Button"), send) << "after a window of another class, not inside one";
    EXPECT_EQ(nextChildWindow(parent(), send, "Edit"), 0);
}

TEST_F(ForeignWindowTest, NothingIsFoundWhereThereIsNoWindow) {
    const std::intptr_t gone = add("Edit", "");
    DestroyWindow(reinterpret_cast<HWND>(gone));
    const std::intptr_t edit = add("Edit", "");
    EXPECT_EQ(childWindow(0, "Static"), 0);
    EXPECT_EQ(childWindow(gone, "Edit"), 0);
    EXPECT_EQ(nextChildWindow(0, edit, "Edit"), 0);
    EXPECT_EQ(nextChildWindow(gone, edit, "Edit"), 0);
    EXPECT_EQ(nextChildWindow(parent(), gone, "Edit"), 0);
}

} // namespace
} // namespace murmelix::platform
