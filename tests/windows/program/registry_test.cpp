#include <gtest/gtest.h>

#include <windows.h>

#include "app/settings.h"
#include "platform/ansi.h"
#include "platform/registry.h"

namespace murmelix::platform {
namespace {

class RegistryTest : public testing::Test {
  protected:
    RegistryTest() { RegDeleteTreeA(HKEY_CURRENT_USER, path.c_str()); }
    ~RegistryTest() override { RegDeleteTreeA(HKEY_CURRENT_USER, path.c_str()); }
    const std::string path = "Software\\MurmelixTest";
    const std::u16string wide_path = u"Software\\MurmelixTest";
};

TEST_F(RegistryTest, TextComesBackAsItWasWritten) {
    for (const std::u16string& text : {std::u16string(u"1"), std::u16string(u"^#$/\\()"), std::u16string(u" blanks "),
                                       std::u16string(u"Z\u00fcrich"), std::u16string(5000, u'x')}) {
        WriteRegistryValue(Hive::current_user, wide_path, u"value", text);
        EXPECT_EQ(ReadRegistryValue(Hive::current_user, wide_path, u"value"), text);
        const auto key = RegistryKey::open(Hive::current_user, path);
        ASSERT_TRUE(key);
        const auto info = key->query("value");
        ASSERT_TRUE(info);
        EXPECT_EQ(info->type, reg_sz);
        std::string bytes(info->size, ' ');
        EXPECT_TRUE(key->query("value", bytes));
        EXPECT_EQ(bytes.substr(0, bytes.find('\0')), toAnsi(text));
    }
}

TEST_F(RegistryTest, WithAndWithoutAClosingNulReadsTheSame) {
    const auto key = RegistryKey::create(Hive::current_user, path);
    ASSERT_TRUE(key);
    EXPECT_TRUE(key->set("without", reg_sz, "abc"));
    EXPECT_TRUE(key->set("with", reg_sz, std::string("abc\0", 4)));
    EXPECT_EQ(ReadRegistryValue(Hive::current_user, wide_path, u"without"), u"abc");
    EXPECT_EQ(ReadRegistryValue(Hive::current_user, wide_path, u"with"), u"abc");
}

TEST_F(RegistryTest, BinaryDataIsItsBytes) {
    const auto key = RegistryKey::create(Hive::current_user, path);
    std::string all;
    for (int i = 0; i < 256; ++i)
        all += static_cast<char>(i);
    EXPECT_TRUE(key->set("binary", reg_binary, all));
    EXPECT_EQ(key->query("binary")->size, 256u);
    std::string back(256, ' ');
    EXPECT_TRUE(key->query("binary", back));
    EXPECT_EQ(back, all);
}

TEST_F(RegistryTest, DataLongerThanTheBufferFails) {
    const auto key = RegistryKey::create(Hive::current_user, path);
    key->set("value", reg_binary, "12345");
    std::string four(4, ' '), none;
    EXPECT_FALSE(key->query("value", four));
    EXPECT_FALSE(key->query("value", none));
}

TEST_F(RegistryTest, DamagedValuesOfEveryTypeReadAsSomething) {
    const auto key = RegistryKey::create(Hive::current_user, path);
    for (std::uint32_t type = 0; type <= 11; ++type) {
        for (const std::string& data :
             {std::string(), std::string("\x01"), std::string(3, '\xFF'), std::string(9, 'z')}) {
            key->set("value", type, data);
            ReadRegistryValue(Hive::current_user, wide_path, u"value");
        }
    }
}

TEST_F(RegistryTest, EnumeratesAndRemoves) {
    const auto key = RegistryKey::create(Hive::current_user, path);
    key->set("first", reg_sz, "one");
    key->set("second", reg_sz, "two");
    const auto second = key->enumerate(1, 255, 255);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->first, "second");
    EXPECT_EQ(second->second.substr(0, 3), "two");
    EXPECT_FALSE(key->enumerate(2, 255, 255));
    EXPECT_FALSE(key->enumerate(1, 3, 255)) << "the name is too long";
    EXPECT_TRUE(key->remove("first"));
    EXPECT_FALSE(key->remove("first"));
}

TEST_F(RegistryTest, MissingKeyIsNothing) {
    EXPECT_FALSE(RegistryKey::open(Hive::current_user, path + "\\none"));
    EXPECT_TRUE(RegistryKey::open(Hive::current_user, "")) << "the hive itself";
}

} // namespace
} // namespace murmelix::platform
