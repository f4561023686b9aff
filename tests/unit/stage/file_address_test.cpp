#include <gtest/gtest.h>

#include "companions/agent/stage/file_address.h"

namespace agent::stage {
namespace {

TEST(FileAddress, NamesAPathOfADrive) {
    for (const char16_t* address :
         {u"file:///C:/sounds/a%20b.wav", u"FILE:///C:/sounds/a b.wav", u"file://localhost/C:/sounds/a%20b.wav",
          u"file://LocalHost/C|/sounds/a%20b.wav", u"file:/C:/sounds/a%20b.wav", u"file:C:\\sounds\\a b.wav",
          u"file:///C%3A%5Csounds%2fa%20b.wav", u"file://C:/sounds/a%20b.wav", u"file:\\\\\\C:\\sounds\\a b.wav"}) {
        EXPECT_EQ(pathOf(address), u"C:\\sounds\\a b.wav");
    }
    EXPECT_EQ(pathOf(u"file:///sounds/a.wav"), u"\\sounds\\a.wav");
    EXPECT_EQ(pathOf(u"file:"), u"");
    EXPECT_EQ(pathOf(u"file://"), u"");
    EXPECT_EQ(pathOf(u"file:///"), u"\\");
}

TEST(FileAddress, HasEscapesOfUtf8) {
    EXPECT_EQ(pathOf(u"file:///C:/%C3%A4%E2%82%AC%F0%9F%98%80.wav"), u"C:\\\u00E4\u20AC\U0001F600.wav");
    EXPECT_EQ(pathOf(u"file:///C:/\u00E4.wav"), u"C:\\\u00E4.wav");
    EXPECT_EQ(pathOf(u"file:///C:/100%25.wav"), u"C:\\100%.wav");
    EXPECT_EQ(pathOf(u"file:///C:/50%.wav%"), u"C:\\50%.wav%") << "no escape";
    EXPECT_EQ(pathOf(u"file:///C:/%4g%"), u"C:\\%4g%");
}

TEST(FileAddress, OfWhatNoPathHoldsIsNone) {
    EXPECT_EQ(pathOf(u"file:///C:/a%00b.wav"), std::nullopt);
    EXPECT_EQ(pathOf(u"file:///C:/%FF.wav"), std::nullopt) << "no UTF-8";
    EXPECT_EQ(pathOf(u"file:///C:/%C3.wav"), std::nullopt);
    EXPECT_EQ(pathOf(u"file:///C:/%ED%A0%80.wav"), std::nullopt);
}

// Each begins with two slashes, and so is refused like any other path to another machine.
TEST(FileAddress, OfAnotherMachineOrADeviceStaysOne) {
    EXPECT_EQ(pathOf(u"file://server/share/x.wav"), u"\\\\server\\share\\x.wav");
    EXPECT_EQ(pathOf(u"file:////server/share/x.wav"), u"\\\\server\\share\\x.wav");
    EXPECT_EQ(pathOf(u"file:///%5C%5Cserver/share/x.wav"), u"\\\\\\server\\share\\x.wav");
    EXPECT_EQ(pathOf(u"file:%5c/server/share/x.wav"), u"\\\\server\\share\\x.wav");
    EXPECT_EQ(pathOf(u"file://localhost//./pipe/x"), u"\\\\.\\pipe\\x");
    EXPECT_EQ(pathOf(u"file://./pipe/x"), u"\\\\.\\pipe\\x");
}

TEST(FileAddress, IsNoneOfAnyOtherText) {
    for (const char16_t* path : {u"C:\\a%20b.wav", u"a.wav", u"", u"file", u"\\\\server\\x", u"http://host/x.wav"}) {
        EXPECT_EQ(pathOf(path), path);
    }
}

} // namespace
} // namespace agent::stage
