#include <cstdlib>
#include <cstring>

#include <gtest/gtest.h>

#include "tests/windows/program/ending_store.h"
#include "tests/windows/program/list_neighbour.h"
#include "tests/windows/program/neighbour_server.h"

int main(int argc, char** argv) {
    if (argc > 2 && std::strcmp(argv[1], "--neighbour") == 0) {
        return murmelix::test::serveNeighbour(std::atoi(argv[2]));
    }
    if (argc > 2 && std::strcmp(argv[1], murmelix::test::ending_store_switch) == 0) {
        return murmelix::test::changeMatchupsUntil(std::atoi(argv[2]));
    }
    if (argc > 3 && std::strcmp(argv[1], murmelix::test::neighbour_switch) == 0) {
        return murmelix::test::serveListWindow(std::atoi(argv[2]), std::atoi(argv[3]));
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
