#include "companions/setup/setup_frm.h"

#include <gmock/gmock.h>

#include "tests/unit/setup/machine.h"
#include "ui/screen.h"

namespace setup {
namespace {

using murmelix::ui::Key;
using testing::ElementsAre;

class SetupFrmTest : public SetupTest {
  protected:
    static void carryOutOne() {
        ASSERT_FALSE(fakes::screen().posted.empty());
        const auto next = fakes::screen().posted.front();
        fakes::screen().posted.erase(fakes::screen().posted.begin());
        next();
    }

    Plan plan{u"Setup of two",
              u"Two things & more are being set up.",
              {{u"Doing one",
                [] {
                    return Result{Outcome::done, u"One is done."};
                }},
               {u"Doing two",
                [this] {
                    return Result{second, u"Two was tried."};
                }}},
              u"Both are ready."};
    Outcome second = Outcome::done;
};

TEST_F(SetupFrmTest, StepsAreShownOneAfterAnother) {
    SetupFrm form(plan);
    form.Show();
    EXPECT_EQ(form.Caption(), u"Setup of two");
    EXPECT_EQ(form.IntroductionLbl.Caption(), u"Two things & more are being set up.");
    EXPECT_FALSE(form.IntroductionLbl.UseMnemonic());
    EXPECT_TRUE(form.LinesArea.Lines().empty()) << "nothing is done before the window is there";

    carryOutOne();
    EXPECT_EQ(form.CurrentLbl.Caption(), u"Doing one");
    EXPECT_EQ(form.StepsBar.Value(), 0);
    EXPECT_EQ(form.StepsBar.Max(), 2);
    EXPECT_THAT(form.LinesArea.Lines(), ElementsAre(u"One is done."));
    EXPECT_EQ(fakes::screen().drawn_now, std::vector{form.handle()}) << "before a step, which can take long";

    carryOutOne();
    EXPECT_EQ(form.CurrentLbl.Caption(), u"Doing two");
    EXPECT_EQ(form.StepsBar.Value(), 1);

    carryOutOne();
    EXPECT_EQ(form.CurrentLbl.Caption(), u"Both are ready.");
    EXPECT_EQ(form.StepsBar.Value(), 2);
    EXPECT_THAT(form.LinesArea.Lines(), ElementsAre(u"One is done.", u"Two was tried.", u"Both are ready."));
    EXPECT_TRUE(fakes::screen().posted.empty());
}

TEST_F(SetupFrmTest, ItClosesOnlyWhenEverythingIsDone) {
    SetupFrm form(plan);
    form.Show();
    carryOutOne();
    EXPECT_FALSE(fakes::click(form.DoneButt));
    EXPECT_FALSE(fakes::key(form, Key::escape));
    fakes::close(form);
    EXPECT_TRUE(form.Visible());
    EXPECT_FALSE(fakes::screen().quit);

    fakes::runPosted();
    EXPECT_TRUE(form.DoneButt.Focused());
    EXPECT_TRUE(fakes::click(form.DoneButt));
    EXPECT_FALSE(form.Visible());
    EXPECT_EQ(fakes::screen().quit, exit_ready);
}

TEST_F(SetupFrmTest, EnterEscapeTheAcceleratorAndTheCloseBoxCloseIt) {
    const std::vector<std::function<void(SetupFrm&)>> ways{
        [](SetupFrm& form) { fakes::key(form, Key::enter); }, [](SetupFrm& form) { fakes::key(form, Key::escape); },
        [](SetupFrm& form) { fakes::accelerator(form, u'd'); }, [](SetupFrm& form) { fakes::close(form); }};
    for (std::size_t i = 0; i < ways.size(); ++i) {
        fakes::screen() = {};
        SetupFrm form(plan);
        form.Show();
        fakes::runPosted();
        ways[i](form);
        EXPECT_FALSE(form.Visible()) << i;
        EXPECT_EQ(fakes::screen().quit, exit_ready) << i;
    }
}

TEST_F(SetupFrmTest, FailureIsTheExitStatus) {
    second = Outcome::failed;
    SetupFrm form(plan);
    form.Show();
    fakes::runPosted();
    EXPECT_THAT(form.LinesArea.Lines(),
                ElementsAre(u"One is done.", u"Failed: Two was tried.",
                            u"Not everything could be done. The lines marked \"Failed\" say what and why."));
    fakes::close(form);
    EXPECT_EQ(fakes::screen().quit, exit_failed);
}

TEST_F(SetupFrmTest, LinesTakeWhatIsLeftOfTheWindow) {
    SetupFrm form(plan);
    const auto& lines = form.LinesArea.Bounds();
    const auto& button = form.DoneButt.Bounds();
    EXPECT_EQ(form.ScaleWidth(), 8400);
    EXPECT_EQ(form.ScaleHeight(), 5700);
    EXPECT_GT(form.CurrentLbl.Height(), 0) << "its place is kept while it says nothing";
    EXPECT_GT(lines.height, 2000);
    EXPECT_EQ(lines.top + lines.height + 120, button.top);
    EXPECT_EQ(button.left + button.width, lines.left + lines.width);
}

TEST_F(SetupFrmTest, TheProgramsRunAsTheirSwitchesSay) {
    const auto install = [this] { return plan; };
    const auto remove = [] { return Plan{u"Removal", u"", {}, u"It is gone."}; };
    testing::internal::CaptureStdout();
    EXPECT_EQ(run({u"/QUIET"}, u"Setup", install, remove), exit_ready);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "One is done.\nTwo was tried.\nBoth are ready.\n");
    testing::internal::CaptureStdout();
    EXPECT_EQ(run({u"/uninstall", u"/quiet"}, u"Setup", install, remove), exit_ready);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "It is gone.\n");
    EXPECT_TRUE(fakes::screen().posted.empty()) << "no window";

    testing::internal::CaptureStdout();
    EXPECT_EQ(run({u"/all", u"/quiet"}, u"Setup", install, remove), exit_usage);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "\"/all\" is not understood. The switches are /quiet and /uninstall.\n");
    EXPECT_TRUE(fakes::messageBoxes().shown.empty());
    testing::internal::CaptureStdout();
    EXPECT_EQ(run({u""}, u"Setup", install, remove), exit_usage);
    testing::internal::GetCapturedStdout();
    ASSERT_EQ(fakes::messageBoxes().shown.size(), 1U);
    EXPECT_EQ(fakes::messageBoxes().shown[0].title, u"Setup");
}

TEST_F(SetupFrmTest, WindowTellsTheStandardOutputToo) {
    testing::internal::CaptureStdout();
    run(
        {}, u"Setup", [this] { return plan; }, [this] { return plan; });
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "One is done.\nTwo was tried.\nBoth are ready.\n");
}

} // namespace
} // namespace setup
