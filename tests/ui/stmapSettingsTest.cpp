// The Stadium Importer's "Settings": what it shows, the merge distance cleaned on leaving its
// box, Ok writing the per-user store and the program-wide values, Cancel changing nothing.
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QtTest>

#include <memory>

#include "WindowTestKit.h"
#include "importer/ui/stmapSettings.h"

class stmapSettingsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;

    // A click on the box's indicator: a wide box takes clicks on its text and indicator only.
    static void Tick(QCheckBox* box) { QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(6, box->height() / 2)); }

    static QSettings Store() { return QSettings(QSettings::NativeFormat, QSettings::UserScope, "VORN", "Terramason"); }

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           QString::fromStdString(program_->folder.file("store")));
        Importer = ImportState{};
    }
    void cleanup() { program_.reset(); }

    void showsTheProgramWideValuesAndMergeEnablesItsDistance() {
        Importer.Settings = {1, 0, 0, 0, 0.25f};
        stmapSettings dialog;
        QVERIFY(dialog.chkFlipU()->isChecked() && !dialog.chkFlipV()->isChecked() && !dialog.chkShade()->isChecked());
        QCOMPARE(dialog.txtMergeDist()->text(), QString("0.25"));
        QVERIFY(!dialog.txtMergeDist()->isEnabled());
        dialog.show();
        Tick(dialog.chkMerge());
        QVERIFY(dialog.txtMergeDist()->isEnabled());
        Tick(dialog.chkMerge());
        QVERIFY(!dialog.txtMergeDist()->isEnabled());
    }

    void leavingTheDistanceKeepsOnlyTheNumberItBeginsWith() {
        stmapSettings dialog;
        QVERIFY(MakeActive(dialog));
        dialog.chkMerge()->setChecked(true);
        dialog.chkMergeClick();
        const std::pair<const char*, const char*> cases[] = {{"0,5", "0"}, {"", "0"},         {"abc", "0"},
                                                             {"1.", "1"},  {"0.25x", "0.25"}, {"-2", "-2"}};
        for (const auto& [typed, kept] : cases) {
            dialog.txtMergeDist()->setFocus();
            QTRY_VERIFY(dialog.txtMergeDist()->hasFocus());
            dialog.txtMergeDist()->setText(typed);
            dialog.chkShade()->setFocus();
            QTRY_COMPARE(dialog.txtMergeDist()->text(), QString(kept));
        }
    }

    void okWritesTheStoreAndTheProgramAndCancelNothing() {
        {
            stmapSettings dialog;
            QVERIFY(MakeActive(dialog));
            Tick(dialog.chkFlipU());
            Tick(dialog.chkMerge());
            dialog.txtMergeDist()->setFocus();
            dialog.txtMergeDist()->setText("1.5m");
            QTest::mouseClick(dialog.cmdOK(), Qt::LeftButton);  // the click takes the focus first
            QCOMPARE(dialog.result(), int(QDialog::Accepted));
        }
        QCOMPARE(Importer.Settings, (ImportSettings{1, 1, 1, 1, 1.5f}));
        QSettings store = Store();
        QCOMPARE(store.value("Settings/FlipU").toString(), QString("1"));
        QCOMPARE(store.value("Settings/Shade").toString(), QString("1"));
        QCOMPARE(store.value("Settings/MergeDist").toString(), QString("1.5"));
        ImportSettings read;
        read.MergeDist = 0;
        ReadImporterSettings(read);
        ReadImporterFlips(read, ImportKind::RAVText);
        QCOMPARE(read, Importer.Settings);

        // Opened again it shows what Ok saved, not the design's "0.5".
        stmapSettings again;
        QCOMPARE(again.txtMergeDist()->text(), QString("1.5"));
        again.chkShade()->setChecked(false);
        QTest::mouseClick(again.cmdCancel(), Qt::LeftButton);
        QCOMPARE(Importer.Settings.Shade, std::int16_t(1));
        QCOMPARE(Store().value("Settings/Shade").toString(), QString("1"));
    }

    void aFirstRunReadsTheDefaultsWithFlipVByKindOfModel() {
        ImportSettings s{5, 5, 5, 5, 5};
        ReadImporterSettings(s);
        ReadImporterFlips(s, ImportKind::RAVText);
        QCOMPARE(s, (ImportSettings{0, 0, 1, 0, 0.5f}));
        ReadImporterFlips(s, ImportKind::Model3DS);
        QCOMPARE(s.FlipV, std::int16_t(1));
    }
};

QTEST_MAIN(stmapSettingsTest)
#include "stmapSettingsTest.moc"
