// A program that behaves as its argument says, for the tests of what starts programs.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <io.h>

#include <windows.h>

int main(int count, char** arguments) {
    const char* what = count > 1 ? arguments[1] : "";
    _setmode(0, _O_BINARY);
    _setmode(1, _O_BINARY);
    if (std::strcmp(what, "echo") == 0) {
        for (int letter = std::getchar(); letter != EOF; letter = std::getchar()) {
            std::putchar(letter);
        }
        return 0;
    }
    if (std::strcmp(what, "fail") == 0) {
        std::fputs("half", stdout);
        return 7;
    }
    if (std::strcmp(what, "crash") == 0) {
        TerminateProcess(GetCurrentProcess(), 0xC0000005);
    }
    if (std::strcmp(what, "flood") == 0) {
        static char block[65536];
        while (std::fwrite(block, 1, sizeof block, stdout) == sizeof block) {
        }
        return 0;
    }
    // Its existence shows that the program still runs.
    if (count > 2) {
        CreateEventA(nullptr, TRUE, FALSE, arguments[2]);
    }
    if (std::strcmp(what, "hang") == 0) {
        std::fputs("up", stdout);
        std::fflush(stdout);
        Sleep(INFINITE);
    }
    if (std::strcmp(what, "chatter") == 0) {
        for (int i = 0; i < 1000; ++i) {
            std::fprintf(stderr, "%01000d", i);
        }
        std::fputs("said", stdout);
        return 3;
    }
    if (std::strcmp(what, "close and hang") == 0) {
        std::fputs("said", stdout);
        std::fclose(stdout);
        std::fclose(stderr);
        std::fclose(stdin);
        Sleep(INFINITE);
    }
    return 0;
}
