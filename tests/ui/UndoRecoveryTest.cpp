// No work is lost: a save that blanks the live texture names followed by a merge is undone by
// Ctrl+Z, a field keeps its own Ctrl+Z, and an editor killed after an import offers its stadium
// back at the next start.
#include <QAction>
#include <QLineEdit>
#include <QListWidget>
#include <QProcess>
#include <QtTest>

#include <csignal>
#include <filesystem>
#include <memory>

#include "WindowTestKit.h"
#include "core/OIFOps.h"
#include "editors/ui/vornoifform.h"
#include "editors/ui/vornselectobj.h"
#include "shell/HistoryOps.h"
#include "shell/IniOps.h"
#include "shell/JournalOps.h"
#include "shell/Startup.h"
#include "shell/ui/vorn.h"

class UndoRecoveryTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;

    int listed(vorn& w) { return w.selectobj()->objectbox()->count(); }
    void importSample(vorn& w) {
        w.menuAction("&New Project")->trigger();
        program_->desktop.dialogAnswers = {TM_SAMPLES "/stadium.oif"};
        w.menuAction("&Import to OIF...")->trigger();
    }

private slots:
    void init() { program_ = std::make_unique<ScratchProgram>(); }
    void cleanup() { program_.reset(); }

    void ctrlZBringsBackWhatASaveAndAMergeTook() {
        vorn w;
        QVERIFY(MakeActive(w));
        importSample(w);
        QCOMPARE(listed(w), 6);
        const OIFFile imported = CurrentProject.OIF;
        program_->desktop.dialogAnswers = {program_->folder.file("saved.oif")};
        w.menuAction("&Save OIF")->trigger();
        w.menuAction("Merge parts with same texture...")->trigger();
        QCOMPARE(CurrentProject.OIF.Parts.size(), std::size_t{1});
        QCOMPARE(w.menuAction("&Undo")->text(), QString("&Undo Merge parts"));

        QTest::keyClick(&w, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(CurrentProject.OIF.Parts, imported.Parts);
        QCOMPARE(listed(w), 6);
        QCOMPARE(w.menuAction("&Redo")->text(), QString("&Redo Merge parts"));
        program_->desktop.dialogAnswers = {program_->folder.file("again.oif")};
        w.menuAction("&Save OIF")->trigger();
        QCOMPARE(LoadOIF(program_->folder.file("again.oif")).Parts, imported.Parts);

        QTest::keyClick(&w, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(CurrentProject.OIF.Parts.size(), std::size_t{1});
        QCOMPARE(listed(w), 1);
    }

    void aFieldKeepsItsOwnCtrlZAndATypingRunIsOneStep() {
        WriteConfig("Terramason", "OIFEditor", "1");
        vorn w;
        QVERIFY(MakeActive(w));
        importSample(w);
        QLineEdit* name = vornoifform::existing()->oifpartname();
        name->setFocus();
        name->selectAll();
        QTest::keyClicks(name, "Turf");
        QCOMPARE(CurrentProject.OIF.Parts[0].Header.Name.str().substr(0, 4), std::string("Turf"));
        QCOMPARE(w.menuAction("&Undo")->text(), QString("&Undo Part name"));
        QTest::keyClick(name, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(CurrentProject.OIF.Parts.size(), std::size_t{6});  // the import stays
        QVERIFY(name->text() != QString("Turf"));
        w.menuAction("&Undo")->trigger();
        w.menuAction("&Undo")->trigger();
        QVERIFY(CurrentProject.OIF.Parts.empty());
    }

    void aKilledEditorOffersItsStadiumAtTheNextStart() {
        namespace fs = std::filesystem;
        QProcess editor;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("XDG_DATA_HOME", QString::fromStdString(program_->folder.path()));
        editor.setProcessEnvironment(env);
        editor.start(TM_EDITOR, {TM_SAMPLES "/stadium.oif"});
        QVERIFY(editor.waitForStarted());
        AppFolder = program_->folder.file("terramason");
        // The journal of the session once it holds the import.
        const auto journalled = [] {
            std::error_code ec;
            for (const auto& e : fs::directory_iterator(RecoveryFolder(), ec))
                if (e.path().extension() == ".tmj") {
                    const JournalParse j = ParseJournal(ReadFile(e.path().string()));
                    return j.entry && j.entry->Project.OIF.Parts.size() == 6;
                }
            return false;
        };
        QTRY_VERIFY_WITH_TIMEOUT(journalled(), 20000);
        ::kill(static_cast<pid_t>(editor.processId()), SIGKILL);
        QVERIFY(editor.waitForFinished());

        program_->desktop.answers = {MessageAnswer::Yes};
        vorn w;
        w.show();
        OfferRecovery(w);
        QCOMPARE(program_->desktop.messages.size(), std::size_t{1});
        QVERIFY(program_->desktop.messages[0].text.find("\"stadium\"") != std::string::npos);
        QCOMPARE(CurrentProject.OIF.Parts, LoadOIF(TM_SAMPLES "/stadium.oif").Parts);
        QCOMPARE(listed(w), 6);
        QCOMPARE(w.windowTitle(), QString("VORN Terramason - [design] - [stadium]"));
    }
};

QTEST_MAIN(UndoRecoveryTest)
#include "UndoRecoveryTest.moc"
