// The Options window: what opening shows, what "Apply", "OK" and "Cancel" store, and the
// Perspective preview's render flags that follow "Perspective View with Textures". How each
// stored text is read and written is OptionsOpsTest's.
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include <filesystem>
#include <memory>

#include "WindowTestKit.h"
#include "preview/PreviewViewOps.h"
#include "preview/ui/CortonaViewer.h"
#include "preview/ui/VrmlView.h"
#include "shell/IniOps.h"
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

    void openingShowsTheStoredValuesAndApplyStoresThemWithTheWindowOpen() {
        WriteConfig("Terramason", "OIFEditor", "1");
        WriteConfig("Import", "CrowdHeight", "300abc");
        VORNOptions w;
        QVERIFY(Check(w, "oifeditor")->isChecked() && !Check(w, "newproj")->isChecked());
        QCOMPARE(Box(w, "optimisecrowdheight")->text(), QString("300"));
        w.show();
        Check(w, "closestmap")->setChecked(true);
        Box(w, "crowdspacing")->setText("175abc");
        QTest::mouseClick(w.cmdApply(), Qt::LeftButton);
        QVERIFY(w.isVisible());
        QCOMPARE(ReadConfig("Stadium Importer", "AutoClose"), std::string("1"));
        QCOMPARE(ReadConfig("Startup", "NewProj"), std::string("0"));
        QCOMPARE(ReadConfig("Crowd Wizard", "CrowdSpacing"), std::string("175"));
    }

    void cancelWritesNothingAfterTheLastApplyAndOkStoresAndCloses() {
        RunModal([](VORNOptions* w) {
            Check(*w, "viewtextures")->setChecked(true);
            QTest::mouseClick(w->cmdCancel(), Qt::LeftButton);
        });
        QVERIFY(!std::filesystem::exists(ConfigPath()));
        QVERIFY2(!CortonaViewer::existing(ViewPerspective), "no viewer change without Apply");
        RunModal([](VORNOptions* w) {
            Box(*w, "noofrows")->setText("14");
            QTest::mouseClick(w->cmdApply(), Qt::LeftButton);
            Box(*w, "noofrows")->setText("20");
            Check(*w, "maxwindow")->setChecked(true);
            QTest::mouseClick(w->cmdCancel(), Qt::LeftButton);
        });
        QCOMPARE(ReadConfig("Crowd Wizard", "NoOfRows"), std::string("14"));
        QCOMPARE(ReadConfig("Startup", "Maximise"), std::string("0"));
        bool closedByOK = false;
        RunModal([&](VORNOptions* w) {
            Check(*w, "vrmlreminder")->setChecked(true);
            QTest::mouseClick(w->cmdOK(), Qt::LeftButton);
            closedByOK = !w->isVisible() && w->result() == QDialog::Accepted;
        });
        QVERIFY(closedByOK);
        QCOMPARE(ReadConfig("Terramason", "Starter"), std::string("1"));
    }

    void texturesTickSetsThePerspectiveFlagsMakingItsWindowIfNeeded() {
        VORNOptions w;
        Check(w, "viewtextures")->setChecked(true);
        QTest::mouseClick(w.cmdApply(), Qt::LeftButton);
        CortonaViewer* perspective = CortonaViewer::existing(ViewPerspective);
        QVERIFY(perspective && !CortonaViewer::existing(ViewTop));
        QCOMPARE(perspective->Cortona1()->renderFlags(), RenderTextured);
        Check(w, "viewtextures")->setChecked(false);
        QTest::mouseClick(w.cmdApply(), Qt::LeftButton);
        QCOMPARE(CortonaViewer::existing(ViewPerspective), perspective);
        QCOMPARE(perspective->Cortona1()->renderFlags(), RenderUntextured);
    }
};

QTEST_MAIN(OptionsWindowTest)
#include "OptionsWindowTest.moc"
