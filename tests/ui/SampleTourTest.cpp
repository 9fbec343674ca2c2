// The sample stadium's walk-through in the real main window, through its menus: the stadium and
// its crowds, boards and banners arrive in the parts list and the crowds are drawn in their
// teams' colours by the Perspective preview; the OIF Editor, the Crowd Building Wizard and the
// Stadium Importer open on the sample's data.
//
// With TM_SCREENSHOTS naming a folder (scripts/screenshots), the walk also leaves there the
// pictures of the read-me: main-window.png, oif-editor.png, crowd-wizard.png and
// stadium-importer.png.
#define QTEST_QPA_MOUSE_HANDLING

#include <cstdlib>

#include "WindowTestKit.h"
#include "importer/ui/stmap.h"
#include "wizards/ui/crowdwizard.h"

namespace {

const std::string Samples = TM_SAMPLES;

// Pixels of a team's shirts, in the preview's light: the home crowd's red, the away crowd's blue.
// The walls' blue-grey is not blue enough to count.
int ShirtPixels(const QImage& image, bool home) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QColor c = image.pixelColor(x, y);
            const int strong = home ? c.red() : c.blue(), weak = std::max(c.green(), home ? c.blue() : c.red());
            count += strong > 60 && 20 * weak < 13 * strong;
        }
    return count;
}

}  // namespace

class SampleTourTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    std::unique_ptr<vorn> frame_;
    QString shots_ = QString::fromLocal8Bit(qgetenv("TM_SCREENSHOTS"));

    void run(const char* caption) {
        QAction* action = frame_->menuAction(QString::fromUtf8(caption));
        QVERIFY2(action && action->isEnabled(), caption);
        action->trigger();
    }
    QImage perspective() {
        VrmlView* view = CortonaViewer::existing(ViewPerspective)->Cortona1();
        if (!QTest::qWaitForWindowExposed(view)) return {};
        QTest::qWait(50);
        return view->grabFramebuffer();
    }
    // A picture of the window, or of the whole screen as the user sees it, when pictures are wanted.
    void shoot(const char* name, QWidget* window = nullptr) {
        if (shots_.isEmpty()) return;
        QTest::qWait(300);
        QApplication::processEvents();
        const QPixmap picture = window ? window->grab() : QGuiApplication::primaryScreen()->grabWindow(0);
        QVERIFY(picture.save(shots_ + "/" + name));
    }

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        WriteConfig("Terramason", "Previews", "1");
        WriteConfig("Previews", "PerspectiveTex", "1");
    }
    void cleanup() {
        frame_.reset();
        program_.reset();
    }

    void theSampleThroughTheMenus() {
        frame_ = std::make_unique<vorn>();
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        frame_->setGeometry(screen);
        QVERIFY(MakeActive(*frame_));
        ScriptedDesktop& desktop = program_->desktop;
        run("&New Project");
        desktop.dialogAnswers = {Samples + "/stadium.oif", Samples + "/crowds.txt"};
        run("&Import to OIF...");
        // The pictures go to the project's scratch folder, as the help page's copy command puts them.
        for (const auto& entry : std::filesystem::directory_iterator(Samples + "/textures"))
            std::filesystem::copy_file(entry.path(), AppPath("temp/" + entry.path().filename().string()));
        run("Refresh");
        const QImage bare = perspective();
        desktop.answers = {MessageAnswer::No, MessageAnswer::Yes};
        run("Import Crowds...");
        QCOMPARE(frame_->selectobj()->objectbox()->count(), 6 + 8);
        const QImage crowded = perspective();
        QVERIFY2(ShirtPixels(crowded, true) > ShirtPixels(bare, true) + 500, "the home crowd is not drawn");
        QVERIFY2(ShirtPixels(crowded, false) > ShirtPixels(bare, false) + 100, "the away crowd is not drawn");
        desktop.dialogAnswers = {Samples + "/adboards.3ds", Samples + "/banners.3ds"};
        run("Import Adboards...");
        run("Import Banners...");
        QCOMPARE(frame_->selectobj()->objectbox()->count(), 14 + 3 + 6);
        QVERIFY(desktop.messages.size() == 2);  // the two questions, nothing else
        // Closer, for the picture: the stadium fills the Perspective preview.
        WriteConfig("Previews", "ZoomAmount", "4000");
        for (int i = 0; i < 2; ++i) CortonaViewer::existing(ViewPerspective)->zoominClick();
        shoot("main-window.png");

        // The OIF Editor on the first home crowd part.
        if (!frame_->menuAction("OIF Editor")->isChecked()) run("OIF Editor");
        vornoifform* editor = vornoifform::existing();
        UserPicksRow(editor->oifpartbox(), 6);
        QCOMPARE(editor->oifparttexture()->currentText(), QString("rwh0"));
        shoot("oif-editor.png", editor);
        editor->close();

        // The Crowd Building Wizard with the north terrace typed in.
        run("Crowd Building Wizard");
        crowdwizard* wizard = crowdwizard::existing();
        wizard->nextbut()->click();
        wizard->polyfrom(1)->click();
        wizard->nextbut()->click();
        const char* corners[4][3] = {
            {"-5000", "175", "-4100"}, {"5000", "175", "-4100"}, {"5000", "1225", "-6200"}, {"-5000", "1225", "-6200"}};
        for (int i = 0; i < 4; ++i) {
            wizard->xbox(i)->setText(corners[i][0]);
            wizard->ybox(i)->setText(corners[i][1]);
            wizard->zbox(i)->setText(corners[i][2]);
        }
        wizard->move(screen.center() - wizard->rect().center());
        shoot("crowd-wizard.png", wizard);
        desktop.answers = {MessageAnswer::Yes};
        wizard->close();

        // The Stadium Importer on the scoreboard, its three pictures laid out side by side.
        desktop.dialogAnswers = {Samples + "/scoreboard/scoreboard.3ds", Samples + "/scoreboard"};
        run("Stadium Importer");
        stmap* importer = stmap::existing();
        QVERIFY(importer && MakeActive(*importer));
        QCOMPARE(importer->lvTex()->topLevelItemCount(), 3);
        const QPoint places[3] = {{0, 0}, {0, 66}, {34, 66}};
        importer->chkSnapToEdge()->setChecked(false);
        importer->chkSnapToTex()->setChecked(false);
        for (int n = 1; n <= 3; ++n) {
            importer->lvTexItemClick(n);
            importer->cmdMapClick();
            const QPoint by = places[n - 1] - QPoint(importer->box(n).Left, importer->box(n).Top);
            importer->picTexMouseDown(n, Qt::LeftButton, QPointF(5, 5));
            importer->picTexMouseMove(n, QPointF(5 + by.x(), 5 + by.y()));
            importer->picTexMouseUp(n);
        }
        QVERIFY(importer->CheckBounds(false));
        shoot("stadium-importer.png", importer);
        desktop.answers = {MessageAnswer::Yes};
        importer->close();
    }
};

QTEST_MAIN(SampleTourTest)
#include "SampleTourTest.moc"
