// The Options window: what opening shows, what "Apply", "OK" and "Cancel" store, and the
// Perspective preview's render flags that follow "Perspective View with Textures".
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QtTest>

#include <filesystem>
#include <memory>

#include "WindowTestKit.h"
#include "preview/PreviewViewOps.h"
#include "preview/ui/CortonaViewer.h"
#include "preview/ui/VrmlView.h"
#include "shell/IniOps.h"
#include "shell/OptionsOps.h"
#include "shell/ui/VORNOptions.h"

namespace {
QCheckBox* Check(QWidget& w, const char* name) { return w.findChild<QCheckBox*>(name); }
QLineEdit* Box(QWidget& w, const char* name) { return w.findChild<QLineEdit*>(name); }

void DropPreviewWindows() {
    for (int i = 0; i < PreviewWindowCount; ++i) delete CortonaViewer::existing(i);
}
}  // namespace

class OptionsWindowTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;

    // The modal window as Tools, "&Options" opens it, with `act` run inside it.
    void RunModal(std::function<void(VORNOptions*)> act) {
        bool driven = false;
        WhenModalShown<VORNOptions>([&](VORNOptions* w) {
            driven = true;
            act(w);
        });
        VORNOptions::showModal(nullptr);
        QVERIFY(driven);
    }

