// What a started program is given: handles of this one's, and private files to read from and to write to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include <windows.h>

namespace agent::voice {

class Handle {
  public:
    Handle() = default;
    explicit Handle(HANDLE handle) : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() {
        if (handle_ != nullptr) {
            CloseHandle(handle_);
        }
    }
    HANDLE get() const { return handle_; }
    explicit operator bool() const { return handle_ != nullptr; }

  private:
    HANDLE handle_ = nullptr;
};

// A file that a new process may inherit, that nobody else can read or find out the name of, and that is gone with its
// last handle, however this program ends; null where there can be none.
HANDLE temporaryFile();

std::uint64_t sizeOf(const Handle& file); // bytes
// The file becomes the content, and is read from its begin.
bool fill(const Handle& file, std::string_view content);
// All from a position on; nothing where the file ends before.
bool readFrom(const Handle& file, std::size_t begin, std::vector<std::uint8_t>& content);

// Starts a program, detached from any console, with two standard handles and no others of this program's; null where it
// does not start, and for a program of the system below Wine. (A program below Wine that would get a console of its
// own, as one does whose starter has none, gets no standard handles.)
HANDLE startProgram(std::wstring& command_line, HANDLE input, HANDLE output);

} // namespace agent::voice
