#include <gtest/gtest.h>

#include <windows.h>

#include "app/settings.h"
#include "app/shell_state.h"
#include "common/ansi.h"
#include "platform/registry.h"
#include "platform/system.h"

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
    for (int i = 0; i < 256; ++i) {
        all += static_cast<char>(i);
    }
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

TEST_F(RegistryTest, NameWithANulIsThatOfNothing) {
    const auto key = RegistryKey::create(Hive::current_user, path);
    const std::string cut = "first", name = cut + std::string("\0more", 5);
    key->set(cut, reg_sz, "one");
    EXPECT_FALSE(key->set(name, reg_sz, "two"));
    EXPECT_FALSE(key->query(name));
    EXPECT_FALSE(key->remove(name));
    EXPECT_EQ(ReadRegistryValue(Hive::current_user, wide_path, u"first"), u"one");
    const std::string below = path + std::string("\0\\key", 5);
    EXPECT_FALSE(RegistryKey::open(Hive::current_user, below));
    EXPECT_FALSE(RegistryKey::create(Hive::current_user, below));
}

TEST_F(RegistryTest, MissingKeyIsNothing) {
    EXPECT_FALSE(RegistryKey::open(Hive::current_user, path + "\\none"));
    EXPECT_TRUE(RegistryKey::open(Hive::current_user, "")) << "the hive itself";
}

// The machine's values of one name, as they were before, at the end.
class MachineSetting {
  public:
    explicit MachineSetting(const wchar_t* name) : name_(name) {
        DWORD size = sizeof before_;
        there_ = RegGetValueW(HKEY_LOCAL_MACHINE, path, name, RRF_RT_REG_SZ, nullptr, before_, &size) == ERROR_SUCCESS;
    }
    MachineSetting(const MachineSetting&) = delete;
    MachineSetting& operator=(const MachineSetting&) = delete;
    ~MachineSetting() {
        if (there_) {
            set(REG_SZ, before_, static_cast<DWORD>((wcslen(before_) + 1) * sizeof(wchar_t)));
        } else {
            remove();
        }
    }
    void set(DWORD type, const void* data, DWORD size) const {
        RegSetKeyValueW(HKEY_LOCAL_MACHINE, path, name_, type, data, size);
    }
    void set(const std::wstring& text) const {
        set(REG_SZ, text.c_str(), static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    }
    void remove() const { RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, path, name_); }

  private:
    static constexpr const wchar_t* path = L"Software\\Murmelix";
    const wchar_t* name_;
    wchar_t before_[512] = L"";
    bool there_ = false;
};

TEST(MachineSettings, HostAndAddressAreTheMachinesWhereItHasSome) {
    const MachineSetting host(L"SiteHost"), address(L"SupportAddress");
    host.remove();
    address.remove();
    const std::u16string built_in_host = siteHost(), built_in_address = supportAddress();
    EXPECT_FALSE(built_in_host.empty());
    EXPECT_NE(built_in_address.find(u'@'), std::u16string::npos);
    host.set(L"127.0.0.1:8080");
    address.set(L"help@example.org");
    EXPECT_EQ(siteHost(), u"127.0.0.1:8080");
    EXPECT_EQ(supportAddress(), u"help@example.org");
}

TEST(MachineSettings, NonsenseIsNoValue) {
    const MachineSetting host(L"SiteHost"), address(L"SupportAddress");
    host.remove();
    address.remove();
    const std::u16string built_in_host = siteHost(), built_in_address = supportAddress();
    for (const std::wstring& text : {std::wstring(), std::wstring(L"http://x/"), std::wstring(L"a b"),
                                     std::wstring(600, L'x'), std::wstring(100000, L'y'), std::wstring(L"\x1\x2")}) {
        host.set(text);
        address.set(text);
        EXPECT_EQ(siteHost(), built_in_host);
        EXPECT_EQ(supportAddress(), built_in_address);
    }
    const DWORD number = 7;
    for (const DWORD type : {REG_DWORD, REG_BINARY, REG_NONE}) {
        host.set(type, &number, sizeof number);
        EXPECT_EQ(siteHost(), built_in_host);
    }
    host.set(REG_SZ, L"www.example.org", 2 * 15); // without its closing NUL
    EXPECT_EQ(siteHost(), u"www.example.org");
}

} // namespace
} // namespace murmelix::platform