private slots:
    void init() { program_ = std::make_unique<ScratchProgram>(); }
    void cleanup() {
        DropPreviewWindows();
        const bool quiet = program_->desktop.messages.empty();
        program_.reset();
        QVERIFY(quiet);
    }

    void tabsFramesAndControlsCarryTheirCaptions() {
        VORNOptions w;
        QVERIFY(w.isModal());
        QCOMPARE(w.OptionsTab()->objectName(), QString("OptionsTab"));
        QCOMPARE(w.OptionsTab()->count(), 4);
        const QStringList tabs{"Windows", "Stadium &Editing", "En&vironment", "&Previews"};
        for (int i = 0; i < 4; ++i) QCOMPARE(w.OptionsTab()->tabText(i), tabs[i]);
        const std::pair<const char*, const char*> frames[] = {{"Frame1", "Windows"},
                                                              {"Frame2", "Crowd Building"},
                                                              {"Frame3", "Program start"},
                                                              {"Frame4", "Stadium Importer"},
                                                              {"Frame5", "Settings"}};
        for (auto [name, title] : frames) {
            QGroupBox* f = w.findChild<QGroupBox*>(name);
            QVERIFY2(f, name);
            QCOMPARE(f->title(), QString(title));
        }
        QCOMPARE(w.findChild<QGroupBox*>("Frame2")->parentWidget(), w.findChild<QGroupBox*>("Frame4")->parentWidget());
        const std::pair<const char*, const char*> checks[] = {
            {"oifeditor", "OIF Editor"},
            {"previews", "Load Stadium Previews (*)"},
            {"homecrowd", "Default home crowd"},
            {"closestmap", "Close Stadium Importer upon finishing model importing"},
            {"vrmlreminder", "Display Parallel Graphics VRML plugin download reminder"},
            {"newproj", "Display New Project Dialog"},
            {"maxwindow", "Maximise Window"},
            {"refreshpreviewbox", "Stadium Preview Auto-Refresh"},
            {"viewtextures", "Perspective View with Textures"}};
        for (auto [name, caption] : checks) {
            QVERIFY2(Check(w, name), name);
            QCOMPARE(Check(w, name)->text(), QString(caption));
        }
        QCOMPARE(w.findChild<QLabel*>("Label1")->text(),
                 QString("(*) denotes setting will only reset on program restart"));
        QStringList labels;
        for (QLabel* l : w.findChildren<QLabel*>()) labels << l->text();
        for (const char* label : {"Optimised crowd height for Import Crowds...", "Crowd Wizard Default crowd height",
                                  "Default number of rows", "Default crowd spacing", "Zoom Amount"})
            QVERIFY2(labels.contains(label), label);
        for (const OptionKey& k : OptionKeys) {
            if (k.kind == OptionKind::Number) QVERIFY2(Box(w, k.control), k.control);
            else QVERIFY2(Check(w, k.control), k.control);
        }
        QCOMPARE(w.cmdApply()->objectName(), QString("cmdApply"));
        QCOMPARE(w.cmdApply()->text(), QString("Apply"));
        QCOMPARE(w.cmdCancel()->objectName(), QString("cmdCancel"));
        QCOMPARE(w.cmdCancel()->text(), QString("Cancel"));
        QCOMPARE(w.cmdOK()->objectName(), QString("cmdOK"));
        QCOMPARE(w.cmdOK()->text(), QString("OK"));
    }

    void tabMnemonicsSwitchTabs() {
        VORNOptions w;
        QVERIFY(MakeActive(w));
        QTest::keyClick(&w, Qt::Key_V, Qt::AltModifier);
        QCOMPARE(w.OptionsTab()->currentIndex(), 2);
        QTest::keyClick(&w, Qt::Key_P, Qt::AltModifier);
        QCOMPARE(w.OptionsTab()->currentIndex(), 3);
        QTest::keyClick(&w, Qt::Key_E, Qt::AltModifier);
        QCOMPARE(w.OptionsTab()->currentIndex(), 1);
    }

    // How each stored text is shown and stored again is OptionsOps's (OptionsOpsTest); here the
    // window puts it into its check boxes and text boxes and takes it back from them.
    void openingShowsTheStoredValues() {
        WriteConfig("Terramason", "OIFEditor", "1");
        WriteConfig("Crowd Wizard", "CrowdSpacing", "150.00");
        WriteConfig("Import", "CrowdHeight", "300abc");
        VORNOptions w;
        QVERIFY(Check(w, "oifeditor")->isChecked());
        QVERIFY(!Check(w, "newproj")->isChecked());
        QCOMPARE(Box(w, "crowdspacing")->text(), QString("150"));
        QCOMPARE(Box(w, "optimisecrowdheight")->text(), QString("300"));
    }

    void applyStoresEveryControlAndLeavesTheWindowOpen() {
        VORNOptions w;
        w.show();
        Check(w, "closestmap")->setChecked(true);
        Box(w, "crowdspacing")->setText("175abc");
        QTest::mouseClick(w.cmdApply(), Qt::LeftButton);
        QVERIFY(w.isVisible());
        QCOMPARE(ReadConfig("Stadium Importer", "AutoClose"), std::string("1"));
        QCOMPARE(ReadConfig("Startup", "NewProj"), std::string("0"));
        QCOMPARE(ReadConfig("Crowd Wizard", "CrowdSpacing"), std::string("175"));
        // The box keeps what was typed; only the stored text is the number.
        QCOMPARE(Box(w, "crowdspacing")->text(), QString("175abc"));
    }

    void applyThenCancelKeepsTheAppliedValues() {
        WriteConfig("Crowd Wizard", "NoOfRows", "10");
        RunModal([](VORNOptions* w) {
            Box(*w, "noofrows")->setText("14");
            Check(*w, "maxwindow")->setChecked(true);
            QTest::mouseClick(w->cmdApply(), Qt::LeftButton);
            Box(*w, "noofrows")->setText("20");
            Check(*w, "maxwindow")->setChecked(false);
            QTest::mouseClick(w->cmdCancel(), Qt::LeftButton);
        });
        QCOMPARE(ReadConfig("Crowd Wizard", "NoOfRows"), std::string("14"));
        QCOMPARE(ReadConfig("Startup", "Maximise"), std::string("1"));
    }

    void cancelAloneWritesNothing() {
        WriteConfig("Crowd Wizard", "CrowdSpacing", "150.00");
        WriteConfig("Terramason", "Starter", "yes");
        const std::string before = ReadText(ConfigPath());
        RunModal([](VORNOptions* w) {
            Box(*w, "crowdspacing")->setText("99");
            Check(*w, "newproj")->setChecked(true);
            QTest::mouseClick(w->cmdCancel(), Qt::LeftButton);
        });
        QCOMPARE(ReadText(ConfigPath()), before);
        QVERIFY2(!CortonaViewer::existing(ViewPerspective), "no viewer change without Apply");
    }

    void cancelWithoutAConfigFileMakesNone() {
        RunModal([](VORNOptions* w) { QTest::mouseClick(w->cmdCancel(), Qt::LeftButton); });
        QVERIFY(!std::filesystem::exists(ConfigPath()));
    }

    void okStoresAndCloses() {
        bool closedByOK = false;
        RunModal([&](VORNOptions* w) {
            Box(*w, "crowdwizardheight")->setText("310");
            Check(*w, "vrmlreminder")->setChecked(true);
            QTest::mouseClick(w->cmdOK(), Qt::LeftButton);
            closedByOK = !w->isVisible() && w->result() == QDialog::Accepted;
        });
        QVERIFY(closedByOK);
        QCOMPARE(ReadConfig("Crowd Wizard", "CrowdHeight"), std::string("310"));
        QCOMPARE(ReadConfig("Terramason", "Starter"), std::string("1"));
    }

    void texturesTickSetsThePerspectiveFlags() {
        CortonaViewer* perspective = CortonaViewer::window(ViewPerspective);
        CortonaViewer* top = CortonaViewer::window(ViewTop);
        QCOMPARE(perspective->Cortona1()->renderFlags(), RenderUntextured);
        VORNOptions w;
        Check(w, "viewtextures")->setChecked(true);
        QTest::mouseClick(w.cmdApply(), Qt::LeftButton);
        QCOMPARE(perspective->Cortona1()->renderFlags(), RenderTextured);
        QCOMPARE(CortonaViewer::existing(ViewPerspective), perspective);
        QCOMPARE(top->Cortona1()->renderFlags(), RenderUntextured);
        Check(w, "viewtextures")->setChecked(false);
        QTest::mouseClick(w.cmdApply(), Qt::LeftButton);
        QCOMPARE(perspective->Cortona1()->renderFlags(), RenderUntextured);
        QCOMPARE(ReadConfig("Previews", "PerspectiveTex"), std::string("0"));
    }

    void applyWithoutPreviewsMakesThePerspectiveWindow() {
        WriteConfig("Previews", "PerspectiveTex", "1");
        VORNOptions w;
        QVERIFY(!CortonaViewer::existing(ViewPerspective));
        QTest::mouseClick(w.cmdApply(), Qt::LeftButton);
        CortonaViewer* perspective = CortonaViewer::existing(ViewPerspective);
        QVERIFY(perspective);
        QCOMPARE(perspective->Cortona1()->renderFlags(), RenderTextured);
        for (int i : {ViewTop, ViewRight, ViewBack}) QVERIFY(!CortonaViewer::existing(i));
    }
};

QTEST_MAIN(OptionsWindowTest)
#include "OptionsWindowTest.moc"
