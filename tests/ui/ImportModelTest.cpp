// "&Import to OIF..." of a 3DS model in the real main window: one new part in the list and in
// the previews, and a damaged model that changes nothing.
#include <QAction>
#include <QListWidget>
#include <QMimeData>
#include <QtTest>

#include <filesystem>
#include <memory>

#include "FrameTestKit.h"
#include "editors/ui/vornselectobj.h"
#include "preview/VRMLOps.h"
#include "shell/IniOps.h"
#include "shell/ui/vorn.h"
#include "support/Chunks3DS.h"

using namespace chunks3ds;

class ImportModelTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    std::unique_ptr<vorn> frame_;

    void openProject() { OpenFrameWithProject(frame_); }
    std::string model(const std::string& name, Bytes3DS bytes) {
        const std::string path = program_->folder.file(name);
        WriteFile(path, bytes);
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

    void aModelBecomesOnePartInTheListAndThePreviews() {
        openProject();
        SpyViews spy;
        const Bytes3DS roof = File({Object("Roof", {Vertices({{0, 0, 4}, {2, 0, 4}, {2, 3, 4}}),
                                                    TexVerts({{0, 0}, {1, 0}, {1, 1}}), Faces({{0, 1, 2}})})});
        program_->desktop.dialogAnswers = {model("roof.3ds", roof)};
        frame_->menuAction("&Import to OIF...")->trigger();
        QCOMPARE(CurrentProject.OIF.Header.PartCount, 2);
        QCOMPARE(frame_->selectobj()->objectbox()->count(), 2);
        QCOMPARE(spy.count("RefreshPartsList"), 1);
        QCOMPARE(spy.count("RebuildPreviews"), 1);
        // (2, 3, 4) in 3DS axes is (200, 400, -300) in the game's, in the new part's preview file.
        QVERIFY(ReadText(AppPath("temp/Part_1.tmp")).find("200 400 -300") != std::string::npos);
        QVERIFY(ReadText(ViewFilePath("Top")).find("200 400 -300") != std::string::npos);
        QVERIFY(program_->desktop.messages.empty());
    }

    void aDamagedModelIsToldAndChangesNothing() {
        openProject();
        SpyViews spy;
        const OIFFile before = CurrentProject.OIF;
        Bytes3DS cut = File({Object("Roof", {Vertices({{0, 0, 4}, {2, 0, 4}, {2, 3, 4}}), Faces({{0, 1, 2}})})});
        cut.resize(cut.size() - 5);
        program_->desktop.dialogAnswers = {model("cut.3ds", cut)};
        frame_->menuAction("&Import to OIF...")->trigger();
        QVERIFY(CurrentProject.OIF == before);
        QCOMPARE(frame_->selectobj()->objectbox()->count(), 1);
        QCOMPARE(spy.count("RebuildPreviews"), 0);
        QCOMPARE(program_->desktop.messages.size(), std::size_t{1});
        QVERIFY(program_->desktop.messages[0].text.find("damaged") != std::string::npos);
    }

    // Files dropped on the frame, as the command line names them: a new project named after the
    // first, each file imported by its extension, a missing one named in a message.
    void droppedFilesAreImportedIntoANewProject() {
        frame_ = std::make_unique<vorn>();
        frame_->show();
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(TM_SAMPLES "/stadium.oif"), QUrl::fromLocalFile(TM_SAMPLES "/gone.oif")});
        QDragEnterEvent enter(QPoint(200, 200), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(frame_.get(), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop(QPointF(200, 200), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(frame_.get(), &drop);
        QTRY_COMPARE(program_->desktop.messages.size(), std::size_t{1});
        QCOMPARE(frame_->windowTitle(), QString("VORN Terramason - [design] - [stadium]"));
        QCOMPARE(CurrentProject.OIF.Header.PartCount, 6);
        QCOMPARE(frame_->selectobj()->objectbox()->count(), 6);
        QVERIFY(program_->desktop.messages[0].text.find("gone.oif") != std::string::npos);
    }
};

QTEST_MAIN(ImportModelTest)
#include "ImportModelTest.moc"
