// A machine with the setup's files beside its program, and nothing installed yet.
#pragma once

#include <gtest/gtest.h>

#include "tests/fakes/fakes.h"
#include "tests/fakes/ui/windows.h"

namespace setup {

namespace fakes = murmelix::fakes;

class SetupTest : public testing::Test {
  protected:
    SetupTest() {
        fakes::reset();
        fakes::screen() = {};
        content() = {{u"C:\\Murmelix\\msagent\\AgentServer.exe", "the server"},
                     {u"C:\\Murmelix\\msagent\\chars\\Anna.acs", "Anna's pictures"},
                     {u"C:\\Murmelix\\msagent\\chars\\Bert.acs", "Bert's pictures"},
                     {u"C:\\Murmelix\\msagent\\chars\\read.me", "no character"}};
    }

    static std::map<std::u16string, std::string>& content() { return fakes::files().content; }
};

} // namespace setup
