// The Messenger monitor with a recording main window above it and the real characters below.
#pragma once

#include "messenger/msn_control.h"
#include "tests/unit/program/program_test.h"

namespace murmelix::test {

struct Row {
    std::u16string key, caption, text;
    bool selected;
    bool operator==(const Row&) const = default;
};

class MonitorTest : public ProgramTest {
  protected:
    MonitorTest() : monitor_(host()) {
        characterHost.characterFiles = [] {
            return std::vector<std::u16string>{u"Max.acs", u"Nelly.acs", u"Otto.acs"};
        };
        for (const char16_t* name : {u"Max", u"Nelly", u"Otto"}) {
            fakes::agent().files[std::u16string(u"C:\\WINDOWS\\msagent\\chars\\") + name + u".acs"] = {name};
        }
        characterHost.conversationWindow = [this] { return monitor_.GetWindowAt(ReadingWindowHandle); };
        characterHost.messenger = [this] { return &monitor_.MSNAPI(); };
        characterHost.removeMoniteredContact = [this](const std::u16string& key) {
            monitor_.RemoveMoniteredContact(key);
        };
    }

    static std::shared_ptr<fakes::Contact> contact(const std::u16string& name) {
        return std::make_shared<fakes::Contact>(toLower(std::u16string_view(name)) + u"@x", name);
    }

    std::shared_ptr<fakes::Window> open(std::int32_t handle, const std::vector<std::u16string>& friendly_names) {
        auto window = std::make_shared<fakes::Window>(handle);
        for (const std::u16string& name : friendly_names) {
            window->contacts.push_back(contact(name));
        }
        fakes::messenger().events.OnIMWindowCreated(window);
        return window;
    }

    // As the main window does.
    void startReading(fakes::Window& window) {
        IsReadingConversation = 1;
        ReadingWindowHandle = window.handle;
        monitor_.AddMoniteredWindowContacts();
        monitor_.StartAtEndOf(window);
        monitor_.EnableMoniterTimer(true);
    }

    void stopReading() {
        IsReadingConversation = 0;
        monitor_.RemoveMoniteredWindowContacts();
        monitor_.EnableMoniterTimer(false);
        ReadingWindowHandle = 0;
    }

    // What was spoken since the last call, as "KEY: TEXT".
    std::vector<std::u16string> spoken() {
        std::vector<std::u16string> all;
        for (const AgentCall& call : calls()) {
            if (call.call == u"Speak") {
                all.push_back(call.key + u": " + *call.text);
            }
        }
        calls().clear();
        return all;
    }

    static std::vector<std::u16string> stage() {
        std::vector<std::u16string> keys;
        for (const auto& [key, character] : fakes::agent().characters) {
            keys.push_back(key);
        }
        return keys;
    }

    std::vector<std::u16string> log_; // what was asked of the main window
    std::vector<Row> rows_;
    std::u16string caption_;
    bool start_enabled_ = false;
    bool timer_on_ = false;
    MSNControl monitor_;

  private:
    std::vector<Row>::iterator rowOf(const std::u16string& key) {
        return std::find_if(rows_.begin(), rows_.end(), [&](const Row& row) { return row.key == key; });
    }

    MonitorHost host() {
        MonitorHost host;
        host.addConversation = [this](const std::u16string& caption, const std::u16string& text,
                                      const std::u16string& key, bool selected) {
            if (rowOf(key) == rows_.end()) {
                rows_.push_back({key, caption, text, selected});
            }
        };
        host.editConversationText = [this](const std::u16string& key, const std::u16string& text) {
            if (const auto row = rowOf(key); row != rows_.end()) {
                row->text = text;
            }
        };
        host.removeConversation = [this](const std::u16string& key) {
            if (const auto row = rowOf(key); row != rows_.end()) {
                rows_.erase(row);
            }
        };
        host.conversationCount = [this] { return static_cast<std::int32_t>(rows_.size()); };
        host.startConvButtClick = [this] {
            log_.push_back(u"StartConvButt_Click");
            stopReading();
        };
        host.enableStartConvButt = [this](bool enabled) { start_enabled_ = enabled; };
        host.showSignOut = [this](bool show) { log_.push_back(show ? u"ShowSignOut" : u"hide SignOut"); };
        host.deleteSystemTrayIcon = [this] { log_.push_back(u"DeleteSystemTrayIcon"); };
        host.userCaption = [this] { return caption_; };
        host.setUserCaption = [this](const std::u16string& caption) { caption_ = caption; };
        host.resetReadingWindow = [this] { log_.push_back(u"reset"); };
        host.enableReadMoniter = [this](bool enabled) { timer_on_ = enabled; };
        host.unloadSecondaryWindows = [this] { log_.push_back(u"unload"); };
        host.main = [this] { log_.push_back(u"Main"); };
        return host;
    }
};

} // namespace murmelix::test
