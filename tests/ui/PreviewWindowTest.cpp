// The four preview windows and "Stadium Preview", driven through their controls with the real
// preview writer: focus gives the active colour, and wheel, "+"/"-", arrow keys and drags change
// the view of the first active window, rewrite its file and have its viewer show it; what the
// viewers show without reading the files is what reading them shows.
#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QtTest>

#include <sys/stat.h>
#include <filesystem>
#include <fstream>

#include <map>
#include <memory>
#include <sstream>

#include <Inventor/SoPrimitiveVertex.h>
#include <Inventor/VRMLnodes/SoVRMLShape.h>
#include <Inventor/actions/SoCallbackAction.h>
#include <Inventor/actions/SoSearchAction.h>
#include <Inventor/nodes/SoShape.h>

#include "WindowTestKit.h"
#include "core/NumberText.h"
#include "core/Views.h"
#include "core/myOps.h"
#include "preview/PreviewViewOps.h"
#include "preview/VRMLOps.h"
#include "preview/ui/CortonaViewer.h"
#include "preview/ui/PartShapeNode.h"
#include "preview/ui/VrmlView.h"
#include "preview/ui/vrmlviewer.h"
#include "shell/IniOps.h"

namespace {

// The main window's side of InstallView: hands the release and the load to the preview windows.
class ForwardingViews : public Views {
public:
    ForwardingViews() { previous_ = InstallViews(this); }
    ~ForwardingViews() override { InstallViews(previous_); }
    void ReleaseView(const std::string& description) override { CortonaViewer::ReleaseView(description); }
    void LoadView(const std::string& description, const std::string& path) override {
        CortonaViewer::LoadView(description, path);
    }

private:
    Views* previous_ = nullptr;
};

// Which file each view has: a view file is written anew under another name that then replaces it,
// so each writing gives it another inode, however close in time two writings come.
using Stamps = std::map<std::string, ino_t>;
Stamps ViewStamps() {
    Stamps s;
    for (const char* view : PreviewWindowNames) {
        struct stat st {};
        s[view] = ::stat(ViewFilePath(view).c_str(), &st) == 0 ? st.st_ino : 0;
    }
    return s;
}
// The views whose files were written again since `before`, once the writes of view changes are done.
std::vector<std::string> RewrittenSince(const Stamps& before) {
    FinishViewFiles();
    std::vector<std::string> views;
    for (const auto& [view, time] : ViewStamps())
        if (time != before.at(view)) views.push_back(view);
    return views;
}

// A pitch of 4000 x 4000 units in the X-Z plane, one quad as a strip of two triangles.
OIFFile Pitch() { return TexturedQuad(2000, "tp01"); }

// A part of n x n vertices over a square of side 2 * half in the X-Z plane, drawn as one strip row
// by row, its faces about a pixel on the screen; with an odd V and coordinates that seven digits
// do not hold.
OIFPart Grid(int n, float half, const char* texture) {
    OIFPart p;
    p.Header.Texture = texture;
    for (int r = 0; r < n; ++r)
        for (int c = 0; c < n; ++c) {
            const float x = -half + 2 * half * float(c) / float(n - 1) + 0.123456f;
            const float z = -half + 2 * half * float(r) / float(n - 1);
            p.Vertices.push_back({x, 10.0f * float((r * 7 + c * 3) % 5), z, 0, float(c) / 3, float(r) / 7});
        }
    for (int r = 0; r + 1 < n; ++r) {
        if (r > 0) p.Indices.push_back(static_cast<std::int16_t>(r * n));  // a stitch to the next row
        for (int c = 0; c < n; ++c) {
            p.Indices.push_back(static_cast<std::int16_t>(r * n + c));
            p.Indices.push_back(static_cast<std::int16_t>((r + 1) * n + c));
        }
        p.Indices.push_back(static_cast<std::int16_t>((r + 1) * n + n - 1));
    }
    p.Header.VertexCount = static_cast<std::int32_t>(p.Vertices.size());
    p.Header.IndexCount = static_cast<std::int32_t>(p.Indices.size());
    return p;
}

// The triangles of a world as a viewer draws them: corners in world coordinates and their texture
// coordinates.
std::vector<float> Triangles(const SoNode* world) {
    std::vector<float> seen;
    SoCallbackAction action;
    action.addTriangleCallback(
        SoShape::getClassTypeId(),
        [](void* data, SoCallbackAction* a, const SoPrimitiveVertex* v1, const SoPrimitiveVertex* v2,
           const SoPrimitiveVertex* v3) {
            auto* s = static_cast<std::vector<float>*>(data);
            for (const SoPrimitiveVertex* v : {v1, v2, v3}) {
                SbVec3f p;
                a->getModelMatrix().multVecMatrix(v->getPoint(), p);
                const SbVec4f t = v->getTextureCoords();
                s->insert(s->end(), {p[0], p[1], p[2], t[0], t[1]});
            }
        },
        &seen);
    action.apply(const_cast<SoNode*>(world));
    return seen;
}

// The first part a viewer draws, which the four viewers of one rebuild share; null for a world
// read from its file.
const SoNode* PartsNode(VrmlView* view) {
    SoSearchAction search;
    search.setType(SoVRMLShape::getClassTypeId());
    search.apply(const_cast<SoNode*>(view->world()));
    if (!search.getPath()) return nullptr;
    const SoNode* geometry = static_cast<SoVRMLShape*>(search.getPath()->getTail())->geometry.getValue();
    return geometry->isOfType(PartShapeNode::getClassTypeId()) ? geometry : nullptr;
}

std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

}  // namespace

class PreviewWindowTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    std::unique_ptr<ForwardingViews> views_;
    std::unique_ptr<QWidget> frame_;
    Stamps mark_;

    CortonaViewer* w(int index) { return CortonaViewer::existing(index); }
    PreviewViewpoint start(int index) { return StartPreviewViews()[index]; }
    void focusStrip(int index) {
        w(index)->Picture1()->setFocus(Qt::OtherFocusReason);
        QTRY_VERIFY(w(index)->Picture1()->hasFocus());
    }
    std::vector<bool> activeColours() {
        std::vector<bool> a;
        for (int i = 0; i < PreviewWindowCount; ++i) a.push_back(w(i)->showsActiveColour());
        return a;
    }

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        std::filesystem::create_directories(AppPath("temp"));
        views_ = std::make_unique<ForwardingViews>();
        WriteConfig("Terramason", "Previews", "1");
        WriteConfig("Previews", "ZoomAmount", "1000");
        PreviewRefreshOn = true;
        CurrentProject.OIF = Pitch();
        PreviewViews = StartPreviewViews();

        frame_ = std::make_unique<QWidget>();
        frame_->resize(1100, 700);
        const auto layout = PreviewWindowLayout();
        for (int i = 0; i < PreviewWindowCount; ++i) {
            auto* v = new CortonaViewer(i, frame_.get());
            v->setGeometry(layout[i].Left, layout[i].Top, layout[i].Width, layout[i].Height);
        }
        // Xvfb has no window manager to activate a new window; focus needs an active one.
        QVERIFY(MakeActive(*frame_));
        // Activation hands the focus to the first strip; the tests start with no window active.
        if (QWidget* focused = QApplication::focusWidget()) focused->clearFocus();
        QCOMPARE(CortonaViewer::activeIndex(), -1);
        RebuildPreviews(CurrentProject.OIF, PreviewSelection{});
        for (int i = 0; i < PreviewWindowCount; ++i)
            QCOMPARE(w(i)->Cortona1()->scene(), QString::fromStdString(ViewFilePath(PreviewWindowNames[i])));
        mark_ = ViewStamps();
    }
    void cleanup() {
        frame_.reset();
        views_.reset();
        program_.reset();
    }

    void controlsStandWhereTheWindowPutsThem() {
        CortonaViewer* top = w(ViewTop);
        QCOMPARE(top->Label()->text(), QStringLiteral("Top"));
        QCOMPARE(w(ViewPerspective)->Label()->text(), QStringLiteral("Perspective"));
        QCOMPARE(top->zoomin()->text(), QStringLiteral("+"));
        QCOMPARE(top->zoomout()->text(), QStringLiteral("-"));
        QCOMPARE(top->Picture1()->palette().color(QPalette::Window), QColor(0xC0, 0xC0, 0xC0));
        const PixelRect r = CortonaViewerControlRect(top->width(), top->height(), top->Frame1()->height());
        QCOMPARE(top->Cortona1()->geometry(), QRect(r.Left, r.Top, r.Width, r.Height));
        QCOMPARE(top->Cortona1()->y(), top->Frame1()->geometry().bottom() + 1);
        // "-" at the right end of the strip, "+" just left of it.
        QCOMPARE(top->zoomout()->geometry().right(), top->Picture1()->width() - 1);
        QCOMPARE(top->zoomin()->geometry().right() + 1, top->zoomout()->x());
        QCOMPARE(top->Picture1()->geometry().right() + 1, r.Width);
        top->resize(600, 400);
        QCOMPARE(top->Cortona1()->geometry(), QRect(0, top->Frame1()->height(), 593, 397 - top->Frame1()->height()));
        // Every window starts with the stored render flags: untextured.
        for (int i = 0; i < PreviewWindowCount; ++i) QCOMPARE(w(i)->Cortona1()->renderFlags(), RenderUntextured);
    }

    void focusOnTheStripOrTheViewerGivesTheActiveColour() {
        focusStrip(ViewBack);
        QCOMPARE(activeColours(), (std::vector<bool>{false, false, true, false}));
        QCOMPARE(CortonaViewer::activeIndex(), int(ViewBack));
        QCOMPARE(w(ViewBack)->Frame1()->palette().color(QPalette::Window), CortonaViewer::activeTitleColour());
        QCOMPARE(w(ViewTop)->Frame1()->palette().color(QPalette::Window), CortonaViewer::inactiveTitleColour());

        w(ViewRight)->Cortona1()->setFocus(Qt::OtherFocusReason);
        QTRY_COMPARE(activeColours(), (std::vector<bool>{false, true, false, false}));

        // A click on the caption hands the focus to the strip of that window.
        QTest::mouseClick(w(ViewPerspective)->Label(), Qt::LeftButton);
        QTRY_VERIFY(w(ViewPerspective)->Picture1()->hasFocus());
        QCOMPARE(activeColours(), (std::vector<bool>{false, false, false, true}));

        w(ViewPerspective)->Picture1()->clearFocus();
        QTRY_COMPARE(CortonaViewer::activeIndex(), -1);
    }

    void theLookupTakesTheFirstActiveWindowWhateverWindowTheEventIsIn() {
        focusStrip(ViewPerspective);
        // The wheel turns over the Top window: the active Perspective view zooms.
        TurnWheel(w(ViewTop)->Cortona1(), 2 * 120);
        QCOMPARE(PreviewViews[ViewPerspective].PositionZ, start(ViewPerspective).PositionZ - 2000);
        QCOMPARE(PreviewViews[ViewTop], start(ViewTop));
        QCOMPARE(RewrittenSince(mark_), std::vector<std::string>{"Perspective"});
        const std::string head = Slurp(ViewFilePath("Perspective"));
        QVERIFY2(head.find("position 0 1500 28000") != std::string::npos, head.c_str());
        QVERIFY2(head.find("Shape {") != std::string::npos, "the parts are joined behind the head");
        QCOMPARE(w(ViewPerspective)->Cortona1()->scene(), QString::fromStdString(ViewFilePath("Perspective")));
        QVERIFY(w(ViewPerspective)->Cortona1()->hasWorld());
    }

    void withoutAnActiveWindowInputChangesNothing() {
        TurnWheel(w(ViewTop)->Cortona1(), 120);
        w(ViewTop)->keyPressed(KeyLeft);
        QCOMPARE(PreviewViews, StartPreviewViews());
        QVERIFY(RewrittenSince(mark_).empty());
    }

    void zoomAmountIsReadAtEachTurnAndNonNumbersCountAsNothing() {
        focusStrip(ViewTop);
        WriteConfig("Previews", "ZoomAmount", "250.5 units");
        TurnWheel(w(ViewTop)->Cortona1(), -120);
        QCOMPARE(PreviewViews[ViewTop].PositionZ, 30250.5f);
        WriteConfig("Previews", "ZoomAmount", "lots");
        FinishViewFiles();
        mark_ = ViewStamps();
        TurnWheel(w(ViewTop)->Cortona1(), 120);
        QCOMPARE(PreviewViews[ViewTop].PositionZ, 30250.5f);
        // The view is written again all the same.
        QCOMPARE(RewrittenSince(mark_), std::vector<std::string>{"Top"});
    }

    void plusOnAWindowThatWasNotActiveActivatesItFirst() {
        focusStrip(ViewTop);
        QTest::mouseClick(w(ViewRight)->zoomin(), Qt::LeftButton);
        QCOMPARE(PreviewViews[ViewRight].PositionZ, start(ViewRight).PositionZ - 1000);
        QCOMPARE(PreviewViews[ViewTop], start(ViewTop));
        QTRY_VERIFY(w(ViewRight)->Picture1()->hasFocus());
        QCOMPARE(activeColours(), (std::vector<bool>{false, true, false, false}));

        QTest::mouseClick(w(ViewRight)->zoomout(), Qt::LeftButton);
        QTest::mouseClick(w(ViewRight)->zoomout(), Qt::LeftButton);
        QCOMPARE(PreviewViews[ViewRight].PositionZ, start(ViewRight).PositionZ + 1000);
    }

    void arrowKeysInTheStripPanAndEveryKeyReloads() {
        focusStrip(ViewBack);
        QTest::keyClick(w(ViewBack)->Picture1(), Qt::Key_Left);
        QTest::keyClick(w(ViewBack)->Picture1(), Qt::Key_Up);
        QCOMPARE(PreviewViews[ViewBack].PositionX, start(ViewBack).PositionX + 1000);
        QCOMPARE(PreviewViews[ViewBack].PositionY, start(ViewBack).PositionY - 1000);
        QTest::keyClick(w(ViewBack)->Picture1(), Qt::Key_Right);
        QTest::keyClick(w(ViewBack)->Picture1(), Qt::Key_Down);
        QCOMPARE(PreviewViews[ViewBack], start(ViewBack));
        FinishViewFiles();
        mark_ = ViewStamps();
        QTest::keyClick(w(ViewBack)->Picture1(), Qt::Key_A);
        QCOMPARE(PreviewViews[ViewBack], start(ViewBack));
        QCOMPARE(RewrittenSince(mark_), std::vector<std::string>{"Back"});
        QVERIFY2(w(ViewBack)->Picture1()->hasFocus(), "keys do not leave the strip");
    }

    void aLeftDragTurnsThePictureWhileHeldAndTheViewAtTheRelease() {
        VrmlView* view = w(ViewPerspective)->Cortona1();
        const QImage before = view->grabFramebuffer();
        QTest::mousePress(view, Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
        QCOMPARE(w(ViewPerspective)->turnStart(), (TurnStart{MouseLeft, 10, 10}));
        QTest::mouseMove(view, QPoint(160, 10));
        QVERIFY2(view->grabFramebuffer() != before, "the picture turns while the button is held");
        QVERIFY2(PreviewViews == StartPreviewViews() && RewrittenSince(mark_).empty(), "the view and its file wait");
        QTest::mouseRelease(view, Qt::LeftButton, Qt::NoModifier, QPoint(160, 10));
        // 150 pixels of 15 twips (96 dots per inch) are 22.5 degrees about Y.
        const float turned = float(start(ViewPerspective).SceneRotationY + DegToRad(22.5));
        QCOMPARE(PreviewViews[ViewPerspective].SceneRotationY, turned);
        QCOMPARE(PreviewViews[ViewPerspective].SceneRotationX, start(ViewPerspective).SceneRotationX);
        QCOMPARE(RewrittenSince(mark_), std::vector<std::string>{"Perspective"});
        const std::string line = "   rotation 0 1 0 " + SingleText(turned) + "\r\n";
        QVERIFY2(Slurp(ViewFilePath("Perspective")).find(line) != std::string::npos, line.c_str());
        // The viewer hands the keyboard to the strip; the window stays the active one.
        QTRY_VERIFY(w(ViewPerspective)->Picture1()->hasFocus());
        QCOMPARE(CortonaViewer::activeIndex(), int(ViewPerspective));
    }

    void aRightPressOverwritesTheButtonAndTheReleaseDoesNotTurn() {
        VrmlView* view = w(ViewTop)->Cortona1();
        QTest::mousePress(view, Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
        QTest::mousePress(view, Qt::RightButton, Qt::NoModifier, QPoint(90, 90));
        QCOMPARE(w(ViewTop)->turnStart(), (TurnStart{MouseRight, 10, 10}));
        QTest::mouseRelease(view, Qt::LeftButton, Qt::NoModifier, QPoint(60, 60));
        QCOMPARE(PreviewViews, StartPreviewViews());
        QVERIFY(RewrittenSince(mark_).empty());
    }

    void theReleaseUsesThePressOfItsOwnWindowAndTurnsTheActiveView() {
        // Top holds a left press; the release arrives there while Back shows the active colour.
        QTest::mousePress(w(ViewTop)->Cortona1(), Qt::LeftButton, Qt::NoModifier, QPoint(1, 1));
        focusStrip(ViewBack);
        QTest::mouseRelease(w(ViewTop)->Cortona1(), Qt::LeftButton, Qt::NoModifier, QPoint(1, 101));
        QCOMPARE(PreviewViews[ViewTop], start(ViewTop));
        // Top got the focus with the press, lost it to Back's strip; Back is the one turned.
        QCOMPARE(PreviewViews[ViewBack].SceneRotationX, float(start(ViewBack).SceneRotationX + DegToRad(15)));
    }

    void viewsWithoutAWindowAreSkipped() {
        // A description of no window: the hooks do nothing and nothing breaks.
        CortonaViewer::ReleaseView("Vertex");
        CortonaViewer::LoadView("Vertex", "/nowhere.wrl");
        for (int i = 0; i < PreviewWindowCount; ++i) QVERIFY(w(i)->Cortona1()->hasWorld());
        // The viewers hold no file, so a release leaves the picture until the load.
        CortonaViewer::ReleaseView("Back");
        QVERIFY(w(ViewBack)->Cortona1()->hasWorld());
        QVERIFY(program_->desktop.messages.empty());
    }

    void whatTheViewersShowWithoutReadingIsWhatReadingTheFilesShows() {
        // The pitch, a grid with stitches and numbers seven digits do not hold, a hidden part,
        // and a part whose picture is missing.
        OIFFile doc = Pitch();
        doc = AddPart(Grid(12, 3000, "tp01"), doc);
        doc = AddPart(Grid(3, 500, "tp01"), doc);
        doc = AddPart(Grid(4, 800, "gone"), doc);
        QImage red(8, 8, QImage::Format_RGB32);
        red.fill(Qt::red);
        QVERIFY(red.save(QString::fromStdString(AppPath("temp/tp01.png"))));
        w(ViewPerspective)->Cortona1()->setRenderFlags(RenderTextured);
        RebuildPreviews(doc, PreviewSelection{{true, true, false, true}, -1, -1});
        const auto check = [&](int index) {
            FinishViewFiles();
            VrmlView* view = w(index)->Cortona1();
            VrmlView reader;
            reader.setRenderFlags(view->renderFlags());
            reader.setScene(QString::fromStdString(ViewFilePath(PreviewWindowNames[index])));
            QVERIFY(PartsNode(view));
            QVERIFY2(!PartsNode(&reader), "the reader read the file");
            QCOMPARE(Triangles(view->world()), Triangles(reader.world()));
            const VrmlView::Camera a = view->camera(), b = reader.camera();
            QCOMPARE(std::vector<float>({a.x, a.y, a.z, a.axisX, a.axisY, a.axisZ, a.angle, a.fieldOfView}),
                     std::vector<float>({b.x, b.y, b.z, b.axisX, b.axisY, b.axisZ, b.angle, b.fieldOfView}));
        };
        for (int i = 0; i < PreviewWindowCount; ++i) check(i);
        const SoNode* shared = PartsNode(w(ViewTop)->Cortona1());
        for (int i = 0; i < PreviewWindowCount; ++i) QCOMPARE(PartsNode(w(i)->Cortona1()), shared);

        // View changes move camera and turns only: the parts stay the ones shown.
        QTest::mouseClick(w(ViewPerspective)->zoomin(), Qt::LeftButton);
        QTest::keyClick(w(ViewPerspective)->Picture1(), Qt::Key_Left);
        QTest::mousePress(w(ViewPerspective)->Cortona1(), Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
        QTest::mouseRelease(w(ViewPerspective)->Cortona1(), Qt::LeftButton, Qt::NoModifier, QPoint(47, 91));
        check(ViewPerspective);
        QCOMPARE(PartsNode(w(ViewPerspective)->Cortona1()), shared);
        focusStrip(ViewTop);
        QTest::keyClick(w(ViewTop)->Picture1(), Qt::Key_Down);
        check(ViewTop);
        QCOMPARE(PartsNode(w(ViewTop)->Cortona1()), shared);
    }

    void theFacesAFrameLeavesOutAreOnesNoPixelShows() {
        OIFFile doc = Pitch();
        doc = AddPart(Grid(150, 2000, "tp01"), doc);
        RebuildPreviews(doc, {});
        for (int turn = 0; turn < 3; ++turn) {
            PreviewViewpoint view = PreviewViews[ViewPerspective];
            view.SceneRotationY += 0.3f * float(turn);
            view.PositionZ -= 8000.0f * float(turn);
            VrmlView* viewer = w(ViewPerspective)->Cortona1();
            viewer->showPose(HeadPose(view));
            PartShapeNode::setSkipUnseenFaces(false);
            const QImage all = viewer->grabFramebuffer();
            PartShapeNode::setSkipUnseenFaces(true);
            QCOMPARE(viewer->grabFramebuffer(), all);
            QVERIFY(NotBackground(all) > 1000);
        }
    }

    void theWindowsAreFoundByIndexAndDescription() {
        QCOMPARE(CortonaViewer::existing("Right"), w(ViewRight));
        QCOMPARE(CortonaViewer::existing("right"), static_cast<CortonaViewer*>(nullptr));
        // Touching an existing window makes no other.
        QCOMPARE(CortonaViewer::window(ViewBack), w(ViewBack));
        frame_.reset();
        QCOMPARE(CortonaViewer::existing(ViewBack), static_cast<CortonaViewer*>(nullptr));
        std::unique_ptr<CortonaViewer> made(CortonaViewer::window(ViewBack));
        QCOMPARE(CortonaViewer::existing(ViewBack), made.get());
        QVERIFY(!made->isVisible());
        QCOMPARE(made->Label()->text(), QStringLiteral("Back"));
    }

    void stadiumPreviewKeepsItsViewerInsideTheMargins() {
        std::unique_ptr<vrmlviewer> v(vrmlviewer::window());
        QCOMPARE(vrmlviewer::existing(), v.get());
        QCOMPARE(v->windowTitle(), QStringLiteral("Stadium Preview"));
        v->show();
        v->resize(600, 400);
        QCOMPARE(v->Cortona1()->geometry(), QRect(0, 0, 590, 374));
        v->showvrml(1000);
        const QSize screen = v->screen()->size();
        const PixelRect r = StadiumPreviewPlacement(screen.width(), screen.height(), 1000);
        QCOMPARE(v->size(), QSize(r.Width, r.Height));
        QVERIFY(v->isVisible());
        QCOMPARE(v->Cortona1()->size(), QSize(r.Width - 10, r.Height - 26));
    }
};

QTEST_MAIN(PreviewWindowTest)
#include "PreviewWindowTest.moc"
