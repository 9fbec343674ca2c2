// "Stadium Building Wizard": its ten pages with the step counter, Back and a working Finish, the
// links to the suggested software and the makers' contact page, the exit question, Help, and
// the Help menu's entry that opens it.
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

#include <memory>
#include <set>

#include "WindowTestKit.h"
#include "WizardTestKit.h"
#include "shell/HelpOps.h"
#include "shell/IniOps.h"
#include "shell/ui/vorn.h"
#include "wizards/StadiumWizardOps.h"
#include "wizards/ui/stadwizard.h"

class StadiumWizardTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    ScriptedDesktop* desktop_ = nullptr;

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        desktop_ = &program_->desktop;
    }
    void cleanup() { program_.reset(); }

    void nextAndBackCountTheStepsAndFinishCloses() {
        vorn frame;
        frame.menuAction("Stadium Building Wizard...")->trigger();
        stadwizard* w = stadwizard::existing();
        QVERIFY(w && w->isVisible());
        QCOMPARE(w->windowTitle(), QString("Stadium Building Wizard"));
        QCOMPARE(w->steps()->text(), QString("Step 1 of 10"));
        QVERIFY(!w->backbut()->isEnabled());
        for (int p = 1; p < 10; ++p) w->nextbut()->click();
        QCOMPARE(w->page(), 9);
        QCOMPARE(w->steps()->text(), QString("Step 10 of 10"));
        QCOMPARE(w->nextbut()->text(), QString("&Finished"));
        w->backbut()->click();
        QCOMPARE(w->steps()->text(), QString("Step 9 of 10"));
        QCOMPARE(w->nextbut()->text(), QString("&Next  >"));
        for (int p = 8; p > 0; --p) w->backbut()->click();
        QCOMPARE(w->page(), 0);
        QVERIFY(!w->backbut()->isEnabled());
        for (int p = 0; p < 10; ++p) w->nextbut()->click();
        QTRY_VERIFY(!stadwizard::existing());
        QVERIFY2(desktop_->messages.empty(), "finishing asks nothing");
    }

    void linksOpenTheSoftwareSitesAndTheContactPage() {
        stadwizard w;
        for (int i = 0; i < 4; ++i) emit w.softwares(i)->linkActivated("#");
        const std::set<std::string> sites(desktop_->pages.begin(), desktop_->pages.end());
        QCOMPARE(sites.size(), std::size_t(4));
        QVERIFY(
            w.softwares(0)->text().contains("Rhinoceros (Commercial, Evaluation download available) - Recommended"));
        emit w.addsoftware()->linkActivated("#");
        QCOMPARE(desktop_->pages.back(), std::string("https://www.fifa-osk.com/OSK/contact.php"));
        // The makers' site is where config.ini says it is.
        WriteConfig("Web", "MakersSite", "https://osk.example.org/");
        emit w.addsoftware()->linkActivated("#");
        QCOMPARE(desktop_->pages.back(), std::string("https://osk.example.org/OSK/contact.php"));
        // The buttons that name tools and the base stadium list do nothing.
        w.launchsoftware(0)->click();
        w.Combo1()->setCurrentIndex(3);
        QCOMPARE(desktop_->pages.size(), std::size_t(6));
        QVERIFY(desktop_->commands.empty());
    }

    void cancelAndTheCloseBoxAskAndHelpOpensItsPage() {
        stadwizard w;
        CheckExitQuestionAndHelp(w, *desktop_, "Stadium Building Wizard", "stadiumwizard.html");
    }
};

QTEST_MAIN(StadiumWizardTest)
#include "StadiumWizardTest.moc"
