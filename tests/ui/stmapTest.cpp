// The Stadium Importer and its Settings driven by real mouse and key events: a load fills the list
// and the sheet, Map, Reset, drags, handles and keys reach the layout, the export paints its bitmap
// and adds a part, and every close asks. Sizes, snaps, bounds and UVs are AtlasLayoutTest's and
// ImportPartTest's, the texture search ImportTexturesTest's.
#define QTEST_QPA_MOUSE_HANDLING  // mouse events through the window, as the platform sends them

#include "WindowTestKit.h"
#include "core/oif.h"
#include "importer/ui/stmap.h"
#include "importer/ui/stmapSettings.h"

namespace {

// box.3ds: the mesh Stand of material stone (wall.bmp), the mesh Pitch of grass (pitch.bmp).
const std::string Model = std::string(TM_TEST_DATA) + "/3ds/box.3ds";
const QColor Red(255, 0, 0), Blue(0, 0, 255), Green(0, 160, 0);

// wall.bmp is 128 by 64, red on its left half and blue on its right; pitch.bmp 64 by 64 green.
void WriteTextures(const ScratchFolder& folder) {
    QImage wall(128, 64, QImage::Format_RGB32);
    wall.fill(Red);
    QPainter(&wall).fillRect(64, 0, 64, 64, Blue);
    QVERIFY(wall.save(QString::fromStdString(folder.file("wall.bmp")), "BMP"));
    QImage pitch(64, 64, QImage::Format_RGB32);
    pitch.fill(Green);
    QVERIFY(pitch.save(QString::fromStdString(folder.file("pitch.bmp")), "BMP"));
}
QPoint At(const TextureBox& b, int dx, int dy) { return {b.Left + dx, b.Top + dy}; }
QPoint Corner(const TextureBox& b) { return {b.Left, b.Top}; }
QSettings Store() { return QSettings(QSettings::NativeFormat, QSettings::UserScope, "VORN", "Terramason"); }
// A click on the box's indicator: a wide box takes clicks on its text and indicator only.
void Tick(QCheckBox* box) { QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(6, box->height() / 2)); }

}  // namespace

class stmapTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    ScriptedDesktop* desktop_ = nullptr;

    stmap* open() {
        WriteTextures(program_->folder);
        desktop_->dialogAnswers = {Model, program_->folder.path()};
        stmap::open(nullptr);
        stmap* w = stmap::existing();
        if (w) MakeActive(*w);
        return w;
    }
    static void Drag(stmap* w, QPoint from, QPoint to) {
        QTest::mousePress(w->picBg(), Qt::LeftButton, {}, from);
        QTest::mouseMove(w->picBg(), (from + to) / 2);
        QTest::mouseMove(w->picBg(), to);
        QTest::mouseRelease(w->picBg(), Qt::LeftButton, {}, to);
    }
    static void Click(QWidget* button, Qt::KeyboardModifiers keys = {}) {
        QTest::mouseClick(button, Qt::LeftButton, keys);
    }
    static bool Shows(stmap* w, int n) {
        const TextureBox& b = w->box(n);
        return w->picTex(n)->geometry() == QRect(b.Left, b.Top, b.Width, b.Height) &&
               w->picTex(n)->isVisible() == b.Visible;
    }
    static void Snaps(stmap* w, bool on) {
        w->chkSnapToEdge()->setChecked(on);
        w->chkSnapToTex()->setChecked(on);
    }
    void closeAnswering(stmap* w) {
        desktop_->answers = {MessageAnswer::Yes};
        w->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
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

    // The load fills the list and the sheet; the window follows the sheet's width; asked for
    // again, the open importer is only shown; Help opens its page and every close asks.
    void theToolsMenuLoadsTheModelIntoTheListAndTheSheetAndEveryCloseAsks() {
        Store().setValue("Settings/FlipV", "0");  // an earlier run's value wins over the 3DS default
        WriteTextures(program_->folder);
        desktop_->dialogAnswers = {Model, program_->folder.path()};
        vorn frame;
        frame.menuAction("Stadium Importer")->setEnabled(true);
        frame.menuAction("Stadium Importer")->trigger();
        stmap* w = stmap::existing();
        QVERIFY(w && w->isVisible() && w->isEnabled());
        QCOMPARE(desktop_->dialogTitles,
                 (std::vector<std::string>{"Select file to import...", "Select Textures Path"}));
        QCOMPARE(w->lvTex()->topLevelItem(1)->text(0), QString("pitch.bmp"));
        QVERIFY(w->currentItem() == 1 && Shows(w, 1) && Shows(w, 2) && !w->box(1).Visible);
        QCOMPARE(Importer.Settings.FlipV, std::int16_t(0));
        QCOMPARE(Importer.TexturesPath, program_->folder.path() + "/");
        UserPicksRow(w->cboTexsize(), 1);
        QVERIFY(w->picBg()->size() == QSize(256, 512) && w->size() == QSize(416, 539) && w->box(1).Left == 192);
        stmap::open(nullptr);
        QVERIFY(stmap::existing() == w && desktop_->dialogTitles.size() == 2);
        Click(w->Command1());
        QCOMPARE(desktop_->pages, (std::vector<std::string>{HelpPageAddress("stadiumimporter.html")}));
        desktop_->answers = {MessageAnswer::No, MessageAnswer::Yes};
        Click(w->cmdExit());
        QVERIFY(w->isVisible());
        QVERIFY(w->close());
        QTRY_VERIFY(!stmap::existing());
        QCOMPARE(desktop_->messages.size(), std::size_t(2));
    }

    void aLoadGivenUpAsksTheExitQuestionAndNoKeepsAnImporterThatActsOnNothing() {
        desktop_->answers = {MessageAnswer::Yes};
        stmap::open(nullptr);
        QVERIFY(desktop_->messages.at(0).text == ExitQuestion && !stmap::existing());
        WriteTextures(program_->folder);
        WriteFile(program_->folder.file("broken.bmp"), {'B', 'M', 1});
        std::filesystem::remove(program_->folder.file("pitch.bmp"));
        const std::string folder = program_->folder.path();
        for (const std::deque<std::string>& given :
             {std::deque<std::string>{program_->folder.file("stand.obj"), folder},
              {Model, folder, ""},
              {Model, folder, program_->folder.file("broken.bmp")}}) {
            desktop_->dialogAnswers = given;
            desktop_->answers = {MessageAnswer::No};
            stmap::open(nullptr);
            stmap* w = stmap::existing();
            QVERIFY(w && w->isVisible() && w->isEnabled() && desktop_->messages.back().text == ExitQuestion);
            QCOMPARE(w->lvTex()->topLevelItemCount(), 0);
            for (QWidget* button : {w->cmdMap(), w->cmdReset(), w->cmdCheckBounds()}) Click(button);
            Click(w->cmdMap(), Qt::ControlModifier);
            w->repaint();
            closeAnswering(w);
        }
        QCOMPARE(desktop_->messages.at(1).text, std::string("File extension is not supported!"));
    }

    // Map, Reset and the bounds act on the selected texture, with Ctrl on all; drags, handles and
    // keys move and size them.
    void buttonsDragsHandlesAndKeysReachTheLayout() {
        stmap* w = open();
        Click(w->cmdMap());
        QVERIFY(w->box(1).Visible && !w->box(2).Visible && Shows(w, 1));
        QCOMPARE(w->picHandle(8)->pos(), QPoint(320, 288));
        Click(w->cmdMap(), Qt::ControlModifier);
        QVERIFY(!w->box(1).Visible && w->box(2).Visible && !w->picHandle(8)->isVisible());
        Click(w->cmdMap());
        Click(w->cmdReset());
        QVERIFY(w->box(1).Width == 1920 && w->box(2).Width == 64);
        Click(w->cmdReset(), Qt::ControlModifier);
        QVERIFY(w->box(2).Width == 960 && Shows(w, 2));
        Click(w->cmdCheckBounds());
        QCOMPARE(desktop_->messages.back().text, std::string("Texture 'wall.bmp' is out of image boundaries."));
        w->lvTex()->setFocus();
        QTest::keyClick(w->lvTex(), Qt::Key_Down);
        QCOMPARE(w->currentItem(), 2);
        closeAnswering(w);
        w = open();
        Click(w->cmdMap(), Qt::ControlModifier);
        Click(w->cmdMap());
        // 192 to 3 snaps to the edge; the handles hide during the drag.
        QTest::mousePress(w->picBg(), Qt::LeftButton, {}, At(w->box(1), 10, 10));
        QTest::mouseMove(w->picBg(), QPoint(13, 14));
        QVERIFY(w->texDragging() && !w->picHandle(1)->isVisible());
        QCOMPARE(Corner(w->box(1)), QPoint(0, 4));
        QCOMPARE(w->panel(2)->text(), QString("(0, 4) 128x64"));
        QTest::mouseRelease(w->picBg(), Qt::LeftButton, {}, QPoint(13, 14));
        QVERIFY(!w->texDragging() && w->picHandle(1)->isVisible());
        // A press on texture 2 selects it (Autoselect); without snaps any place is taken.
        Snaps(w, false);
        Drag(w, At(w->box(2), 5, 5), QPoint(-3, 1));
        QCOMPARE(w->lvTex()->currentItem(), w->lvTex()->topLevelItem(1));
        QVERIFY(Corner(w->box(2)) == QPoint(-8, -4) && Shows(w, 2));
        w->chkAutoselect()->setChecked(false);
        Drag(w, At(w->box(1), 96, 36), QPoint(300, 300));
        QVERIFY(w->currentItem() == 2 && w->box(1).Left == 0);
        // Handle 8 of texture 1 by (+10, +5) resizes it, then the keys move and size it.
        w->lvTexItemClick(1);
        const QPoint corner = w->picHandle(8)->pos() + QPoint(3, 3);
        Drag(w, corner, corner + QPoint(10, 5));
        QCOMPARE(w->box(1), (TextureBox{0, 4, 138, 69, true}));
        QVERIFY(w->picHandle(8)->pos() == QPoint(138, 73) && QApplication::focusWidget() == w->picTex(1));
        // A step of one, of five with Ctrl; Shift sizes instead of moving.
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down, Qt::ControlModifier);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left, Qt::ShiftModifier | Qt::ControlModifier);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(w->box(1), (TextureBox{1, 9, 133, 70, true}));
        QVERIFY(Shows(w, 1));
    }

    // Export stops at the bounds; it paints the bitmap and adds a part each time; a cancelled
    // dialog leaves the window disabled, and with AutoClose the exit question follows.
    void exportPaintsTheBitmapAndAddsAPartOrStopsAtTheBounds() {
        SpyViews views;
        stmap* w = open();
        desktop_->answers = {MessageAnswer::No, MessageAnswer::Yes};
        Click(w->cmdExport());
        QCOMPARE(desktop_->messages.size(), std::size_t(1));
        Click(w->cmdExport());
        QCOMPARE(desktop_->messages.back().text, std::string("Texture cannot be properly made. Please check bounds!"));
        QVERIFY(w->isEnabled());
        Click(w->cmdMap(), Qt::ControlModifier);
        Click(w->cmdMap());
        Snaps(w, false);
        Drag(w, At(w->box(1), 5, 5), QPoint(256 + 5, 64 + 5));
        Drag(w, At(w->box(2), 5, 5), QPoint(5, 5));
        desktop_->answers = {MessageAnswer::Yes};
        Click(w->cmdExport());
        QVERIFY(!w->isEnabled() && CurrentProject.OIF.Parts.empty());
        w->setEnabled(true);
        const std::string bitmap = program_->folder.file("atlas");
        desktop_->answers = {MessageAnswer::Yes};
        desktop_->dialogAnswers = {bitmap};
        Click(w->cmdExport());
        QCOMPARE(desktop_->messages.back().text, std::string(ImportedMessage));
        QVERIFY(w->isEnabled() && !desktop_->loadingShown);
        QCOMPARE(views.count("RefreshPartsList") + views.count("RebuildPreviews"), 2);
        const QImage atlas(QString::fromStdString(bitmap + ".bmp"));
        QCOMPARE(atlas.size(), QSize(512, 512));
        for (const auto& [at, colour] : {std::pair{QPoint(256, 64), Red},
                                         {QPoint(383, 127), Blue},
                                         {QPoint(63, 63), Green},
                                         {QPoint(255, 64), QColor(Qt::black)}})
            QCOMPARE(atlas.pixelColor(at), colour);
        QCOMPARE(CurrentProject.OIF.Parts.size(), std::size_t(1));
        for (const OIFVertex& v : CurrentProject.OIF.Parts[0].Vertices)
            QVERIFY(v.Z == 0 ? v.U >= 0.5f && v.U <= 0.75f : v.U <= 0.125f);  // the Stand lies at Z 0
        WriteConfig("Stadium Importer", "AutoClose", "1");
        desktop_->answers = {MessageAnswer::Yes, MessageAnswer::Yes, MessageAnswer::No};  // and replace the bitmap
        desktop_->dialogAnswers = {bitmap + ".bmp"};
        Click(w->cmdExport());
        QCOMPARE(CurrentProject.OIF.Parts.size(), std::size_t(2));
        QCOMPARE(CurrentProject.OIF.Parts[1].Header.Name.str().substr(0, 14), std::string("Part 1 [tp00] "));
        QCOMPARE(desktop_->messages.back().text, std::string(ExitQuestion));
        QVERIFY(w->isVisible() && !w->isEnabled());
    }

    void settingsShowCleanAndOkWritesTheStoreAndTheProgramAndCancelNothing() {
        ImportSettings first{5, 5, 5, 5, 5};
        ReadImporterSettings(first);  // a first run: the defaults, FlipV by the kind of model
        ReadImporterFlips(first, ImportKind::RAVText);
        QCOMPARE(first, (ImportSettings{0, 0, 1, 0, 0.5f}));
        ReadImporterFlips(first, ImportKind::Model3DS);
        QCOMPARE(first.FlipV, std::int16_t(1));
        Importer.Settings = {0, 0, 1, 0, 0.25f};
        {
            stmapSettings dialog;
            QVERIFY(MakeActive(dialog));
            QVERIFY(dialog.chkShade()->isChecked() && !dialog.txtMergeDist()->isEnabled());
            QCOMPARE(dialog.txtMergeDist()->text(), QString("0.25"));
            Tick(dialog.chkFlipU());
            Tick(dialog.chkMerge());
            QVERIFY(dialog.txtMergeDist()->isEnabled());
            dialog.txtMergeDist()->setFocus();
            QTRY_VERIFY(dialog.txtMergeDist()->hasFocus());
            dialog.txtMergeDist()->setText("0.75x");
            dialog.chkShade()->setFocus();  // leaving the box keeps the number it begins with
            QTRY_COMPARE(dialog.txtMergeDist()->text(), QString("0.75"));
            dialog.txtMergeDist()->setFocus();
            dialog.txtMergeDist()->setText("1.5m");
            QTest::mouseClick(dialog.cmdOK(), Qt::LeftButton);  // the click takes the focus first
            QCOMPARE(dialog.result(), int(QDialog::Accepted));
        }
        QCOMPARE(Importer.Settings, (ImportSettings{1, 0, 1, 1, 1.5f}));
        ImportSettings read;
        ReadImporterSettings(read);
        ReadImporterFlips(read, ImportKind::RAVText);
        QCOMPARE(read, Importer.Settings);
        stmapSettings again;
        QVERIFY(MakeActive(again));
        QCOMPARE(again.txtMergeDist()->text(), QString("1.5"));
        again.chkShade()->setChecked(false);
        QTest::mouseClick(again.cmdCancel(), Qt::LeftButton);
        QCOMPARE(Importer.Settings.Shade, std::int16_t(1));
        QCOMPARE(Store().value("Settings/Shade").toString(), QString("1"));
    }
};

QTEST_MAIN(stmapTest)
#include "stmapTest.moc"
