// "Texture Manager" and "Select texture name...": the picture and the window that follow the
// image, picking a UV point on it, the point list and its fields, importing an image that the
// Perspective preview then shows, and naming a PNG for the previews from the Project menu.
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include <filesystem>
#include <memory>

#include "WindowTestKit.h"
#include "core/ProgramState.h"
#include "editors/ui/texturename.h"
#include "editors/ui/vornoifform.h"
#include "editors/ui/vorntexture.h"
#include "preview/PreviewViewOps.h"
#include "preview/ui/CortonaViewer.h"
#include "preview/ui/VrmlView.h"
#include "shell/IniOps.h"
#include "shell/ui/vorn.h"

namespace {

constexpr int Tp01 = 1;

std::string TempFile(const std::string& name) { return AppPath("temp/" + name); }

void WriteImage(const std::string& path, int width, int height, const char* format) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(QColor(255, 0, 0));
    QVERIFY(image.save(QString::fromStdString(path), format));
}

// A press of the button at a pixel of the widget; QTest takes the pixel (0, 0) for the centre.
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
    const TextureSlot& slot(int row) const { return CurrentProject.Textures[static_cast<std::size_t>(row)]; }

private slots:
    void init() { program_ = std::make_unique<ScratchProgram>(); }
    void cleanup() {
        frame_.reset();
        delete vorntexture::existing();
        for (int i = 0; i < PreviewWindowCount; ++i) delete CortonaViewer::existing(i);
        program_.reset();
    }

    void aTextureWithoutImageShowsAnEmptyPictureAndTheWindowFollows() {
        vorntexture* t = openProject();
        QVERIFY(t && !t->isVisible());
        // A new project selects the first texture, which has no image yet.
        QCOMPARE(t->texturebox()->currentIndex(), 0);
        QCOMPARE(t->Picture1()->size(), QSize(0, 0));
        QVERIFY(!t->texturepartbox()->isEnabled());
        QVERIFY(!t->mylabel(2)->isEnabled());
        // 257 pixels wide; the height gives 1000 twips of room under the V field.
        const int uvBottom = t->uvbox(1)->mapTo(t, QPoint(0, t->uvbox(1)->height())).y();
        QCOMPARE(t->size(), QSize(257, PixelsFromTwips(uvBottom * 15 + 1000)));

        WriteImage(TempFile("tp01.png"), 512, 512, "PNG");
        UserPicksRow(t->texturebox(), Tp01);
        QCOMPARE(t->Picture1()->size(), QSize(512, 512));
        QCOMPARE(t->Image1()->size(), QSize(512, 512));
        QCOMPARE(t->size(), QSize(769, 571));
    }

    void addGivesNewItemsThatTheOIFEditorOffersAtOnce() {
        WriteConfig("Terramason", "OIFEditor", "1");
        vorntexture* t = openProject();
        CurrentProject.OIF = NamedParts({"Roof"});
        CurrentProject.OIF.Parts[0].Header.Texture = "tp01";
        TheViews().RefreshPartsList();
        vornoifform* editor = vornoifform::existing();
        QCOMPARE(editor->oifvertexpointsel()->count(), 1);

        UserPicksRow(t->texturebox(), Tp01);
        t->addtexturepart()->click();
        t->addtexturepart()->click();
        QCOMPARE(ComboRows(t->texturepartbox()), QStringList({"[New Item]", "[New Item]"}));
        QCOMPARE(t->texturepartbox()->currentIndex(), 1);
        QVERIFY(t->texturepartchange()->isEnabled());
        QCOMPARE(ComboRows(editor->oifvertexpointsel()),
                 QStringList({"[Select predefined UV]", "[New Item]", "[New Item]"}));

        // Renaming to nothing leaves an empty row; the Delete button has no handler.
        t->texturepartchange()->clear();
        QCOMPARE(ComboRows(t->texturepartbox()), QStringList({"[New Item]", ""}));
        t->deltexturepart()->click();
        QCOMPARE(slot(Tp01).Parts.size(), std::size_t(2));

        // The four names after the slots have none: Add does nothing there.
        UserPicksRow(t->texturebox(), 36);
        t->addtexturepart()->click();
        QCOMPARE(t->texturepartbox()->count(), 0);
        QVERIFY(!t->uvbox(0)->isEnabled());
    }

    void aPressOnTheImagePicksTheUVOfTheSelectedPoint() {
        vorntexture* t = openProject();
        WriteImage(TempFile("tp01.png"), 64, 32, "PNG");
        UserPicksRow(t->texturebox(), Tp01);
        t->addtexturepart()->click();
        QCOMPARE(t->Picture1()->size(), QSize(64, 32));

        Press(t->Picture1(), Qt::LeftButton, QPoint(63, 31));
        QCOMPARE(slot(Tp01).Parts[0].U, 1.0f);
        QCOMPARE(slot(Tp01).Parts[0].V, 1.0f);
        QCOMPARE(t->uvbox(0)->text(), QString("1"));
        QCOMPARE(t->uvbox(1)->text(), QString("1"));
        Press(t->Picture1(), Qt::RightButton, QPoint(10, 10));
        QCOMPARE(slot(Tp01).Parts[0].U, 1.0f);
        Press(t->Picture1(), Qt::LeftButton, QPoint(0, 0));
        QCOMPARE(slot(Tp01).Parts[0].U, 0.0f);
        QCOMPARE(slot(Tp01).Parts[0].V, 0.0f);

        // Typed UVs pass the key filter and are stored at once.
        t->uvbox(1)->clear();
        QTest::keyClicks(t->uvbox(1), "-.0.25");
        QCOMPARE(t->uvbox(1)->text(), QString("0.25"));
        QCOMPARE(slot(Tp01).Parts[0].V, 0.25f);
    }

    void theMouseOverThePictureShowsItsPixelInPanelThree() {
        vorntexture* t = openProject();
        WriteImage(TempFile("tp00.png"), 64, 32, "PNG");
        UserPicksRow(t->texturebox(), 0);
        QVERIFY(MakeActive(*t));
        QTest::mouseMove(t->Picture1(), QPoint(12, 30));
        QTRY_COMPARE(t->panel(3)->text(), QString("(12, 30)"));
        QMouseEvent outside(QEvent::MouseMove, QPointF(t->width() - 2, t->height() - 40), QPointF(), Qt::NoButton,
                            Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(t, &outside);
        QCOMPARE(t->panel(3)->text(), QString());
    }

    void anImportedJPEGBecomesThePNGThatThePerspectivePreviewShows() {
        WriteConfig("Terramason", "Previews", "1");
        WriteConfig("Previews", "PerspectiveTex", "1");
        OpenFrameWithProject(frame_);
        vorntexture* t = vorntexture::existing();

        const std::string jpeg = program_->folder.file("red.jpg");
        WriteImage(jpeg, 40, 20, "JPEG");
        program_->desktop.dialogAnswers = {jpeg};
        t->importtex()->click();
        const QImage png(QString::fromStdString(TempFile("tp00.png")), "PNG");
        QCOMPARE(png.size(), QSize(40, 20));
        QCOMPARE(t->Picture1()->size(), QSize(40, 20));

        frame_->menuAction("Refresh")->trigger();
        VrmlView* perspective = CortonaViewer::existing(ViewPerspective)->Cortona1();
        QVERIFY(QTest::qWaitForWindowExposed(perspective));
        const QImage shown = perspective->grabFramebuffer();
        QVERIFY(RedPixels(shown) > shown.width() * shown.height() / 10);
    }

    void anUnreadableImageIsToldAndChangesNothing() {
        vorntexture* t = openProject();
        const std::string bad = program_->folder.file("bad.bmp");
        WriteFile(bad, {'n', 'o'});
        program_->desktop.dialogAnswers = {bad};
        t->importtex()->click();
        QVERIFY(!std::filesystem::exists(TempFile("tp00.png")));
        QCOMPARE(program_->desktop.messages.size(), std::size_t(1));
        QCOMPARE(program_->desktop.messages[0].icon, MessageIcon::Critical);
    }

    void importTexturesForPreviewsNamesThePNGAndForcesARefresh() {
        frame_ = std::make_unique<vorn>();
        frame_->createnew(0, "Project1");
        const std::string chosen = program_->folder.file("chosen.png");
        WriteImage(chosen, 8, 8, "PNG");
        program_->desktop.dialogAnswers = {chosen};
        PreviewRefreshOn = false;
        SpyViews spy;
        bool refusedFirst = false;
        WhenModalShown<texturename>([&](texturename* w) {
            QCOMPARE(w->windowTitle(), QString("Select texture name..."));
            QCOMPARE(w->texbox()->currentText(), QString("tp00"));
            w->texbox()->setEditText(QString());
            w->okbut()->click();
            refusedFirst = w->isVisible() && program_->desktop.messages.size() == 1;
            w->texbox()->setEditText("rwa2");
            w->okbut()->click();
        });
        frame_->menuAction("Import Textures for Previews...")->trigger();
        QVERIFY(refusedFirst);
        QCOMPARE(program_->desktop.messages[0].text, std::string("Enter a texture name."));
        QCOMPARE(program_->desktop.dialogTitles, std::vector<std::string>{"Import texture for preview..."});
        QCOMPARE(ReadFile(TempFile("rwa2.png")), ReadFile(chosen));
        QCOMPARE(spy.flagAtRebuild, std::vector<bool>{true});
        QVERIFY(!PreviewRefreshOn);
    }
};

QTEST_MAIN(TextureManagerTest)
#include "TextureManagerTest.moc"
