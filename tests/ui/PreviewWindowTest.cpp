// The four preview windows in the main window with the real writer and the real viewer: they
// open and draw their files, wheel, keys, "+" and drags change the first active view and rewrite
// its file, a view change moves the camera without reading the world again, and the viewer
// widget draws worlds from their first Viewpoint, textured by the render flags, silently.
#include <Inventor/SoDB.h>
#include <Inventor/SoPrimitiveVertex.h>
#include <Inventor/VRMLnodes/SoVRMLShape.h>
#include <Inventor/actions/SoCallbackAction.h>
#include <Inventor/actions/SoSearchAction.h>
#include <Inventor/nodes/SoShape.h>
#include <Inventor/sensors/SoOneShotSensor.h>
#include <Inventor/sensors/SoSensorManager.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>

#include "WindowTestKit.h"
#include "core/NumberText.h"
#include "core/myOps.h"
#include "preview/ui/CoinRuntime.h"
#include "preview/ui/PartShapeNode.h"
#include "preview/ui/vrmlviewer.h"

namespace {

CortonaViewer* W(int index) { return CortonaViewer::existing(index); }

// Each writing of a view file gives it another inode: the views written since `before`.
std::map<std::string, ino_t> ViewStamps() {
    std::map<std::string, ino_t> s;
    for (const char* view : PreviewWindowNames) {
        struct stat st {};
        s[view] = ::stat(ViewFilePath(view).c_str(), &st) == 0 ? st.st_ino : 0;
    }
    return s;
}
std::vector<std::string> RewrittenSince(const std::map<std::string, ino_t>& before) {
    FinishViewFiles();
    std::vector<std::string> views;
    for (const auto& [view, inode] : ViewStamps())
        if (inode != before.at(view)) views.push_back(view);
    return views;
}

// A part of n x n vertices over a square of side 2 * half, one strip row by row with stitches,
// with coordinates that seven digits do not hold.
OIFPart Grid(int n, float half) {
    OIFPart p;
    p.Header.Texture = "tp00";
    for (int r = 0; r < n; ++r)
        for (int c = 0; c < n; ++c)
            p.Vertices.push_back({-half + 2 * half * float(c) / float(n - 1) + 0.123456f, 10.0f * float((r + c) % 5),
                                  -half + 2 * half * float(r) / float(n - 1), 0, float(c) / 3, float(r) / 7});
    for (int r = 0; r + 1 < n; ++r) {
        if (r > 0) p.Indices.push_back(std::int16_t(r * n));
        for (int c = 0; c < n; ++c)
            p.Indices.insert(p.Indices.end(), {std::int16_t(r * n + c), std::int16_t(r * n + n + c)});
        p.Indices.push_back(std::int16_t(r * n + 2 * n - 1));
    }
    p.Header.VertexCount = std::int32_t(p.Vertices.size());
    p.Header.IndexCount = std::int32_t(p.Indices.size());
    return p;
}

// The triangles a viewer draws: corners in world coordinates with their texture coordinates.
std::vector<float> Triangles(const SoNode* world) {
    std::vector<float> seen;
    SoCallbackAction action;
    action.addTriangleCallback(
        SoShape::getClassTypeId(),
        [](void* data, SoCallbackAction* a, const SoPrimitiveVertex* v1, const SoPrimitiveVertex* v2,
           const SoPrimitiveVertex* v3) {
            for (const SoPrimitiveVertex* v : {v1, v2, v3}) {
                SbVec3f p;
                a->getModelMatrix().multVecMatrix(v->getPoint(), p);
                const SbVec4f t = v->getTextureCoords();
                for (float f : {p[0], p[1], p[2], t[0], t[1]}) static_cast<std::vector<float>*>(data)->push_back(f);
            }
        },
        &seen);
    action.apply(const_cast<SoNode*>(world));
    return seen;
}

// The parts node a viewer draws, shared by the four viewers of one rebuild; null for a world read
// from its file.
const SoNode* PartsNode(VrmlView* view) {
    SoSearchAction search;
    search.setType(SoVRMLShape::getClassTypeId());
    search.apply(const_cast<SoNode*>(view->world()));
    if (!search.getPath()) return nullptr;
    const SoNode* geometry = static_cast<SoVRMLShape*>(search.getPath()->getTail())->geometry.getValue();
    return geometry->isOfType(PartShapeNode::getClassTypeId()) ? geometry : nullptr;
}

void WriteText(const std::string& path, const std::string& text) { WriteFile(path, {text.begin(), text.end()}); }

// A world of a square of side 2 around (cx, 0) facing +Z, seen from the viewpoints given.
std::string World(const std::string& viewpoints, float cx, const std::string& appearance) {
    const std::string l = std::to_string(cx - 1), r = std::to_string(cx + 1);
    return "#VRML V2.0 utf8\n" + viewpoints + "Shape { appearance Appearance {" + appearance +
           "} geometry IndexedFaceSet { coord Coordinate { point [ " + l + " -1 0, " + r + " -1 0, " + r + " 1 0, " +
           l +
           " 1 0 ] } coordIndex [ 0 1 2 3 -1 ] texCoord TextureCoordinate { point [ 0 0, 1 0, 1 1, 0 1 ] } "
           "texCoordIndex [ 0 1 2 3 -1 ] solid FALSE } }\n";
}
std::string Viewpoint(const char* position) {
    return std::string("Viewpoint { position ") + position + " fieldOfView 0.785398 }\n";
}
const std::string Red = "material Material { diffuseColor 1 0 0 }";

// The middle column of the shape's pixels, or -1 for none.
double ShapeCentreX(const QImage& image) {
    double sum = 0, n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if ((image.pixel(x, y) & 0xFFFFFF) != 0xC0C0C0) sum += x, ++n;
    return n ? sum / n : -1;
}

// Everything written to standard error while `run` runs.
std::string CapturedStderr(const std::function<void()>& run) {
    std::fflush(stderr);
    QTemporaryFile sink;
    if (!sink.open()) return "cannot capture";
    const int saved = dup(2);
    dup2(sink.handle(), 2);
    run();
    std::fflush(stderr);
    dup2(saved, 2);
    close(saved);
    sink.seek(0);
    return sink.readAll().toStdString();
}

}  // namespace

class PreviewWindowTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    std::unique_ptr<vorn> frame_;

    void openProject(const OIFFile& doc = TexturedQuad()) {
        OpenFrameWithProject(frame_, doc);
        for (int i = 0; i < PreviewWindowCount; ++i) QVERIFY(W(i) && QTest::qWaitForWindowExposed(W(i)->Cortona1()));
        // The first viewer gives the frame a new native window, which Xvfb leaves inactive; the
        // tests start with no preview active.
        QVERIFY(MakeActive(*frame_));
        if (QWidget* focused = QApplication::focusWidget()) focused->clearFocus();
        QTRY_COMPARE(CortonaViewer::activeIndex(), -1);
        FinishViewFiles();
    }
    static void focusStrip(int index) {
        W(index)->Picture1()->setFocus(Qt::OtherFocusReason);
        QTRY_VERIFY(W(index)->Picture1()->hasFocus());
    }
    // The new project empties the scratch folder; the texture comes after, as an import would.
    static void writeRedTexture() {
        QImage red(16, 16, QImage::Format_RGB32);
        red.fill(Qt::red);
        QVERIFY(red.save(QString::fromStdString(AppPath("temp/tp00.png"))));
    }
    static PreviewViewpoint start(int index) { return StartPreviewViews()[index]; }

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        std::filesystem::create_directories(AppPath("temp"));
        WriteConfig("Terramason", "Previews", "1");
        WriteConfig("Previews", "PerspectiveTex", "1");
        WriteConfig("Previews", "ZoomAmount", "1000");
        TakeCoinMessages();
    }
    void cleanup() {
        frame_.reset();
        program_.reset();
    }

    // The Options window's Perspective window and the wireframe land in the frame too; Hide All
    // and Show All reach the files and the pictures; a cancelled quit brings the windows back.
    void theWindowsOpenInTheFrameDrawTheirFilesAndComeBackAfterACancelledQuit() {
        QPointer<CortonaViewer> early = CortonaViewer::window(ViewPerspective);  // as Options makes it
        openProject();
        QCOMPARE(W(ViewPerspective), early.data());
        writeRedTexture();
        frame_->menuAction("Refresh")->trigger();
        const auto layout = PreviewWindowLayout();
        for (int i = 0; i < PreviewWindowCount; ++i) {
            auto* sub = qobject_cast<QMdiSubWindow*>(W(i)->parentWidget());
            QVERIFY(sub && sub->mdiArea() == frame_->mdiArea() && sub->isVisible());
            QCOMPARE(sub->geometry(), QRect(layout[i].Left, layout[i].Top, layout[i].Width, layout[i].Height));
            VrmlView* view = W(i)->Cortona1();
            QCOMPARE(view->scene(), QString::fromStdString(ViewFilePath(PreviewWindowNames[i])));
            // What the viewer draws reaches the screen, when the slower builds have shown it;
            // only Perspective shows the texture.
            const QImage drawn = view->grabFramebuffer();
            const QPoint centre = view->mapToGlobal(view->rect().center());
            QTRY_COMPARE_WITH_TIMEOUT(
                frame_->screen()->grabWindow(0, centre.x(), centre.y(), 1, 1).toImage().pixelColor(0, 0),
                drawn.pixelColor(view->rect().center()), 10000);
            QVERIFY2(NotBackground(drawn) > drawn.width() * drawn.height() / 10, PreviewWindowNames[i]);
            QCOMPARE(RedPixels(drawn) > drawn.width() * drawn.height() / 10, i == ViewPerspective);
        }
        WriteWirePreview(CurrentProject.OIF.Parts, DefaultPreviewScene(), TheViews().Selection());
        vrmlviewer* wire = vrmlviewer::existing();
        QVERIFY(wire && wire->Cortona1()->hasWorld());
        QCOMPARE(wire->Cortona1()->scene(), QString::fromStdString(AppPath("temp/stad1.wrl")));
        QCOMPARE(qobject_cast<QMdiSubWindow*>(wire->parentWidget())->mdiArea(), frame_->mdiArea());
        CortonaViewer::ReleaseView("Vertex");  // a description of no window is skipped
        CortonaViewer::LoadView("Vertex", "/nowhere.wrl");
        QVERIFY(program_->desktop.messages.empty());
        for (const char* entry : {"hideallmenu", "showallmenu"}) {
            frame_->objselect()->findChild<QAction*>(entry)->trigger();
            FinishViewFiles();
            const bool shown = entry[0] == 's';
            for (const char* name : PreviewWindowNames)
                QVERIFY2((ReadText(ViewFilePath(name)).find("Shape {") != std::string::npos) == shown, name);
            QCOMPARE(NotBackground(W(ViewTop)->Cortona1()->grabFramebuffer()) > 0, shown);
        }
        QTest::mouseClick(W(ViewTop)->zoomin(), Qt::LeftButton);
        QPointer<CortonaViewer> before = W(ViewTop);
        program_->desktop.answers = {MessageAnswer::No, MessageAnswer::Yes};
        QVERIFY(!frame_->close());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY2(before.isNull(), "the close took the windows with it");
        for (int i = 0; i < PreviewWindowCount; ++i) QVERIFY(W(i) && W(i)->isVisible() && W(i)->Cortona1()->hasWorld());
        QCOMPARE(PreviewViews, StartPreviewViews());
        QCOMPARE(RunEventLoop([&] { frame_->close(); }), 0);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!W(ViewTop));
        frame_.reset();
        WriteConfig("Terramason", "Previews", "0");  // previews off: none
        vorn without;
        without.createnew(0, "Project1");
        QVERIFY(!W(ViewTop) && !std::filesystem::exists(ViewFilePath("Top")));
    }

    // A drag turns the picture while held and the view at the release; wheel, keys, "+" and "-"
    // change the first active view; each change rewrites that view's file only and moves the
    // camera without reading the world again.
    void dragsWheelKeysAndButtonsChangeTheFirstActiveViewAndRewriteItsFile() {
        // Stitched strips, numbers seven digits do not hold, a hidden part, a missing picture.
        OIFFile doc = AddPart(Grid(150, 2000), TexturedQuad(2000));
        doc = AddPart(Grid(3, 500), doc);
        doc = AddPart(Grid(4, 800), doc);
        doc.Parts[3].Header.Texture = "gone";
        openProject(doc);
        writeRedTexture();
        RebuildPreviews(doc, PreviewSelection{{true, true, false, true}, -1, -1});
        const SoNode* shared = PartsNode(W(ViewTop)->Cortona1());
        const auto check = [&](int index) {
            FinishViewFiles();
            VrmlView* view = W(index)->Cortona1();
            VrmlView reader;
            reader.setRenderFlags(view->renderFlags());
            reader.setScene(QString::fromStdString(ViewFilePath(PreviewWindowNames[index])));
            QVERIFY(shared && PartsNode(view) == shared && !PartsNode(&reader));
            QCOMPARE(Triangles(view->world()), Triangles(reader.world()));
            const VrmlView::Camera a = view->camera(), b = reader.camera();
            QCOMPARE(std::vector<float>({a.x, a.y, a.z, a.axisX, a.axisY, a.axisZ, a.angle, a.fieldOfView}),
                     std::vector<float>({b.x, b.y, b.z, b.axisX, b.axisY, b.axisZ, b.angle, b.fieldOfView}));
        };
        for (int i = 0; i < PreviewWindowCount; ++i) check(i);
        auto mark = ViewStamps();
        TurnWheel(W(ViewTop)->Cortona1(), 120);
        VrmlView* view = W(ViewPerspective)->Cortona1();
        const QImage before = view->grabFramebuffer();
        QTest::mousePress(view, Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
        QTest::mouseMove(view, QPoint(160, 10));
        QVERIFY2(view->grabFramebuffer() != before, "the picture turns while the button is held");
        QVERIFY2(PreviewViews == StartPreviewViews() && RewrittenSince(mark).empty(),
                 "no window active, the drag waits");
        QTest::mouseRelease(view, Qt::LeftButton, Qt::NoModifier, QPoint(160, 10));
        // 150 pixels of 15 twips are 22.5 degrees about Y.
        const float turned = float(start(ViewPerspective).SceneRotationY + DegToRad(22.5));
        QCOMPARE(PreviewViews[ViewPerspective].SceneRotationY, turned);
        QCOMPARE(RewrittenSince(mark), std::vector<std::string>{"Perspective"});
        const std::string line = "   rotation 0 1 0 " + SingleText(turned) + "\r\n";
        QVERIFY2(ReadText(ViewFilePath("Perspective")).find(line) != std::string::npos, line.c_str());
        QTRY_VERIFY(W(ViewPerspective)->Picture1()->hasFocus());
        QVERIFY(W(ViewPerspective)->showsActiveColour() && !W(ViewTop)->showsActiveColour());
        mark = ViewStamps();
        TurnWheel(W(ViewTop)->Cortona1(), 2 * 120);  // over Top: the active Perspective zooms
        QCOMPARE(PreviewViews[ViewPerspective].PositionZ, start(ViewPerspective).PositionZ - 2000);
        QCOMPARE(RewrittenSince(mark), std::vector<std::string>{"Perspective"});
        QVERIFY(ReadText(ViewFilePath("Perspective")).find("position 0 1500 28000") != std::string::npos);
        // "+" on another window makes it the active one first; "-" zooms out.
        QTest::mouseClick(W(ViewRight)->zoomin(), Qt::LeftButton);
        QTest::mouseClick(W(ViewRight)->zoomout(), Qt::LeftButton);
        QTest::mouseClick(W(ViewRight)->zoomout(), Qt::LeftButton);
        QCOMPARE(PreviewViews[ViewRight].PositionZ, start(ViewRight).PositionZ + 1000);
        QTRY_VERIFY(W(ViewRight)->showsActiveColour() && !W(ViewPerspective)->showsActiveColour());
        // Arrow keys in the strip pan; every key rewrites the view.
        focusStrip(ViewBack);
        QTest::keyClick(W(ViewBack)->Picture1(), Qt::Key_Left);
        QTest::keyClick(W(ViewBack)->Picture1(), Qt::Key_Up);
        QCOMPARE(PreviewViews[ViewBack].PositionX, start(ViewBack).PositionX + 1000);
        QCOMPARE(PreviewViews[ViewBack].PositionY, start(ViewBack).PositionY - 1000);
        FinishViewFiles();
        mark = ViewStamps();
        QTest::keyClick(W(ViewBack)->Picture1(), Qt::Key_A);
        QCOMPARE(RewrittenSince(mark), std::vector<std::string>{"Back"});
        // A release turns the active view with the press of its own window.
        QTest::mousePress(W(ViewTop)->Cortona1(), Qt::LeftButton, Qt::NoModifier, QPoint(1, 1));
        focusStrip(ViewBack);
        QTest::mouseRelease(W(ViewTop)->Cortona1(), Qt::LeftButton, Qt::NoModifier, QPoint(1, 101));
        QCOMPARE(PreviewViews[ViewTop], start(ViewTop));
        QCOMPARE(PreviewViews[ViewBack].SceneRotationX, float(start(ViewBack).SceneRotationX + DegToRad(15)));
        for (int i = 0; i < PreviewWindowCount; ++i) check(i);
        // The faces a frame leaves out are ones no pixel shows.
        VrmlView* viewer = W(ViewPerspective)->Cortona1();
        PartShapeNode::setSkipUnseenFaces(false);
        const QImage all = viewer->grabFramebuffer();
        PartShapeNode::setSkipUnseenFaces(true);
        QCOMPARE(viewer->grabFramebuffer(), all);
    }

    // The viewer reports mouse, wheel and focus, runs Coin from the event loop, draws worlds from
    // their first Viewpoint textured by the flags, silently, and never holds its file.
    void theViewerReportsTheMouseAndDrawsTheFirstViewpointTexturedByTheFlags() {
        VrmlView view;
        view.resize(160, 120);
        QVERIFY(MakeActive(view));
        QSignalSpy presses(&view, &VrmlView::mousePressed), wheel(&view, &VrmlView::wheelTurned);
        QSignalSpy gained(&view, &VrmlView::focusGained);
        QTest::mousePress(&view, Qt::RightButton, Qt::ShiftModifier, QPoint(10, 20));
        QCOMPARE(presses.at(0), (QVariantList{int(MouseRight), 1, 10.0f, 20.0f}));
        for (int delta : {240, -120, 60, 60}) TurnWheel(&view, delta);  // half a notch waits for its other half
        QCOMPARE(wheel.size(), 3);
        QCOMPARE((QVariantList{wheel[0][0], wheel[1][0], wheel[2][0]}), (QVariantList{2, -1, 1}));
        view.clearFocus();
        view.setFocus();
        QTRY_COMPARE(gained.size(), 1);
        bool ran = false;
        SoOneShotSensor once([](void* flag, SoSensor*) { *static_cast<bool*>(flag) = true; }, &ran);
        once.schedule();
        QTRY_VERIFY_WITH_TIMEOUT(ran, 2000);
        // Images reach Coin bottom row first.
        QImage png(1, 2, QImage::Format_ARGB32);
        png.setPixel(0, 0, qRgba(255, 0, 0, 255));
        png.setPixel(0, 1, qRgba(0, 0, 255, 128));
        QVERIFY(png.save(QString::fromStdString(program_->folder.file("two.png"))));
        CoinImage image;
        QVERIFY(ReadCoinImage(QString::fromStdString(program_->folder.file("two.png")), image));
        QCOMPARE(image.rgba, QByteArray("\x00\x00\xff\x80\xff\x00\x00\xff", 8));
        const auto picture = [&] { return view.grabFramebuffer().convertToFormat(QImage::Format_RGB32); };
        const std::string wrl = program_->folder.file("Top.wrl");
        const auto show = [&](const std::string& world) {
            WriteText(wrl, world);
            view.setScene(QString::fromStdString(wrl));
        };
        QImage halves(8, 8, QImage::Format_RGB32);  // top half green, bottom half red
        halves.fill(Qt::red);
        QPainter(&halves).fillRect(0, 0, 8, 4, Qt::green);
        QVERIFY(halves.save(QString::fromStdString(program_->folder.file("halves.png"))));

        // The first of two Viewpoints: the camera 2 to the right puts the square left of centre.
        show(World(Viewpoint("2 0 10") + Viewpoint("0 0 10"), 0, Red));
        QCOMPARE(view.camera().x, 2.0f);
        QVERIFY(ShapeCentreX(picture()) > 5 && ShapeCentreX(picture()) < 60);
        show(World("Transform { translation -2 0 0 children [ " + Viewpoint("0 0 10") + " ] }\n", 0, Red));
        QCOMPARE(view.camera().x, -2.0f);
        show(World("", 0, Red));  // no Viewpoint: the default place, 10 away on +Z
        QCOMPARE(view.camera().z, 10.0f);
        const QImage one = picture();
        QVERIFY(std::abs(ShapeCentreX(one) - 80) < 2);
        QVERIFY2(NotBackground(one) > 400 && NotBackground(one) < 2000, "a real projection, not a smear");
        QVERIFY2(qRed(one.pixel(80, 60)) > 200 && qGreen(one.pixel(80, 60)) < 80, "red over the grey");
        // The file is not held (a descriptor left open on it would keep the writer's old file
        // alive) and the picture keeps what was read when it is rewritten.
        for (const auto& fd : std::filesystem::directory_iterator("/proc/self/fd")) {
            std::error_code ec;
            QVERIFY(std::filesystem::read_symlink(fd.path(), ec) != std::filesystem::weakly_canonical(wrl));
        }
        WriteText(wrl, World("", 3, Red));
        QVERIFY(std::filesystem::remove(wrl));
        QVERIFY(std::abs(ShapeCentreX(picture()) - 80) < 2);

        // Textured (1024) the picture shows the right way up; untextured a shaded slate.
        show(World(Viewpoint("0 0 2.5"), 0, "texture ImageTexture { url \"halves.png\" }"));
        view.setRenderFlags(RenderTextured);
        QVERIFY(qGreen(picture().pixel(80, 45)) > 200 && qRed(picture().pixel(80, 75)) > 200);
        view.setRenderFlags(RenderUntextured);
        const QRgb slate = picture().pixel(80, 60);
        QVERIFY2(qRed(slate) > 100 && qBlue(slate) > qRed(slate), qPrintable(QString::number(slate, 16)));

        // A missing texture draws untextured, a broken or absent world draws nothing: all silently.
        view.setRenderFlags(RenderTextured);
        const std::string err = CapturedStderr([&] {
            show(World(Viewpoint("0 0 3"), 0, "texture ImageTexture { url \"gone.png\" }"));
            QVERIFY(view.hasWorld() && qBlue(picture().pixel(80, 60)) > qRed(picture().pixel(80, 60)) + 30);
            show("#VRML V2.0 utf8\nShape { geometry IndexedFaceSet { coord Coordinate { point [ 0 0");
            QVERIFY(!view.hasWorld() && NotBackground(picture()) == 0);
            view.setScene(QString::fromStdString(program_->folder.file("absent.wrl")));
            QCOMPARE(NotBackground(picture()), 0);
        });
        QCOMPARE(QString::fromStdString(err), QString());
        QVERIFY2(!TakeCoinMessages().isEmpty(), "the read error is kept, not printed");
        view.setScene(QStringLiteral("None"));
        QVERIFY(!view.hasWorld());
    }
};

QTEST_MAIN(PreviewWindowTest)
#include "PreviewWindowTest.moc"
