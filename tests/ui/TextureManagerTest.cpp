// "Texture Manager" and "Select texture name...": the picture follows the image, a press picks a
// UV, points reach the OIF Editor, an import reaches the Perspective preview. The size, pick and
// import rules are TextureManagerOpsTest's.
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include <filesystem>
#include <memory>

#include "WindowTestKit.h"
#include "editors/ui/texturename.h"
#include "editors/ui/vornoifform.h"
#include "editors/ui/vorntexture.h"
#include "preview/ui/CortonaViewer.h"
#include "preview/ui/VrmlView.h"
#include "shell/IniOps.h"

namespace {
constexpr int Tp01 = 1;
std::string TempFile(const std::string& name) { return AppPath("temp/" + name); }
void WriteImage(const std::string& path, int width, int height, const char* format) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(QColor(255, 0, 0));
    QVERIFY(image.save(QString::fromStdString(path), format));
}
void Press(QWidget* widget, Qt::MouseButton button, QPoint at) {
    QMouseEvent press(QEvent::MouseButtonPress, at, widget->mapToGlobal(at), button, button, Qt::NoModifier);
    QApplication::sendEvent(widget, &press);
}
}  // namespace

class TextureManagerTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    std::unique_ptr<vorn> frame_;

    vorntexture* openProject() {
        frame_ = std::make_unique<vorn>();
        frame_->createnew(0, "Project1");
        return vorntexture::existing();
    }
    const TexturePart& point(int n) const { return CurrentProject.Textures[Tp01].Parts[std::size_t(n)]; }

private slots:
    void init() { program_ = std::make_unique<ScratchProgram>(); }
    void cleanup() {
        frame_.reset();
        delete vorntexture::existing();
        for (int i = 0; i < PreviewWindowCount; ++i) delete CortonaViewer::existing(i);
        program_.reset();
    }

    void aNewPointReachesTheOIFEditorAndAPressOnThePicturePicksItsUV() {
        WriteConfig("Terramason", "OIFEditor", "1");
        vorntexture* t = openProject();
        QCOMPARE(t->Picture1()->size(), QSize(0, 0));
        CurrentProject.OIF = NamedParts({"Roof"});
        CurrentProject.OIF.Parts[0].Header.Texture = "tp01";
        TheViews().RefreshPartsList();
        WriteImage(TempFile("tp01.png"), 64, 32, "PNG");
        UserPicksRow(t->texturebox(), Tp01);
        QCOMPARE(t->Picture1()->size(), QSize(64, 32));
        QCOMPARE(t->size().width(), 64 + 257);
        t->addtexturepart()->click();
        QCOMPARE(ComboRows(vornoifform::existing()->oifvertexpointsel()),
                 QStringList({"[Select predefined UV]", "[New Item]"}));
        // Renaming to nothing leaves an empty row; the Delete button has no handler.
        t->texturepartchange()->clear();
        QCOMPARE(ComboRows(t->texturepartbox()), QStringList({""}));
        t->deltexturepart()->click();
        QCOMPARE(CurrentProject.Textures[Tp01].Parts.size(), std::size_t(1));

        Press(t->Picture1(), Qt::LeftButton, QPoint(63, 31));
        QCOMPARE(point(0).U + point(0).V, 2.0f);
        QCOMPARE(t->uvbox(0)->text() + t->uvbox(1)->text(), QString("11"));
        Press(t->Picture1(), Qt::RightButton, QPoint(0, 0));
        QCOMPARE(point(0).U, 1.0f);
        t->uvbox(1)->clear();
        QTest::keyClicks(t->uvbox(1), "-.0.25");
        QCOMPARE(point(0).V, 0.25f);
        QVERIFY(MakeActive(*t));
        QTest::mouseMove(t->Picture1(), QPoint(12, 30));
        QTRY_COMPARE(t->panel(3)->text(), QString("(12, 30)"));
    }

    void anImportedJPEGIsThePNGThatThePerspectivePreviewShowsAndABadOneIsTold() {
        WriteConfig("Terramason", "Previews", "1");
        WriteConfig("Previews", "PerspectiveTex", "1");
        OpenFrameWithProject(frame_);
        vorntexture* t = vorntexture::existing();
        const std::string bad = program_->folder.file("bad.bmp"), jpeg = program_->folder.file("red.jpg");
        WriteFile(bad, {'n', 'o'});
        WriteImage(jpeg, 40, 20, "JPEG");
        program_->desktop.dialogAnswers = {bad, jpeg};
        t->importtex()->click();
        QVERIFY(!std::filesystem::exists(TempFile("tp00.png")));
        QCOMPARE(program_->desktop.messages.at(0).icon, MessageIcon::Critical);
        t->importtex()->click();
        QCOMPARE(QImage(QString::fromStdString(TempFile("tp00.png")), "PNG").size(), QSize(40, 20));
        QCOMPARE(t->Picture1()->size(), QSize(40, 20));
        frame_->menuAction("Refresh")->trigger();
        VrmlView* perspective = CortonaViewer::existing(ViewPerspective)->Cortona1();
        QVERIFY(QTest::qWaitForWindowExposed(perspective));
        const QImage shown = perspective->grabFramebuffer();
        QVERIFY(RedPixels(shown) > shown.width() * shown.height() / 10);
    }

    void importTexturesForPreviewsNamesThePNGAndForcesARefresh() {
        openProject();
        const std::string chosen = program_->folder.file("chosen.png");
        WriteImage(chosen, 8, 8, "PNG");
        program_->desktop.dialogAnswers = {chosen};
        PreviewRefreshOn = false;
        SpyViews spy;
        bool refusedFirst = false;
        WhenModalShown<texturename>([&](texturename* w) {
            w->texbox()->setEditText(QString());
            w->okbut()->click();
            refusedFirst = w->isVisible() && program_->desktop.messages.size() == 1;
            w->texbox()->setEditText("rwa2");
            w->okbut()->click();
        });
        frame_->menuAction("Import Textures for Previews...")->trigger();
        QVERIFY(refusedFirst);
        QCOMPARE(ReadFile(TempFile("rwa2.png")), ReadFile(chosen));
        QCOMPARE(spy.flagAtRebuild, std::vector<bool>{true});
        QVERIFY(!PreviewRefreshOn);
    }
};

QTEST_MAIN(TextureManagerTest)
#include "TextureManagerTest.moc"
