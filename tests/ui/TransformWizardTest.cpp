// "Stadium Transformation Wizard": the parts list with every part ticked, the transformation of
// the ticked parts on Next and again after Back, the refresh that follows, the exit question and
// Help.
#include <QAction>
#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QtTest>

#include <memory>

#include "WindowTestKit.h"
#include "WizardTestKit.h"
#include "shell/HelpOps.h"
#include "shell/ui/vorn.h"
#include "wizards/ui/transformwiz.h"

class TransformWizardTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    ScriptedDesktop* desktop_ = nullptr;

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        desktop_ = &program_->desktop;
        CurrentProject.OIF = TexturedQuad(1);
        CurrentProject.OIF.Parts[0].Header.Name = "North";
        CurrentProject.OIF = AddPart(CurrentProject.OIF.Parts[0], CurrentProject.OIF);
        CurrentProject.OIF.Parts[1].Header.Name = "South";
    }
    void cleanup() { program_.reset(); }

    void listsEveryPartTickedWithTheDefaults() {
        transformwiz w;
        QCOMPARE(w.windowTitle(), QString("Stadium Transformation Wizard"));
        QCOMPARE(w.transformlist()->count(), 2);
        QCOMPARE(w.transformlist()->item(0)->text(), QString("North").leftJustified(28));
        for (int i = 0; i < 2; ++i) QCOMPARE(w.transformlist()->item(i)->checkState(), Qt::Checked);
        QCOMPARE((QStringList{w.scale(0)->text(), w.rotate(1)->text(), w.translate(2)->text()}),
                 (QStringList{"100", "0.00", "0.00"}));
        QVERIFY(!w.mirror(0)->isChecked() && !w.flipu()->isChecked());
    }

    void nextTransformsTheTickedPartsAndBackNextDoesItAgain() {
        vorn frame;
        frame.createnew(0, "Project1");
        CurrentProject.OIF = TexturedQuad(1);
        CurrentProject.OIF = AddPart(CurrentProject.OIF.Parts[0], CurrentProject.OIF);
        frame.menuAction("Stadium Transformation Wizard")->trigger();
        transformwiz* w = transformwiz::existing();
        QVERIFY(w && w->isVisible());
        const OIFPart untouched = CurrentProject.OIF.Parts[0];
        SpyViews views;
        w->nextbut()->click();
        w->transformlist()->item(0)->setCheckState(Qt::Unchecked);
        w->rotate(1)->setText("90");
        w->flipv()->setChecked(true);
        w->nextbut()->click();
        QCOMPARE(w->page(), 2);
        QCOMPARE(w->nextbut()->text(), QString("&Finished"));
        QCOMPARE(CurrentProject.OIF.Parts[0], untouched);
        // (1, 0, -1) turned a quarter about Y is (-1, 0, -1); v 0 flips to 1.
        const OIFVertex& v = CurrentProject.OIF.Parts[1].Vertices[1];
        QVERIFY(std::fabs(v.X + 1) < 1e-5 && std::fabs(v.Z + 1) < 1e-5);
        QCOMPARE(v.V, 1.0f);
        QCOMPARE(views.calls, (std::vector<std::string>{"RefreshPartsList", "RebuildPreviews"}));

        w->backbut()->click();
        w->nextbut()->click();
        const OIFVertex& twice = CurrentProject.OIF.Parts[1].Vertices[1];
        QVERIFY2(std::fabs(twice.X + 1) < 1e-5 && std::fabs(twice.Z - 1) < 1e-5, "a half turn in all");
        QCOMPARE(twice.V, 0.0f);
        w->nextbut()->click();
        QTRY_VERIFY(!transformwiz::existing());
        QVERIFY(desktop_->messages.empty());
    }

    void cancelAndTheCloseBoxAskAndHelpOpensItsPage() {
        transformwiz w;
        CheckExitQuestionAndHelp(w, *desktop_, "Stadium Transformation Wizard", "transformationwizard.html");
    }
};

QTEST_MAIN(TransformWizardTest)
#include "TransformWizardTest.moc"
