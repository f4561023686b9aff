// A web server of a test on loopback: it hears one request after the other and answers as the test says.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace murmelix::test {

class WebServer {
  public:
    // One that was accepted. Its operations return false where the other side has closed it.
    class Visitor {
      public:
        explicit Visitor(std::uintptr_t socket) : socket_(socket) {}
        // Up to the empty line.
        std::string request() const;
        bool answer(std::string_view bytes) const;
        // Waits until the other side has closed it, and tells what came before.
        std::string untilClosed() const;

      private:
        std::uintptr_t socket_;
    };

    explicit WebServer(std::function<void(const Visitor& visitor)> serve);
    ~WebServer(); // those that are served are let go first
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;

    std::uint16_t port() const { return port_; }
    std::u16string host() const; // with the port

  private:
    void run();

    std::function<void(const Visitor&)> serve_;
    std::uintptr_t listening_;
    std::uint16_t port_ = 0;
    std::mutex mutex_;
    std::uintptr_t served_ = 0; // 0: none
    bool ended_ = false;
    std::thread thread_;
};

} // namespace murmelix::test
