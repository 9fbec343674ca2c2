// The four wizards: each one's Next reaches its operation and Back and Next run it again, the
// views are refreshed as the operation asks, a refusal is one box that keeps the page, and Cancel,
// the close box and Help work alike. What the operations compute is the wizards' logic tests'.
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QtTest>

#include <set>

#include "WindowTestKit.h"
#include "editors/ui/vornoifform.h"
#include "shell/IniOps.h"
#include "support/Chunks3DS.h"
#include "wizards/ui/crowdwizard.h"
#include "wizards/ui/lightingwizard.h"
#include "wizards/ui/stadwizard.h"
#include "wizards/ui/transformwiz.h"

namespace {
int Vertices() {
    int n = 0;
    for (const OIFPart& part : CurrentProject.OIF.Parts) n += part.Header.VertexCount;
    return n;
}
}  // namespace

class WizardWindowsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    ScriptedDesktop* desktop_ = nullptr;

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        desktop_ = &program_->desktop;
        CurrentProject.OIF = TexturedQuad(1);
    }
    void cleanup() { program_.reset(); }

    void everyWizardAsksBeforeItClosesAndOpensItsHelpPage() {
        crowdwizard crowd;
        CheckExitQuestionAndHelp(crowd, *desktop_, "crowdwizard.html");
        desktop_->messages.clear();
        lightingwizard lighting;
        CheckExitQuestionAndHelp(lighting, *desktop_, "lightingwizard.html");
        desktop_->messages.clear();
        transformwiz transform;
        CheckExitQuestionAndHelp(transform, *desktop_, "transformationwizard.html");
        desktop_->messages.clear();
        stadwizard stadium;
        CheckExitQuestionAndHelp(stadium, *desktop_, "stadiumwizard.html");
    }

    void crowdsFromTypedCornersOrAFileAreMadeAgainAfterBack() {
        CurrentProject.OIF = NewOIFFile();
        WriteConfig("Crowd Wizard", "NoOfRows", "10");
        SpyViews views;
        crowdwizard w;
        QCOMPARE(w.noofrows()->text(), QString("10"));
        w.show();
        w.nextbut()->click();
        w.nextbut()->click();  // corners typed by hand
        const char* corners[4][3] = {
            {"0", "0", "0"}, {"1040", "0", "0"}, {"1040", "500", "-1000"}, {"0", "500", "-1000"}};
        for (int i = 0; i < 4; ++i) {
            w.xbox(i)->setText(corners[i][0]);
            w.ybox(i)->setText(corners[i][1]);
            w.zbox(i)->setText(corners[i][2]);
        }
        w.nextbut()->click();
        w.nextbut()->click();
        QCOMPARE(w.page(), 4);
        QCOMPARE(Vertices(), 40);
        QVERIFY(views.calls.empty() && !desktop_->loadingShown);
        w.backbut()->click();
        w.nextbut()->click();
        QCOMPARE(Vertices(), 80);  // more rows merged into the same parts
        w.nextbut()->click();
        QVERIFY(!w.isVisible());
        QCOMPARE(views.calls, (std::vector<std::string>{"RefreshPartsList", "RebuildPreviews"}));

        // From a file the plane page is skipped both ways; no rows is one box and nothing made.
        crowdwizard again;
        again.show();
        again.nextbut()->click();
        again.polyfrom(0)->click();
        QVERIFY2(!again.nextbut()->isEnabled(), "no file chosen yet");
        WriteFile(program_->folder.file("planes.3ds"), chunks3ds::QuadMeshes(2));
        desktop_->dialogAnswers = {program_->folder.file("planes.3ds")};
        again.getfile()->click();
        again.nextbut()->click();
        QCOMPARE(again.page(), 3);
        again.backbut()->click();
        QCOMPARE(again.page(), 1);
        again.nextbut()->click();
        again.noofrows()->setText("0");
        const OIFFile before = CurrentProject.OIF;
        again.nextbut()->click();
        QCOMPARE(again.page(), 3);
        QVERIFY(CurrentProject.OIF == before);
        QCOMPARE(desktop_->messages.size(), std::size_t(1));
        again.noofrows()->setText("3");
        again.nextbut()->click();
        QCOMPARE(Vertices(), 80 + 2 * 3 * 4);
    }

    void importCrowdsAsksItsQuestionAndAddsTheRows() {
        vorn frame;
        frame.createnew(0, "Project1");
        WriteFile(program_->folder.file("rows.3ds"), chunks3ds::QuadMeshes(3));
        desktop_->dialogAnswers = {program_->folder.file("rows.3ds")};
        desktop_->answers = {MessageAnswer::No};
        frame.menuAction("Import Crowds...")->trigger();
        QCOMPARE(desktop_->messages.back().text, std::string("Do you wish to use the row height fixing algorithm?   "));
        QCOMPARE(Vertices(), 12);
    }

    void lightingIsAppliedByNextAndShownByTheOIFEditor() {
        WriteConfig("Terramason", "OIFEditor", "1");
        vorn frame;
        frame.createnew(0, "Project1");
        CurrentProject.OIF = TexturedQuad();
        CurrentProject.OIF.Parts[0].Vertices[0].X = CurrentProject.OIF.Parts[0].Vertices[0].Z = 0;
        TheViews().RefreshPartsList();
        QLineEdit* shadow = vornoifform::existing()->oifvertexshadowbox();
        QCOMPARE(shadow->text(), QString("0"));
        frame.menuAction("Stadium Lighting Wizard")->trigger();
        lightingwizard* w = lightingwizard::existing();
        SpyViews views;
        w->nextbut()->click();
        w->nextbut()->click();
        const OIFFile lit = CurrentProject.OIF;
        QVERIFY(lit != TexturedQuad());
        QVERIFY(shadow->text() != QString("0"));
        QVERIFY2(views.calls.empty(), "neither the parts list nor the previews are rebuilt");
        w->backbut()->click();
        w->nextbut()->click();
        QVERIFY(CurrentProject.OIF == lit);
        // The boxes' key filter; a document at the origin is one error box.
        QVERIFY(MakeActive(*w));
        w->backbut()->click();
        w->originbox()->clear();
        w->originbox()->setFocus();
        QTest::keyClicks(w->originbox(), "00-1a.5.0");
        QCOMPARE(w->originbox()->text(), QString("01.50"));
        for (OIFVertex& v : CurrentProject.OIF.Parts[0].Vertices) v = OIFVertex{};
        w->nextbut()->click();
        QCOMPARE(w->page(), 1);
        QCOMPARE(desktop_->messages.at(0).icon, MessageIcon::Critical);
    }

    void transformTurnsTheTickedPartsOnlyAndAgainAfterBack() {
        vorn frame;
        frame.createnew(0, "Project1");
        CurrentProject.OIF = AddPart(TexturedQuad(1).Parts[0], TexturedQuad(1));
        frame.menuAction("Stadium Transformation Wizard")->trigger();
        transformwiz* w = transformwiz::existing();
        QCOMPARE(w->transformlist()->item(1)->checkState(), Qt::Checked);
        const OIFPart untouched = CurrentProject.OIF.Parts[0];
        SpyViews views;
        w->nextbut()->click();
        w->transformlist()->item(0)->setCheckState(Qt::Unchecked);
        w->rotate(1)->setText("90");
        w->nextbut()->click();
        QCOMPARE(CurrentProject.OIF.Parts[0], untouched);
        // (1, 0, -1) turned a quarter about Y is (-1, 0, -1), twice a half turn (-1, 0, 1).
        QVERIFY(std::fabs(CurrentProject.OIF.Parts[1].Vertices[1].X + 1) < 1e-5);
        QCOMPARE(views.calls, (std::vector<std::string>{"RefreshPartsList", "RebuildPreviews"}));
        w->backbut()->click();
        w->nextbut()->click();
        QVERIFY(std::fabs(CurrentProject.OIF.Parts[1].Vertices[1].Z - 1) < 1e-5);
        w->nextbut()->click();
        QTRY_VERIFY(!transformwiz::existing());
    }

    void theBuildingWizardCountsItsStepsAndItsLinksOpenTheSites() {
        stadwizard w;
        for (int p = 1; p < 10; ++p) w.nextbut()->click();
        QCOMPARE(w.steps()->text(), QString("Step 10 of 10"));
        w.backbut()->click();
        QCOMPARE(w.steps()->text(), QString("Step 9 of 10"));
        for (int i = 0; i < 4; ++i) emit w.softwares(i)->linkActivated("#");
        QCOMPARE(std::set<std::string>(desktop_->pages.begin(), desktop_->pages.end()).size(), std::size_t(4));
        WriteConfig("Web", "MakersSite", "https://osk.example.org/");
        emit w.addsoftware()->linkActivated("#");
        QCOMPARE(desktop_->pages.back(), std::string("https://osk.example.org/OSK/contact.php"));
    }
};

QTEST_MAIN(WizardWindowsTest)
#include "WizardWindowsTest.moc"
