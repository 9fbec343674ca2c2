// The Stadium Importer: loading a model into the list and the sheet, the sheet's size, mapping
// and resetting with their Ctrl gestures, drags with both snaps, handles and arrow keys driven
// by real mouse and key events, the bounds check, the export with its bitmap and part, and the
// exit question of every close.
#define QTEST_QPA_MOUSE_HANDLING  // mouse events through the window, as the platform sends them
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QTreeWidget>
#include <QtTest>

#include <memory>

#include "WindowTestKit.h"
#include "core/oif.h"
#include "importer/ui/stmap.h"
#include "shell/HelpOps.h"
#include "shell/IniOps.h"
#include "shell/ui/vorn.h"

namespace {

// box.3ds: the mesh Stand of material stone (wall.bmp), the mesh Pitch of grass (pitch.bmp).
const std::string Model = std::string(TM_TEST_DATA) + "/3ds/box.3ds";
const QColor Red(255, 0, 0), Blue(0, 0, 255), Green(0, 160, 0);

// wall.bmp is 128 by 64, red on its left half and blue on its right; pitch.bmp 64 by 64 green.
void WriteTextures(const ScratchFolder& folder) {
    QImage wall(128, 64, QImage::Format_RGB32);
    wall.fill(Red);
    for (int y = 0; y < 64; ++y)
        for (int x = 64; x < 128; ++x) wall.setPixelColor(x, y, Blue);
    QVERIFY(wall.save(QString::fromStdString(folder.file("wall.bmp")), "BMP"));
    QImage pitch(64, 64, QImage::Format_RGB32);
    pitch.fill(Green);
    QVERIFY(pitch.save(QString::fromStdString(folder.file("pitch.bmp")), "BMP"));
}

QPoint At(const TextureBox& b, int dx, int dy) { return {b.Left + dx, b.Top + dy}; }

}  // namespace

class stmapTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    ScriptedDesktop* desktop_ = nullptr;

    // Opens the importer on box.3ds and makes it the active window.
    stmap* open() {
        WriteTextures(program_->folder);
        desktop_->dialogAnswers = {Model, program_->folder.path()};
        stmap::open(nullptr);
        stmap* w = stmap::existing();
        if (w) MakeActive(*w);
        return w;
    }
    // A drag with the left button in the sheet's pixels: pressed at `from`, moved to `to`.
    static void Drag(stmap* w, QPoint from, QPoint to, Qt::KeyboardModifiers keys = {}) {
        QTest::mousePress(w->picBg(), Qt::LeftButton, keys, from);
        QTest::mouseMove(w->picBg(), (from + to) / 2);
        QTest::mouseMove(w->picBg(), to);
        QTest::mouseRelease(w->picBg(), Qt::LeftButton, keys, to);
    }
    static void MapAll(stmap* w) { QTest::mouseClick(w->cmdMap(), Qt::LeftButton, Qt::ControlModifier); }
    // The widget shows the layout's numbers.
    static bool Shows(stmap* w, int n) {
        const TextureBox& b = w->box(n);
        return w->picTex(n)->geometry() == QRect(b.Left, b.Top, b.Width, b.Height) &&
               w->picTex(n)->isVisible() == b.Visible;
    }
    static void Place(stmap* w, int n, int left, int top) {
        w->chkSnapToEdge()->setChecked(false);
        w->chkSnapToTex()->setChecked(false);
        const TextureBox b = w->box(n);
        Drag(w, At(b, 5, 5), QPoint(left + 5, top + 5));
        w->chkSnapToEdge()->setChecked(true);
        w->chkSnapToTex()->setChecked(true);
    }

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        desktop_ = &program_->desktop;
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           QString::fromStdString(program_->folder.file("store")));
        Importer = ImportState{};
    }
    void cleanup() {
        if (stmap* w = stmap::existing()) delete w;
        program_.reset();
    }

    void loadingListsTheTexturesUnmappedAtTheCentreOfTheSheet() {
        {
            QSettings store(QSettings::NativeFormat, QSettings::UserScope, "VORN", "Terramason");
            store.setValue("Settings/FlipV", "0");  // an earlier run's value wins over the 3DS default
        }
        stmap* w = open();
        QVERIFY(w && w->isVisible() && w->isEnabled());
        QCOMPARE(desktop_->dialogTitles,
                 (std::vector<std::string>{"Select file to import...", "Select Textures Path"}));
        QCOMPARE(w->textureCount(), 2);
        QCOMPARE(w->lvTex()->topLevelItem(1)->text(0), QString("pitch.bmp"));
        QCOMPARE(w->currentItem(), 1);
        QCOMPARE(w->box(1), (TextureBox{192, 224, 128, 64, false}));
        QCOMPARE(w->box(2), (TextureBox{224, 224, 64, 64, false}));
        QVERIFY(Shows(w, 1) && Shows(w, 2));
        QCOMPARE(Importer.Settings.FlipV, std::int16_t(0));
        QCOMPARE(Importer.Settings.Shade, std::int16_t(1));
        QCOMPARE(Importer.TexturesPath, program_->folder.path() + "/");
        QCOMPARE(w->cboTexsize()->currentText(), QString("512x512"));
        QCOMPARE(w->texturebox()->currentText(), QString("tp00"));
        const QStringList names = {"tp00", "tp01", "tp02", "tp03", "tp04", "tp05", "SL00", "SL01", "SL02", "gras",
                                   "grsb", "grsc", "adba", "adbb", "adbc", "abna", "abnb", "abnc", "afla", "aflb",
                                   "aflc", "hbna", "hbnb", "hbnc", "hfla", "hflb", "hflc", "rwa0", "rwa1", "rwa2",
                                   "rwa3", "rwh0", "rwh1", "rwh2", "rwh3", "alga", "algb", "hlga", "hlgb"};
        QCOMPARE(ComboRows(w->texturebox()), names);
        QCOMPARE(w->size(), QSize(672, 539));
        QCOMPARE(w->picBg()->geometry(), QRect(156, 4, 512, 512));
        // The window follows the sheet's width, never its height; textures stay where they are.
        UserPicksRow(w->cboTexsize(), 1);
        QCOMPARE(w->picBg()->size(), QSize(256, 512));
        QCOMPARE(w->size(), QSize(416, 539));
        QCOMPARE(w->box(1).Left, 192);
        UserPicksRow(w->cboTexsize(), 0);
        QCOMPARE(w->size(), QSize(672, 539));
        QCOMPARE(w->lblSize()->text() + w->Label1()->text(), QString("Size: Texture name:"));

        // Asked for again, the open importer is only shown.
        stmap::open(nullptr);
        QCOMPARE(stmap::existing(), w);
        QCOMPARE(desktop_->dialogTitles.size(), std::size_t(2));
    }

    void givingUpTheLoadAsksTheExitQuestionAndNoKeepsAnEmptyImporter() {
        desktop_->answers = {MessageAnswer::Yes};
        stmap::open(nullptr);
        QCOMPARE(desktop_->messages.size(), std::size_t(1));
        QCOMPARE(desktop_->messages[0].text, std::string("Are you sure you want to exit Stadium Importer?   "));
        QCOMPARE(desktop_->messages[0].title, std::string("Stadium Importer"));
        QVERIFY(!stmap::existing());

        // A model of another kind is told first; No keeps the window, empty.
        desktop_->dialogAnswers = {program_->folder.file("stand.obj"), program_->folder.path()};
        desktop_->answers = {MessageAnswer::No};
        stmap::open(nullptr);
        QCOMPARE(desktop_->messages[1].text, std::string("File extension is not supported!"));
        QCOMPARE(desktop_->messages[2].text, std::string(ExitQuestion));
        stmap* w = stmap::existing();
        QVERIFY(w && w->isVisible() && w->isEnabled());
        QCOMPARE(w->lvTex()->topLevelItemCount(), 0);
        QTest::mouseClick(w->cmdMap(), Qt::LeftButton, Qt::ControlModifier);
        QTest::mouseClick(w->cmdReset(), Qt::LeftButton);
        QCOMPARE(w->currentItem(), 0);
        w->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

        // Given up at the second texture, and at a picture that cannot be read: nothing is kept of
        // the textures found before, so every command acts on an empty list.
        WriteTextures(program_->folder);
        WriteFile(program_->folder.file("broken.bmp"), {'B', 'M', 1});
        std::filesystem::remove(program_->folder.file("pitch.bmp"));
        for (const std::string& answer : {std::string(), program_->folder.file("broken.bmp")}) {
            desktop_->dialogAnswers = {Model, program_->folder.path(), answer};
            desktop_->answers = {MessageAnswer::No};
            stmap::open(nullptr);
            w = stmap::existing();
            QVERIFY(w);
            QCOMPARE(w->lvTex()->topLevelItemCount(), 0);
            QTest::mouseClick(w->cmdMap(), Qt::LeftButton);
            QTest::mouseClick(w->cmdMap(), Qt::LeftButton, Qt::ControlModifier);
            QTest::mouseClick(w->cmdReset(), Qt::LeftButton);
            QTest::mouseClick(w->cmdCheckBounds(), Qt::LeftButton);
            w->repaint();
            desktop_->answers = {MessageAnswer::Yes};
            w->close();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }

    void mapAndResetActOnTheSelectedTextureAndWithCtrlOnAll() {
        stmap* w = open();
        QTest::mouseClick(w->cmdMap(), Qt::LeftButton);
        QVERIFY(w->box(1).Visible && !w->box(2).Visible);
        QVERIFY(Shows(w, 1));
        QVERIFY(w->picHandle(8)->isVisible());
        QCOMPARE(w->picHandle(8)->pos(), QPoint(320, 288));
        // Ctrl maps all, and the click toggles the selected one off again.
        MapAll(w);
        QVERIFY(!w->box(1).Visible && w->box(2).Visible);
        QVERIFY(!w->picHandle(8)->isVisible());
        QTest::mouseClick(w->cmdMap(), Qt::LeftButton);
        QTest::mouseClick(w->cmdReset(), Qt::LeftButton);
        QCOMPARE(w->box(1), (TextureBox{-704, -224, 1920, 960, true}));
        QTest::mouseClick(w->cmdReset(), Qt::LeftButton, Qt::ControlModifier);
        QCOMPARE(w->box(2), (TextureBox{-224, -224, 960, 960, true}));
        QVERIFY(Shows(w, 1) && Shows(w, 2));
        QVERIFY(w->lvTex()->hasFocus());
        QTest::mouseClick(w->cmdCheckBounds(), Qt::LeftButton);
        QCOMPARE(desktop_->messages.back().text, std::string("Texture 'wall.bmp' is out of image boundaries."));
        QCOMPARE(desktop_->messages.back().title, std::string("Check Bounds"));
        // A row chosen with the keys is the texture the commands act on.
        w->lvTex()->setFocus();
        QTest::keyClick(w->lvTex(), Qt::Key_Down);
        QCOMPARE(w->currentItem(), 2);
        QTest::mouseClick(w->cmdMap(), Qt::LeftButton);
        QVERIFY(!w->box(2).Visible && w->box(1).Visible);
    }

    void draggingATextureSnapsToTheEdgesAndToOtherTextures() {
        stmap* w = open();
        MapAll(w);
        QTest::mouseClick(w->cmdMap(), Qt::LeftButton);  // and texture 1 back on
        // Left 192 to 3: snaps to 0; top 224 to 4 stays. The handles hide during the drag.
        QTest::mousePress(w->picBg(), Qt::LeftButton, {}, At(w->box(1), 10, 10));
        QVERIFY(w->texDragging());
        QTest::mouseMove(w->picBg(), QPoint(13, 14));
        QVERIFY(!w->picHandle(1)->isVisible());
        QCOMPARE(w->box(1).Left, 0);
        QCOMPARE(w->box(1).Top, 4);
        QCOMPARE(w->panel(2)->text(), QString("(0, 4) 128x64"));
        QTest::mouseMove(w->picBg(), QPoint(14, 14));
        QCOMPARE(w->box(1).Left, 4);
        QTest::mouseRelease(w->picBg(), Qt::LeftButton, {}, QPoint(14, 14));
        QVERIFY(!w->texDragging());
        QVERIFY(w->picHandle(1)->isVisible());
        QCOMPARE(w->picHandle(1)->pos(), QPoint(-2, -2));

        // Pressing texture 2 selects it (Autoselect) and drags it; its left edge 2 right of the
        // other's right edge snaps onto it.
        const TextureBox second = w->box(2);
        Drag(w, At(second, 5, 5), QPoint(134 + 5, 30 + 5));
        QCOMPARE(w->currentItem(), 2);
        QCOMPARE(w->lvTex()->currentItem(), w->lvTex()->topLevelItem(1));
        QCOMPARE((QPoint(w->box(2).Left, w->box(2).Top)), QPoint(132, 30));
        QVERIFY(Shows(w, 2));
        // With both snaps off any place is taken, negative ones too.
        w->chkSnapToEdge()->setChecked(false);
        w->chkSnapToTex()->setChecked(false);
        Drag(w, At(w->box(2), 5, 5), QPoint(-3, 1));
        QCOMPARE((QPoint(w->box(2).Left, w->box(2).Top)), QPoint(-8, -4));
        // Without Autoselect a press on another texture does nothing.
        w->chkAutoselect()->setChecked(false);
        Drag(w, At(w->box(1), 96, 36), QPoint(300, 300));
        QCOMPARE(w->currentItem(), 2);
        QCOMPARE(w->box(1).Left, 4);
    }

    void handlesResizeWithoutSnappingAndKeysMoveAndSize() {
        stmap* w = open();
        QTest::mouseClick(w->cmdMap(), Qt::LeftButton);
        // Handle 8 by (+10, +5): the bottom right corner follows; the handles come back after.
        const QPoint corner = w->picHandle(8)->pos() + QPoint(3, 3);
        QTest::mousePress(w->picBg(), Qt::LeftButton, {}, corner);
        QVERIFY(w->handleDragging());
        QVERIFY(!w->picHandle(8)->isVisible());
        QTest::mouseMove(w->picBg(), corner + QPoint(4, 2));
        QTest::mouseMove(w->picBg(), corner + QPoint(10, 5));
        QCOMPARE(w->box(1), (TextureBox{192, 224, 138, 69, true}));
        QVERIFY(Shows(w, 1));
        QTest::mouseRelease(w->picBg(), Qt::LeftButton, {}, corner + QPoint(10, 5));
        QVERIFY(!w->handleDragging());
        QCOMPARE(w->picHandle(8)->pos(), QPoint(330, 293));
        // Handle 4 dragged past the right edge in two steps: the left goes on, the width stays at
        // what the first step left.
        const QPoint left = w->picHandle(4)->pos() + QPoint(3, 3);
        Drag(w, left, left + QPoint(200, 0));
        QCOMPARE(w->box(1), (TextureBox{392, 224, 38, 69, true}));
        // The handle handed the focus to the texture: keys act at once.
        QCOMPARE(QApplication::focusWidget(), w->picTex(1));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down, Qt::ControlModifier);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left, Qt::ShiftModifier | Qt::ControlModifier);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(w->box(1), (TextureBox{391, 229, 33, 70, true}));
        QVERIFY(Shows(w, 1));
        QCOMPARE(w->picHandle(8)->pos(), QPoint(424, 299));
    }

    void exportPaintsTheBitmapAndAddsAPartEachTime() {
        SpyViews views;
        stmap* w = open();
        MapAll(w);
        QTest::mouseClick(w->cmdMap(), Qt::LeftButton);
        Place(w, 1, 256, 64);
        Place(w, 2, 0, 0);
        QCOMPARE(w->box(1), (TextureBox{256, 64, 128, 64, true}));
        const std::string bitmap = program_->folder.file("atlas");
        desktop_->answers = {MessageAnswer::Yes};
        desktop_->dialogAnswers = {bitmap};
        QTest::mouseClick(w->cmdExport(), Qt::LeftButton);
        QCOMPARE(desktop_->messages[0].text, std::string(ExportQuestion));
        QCOMPARE(desktop_->dialogTitles.back(), std::string("Save Bitmap As..."));
        QCOMPARE(desktop_->messages.back().text, std::string(ImportedMessage));
        QVERIFY(w->isEnabled());
        QCOMPARE(views.count("RefreshPartsList"), 1);
        QCOMPARE(views.count("RebuildPreviews"), 1);
        QCOMPARE(desktop_->loadingTexts.back(), std::string("Processing 3ds file..."));
        QVERIFY(!desktop_->loadingShown);

        const QImage atlas(QString::fromStdString(bitmap + ".bmp"));
        QCOMPARE(atlas.size(), QSize(512, 512));
        QCOMPARE(atlas.pixelColor(256, 64), Red);
        QCOMPARE(atlas.pixelColor(383, 127), Blue);
        QCOMPARE(atlas.pixelColor(63, 63), Green);
        for (QPoint black : {QPoint(255, 64), QPoint(384, 64), QPoint(256, 128), QPoint(64, 10)})
            QCOMPARE(atlas.pixelColor(black), QColor(Qt::black));

        QCOMPARE(CurrentProject.OIF.Parts.size(), std::size_t(1));
        const OIFPart& part = CurrentProject.OIF.Parts[0];
        QCOMPARE(part.Header.Name.str(), std::string("Part 0 [tp00]") + std::string(15, ' '));
        for (const OIFVertex& v : part.Vertices) {
            const bool stand = v.Z == 0;  // the Stand's quad lies at Z 0, the Pitch's triangle beyond
            QVERIFY(v.U >= (stand ? 0.5f : 0.0f) && v.U <= (stand ? 0.75f : 0.125f));
            QVERIFY(v.V >= (stand ? 0.125f : 0.0f) && v.V <= (stand ? 0.25f : 0.125f));
        }

        // Stretched to twice its size and exported again over the first bitmap: a second part
        // of the next number.
        w->lvTexItemClick(1);
        Drag(w, w->picHandle(8)->pos() + QPoint(3, 3), w->picHandle(8)->pos() + QPoint(3 + 128, 3 + 64));
        QCOMPARE(w->box(1), (TextureBox{256, 64, 256, 128, true}));
        desktop_->answers = {MessageAnswer::Yes};
        desktop_->dialogAnswers = {bitmap + ".bmp"};
        desktop_->answers.push_back(MessageAnswer::Yes);  // replace the bitmap
        QTest::mouseClick(w->cmdExport(), Qt::LeftButton);
        QCOMPARE(QImage(QString::fromStdString(bitmap + ".bmp")).pixelColor(511, 191), Blue);
        QCOMPARE(CurrentProject.OIF.Parts.size(), std::size_t(2));
        QCOMPARE(CurrentProject.OIF.Parts[1].Header.Name.str().substr(0, 14), std::string("Part 1 [tp00] "));
    }

    void exportStopsAtTheBoundsAndACancelledDialogLeavesTheWindowDisabled() {
        stmap* w = open();
        desktop_->answers = {MessageAnswer::No};
        QTest::mouseClick(w->cmdExport(), Qt::LeftButton);
        QCOMPARE(desktop_->messages.size(), std::size_t(1));
        desktop_->answers = {MessageAnswer::Yes};
        QTest::mouseClick(w->cmdExport(), Qt::LeftButton);
        QCOMPARE(desktop_->messages.back().text, std::string("Texture cannot be properly made. Please check bounds!"));
        QCOMPARE(desktop_->messages.back().icon, MessageIcon::Exclamation);
        QVERIFY(w->isEnabled());

        MapAll(w);
        QTest::mouseClick(w->cmdMap(), Qt::LeftButton);
        Place(w, 2, 0, 0);
        desktop_->answers = {MessageAnswer::Yes};
        QTest::mouseClick(w->cmdExport(), Qt::LeftButton);
        QVERIFY(!w->isEnabled());
        QVERIFY(CurrentProject.OIF.Parts.empty());

        // With AutoClose the exit question follows the export; No leaves the window disabled.
        w->setEnabled(true);
        WriteConfig("Stadium Importer", "AutoClose", "1");
        desktop_->answers = {MessageAnswer::Yes, MessageAnswer::No};
        desktop_->dialogAnswers = {program_->folder.file("auto.bmp")};
        QTest::mouseClick(w->cmdExport(), Qt::LeftButton);
        QCOMPARE(desktop_->messages.back().text, std::string(ExitQuestion));
        QCOMPARE(CurrentProject.OIF.Parts.size(), std::size_t(1));
        QVERIFY(w->isVisible() && !w->isEnabled());
    }

    void everyCloseAsksAndHelpOpensItsPage() {
        stmap* w = open();
        QTest::mouseClick(w->Command1(), Qt::LeftButton);
        QCOMPARE(desktop_->pages, (std::vector<std::string>{HelpPageAddress("stadiumimporter.html")}));
        desktop_->answers = {MessageAnswer::No};
        QTest::mouseClick(w->cmdExit(), Qt::LeftButton);
        QVERIFY(w->isVisible());
        desktop_->answers = {MessageAnswer::Yes};
        QVERIFY(w->close());
        QTRY_VERIFY(!stmap::existing());
        QCOMPARE(desktop_->messages.size(), std::size_t(2));
    }

    void theToolsMenuOpensTheImporter() {
        vorn frame;
        WriteTextures(program_->folder);
        desktop_->dialogAnswers = {Model, program_->folder.path()};
        frame.menuAction("Stadium Importer")->setEnabled(true);
        frame.menuAction("Stadium Importer")->trigger();
        QVERIFY(stmap::existing() && stmap::existing()->isVisible());
    }
};

QTEST_MAIN(stmapTest)
#include "stmapTest.moc"
