#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>
#include <thread>

#include "core/Desktop.h"
#include "support/ScriptedDesktop.h"

TEST(PumpEvents, RunsThePumpAtMostEveryFewMilliseconds) {
    ScriptedDesktop desktop;
    for (int i = 0; i < 1000000; ++i) PumpEvents();
    // A million calls in a tight loop take far less than a second: a handful of pumps at most.
    EXPECT_GE(desktop.pumps, 1);
    EXPECT_LT(desktop.pumps, 100);
    const int before = desktop.pumps;
    std::this_thread::sleep_for(std::chrono::milliseconds(40));
    PumpEvents();
    EXPECT_EQ(desktop.pumps, before + 1) << "a call after a pause pumps";
}

TEST(GuardedRun, TurnsAnUnhandledFaultIntoOneBoxAndGoesOn) {
    ScriptedDesktop desktop;
    desktop.ShowLoading("Loading OIF file...");
    const bool ran = GuardedRun("Saving the stadium", [] { throw std::runtime_error("Disk full."); });
    EXPECT_FALSE(ran);
    ASSERT_EQ(desktop.messages.size(), 1u);
    EXPECT_EQ(desktop.messages[0].text, "Saving the stadium failed.\r\n\r\nDisk full.");
    EXPECT_TRUE(desktop.messages[0].icon == MessageIcon::Critical && desktop.messages[0].title == "VORN Terramason");
    EXPECT_FALSE(desktop.loadingShown) << "a stopped operation does not leave the busy window up";
    int calls = 0;
    EXPECT_TRUE(GuardedRun("Counting", [&] { ++calls; }));
    EXPECT_TRUE(calls == 1 && desktop.messages.size() == 1u);
}

TEST(GuardedRun, NoCommandStartsWhileAnOperationPumpsEvents) {
    ScriptedDesktop desktop;
    int second = 0;
    bool refused = false;
    // A click handled while the first operation pumps would start a second one on the same document.
    desktop.onPump = [&] { refused = !GuardedRun("Delete", [&] { ++second; }); };
    int nestedRuns = 0;
    EXPECT_TRUE(GuardedRun("Import to OIF", [&] {
        PumpEventsNow();
        // A window that the operation opens itself (a dialog and its buttons) still works.
        GuardedRun("Opening the project", [&] { ++nestedRuns; });
    }));
    EXPECT_TRUE(refused && second == 0 && nestedRuns == 1);
    EXPECT_TRUE(desktop.messages.empty()) << "a refused click is not a fault";
    EXPECT_FALSE(InsideEventPump());
    EXPECT_TRUE(GuardedRun("Delete", [&] { ++second; })) << "after the operation commands run again";
}

TEST(InstallDesktop, FallsBackToTheQuietDesktopWhenRemoved) {
    {
        ScriptedDesktop desktop;
        EXPECT_EQ(&TheDesktop(), &desktop);
    }
    EXPECT_NE(dynamic_cast<QuietDesktop*>(&TheDesktop()), nullptr);
    EXPECT_EQ(TheDesktop().Message("q", "t", MessageIcon::Question, MessageButtons::OK), MessageAnswer::OK);
}

TEST(FileUrl, EncodesWhatAnAddressCannotHold) {
    EXPECT_EQ(FileUrl("/usr/share/terramason/help/index.html"), "file:///usr/share/terramason/help/index.html");
    EXPECT_EQ(FileUrl("/home/me/My Stadiums/50% done#2.wrl"), "file:///home/me/My%20Stadiums/50%25%20done%232.wrl");
    EXPECT_EQ(FileUrl("/tmp/Caf\xC3\xA9"), "file:///tmp/Caf%C3%A9") << "UTF-8 bytes one by one";
}
