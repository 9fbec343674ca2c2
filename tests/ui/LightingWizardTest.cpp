// "Stadium Lighting Wizard": the light applied by Next on its options page and again after
// Back, the OIF Editor showing the new colours, the boxes' key filter, the refusal of a document
// at the origin, the exit question and Help.
#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include <memory>

#include "WindowTestKit.h"
#include "WizardTestKit.h"
#include "editors/OIFEditorOps.h"
#include "editors/ui/vornoifform.h"
#include "shell/HelpOps.h"
#include "shell/IniOps.h"
#include "shell/ui/vorn.h"
#include "wizards/LightingOps.h"
#include "wizards/ui/lightingwizard.h"

class LightingWizardTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    ScriptedDesktop* desktop_ = nullptr;

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        desktop_ = &program_->desktop;
        CurrentProject.OIF = TexturedQuad();
        CurrentProject.OIF.Parts[0].Vertices[0].X = 0;  // one corner at the origin
        CurrentProject.OIF.Parts[0].Vertices[0].Z = 0;
    }
    void cleanup() { program_.reset(); }

    void nextLightsTheDocumentAndTheEditorShowsIt() {
        WriteConfig("Terramason", "OIFEditor", "1");
        vorn frame;
        frame.createnew(0, "Project1");
        CurrentProject.OIF = TexturedQuad();
        CurrentProject.OIF.Parts[0].Vertices[0].X = 0;
        CurrentProject.OIF.Parts[0].Vertices[0].Z = 0;
        TheViews().RefreshPartsList();
        vornoifform* editor = vornoifform::existing();
        QVERIFY(editor);
        QCOMPARE(editor->oifvertexshadowbox()->text(), QString("0"));

        frame.menuAction("Stadium Lighting Wizard")->trigger();
        lightingwizard* w = lightingwizard::existing();
        QVERIFY(w && w->isVisible());
        QCOMPARE(w->windowTitle(), QString("Stadium Lighting Wizard"));
        SpyViews views;
        w->nextbut()->click();
        QCOMPARE(w->page(), 1);
        // What the furthest point box says does not count: the far end is grey 30.
        w->darknessbox()->setText("99");
        w->nextbut()->click();
        QCOMPARE(w->page(), 2);
        QCOMPARE(w->nextbut()->text(), QString("&Finished"));
        const OIFFile lit = CurrentProject.OIF;
        // The origin at 80 percent: 30 + 210 * 0.8.
        QCOMPARE(lit.Parts[0].Vertices[0].Shadow, 0xFFC6C6C6u);
        QCOMPARE(lit.Parts[0].Vertices[3].Shadow, 0xFF1E1E1Eu);
        QCOMPARE(editor->oifvertexshadowbox()->text(), QString::number(VertexBrightness(0xFFC6C6C6u)));
        QVERIFY2(views.calls.empty(), "neither the parts list nor the previews are rebuilt");

        // Back and Next light again, with the same result.
        w->backbut()->click();
        QCOMPARE(w->page(), 1);
        w->nextbut()->click();
        QCOMPARE(CurrentProject.OIF, lit);
        w->nextbut()->click();
        QTRY_VERIFY(!lightingwizard::existing());
        QVERIFY2(desktop_->messages.empty(), "finishing asks nothing");
    }

    void theBoxesTakeOnlyWhatTheirFilterLetsThrough() {
        lightingwizard w;
        QVERIFY(MakeActive(w));
        w.nextbut()->click();
        for (QLineEdit* box : {w.originbox(), w.darknessbox()}) {
            box->clear();
            box->setFocus();
            QTest::keyClicks(box, "0");
            QTest::keyClicks(box, "0-1a.5.0");
            QCOMPARE(box->text(), QString("01.50"));
        }
    }

    void aDocumentAtTheOriginIsOneErrorBoxAndTheWizardStays() {
        for (OIFVertex& v : CurrentProject.OIF.Parts[0].Vertices) v = OIFVertex{};
        const OIFFile before = CurrentProject.OIF;
        lightingwizard w;
        w.nextbut()->click();
        w.nextbut()->click();
        QCOMPARE(w.page(), 1);
        QCOMPARE(CurrentProject.OIF, before);
        QCOMPARE(desktop_->messages.size(), std::size_t(1));
        QCOMPARE(desktop_->messages[0].icon, MessageIcon::Critical);
    }

    void cancelAndTheCloseBoxAskAndHelpOpensItsPage() {
        lightingwizard w;
        CheckExitQuestionAndHelp(w, *desktop_, "Stadium Lighting Wizard", "lightingwizard.html");
    }
};

QTEST_MAIN(LightingWizardTest)
#include "LightingWizardTest.moc"
