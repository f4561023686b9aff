// Windows' sockets, for as long as it lives.
#pragma once

#include <winsock2.h>

namespace murmelix::platform {

class Winsock {
  public:
    Winsock() { WSAStartup(MAKEWORD(2, 2), &data_); }
    Winsock(const Winsock&) = delete;
    Winsock& operator=(const Winsock&) = delete;
    ~Winsock() { WSACleanup(); }

  private:
    WSADATA data_{};
};

} // namespace murmelix::platform
