// The VRML viewer widget drawn by Coin under a real OpenGL context (Mesa under Xvfb): worlds are
// loaded from files that stay free, drawn from their first Viewpoint on the grey background,
// textured or not by the render flags, and broken textures or worlds never print or ask.
#include <QImage>
#include <QSignalSpy>
#include <QTemporaryFile>
#include <QtTest>

#include <Inventor/SoDB.h>
#include <Inventor/sensors/SoOneShotSensor.h>
#include <Inventor/sensors/SoSensorManager.h>
#include <Inventor/sensors/SoTimerSensor.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>

#include <unistd.h>

#include "WindowTestKit.h"
#include "preview/PreviewViewOps.h"
#include "preview/ui/CoinRuntime.h"
#include "preview/ui/VrmlView.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"

namespace {

const QRgb Background = qRgb(0xC0, 0xC0, 0xC0);

void WriteText(const std::string& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

// A square of side 2*half around (cx, cy) in the plane z = 0, facing +Z.
std::string Square(float cx, float cy, float half, const std::string& appearance) {
    auto n = [](float v) { return std::to_string(v); };
    return "Shape {\n appearance Appearance {\n" + appearance +
           " }\n geometry IndexedFaceSet {\n"
           "  coord Coordinate { point [ " +
           n(cx - half) + " " + n(cy - half) + " 0, " + n(cx + half) + " " + n(cy - half) + " 0, " + n(cx + half) +
           " " + n(cy + half) + " 0, " + n(cx - half) + " " + n(cy + half) +
           " 0 ] }\n  coordIndex [ 0 1 2 3 -1 ]\n"
           "  texCoord TextureCoordinate { point [ 0 0, 1 0, 1 1, 0 1 ] }\n  texCoordIndex [ 0 1 2 3 -1 ]\n"
           "  solid FALSE\n }\n}\n";
}

const std::string Red = "  material Material { diffuseColor 1 0 0 }\n";

std::string Viewpoint(const std::string& position, const std::string& orientation = "0 0 1 0") {
    return "Viewpoint { position " + position + " orientation " + orientation + " fieldOfView 0.785398 }\n";
}

std::string World(const std::string& body) { return "#VRML V2.0 utf8\n\n" + body; }

bool IsBackground(QRgb pixel) { return (pixel & 0xFFFFFF) == (Background & 0xFFFFFF); }

// The middle column of the shape's pixels, or -1 when there are none.
double ShapeCentreX(const QImage& image) {
    long sum = 0, n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (!IsBackground(image.pixel(x, y))) {
                sum += x;
                ++n;
            }
    return n ? static_cast<double>(sum) / static_cast<double>(n) : -1;
}

// Whether the process holds a descriptor open on path.
bool HeldOpen(const std::string& path) {
    const auto wanted = std::filesystem::weakly_canonical(path);
    for (const auto& fd : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code ec;
        const auto target = std::filesystem::read_symlink(fd.path(), ec);
        if (!ec && target == wanted) return true;
    }
    return false;
}

// Everything written to the process's standard error while `run` runs.
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

class ViewerWidgetTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchFolder> folder_;
    std::unique_ptr<VrmlView> view_;

    QImage picture() { return view_->grabFramebuffer().convertToFormat(QImage::Format_RGB32); }

    std::string writeChecker(const std::string& name, QRgb a, QRgb b) {
        QImage png(8, 8, QImage::Format_RGB32);
        for (int y = 0; y < 8; ++y)
            for (int x = 0; x < 8; ++x) png.setPixel(x, y, ((x / 4 + y / 4) % 2) ? b : a);
        const std::string path = folder_->file(name);
        png.save(QString::fromStdString(path));
        return path;
    }

private slots:
    void init() {
        folder_ = std::make_unique<ScratchFolder>();
        view_ = std::make_unique<VrmlView>();
        view_->resize(160, 120);
        view_->show();
        QVERIFY(QTest::qWaitForWindowExposed(view_.get()));
        TakeCoinMessages();
    }
    void cleanup() {
        view_.reset();
        folder_.reset();
    }

    void aShapeDrawsOverTheGreyBackground() {
        const std::string wrl = folder_->file("one.wrl");
        WriteText(wrl, World(Viewpoint("0 0 10") + Square(0, 0, 1, Red)));
        view_->setScene(QString::fromStdString(wrl));
        QVERIFY(view_->hasWorld());
        QCOMPARE(view_->scene(), QString::fromStdString(wrl));
        const QImage p = picture();
        QCOMPARE(p.size(), QSize(160, 120));
        QCOMPARE(p.pixel(2, 2), Background);
        QCOMPARE(p.pixel(157, 117), Background);
        const QRgb middle = p.pixel(80, 60);
        QVERIFY2(qRed(middle) > 200 && qGreen(middle) < 80 && qBlue(middle) < 80,
                 qPrintable(QString::number(middle, 16)));
        // A square of side 2 seen from 10 away with a 45 degree view fills about a fifth of the
        // height: a real projection, not a smear over the window.
        const int covered = NotBackground(p);
        QVERIFY2(covered > 400 && covered < 2000, qPrintable(QString::number(covered)));
    }

    void noneDropsTheWorldAndTheFileIsNeverHeld() {
        const std::string wrl = folder_->file("Top.wrl");
        WriteText(wrl, World(Viewpoint("0 0 10") + Square(0, 0, 1, Red)));
        view_->setScene(QString::fromStdString(wrl));
        QVERIFY(!HeldOpen(wrl));
        // The writer rewrites the file right after: the picture keeps what was read.
        WriteText(wrl, World(Viewpoint("0 0 10") + Square(3, 0, 1, Red)));
        QVERIFY(std::abs(ShapeCentreX(picture()) - 80) < 2);
        QVERIFY(std::filesystem::remove(wrl));

        view_->setScene(QStringLiteral("None"));
        QCOMPARE(view_->scene(), QStringLiteral("None"));
        QVERIFY(!view_->hasWorld());
        QCOMPARE(NotBackground(picture()), 0);
    }

    void aWorldThatCannotBeReadShowsNothingAndSaysNothing() {
        ScriptedDesktop desktop;
        const std::string broken = folder_->file("broken.wrl");
        WriteText(broken, "#VRML V2.0 utf8\nShape { geometry IndexedFaceSet { coord Coordinate { point [ 0 0");
        const std::string err = CapturedStderr([&] {
            view_->setScene(QString::fromStdString(broken));
            QCOMPARE(NotBackground(picture()), 0);
            view_->setScene(QString::fromStdString(folder_->file("absent.wrl")));
            QCOMPARE(NotBackground(picture()), 0);
        });
        QCOMPARE(QString::fromStdString(err), QString());
        QVERIFY(desktop.messages.empty());
        QVERIFY(!view_->hasWorld());
        QCOMPARE(view_->scene(), QString::fromStdString(folder_->file("absent.wrl")));
        QVERIFY2(!TakeCoinMessages().isEmpty(), "the read error is kept, not printed");
    }

    void theTextureBesideTheWorldShowsOnlyWithFlags1024() {
        writeChecker("tp01.png", qRgb(0, 0, 255), qRgb(0, 0, 255));
        const std::string wrl = folder_->file("Perspective.wrl");
        WriteText(wrl, World(Viewpoint("0 0 3") + Square(0, 0, 1, "  texture ImageTexture { url \"tp01.png\" }\n")));
        view_->setRenderFlags(RenderTextured);
        view_->setScene(QString::fromStdString(wrl));
        QVERIFY(view_->showsTextures());
        QImage p = picture();
        QRgb middle = p.pixel(80, 60);
        QVERIFY2(qBlue(middle) > 200 && qRed(middle) < 60 && qGreen(middle) < 60,
                 qPrintable(QString::number(middle, 16)));

        view_->setRenderFlags(RenderUntextured);
        QCOMPARE(view_->renderFlags(), RenderUntextured);
        QVERIFY(!view_->showsTextures());
        p = picture();
        middle = p.pixel(80, 60);
        QVERIFY2(!IsBackground(middle), "the shape is still drawn");
        // In the shaded slate of untextured views, not the texture's pure blue.
        QVERIFY2(qRed(middle) > 100 && qGreen(middle) > 100 && qBlue(middle) > qRed(middle),
                 qPrintable(QString::number(middle, 16)));

        // Back to textured.
        view_->setRenderFlags(RenderTextured);
        QVERIFY(qBlue(picture().pixel(80, 60)) > 200 && qRed(picture().pixel(80, 60)) < 60);
    }

    void theTextureIsMappedTheRightWayUp() {
        // Top half green, bottom half red in the PNG; V grows upwards in the world.
        QImage png(8, 8, QImage::Format_RGB32);
        for (int y = 0; y < 8; ++y)
            for (int x = 0; x < 8; ++x) png.setPixel(x, y, y < 4 ? qRgb(0, 255, 0) : qRgb(255, 0, 0));
        png.save(QString::fromStdString(folder_->file("halves.png")));
        const std::string wrl = folder_->file("halves.wrl");
        WriteText(wrl,
                  World(Viewpoint("0 0 2.5") + Square(0, 0, 1, "  texture ImageTexture { url \"halves.png\" }\n")));
        view_->setRenderFlags(RenderTextured);
        view_->setScene(QString::fromStdString(wrl));
        const QImage p = picture();
        const QRgb upper = p.pixel(80, 45), lower = p.pixel(80, 75);
        QVERIFY2(qGreen(upper) > 200 && qRed(upper) < 60, qPrintable(QString::number(upper, 16)));
        QVERIFY2(qRed(lower) > 200 && qGreen(lower) < 60, qPrintable(QString::number(lower, 16)));
    }

    void aMissingTextureDrawsUntexturedWithoutOutputOrMessage() {
        ScriptedDesktop desktop;
        const std::string wrl = folder_->file("Perspective.wrl");
        WriteText(wrl, World(Viewpoint("0 0 3") + Square(0, 0, 1, "  texture ImageTexture { url \"gone.png\" }\n")));
        view_->setRenderFlags(RenderTextured);
        QImage p;
        const std::string err = CapturedStderr([&] {
            view_->setScene(QString::fromStdString(wrl));
            p = picture();
        });
        QCOMPARE(QString::fromStdString(err), QString());
        QVERIFY(desktop.messages.empty());
        QVERIFY(view_->hasWorld());
        const QRgb middle = p.pixel(80, 60);
        QVERIFY2(!IsBackground(middle), "the shape is drawn");
        // In the slate of untextured parts, not white.
        QVERIFY2(qBlue(middle) > qRed(middle) + 30 && qRed(middle) > 100, qPrintable(QString::number(middle, 16)));
    }

    void theCameraIsTheFirstViewpoint() {
        const std::string wrl = folder_->file("vp.wrl");
        // The second Viewpoint would put the square at the right edge; the first one rules.
        WriteText(wrl, World(Viewpoint("0 0 10") + Viewpoint("-3 0 10") + Square(0, 0, 1, Red)));
        view_->setScene(QString::fromStdString(wrl));
        QVERIFY(std::abs(ShapeCentreX(picture()) - 80) < 2);
        QCOMPARE(view_->camera().z, 10.0f);
        QCOMPARE(view_->camera().x, 0.0f);

        // Moving the camera right moves the square left on the screen.
        WriteText(wrl, World(Viewpoint("2 0 10") + Viewpoint("0 0 10") + Square(0, 0, 1, Red)));
        view_->setScene(QString::fromStdString(wrl));
        const double left = ShapeCentreX(picture());
        QVERIFY2(left > 5 && left < 60, qPrintable(QString::number(left)));
        QCOMPARE(view_->camera().x, 2.0f);

        // Turned a quarter about Y and standing on +X, the camera looks back at the origin.
        WriteText(wrl, World(Viewpoint("10 0 0", "0 1 0 1.570796") + Square(0, 0, 1, Red)));
        view_->setScene(QString::fromStdString(wrl));
        const QImage side = picture();
        QCOMPARE(NotBackground(side), 0);  // the square is seen edge on
        WriteText(wrl, World(Viewpoint("10 0 0", "0 1 0 1.570796") + "Transform { rotation 0 1 0 1.570796 children [ " +
                             Square(0, 0, 1, Red) + " ] }\n"));
        view_->setScene(QString::fromStdString(wrl));
        QVERIFY(std::abs(ShapeCentreX(picture()) - 80) < 2);
    }

    void aViewpointInsideATransformIsPlacedByIt() {
        const std::string wrl = folder_->file("moved.wrl");
        WriteText(wrl, World("Transform { translation 2 0 0 children [ " + Viewpoint("0 0 10") + " ] }\n" +
                             Square(0, 0, 1, Red)));
        view_->setScene(QString::fromStdString(wrl));
        QCOMPARE(view_->camera().x, 2.0f);
        QVERIFY(ShapeCentreX(picture()) < 60);
    }

    void aWorldWithoutViewpointIsSeenFromTheDefaultPlace() {
        const std::string wrl = folder_->file("novp.wrl");
        WriteText(wrl, World(Square(0, 0, 1, Red)));
        view_->setScene(QString::fromStdString(wrl));
        QCOMPARE(view_->camera().z, 10.0f);
        QVERIFY(std::abs(ShapeCentreX(picture()) - 80) < 2);
    }

    void mouseWheelAndFocusAreReported() {
        QSignalSpy presses(view_.get(), &VrmlView::mousePressed);
        QSignalSpy releases(view_.get(), &VrmlView::mouseReleased);
        QSignalSpy wheel(view_.get(), &VrmlView::wheelTurned);
        QTest::mousePress(view_.get(), Qt::RightButton, Qt::ShiftModifier, QPoint(10, 20));
        QTest::mouseRelease(view_.get(), Qt::LeftButton, Qt::ControlModifier, QPoint(30, 40));
        QCOMPARE(presses.size(), 1);
        QCOMPARE(presses[0][0].toInt(), int(MouseRight));
        QCOMPARE(presses[0][1].toInt(), 1);
        QCOMPARE(presses[0][2].toFloat(), 10.0f);  // pixels
        QCOMPARE(presses[0][3].toFloat(), 20.0f);
        QCOMPARE(releases.size(), 1);
        QCOMPARE(releases[0][0].toInt(), int(MouseLeft));
        QCOMPARE(releases[0][1].toInt(), 2);
        QCOMPARE(releases[0][2].toFloat(), 30.0f);
        QCOMPARE(releases[0][3].toFloat(), 40.0f);

        TurnWheel(view_.get(), 240);
        TurnWheel(view_.get(), -120);
        TurnWheel(view_.get(), 60);  // half a notch waits for its other half
        QCOMPARE(wheel.size(), 2);
        TurnWheel(view_.get(), 60);
        QCOMPARE(wheel.size(), 3);
        QCOMPARE(wheel[0][0].toInt(), 2);
        QCOMPARE(wheel[1][0].toInt(), -1);
        QCOMPARE(wheel[2][0].toInt(), 1);

        QSignalSpy gained(view_.get(), &VrmlView::focusGained);
        QSignalSpy lost(view_.get(), &VrmlView::focusLost);
        // Without a window manager nothing activates a window by itself: do what a click would.
        QVERIFY(MakeActive(*view_));
        view_->setFocus();
        QTRY_COMPARE(gained.size(), 1);
        view_->clearFocus();
        QTRY_COMPARE(lost.size(), 1);
    }

    void coinSensorsRunFromTheQtEventLoop() {
        bool ran = false;
        SoOneShotSensor once([](void* flag, SoSensor*) { *static_cast<bool*>(flag) = true; }, &ran);
        once.schedule();
        QTRY_VERIFY_WITH_TIMEOUT(ran, 2000);

        int ticks = 0;
        SoTimerSensor timer([](void* count, SoSensor*) { ++*static_cast<int*>(count); }, &ticks);
        timer.setInterval(SbTime(0.02));
        timer.schedule();
        QTRY_VERIFY_WITH_TIMEOUT(ticks >= 3, 3000);
        timer.unschedule();

        // With a world shown, once Coin's own time-out for its delay queue has run, nothing is
        // left to wake the program.
        const std::string wrl = folder_->file("still.wrl");
        WriteText(wrl, World(Viewpoint("0 0 10") + Square(0, 0, 1, Red)));
        view_->setScene(QString::fromStdString(wrl));
        picture();
        SbTime due;
        QTRY_VERIFY_WITH_TIMEOUT(!SoDB::getSensorManager()->isTimerSensorPending(due), 1000);
    }

    void imagesAreHandedToCoinBottomRowFirst() {
        QImage png(2, 2, QImage::Format_ARGB32);
        png.setPixel(0, 0, qRgba(255, 0, 0, 255));  // top left
        png.setPixel(1, 0, qRgba(0, 255, 0, 255));
        png.setPixel(0, 1, qRgba(0, 0, 255, 128));  // bottom left
        png.setPixel(1, 1, qRgba(1, 2, 3, 4));
        const QString path = QString::fromStdString(folder_->file("four.png"));
        QVERIFY(png.save(path));
        CoinImage image;
        QVERIFY(ReadCoinImage(path, image));
        QCOMPARE(image.width, 2);
        QCOMPARE(image.height, 2);
        const QByteArray expected("\x00\x00\xff\x80\x01\x02\x03\x04\xff\x00\x00\xff\x00\xff\x00\xff", 16);
        QCOMPARE(image.rgba, expected);
        QVERIFY(!ReadCoinImage(QString::fromStdString(folder_->file("none.png")), image));
        WriteText(folder_->file("text.png"), "not an image");
        QVERIFY(!ReadCoinImage(QString::fromStdString(folder_->file("text.png")), image));
    }
};

QTEST_MAIN(ViewerWidgetTest)
#include "ViewerWidgetTest.moc"
