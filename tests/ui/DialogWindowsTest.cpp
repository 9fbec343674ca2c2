// The four wizards, the Options window and the RAV Convertor: each one's buttons reach its
// operation and what it stores or makes shows; a refusal is one box that keeps the page; Cancel,
// the close box and Help work alike. What the operations compute, how options are read and
// written and the RAV script are the logic tests'.

#include <set>

#include "WindowTestKit.h"
#include "exchange/RhinoScriptOps.h"
#include "exchange/ui/rhinoravconv.h"
#include "shell/ui/VORNOptions.h"
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
QCheckBox* Check(QWidget* w, const char* name) { return w->findChild<QCheckBox*>(name); }
QLineEdit* Box(QWidget* w, const char* name) { return w->findChild<QLineEdit*>(name); }
}  // namespace

class DialogWindowsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    ScriptedDesktop* desktop_ = nullptr;
    std::unique_ptr<vorn> frame_;

    void openFrame(const OIFFile& doc) {
        frame_ = std::make_unique<vorn>();
        frame_->createnew(0, "Project1");
        CurrentProject.OIF = doc;
        TheViews().RefreshPartsList();
    }

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        desktop_ = &program_->desktop;
        CurrentProject.OIF = TexturedQuad(1);
    }
    void cleanup() {
        frame_.reset();
        for (int i = 0; i < PreviewWindowCount; ++i) delete CortonaViewer::existing(i);
        program_.reset();
    }

    // Cancel asks the exit question and No keeps it, the close box asks again and Yes closes it,
    // and Help opens its page.
    void everyWizardAsksBeforeItClosesAndOpensItsHelpPage() {
        crowdwizard crowd;
        lightingwizard lighting;
        transformwiz transform;
        stadwizard stadium;
        const std::pair<WizardFrame*, const char*> rows[] = {{&crowd, "crowdwizard.html"},
                                                             {&lighting, "lightingwizard.html"},
                                                             {&transform, "transformationwizard.html"},
                                                             {&stadium, "stadiumwizard.html"}};
        for (const auto& [w, page] : rows) {
            desktop_->messages.clear();
            w->show();
            desktop_->answers = {MessageAnswer::No, MessageAnswer::Yes};
            w->cancelbut()->click();
            QVERIFY(w->isVisible());
            QCOMPARE(desktop_->messages.back().text, std::string("Are you sure you want to exit the wizard?   "));
            w->close();
            QVERIFY(!w->isVisible() && desktop_->messages.size() == 2);
            w->helpbut()->click();
            QCOMPARE(desktop_->pages.back(), HelpPageAddress(page));
        }
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
        QVERIFY(w.page() == 4 && Vertices() == 40);
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
        QVERIFY(again.page() == 3 && CurrentProject.OIF == before && desktop_->messages.size() == 1);
        again.noofrows()->setText("3");
        again.nextbut()->click();
        QCOMPARE(Vertices(), 80 + 2 * 3 * 4);
    }

    void lightingIsAppliedByNextAndShownByTheOIFEditor() {
        WriteConfig("Terramason", "OIFEditor", "1");
        OIFFile doc = TexturedQuad();
        doc.Parts[0].Vertices[0].X = doc.Parts[0].Vertices[0].Z = 0;
        openFrame(doc);
        QLineEdit* shadow = vornoifform::existing()->oifvertexshadowbox();
        QCOMPARE(shadow->text(), QString("0"));
        frame_->menuAction("Stadium Lighting Wizard")->trigger();
        lightingwizard* w = lightingwizard::existing();
        SpyViews views;
        w->nextbut()->click();
        w->nextbut()->click();
        const OIFFile lit = CurrentProject.OIF;
        QVERIFY(lit != doc && shadow->text() != QString("0"));
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
        QVERIFY(w->page() == 1 && desktop_->messages.at(0).icon == MessageIcon::Critical);
    }

    void transformTurnsTheTickedPartsOnlyAndAgainAfterBack() {
        openFrame(AddPart(TexturedQuad(1).Parts[0], TexturedQuad(1)));
        frame_->menuAction("Stadium Transformation Wizard")->trigger();
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

    void optionsShowWhatIsStoredApplyAndOkStoreAndCancelNothingAfterTheLastApply() {
        WriteConfig("Terramason", "OIFEditor", "1");
        WriteConfig("Import", "CrowdHeight", "300abc");
        VORNOptions w;
        QVERIFY(Check(&w, "oifeditor")->isChecked() && !Check(&w, "newproj")->isChecked());
        QCOMPARE(Box(&w, "optimisecrowdheight")->text(), QString("300"));
        w.show();
        Check(&w, "closestmap")->setChecked(true);
        Box(&w, "crowdspacing")->setText("175abc");
        QTest::mouseClick(w.cmdApply(), Qt::LeftButton);
        QVERIFY(w.isVisible());
        QCOMPARE(ReadConfig("Stadium Importer", "AutoClose") + ReadConfig("Startup", "NewProj") +
                     ReadConfig("Crowd Wizard", "CrowdSpacing"),
                 std::string("10175"));
        // The textures tick sets the Perspective flags, making its window if needed.
        Check(&w, "viewtextures")->setChecked(true);
        QTest::mouseClick(w.cmdApply(), Qt::LeftButton);
        CortonaViewer* perspective = CortonaViewer::existing(ViewPerspective);
        QVERIFY(perspective && !CortonaViewer::existing(ViewTop));
        QCOMPARE(perspective->Cortona1()->renderFlags(), RenderTextured);
        Check(&w, "viewtextures")->setChecked(false);
        QTest::mouseClick(w.cmdApply(), Qt::LeftButton);
        QCOMPARE(CortonaViewer::existing(ViewPerspective), perspective);
        QCOMPARE(perspective->Cortona1()->renderFlags(), RenderUntextured);
        delete perspective;
        std::filesystem::remove(ConfigPath());
        const auto options = [] { VORNOptions::showModal(nullptr); };
        QVERIFY(RunModal<VORNOptions>(options, [](VORNOptions* d) {
            Check(d, "viewtextures")->setChecked(true);
            QTest::mouseClick(d->cmdCancel(), Qt::LeftButton);
        }));
        QVERIFY(!std::filesystem::exists(ConfigPath()));
        QVERIFY2(!CortonaViewer::existing(ViewPerspective), "no viewer change without Apply");
        QVERIFY(RunModal<VORNOptions>(options, [](VORNOptions* d) {
            Box(d, "noofrows")->setText("14");
            QTest::mouseClick(d->cmdApply(), Qt::LeftButton);
            Box(d, "noofrows")->setText("20");
            Check(d, "maxwindow")->setChecked(true);
            QTest::mouseClick(d->cmdCancel(), Qt::LeftButton);
        }));
        QCOMPARE(ReadConfig("Crowd Wizard", "NoOfRows") + ReadConfig("Startup", "Maximise"), std::string("140"));
        bool closedByOK = false;
        QVERIFY(RunModal<VORNOptions>(options, [&](VORNOptions* d) {
            Check(d, "vrmlreminder")->setChecked(true);
            QTest::mouseClick(d->cmdOK(), Qt::LeftButton);
            closedByOK = !d->isVisible() && d->result() == QDialog::Accepted;
            d->reject();  // a window that OK left open ends here, not in a hang
        }));
        QVERIFY(closedByOK && ReadConfig("Terramason", "Starter") == "1");
        QVERIFY(desktop_->messages.empty());
    }

    // The browse buttons fill the boxes in the order the window lists them; "&Ok" waits for all
    // three, writes the script and closes, or tells what is missing and keeps the window open.
    void theRavConvertorsButtonsFillItsBoxesAndOkWritesTheScriptOrTellsWhatIsWrong() {
        rhinoravconv w;
        w.show();
        QVERIFY2(w.okbut()->isEnabled(), "paths typed by hand must be usable");
        // The third answer cancels the script dialog; a folder gets one "/".
        desktop_->dialogAnswers = {"/data/stand.txt", "/data/tex", "", "/data/out", "/data/tex/"};
        for (QWidget* button : {w.ravbut(), w.texbut(), w.rhinobut()}) QTest::mouseClick(button, Qt::LeftButton);
        QVERIFY(!w.okbut()->isEnabled());
        QTest::mouseClick(w.rhinobut(), Qt::LeftButton);
        QVERIFY(w.okbut()->isEnabled());
        QTest::mouseClick(w.texbut(), Qt::LeftButton);
        QCOMPARE((QStringList{w.ravbox()->text(), w.texbox()->text(), w.rhinobox()->text()}),
                 (QStringList{"/data/stand.txt", "/data/tex/", "/data/out.txt"}));
        QTest::mouseClick(w.helpbut(), Qt::LeftButton);
        QCOMPARE(desktop_->pages, (std::vector<std::string>{HelpPageAddress("ravconvertor.html")}));
        const std::string script = program_->folder.file("rows.rvb"), shortRav = program_->folder.file("short.txt");
        WriteFile(shortRav, Bytes().raw("Version=1\r\nNumPoly=2\r\n").data);
        w.ravbox()->clear();
        w.texbox()->setText(QString::fromStdString(program_->folder.path()));
        w.rhinobox()->setText(QString::fromStdString(script));
        QVERIFY2(w.okbut()->isEnabled(), "typing does not run checkboxes");
        QTest::mouseClick(w.okbut(), Qt::LeftButton);
        QVERIFY(desktop_->messages.at(0).text.rfind("Please choose the RAV Text file", 0) == 0);
        w.ravbox()->setText(QString::fromStdString(shortRav));
        QTest::mouseClick(w.okbut(), Qt::LeftButton);
        QVERIFY(desktop_->messages.at(1).text.rfind("Invalid RAV file!", 0) == 0);
        QVERIFY(w.isVisible() && !std::filesystem::exists(script));
        // One crowd row after the exporter's empty first polygon, from the Tools menu.
        const char* const oneRow =
            "Version=1\r\nNumPoly=2\r\n[P0]\r\nName=\r\nNumVert=0\r\nNumGrps=0\r\n"
            "[P1]\r\nName=row\r\nNumVert=4\r\n  200,0,0,1,0,FFFFFF\r\n  200,100,50,1,1,FFFFFF\r\n"
            "  0,100,50,0,1,FFFFFF\r\n  "
            "0,0,0,0,0,FFFFFF\r\nNumGrps=1\r\nGroup1=rowb\r\nNumIdx=4\r\nIndices=0,1,2,3\r\n";
        WriteFile(program_->folder.file("rows.txt"), Bytes().raw(oneRow).data);
        w.hide();
        desktop_->dialogAnswers = {program_->folder.file("rows.txt"), program_->folder.file("tex"), script};
        vorn frame;
        QVERIFY(RunModal<rhinoravconv>([&] { frame.menuAction("RAV Convertor")->trigger(); },
                                       [](rhinoravconv* d) {
                                           for (QWidget* button : {d->ravbut(), d->texbut(), d->rhinobut(), d->okbut()})
                                               QTest::mouseClick(button, Qt::LeftButton);
                                       }));
        QVERIFY(!QApplication::activeModalWidget() && desktop_->messages.size() == 2);
        QCOMPARE(ReadText(script), RhinoScriptText(oneRow, program_->folder.file("tex") + "/").text);
    }
};

QTEST_MAIN(DialogWindowsTest)
#include "DialogWindowsTest.moc"
