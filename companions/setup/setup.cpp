#include "companions/setup/setup.h"

#include <cstdio>
#include <exception>

#include "common/text.h"
#include "companions/setup/setup_frm.h"
#include "platform/message_box.h"
#include "ui/screen.h"

namespace setup {

namespace {

// A program with windows has an output only where its starter gave it one.
void writeLine(const std::u16string& line) {
    const std::string bytes = murmelix::toUtf8(line) + "\n";
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
    std::fflush(stdout);
}

std::u16string marked(const Result& result) {
    switch (result.outcome) {
    case Outcome::done:
        return result.text;
    case Outcome::kept:
        return u"Left alone: " + result.text;
    case Outcome::failed:
        return u"Failed: " + result.text;
    }
    return result.text;
}

Result carriedOut(const Step& step) {
    try {
        return step.carryOut();
    } catch (const std::exception& error) {
        return {Outcome::failed, step.what + u": " + murmelix::fromUtf8(error.what())};
    }
}

int carryOutQuietly(const Plan& plan) {
    Progress progress(plan);
    while (!progress.over()) {
        writeLine(progress.carryOutNext());
    }
    writeLine(progress.conclusion());
    return progress.exitStatus();
}

int carryOutInWindow(const Plan& plan) {
    SetupFrm form(plan);
    form.LineAdded = writeLine;
    form.Show();
    return murmelix::ui::runMessageLoop();
}

int say(const std::u16string& text, const std::u16string& name, bool quiet, int status) {
    writeLine(text);
    if (!quiet) {
        murmelix::platform::messageBox(text, murmelix::platform::mb_critical, name);
    }
    return status;
}

} // namespace

std::u16string Progress::carryOutNext() {
    const Result result = carriedOut(plan_.steps[next_]);
    ++next_;
    failed_ = failed_ || result.outcome == Outcome::failed;
    return marked(result);
}

std::u16string Progress::conclusion() const {
    return failed_ ? u"Not everything could be done. The lines marked \"Failed\" say what and why." : plan_.success;
}

int Progress::exitStatus() const {
    return failed_ ? exit_failed : exit_ready;
}

CommandLine readCommandLine(const std::vector<std::u16string>& arguments) {
    CommandLine result;
    for (const std::u16string& argument : arguments) {
        const auto is = [&](const char16_t* name) {
            return murmelix::sameText(argument, name, murmelix::LetterCase::ignored);
        };
        if (is(u"/quiet")) {
            result.quiet = true;
        } else if (is(u"/uninstall")) {
            result.uninstall = true;
        } else if (result.unknown.empty()) {
            result.unknown = argument.empty() ? u"\"\"" : argument;
        }
    }
    return result;
}

int run(const std::vector<std::u16string>& arguments, const std::u16string& name, const std::function<Plan()>& install,
        const std::function<Plan()>& remove) {
    const CommandLine command_line = readCommandLine(arguments);
    if (!command_line.unknown.empty()) {
        return say(u"\"" + command_line.unknown + u"\" is not understood. The switches are /quiet and /uninstall.",
                   name, command_line.quiet, exit_usage);
    }
    try {
        const Plan plan = command_line.uninstall ? remove() : install();
        return command_line.quiet ? carryOutQuietly(plan) : carryOutInWindow(plan);
    } catch (const std::exception& error) {
        return say(murmelix::fromUtf8(error.what()), name, command_line.quiet, exit_failed);
    }
}

} // namespace setup
