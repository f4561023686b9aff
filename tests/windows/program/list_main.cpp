#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

#include <gtest/gtest.h>

#include <windows.h>

#include "common/com/handles.h"
#include "tests/windows/program/list_neighbour.h"

namespace {

constexpr DWORD longest_run = 180'000; // all of them together take seconds

void watch() {
    Sleep(longest_run);
    std::fprintf(stderr, "the watchdog ends the tests\n");
    TerminateProcess(GetCurrentProcess(), 98);
}

} // namespace

int main(int argc, char** argv) {
    std::thread(watch).detach();
    if (argc > 3 && std::strcmp(argv[1], murmelix::test::neighbour_switch) == 0) {
        return murmelix::test::serveListWindow(std::atoi(argv[2]), std::atoi(argv[3]));
    }
    testing::InitGoogleTest(&argc, argv);
    const murmelix::com::Apartment apartment;
    return RUN_ALL_TESTS();
}
