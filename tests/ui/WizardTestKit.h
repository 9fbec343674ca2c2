#pragma once
// What every wizard's window test checks alike: its frame's captions, the exit question of
// Cancel and of the close box, and its Help page.
#include <QPushButton>
#include <QtTest>

#include <string>

#include "shell/HelpOps.h"
#include "support/ScriptedDesktop.h"
#include "wizards/ui/WizardFrame.h"

// Shows the wizard, refuses its exit question once by Cancel and then accepts it by the close
// box, and presses Help. Call it on a wizard that has asked nothing yet.
inline void CheckExitQuestionAndHelp(WizardFrame& w, ScriptedDesktop& desktop, const std::string& caption,
                                     const std::string& helpPage) {
    QCOMPARE((QStringList{w.backbut()->text(), w.nextbut()->text(), w.cancelbut()->text(), w.helpbut()->text()}),
             (QStringList{"<  &Back", "&Next  >", "&Cancel", "&Help"}));
    w.show();
    const std::size_t asked = desktop.messages.size();
    desktop.answers = {MessageAnswer::No, MessageAnswer::Yes};
    w.cancelbut()->click();
    QVERIFY(w.isVisible());
    QCOMPARE(desktop.messages.size(), asked + 1);
    QCOMPARE(desktop.messages.back().text, std::string("Are you sure you want to exit the wizard?   "));
    QCOMPARE(desktop.messages.back().title, caption);
    QCOMPARE(desktop.messages.back().buttons, MessageButtons::YesNo);
    QCOMPARE(desktop.messages.back().icon, MessageIcon::Question);
    w.close();
    QVERIFY(!w.isVisible());
    QCOMPARE(desktop.messages.size(), asked + 2);
    desktop.pages.clear();
    w.helpbut()->click();
    QCOMPARE(desktop.pages, std::vector<std::string>{HelpPageAddress(helpPage)});
}
