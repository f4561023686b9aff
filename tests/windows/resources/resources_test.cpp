// What Windows is told about the companion programs before they run: manifest, version, icon.
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <windows.h>

#include "common/com/handles.h"
#include "common/text.h"
#include "tests/windows/support/process.h"

namespace {

using murmelix::com::wide;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

struct Companion {
    const char* name;
    const char* path;
    const char* level;
};

constexpr Companion companions[] = {
    {"MessengerClient", COMPANION_MessengerClient, "asInvoker"},
    {"AgentServer", COMPANION_AgentServer, "asInvoker"},
    {"MSAGENT", COMPANION_MSAGENT, "requireAdministrator"},
    {"tv_enua", COMPANION_tv_enua, "asInvoker"},
    {"updater", COMPANION_updater, "asInvoker"},
};

struct FreeModule {
    void operator()(HMODULE module) const { FreeLibrary(module); }
};

class Resources : public testing::TestWithParam<Companion> {
  protected:
    void SetUp() override {
        path_ = murmelix::test::windowsPath(GetParam().path);
        module_.reset(LoadLibraryExW(wide(path_), nullptr, LOAD_LIBRARY_AS_DATAFILE));
        ASSERT_TRUE(module_) << GetParam().path;
    }
    std::string resource(const wchar_t* kind, int number) {
        const HRSRC found = FindResourceW(module_.get(), MAKEINTRESOURCEW(number), kind);
        if (!found) {
            return {};
        }
        const HGLOBAL loaded = LoadResource(module_.get(), found);
        return std::string(static_cast<const char*>(LockResource(loaded)), SizeofResource(module_.get(), found));
    }
    std::string versionText(const std::string& name) {
        DWORD ignored = 0;
        std::vector<char> information(GetFileVersionInfoSizeW(wide(path_), &ignored));
        if (information.empty() ||
            !GetFileVersionInfoW(wide(path_), 0, static_cast<DWORD>(information.size()), information.data())) {
            return {};
        }
        void* text = nullptr;
        UINT length = 0;
        if (!VerQueryValueA(information.data(), ("\\StringFileInfo\\040904B0\\" + name).c_str(), &text, &length)) {
            return {};
        }
        return static_cast<const char*>(text);
    }

  private:
    std::u16string path_;
    std::unique_ptr<std::remove_pointer_t<HMODULE>, FreeModule> module_;
};

TEST_P(Resources, ManifestSaysAsWhomItRunsAndHowItDraws) {
    const std::string manifest = resource(MAKEINTRESOURCEW(24), 1);
    EXPECT_THAT(manifest, HasSubstr("requestedExecutionLevel level=\"" + std::string(GetParam().level) + "\""));
    EXPECT_THAT(manifest, HasSubstr("Microsoft.Windows.Common-Controls"));
    EXPECT_THAT(manifest, HasSubstr(">true</dpiAware>"));
    EXPECT_EQ(manifest.find(">PerMonitorV2, system</dpiAwareness>") != manifest.npos,
              std::string(GetParam().name) == "AgentServer")
        << "whose characters follow the resolution at once";
    EXPECT_THAT(manifest, HasSubstr("name=\"Murmelix." + std::string(GetParam().name) + "\""));
    EXPECT_THAT(manifest, Not(HasSubstr("@")));
}

TEST_P(Resources, VersionNamesTheProgram) {
    EXPECT_EQ(versionText("OriginalFilename"), std::string(GetParam().name) + ".exe");
    EXPECT_EQ(versionText("FileVersion"), MURMELIX_VERSION);
    EXPECT_EQ(versionText("ProductName"), "Murmelix");
    EXPECT_NE(versionText("FileDescription"), "");
}

TEST_P(Resources, IconHasTheSizesOfEveryScreen) {
#ifndef WITH_ICONS
    GTEST_SKIP() << "the drawings were not built when this was configured";
#endif
    const std::string group = resource(MAKEINTRESOURCEW(14), 1);
    ASSERT_GE(group.size(), 6U);
    std::uint16_t count = 0;
    std::memcpy(&count, group.data() + 4, sizeof count);
    ASSERT_EQ(group.size(), 6U + 14U * count);
    std::vector<int> sizes;
    for (std::size_t i = 0; i < count; ++i) {
        sizes.push_back(static_cast<unsigned char>(group[6 + 14 * i])); // 0 means 256
    }
    EXPECT_THAT(sizes, IsSupersetOf({16, 20, 24, 32, 48, 0}));
}

INSTANTIATE_TEST_SUITE_P(Of, Resources, testing::ValuesIn(companions),
                         [](const auto& parameter) { return parameter.param.name; });

} // namespace
