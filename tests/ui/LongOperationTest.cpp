// A long operation in the real main window: a fault in the middle of it is one error box and
// leaves the document and the windows as they were, and a command started by a click while it
// pumps events does not run.
#include <QAction>
#include <QListWidget>
#include <QtTest>

#include <memory>
#include <stdexcept>

#include "FrameTestKit.h"
#include "core/OIFOps.h"
#include "editors/ui/vornselectobj.h"
#include "preview/ui/CortonaViewer.h"
#include "shell/IniOps.h"
#include "shell/ui/vorn.h"

class LongOperationTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    std::unique_ptr<vorn> frame_;

    void openProject() { OpenFrameWithProject(frame_); }
    // The next operation pumps at its first chance, however recently the last one did.
    void StartPumpClock() { InstallDesktop(&program_->desktop); }
    // A stadium of 40 parts to import: its load pumps events.
    std::string stadium() {
        OIFFile doc = NewOIFFile();
        for (int p = 0; p < 40; ++p) doc = AddPart(TexturedQuad(100.0f + static_cast<float>(p)).Parts[0], doc);
        const std::string path = program_->folder.file("big.oif");
        WriteFile(path, SaveOIF(doc));
        return path;
    }

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        WriteConfig("Terramason", "Previews", "1");
    }
    void cleanup() {
        frame_.reset();
        program_.reset();
    }

    void aFaultHalfWayIsOneBoxAndTheDocumentAndWindowsGoOn() {
        openProject();
        const OIFFile before = CurrentProject.OIF;
        int pumps = 0;
        program_->desktop.onPump = [&] {
            if (++pumps == 1) throw std::runtime_error("The disk went away.");
        };
        program_->desktop.dialogAnswers = {stadium()};
        StartPumpClock();
        frame_->menuAction("&Import to OIF...")->trigger();
        QCOMPARE(program_->desktop.messages.size(), std::size_t{1});
        QCOMPARE(program_->desktop.messages[0].text, std::string("Import to OIF failed.\r\n\r\nThe disk went away."));
        QVERIFY(CurrentProject.OIF == before);
        QVERIFY(frame_->isVisible());
        QCOMPARE(frame_->selectobj()->objectbox()->count(), 1);
        for (int i = 0; i < 4; ++i) QVERIFY(CortonaViewer::existing(i) && CortonaViewer::existing(i)->isVisible());
        QVERIFY(!program_->desktop.loadingShown);

        program_->desktop.onPump = nullptr;
        program_->desktop.dialogAnswers = {program_->folder.file("big.oif")};
        frame_->menuAction("&Import to OIF...")->trigger();
        QCOMPARE(CurrentProject.OIF.Header.PartCount, 41);
        QCOMPARE(frame_->selectobj()->objectbox()->count(), 41);
    }

    void aCommandClickedWhileAnOperationPumpsDoesNotRun() {
        openProject();
        program_->desktop.dialogAnswers = {stadium(), stadium()};
        bool clicked = false;
        program_->desktop.onPump = [&] {
            if (clicked) return;
            clicked = true;
            frame_->menuAction("&Import to OIF...")->trigger();
        };
        StartPumpClock();
        frame_->menuAction("&Import to OIF...")->trigger();
        QVERIFY(clicked);
        QCOMPARE(CurrentProject.OIF.Header.PartCount, 41);
        // The second command never asked for its file.
        QCOMPARE(program_->desktop.dialogAnswers.size(), std::size_t{1});
        QVERIFY(program_->desktop.messages.empty());
    }
};

QTEST_MAIN(LongOperationTest)
#include "LongOperationTest.moc"
