// "Crowd Building Wizard": its defaults from config.ini, the walk through its pages in both
// modes with the plane page skipped from a file, crowds made and made again, the refusal of no
// rows, the exit question, Help, and the Project menu's Import Crowds.
#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QtTest>

#include <memory>

#include "WindowTestKit.h"
#include "WizardTestKit.h"
#include "shell/HelpOps.h"
#include "shell/IniOps.h"
#include "shell/ui/vorn.h"
#include "support/Chunks3DS.h"
#include "wizards/ui/crowdwizard.h"

namespace {

int CrowdVertices() {
    int n = 0;
    for (const OIFPart& part : CurrentProject.OIF.Parts) n += part.Header.VertexCount;
    return n;
}

// A user's click: a disabled button takes none.
void Click(QAbstractButton* button) { button->click(); }

void TypePlane(crowdwizard& w) {
    const char* corners[4][3] = {{"0", "0", "0"}, {"1040", "0", "0"}, {"1040", "500", "-1000"}, {"0", "500", "-1000"}};
    for (int i = 0; i < 4; ++i) {
        w.xbox(i)->setText(corners[i][0]);
        w.ybox(i)->setText(corners[i][1]);
        w.zbox(i)->setText(corners[i][2]);
    }
}

}  // namespace

class CrowdWizardTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    ScriptedDesktop* desktop_ = nullptr;

    std::string PutModel(const std::string& name, int quads) {
        const std::string path = program_->folder.file(name);
        WriteFile(path, chunks3ds::QuadMeshes(quads));
        return path;
    }

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        desktop_ = &program_->desktop;
        CurrentProject.OIF = NewOIFFile();
    }
    void cleanup() { program_.reset(); }

    void loadTakesTheCrowdWizardKeysAndStartsOnTheFirstPage() {
        WriteConfig("Crowd Wizard", "CrowdHeight", "260.00");
        WriteConfig("Crowd Wizard", "NoOfRows", "12");
        WriteConfig("Crowd Wizard", "CrowdSpacing", "150.50");
        WriteConfig("Crowd Wizard", "Home", "0");
        crowdwizard w;
        QCOMPARE(w.windowTitle(), QString("Crowd Building Wizard"));
        QCOMPARE((QStringList{w.rowheight()->text(), w.noofrows()->text(), w.crowdspacing()->text()}),
                 (QStringList{"260", "12", "150.5"}));
        QVERIFY(w.venuebutton(1)->isChecked());
        QCOMPARE(w.page(), 0);
        QCOMPARE(w.maintab()->count(), 5);
        QVERIFY(!w.backbut()->isEnabled());
        WriteConfig("Crowd Wizard", "Home", "1");
        crowdwizard home;
        QVERIFY(home.venuebutton(0)->isChecked());
        // "Fixed" enables the count, the spacing choice the spacing.
        QVERIFY(home.noofrows()->isEnabled() && !home.crowdspacing()->isEnabled());
        Click(home.rowoption(1));
        QVERIFY(!home.noofrows()->isEnabled() && home.crowdspacing()->isEnabled());
    }

    void typedPlaneMakesCrowdsThatBackAndNextMakeAgain() {
        WriteConfig("Crowd Wizard", "NoOfRows", "10");
        WriteConfig("Crowd Wizard", "CrowdHeight", "300");
        SpyViews views;
        crowdwizard w;
        w.show();
        Click(w.nextbut());
        QCOMPARE(w.page(), 1);
        QVERIFY(w.polyfrom(1)->isChecked() && w.nextbut()->isEnabled() && w.backbut()->isEnabled());
        Click(w.nextbut());
        QCOMPARE(w.page(), 2);
        TypePlane(w);
        Click(w.nextbut());
        QCOMPARE(w.page(), 3);
        QCOMPARE(w.nextbut()->text(), QString("&Next  >"));
        Click(w.nextbut());
        QCOMPARE(w.page(), 4);
        QCOMPARE(w.nextbut()->text(), QString("&Finished"));
        QCOMPARE(desktop_->loadingTexts, std::vector<std::string>{"Creating crowds..."});
        QVERIFY(!desktop_->loadingShown);
        QCOMPARE(CurrentProject.OIF.Header.PartCount, 4);
        QCOMPARE(CrowdVertices(), 40);
        QCOMPARE(views.calls.size(), std::size_t(0));

        // Back and Next again: more rows merge into the same four parts.
        Click(w.backbut());
        QCOMPARE(w.page(), 3);
        QCOMPARE(w.nextbut()->text(), QString("&Next  >"));
        Click(w.nextbut());
        QCOMPARE(CurrentProject.OIF.Header.PartCount, 4);
        QCOMPARE(CrowdVertices(), 80);

        Click(w.nextbut());
        QVERIFY(!w.isVisible());
        QCOMPARE(views.calls, (std::vector<std::string>{"RefreshPartsList", "RebuildPreviews"}));
        QVERIFY2(desktop_->messages.empty(), "finishing asks nothing");
    }

    void fromAFileThePlanePageIsSkippedBothWays() {
        crowdwizard w;
        w.show();
        Click(w.nextbut());
        Click(w.polyfrom(0));
        QVERIFY2(!w.nextbut()->isEnabled(), "no file chosen yet");
        const std::string model = PutModel("planes.3ds", 2);
        desktop_->dialogAnswers = {model, ""};
        Click(w.getfile());
        QCOMPARE(desktop_->dialogTitles, std::vector<std::string>{"Import crowd 3ds file..."});
        QCOMPARE(w.file3dsname()->text().toStdString(), model);
        QVERIFY(w.nextbut()->isEnabled());
        Click(w.getfile());
        QCOMPARE(w.file3dsname()->text().toStdString(), model);

        Click(w.nextbut());
        QCOMPARE(w.page(), 3);
        Click(w.backbut());
        QCOMPARE(w.page(), 1);
        w.file3dsname()->setText("/no/such.3ds");
        Click(w.polyfrom(0));
        QVERIFY(!w.nextbut()->isEnabled());

        // Both meshes filled with three rows each.
        w.file3dsname()->setText(QString::fromStdString(model));
        Click(w.polyfrom(0));
        Click(w.nextbut());
        w.noofrows()->setText("3");
        Click(w.nextbut());
        QCOMPARE(w.page(), 4);
        QCOMPARE(CrowdVertices(), 2 * 3 * 4);
    }

    void noRowsIsOneErrorBoxAndTheDocumentStays() {
        crowdwizard w;
        w.show();
        for (int i = 0; i < 3; ++i) Click(w.nextbut());
        w.noofrows()->setText("0");
        const OIFFile before = CurrentProject.OIF;
        Click(w.nextbut());
        QCOMPARE(w.page(), 3);
        QCOMPARE(CurrentProject.OIF, before);
        QCOMPARE(desktop_->messages.size(), std::size_t(1));
        QCOMPARE(desktop_->messages[0].text,
                 std::string("Creating crowds failed.\r\n\r\nThe number of rows is 0: it must be at least 1."));
        QVERIFY(!desktop_->loadingShown);
    }

    void cancelAndTheCloseBoxAskAndHelpOpensItsPage() {
        crowdwizard w;
        CheckExitQuestionAndHelp(w, *desktop_, "Crowd Building Wizard", "crowdwizard.html");
    }

    void theMenusOpenOneWizardAndImportCrowds() {
        vorn frame;
        frame.createnew(0, "Project1");
        frame.menuAction("Crowd Building Wizard")->trigger();
        crowdwizard* first = crowdwizard::existing();
        QVERIFY(first && first->isVisible());
        frame.menuAction("Crowd Building Wizard")->trigger();
        QCOMPARE(crowdwizard::existing(), first);
        desktop_->answers = {MessageAnswer::Yes};
        first->close();
        QTRY_VERIFY(!crowdwizard::existing());

        desktop_->dialogAnswers = {PutModel("rows.3ds", 3)};
        desktop_->answers = {MessageAnswer::No};
        frame.menuAction("Import Crowds...")->trigger();
        QCOMPARE(desktop_->messages.back().text, std::string("Do you wish to use the row height fixing algorithm?   "));
        QCOMPARE(CurrentProject.OIF.Header.PartCount, 4);
        QCOMPARE(CrowdVertices(), 12);
    }
};

QTEST_MAIN(CrowdWizardTest)
#include "CrowdWizardTest.moc"
