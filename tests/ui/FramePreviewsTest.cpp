// The four preview windows inside the main window: opened by loadviews from the config and the
// document, drawn by the real viewer from the real files, changed by "+", rejoined by
// Hide All, and brought back by a cancelled quit.
#include <QAction>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QtTest>

#include <filesystem>
#include <memory>

#include "WindowTestKit.h"
#include "core/Views.h"
#include "editors/ui/vornselectobj.h"
#include "preview/PreviewViewOps.h"
#include "preview/VRMLOps.h"
#include "preview/ui/CortonaViewer.h"
#include "preview/ui/VrmlView.h"
#include "preview/ui/vrmlviewer.h"
#include "shell/HelpOps.h"
#include "shell/IniOps.h"
#include "shell/ui/VORNOptions.h"
#include "shell/ui/vorn.h"

namespace {

QAction* PopupEntry(vorn& w, const char* name) {
    for (QAction* a : w.objselect()->actions())
        if (a->objectName() == QLatin1String(name)) return a;
    return nullptr;
}

}  // namespace

class FramePreviewsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    ScriptedDesktop* desktop_ = nullptr;
    std::unique_ptr<vorn> frame_;

    CortonaViewer* w(int index) { return CortonaViewer::existing(index); }
    std::string temp(const std::string& name) { return ReadText(AppPath("temp/" + name)); }

    // The frame with a project of the textured quad, as createnew leaves it.
    void openProject() {
        frame_ = std::make_unique<vorn>();
        frame_->resize(1200, 900);
        QVERIFY(MakeActive(*frame_));
        frame_->createnew(0, "Project1");
        // The new project empties the scratch folder; the texture comes after, as an import would.
        QImage red(16, 16, QImage::Format_RGB32);
        red.fill(QColor(255, 0, 0));
        QVERIFY(red.save(QString::fromStdString(AppPath("temp/tp00.png"))));
        CurrentProject.OIF = TexturedQuad();
        TheViews().RefreshPartsList();
        TheViews().loadviews();
        for (int i = 0; i < PreviewWindowCount; ++i) QVERIFY(w(i));
        // The first viewer in the frame gives it a new native window, which Xvfb without a window
        // manager leaves inactive.
        QVERIFY(MakeActive(*frame_));
        // Focus moves with the activation of the children; the tests start with none active.
        if (QWidget* focused = QApplication::focusWidget()) focused->clearFocus();
        QTRY_COMPARE(CortonaViewer::activeIndex(), -1);
    }
    QImage picture(int index) {
        VrmlView* view = w(index)->Cortona1();
        if (!QTest::qWaitForWindowExposed(view)) return {};
        return view->grabFramebuffer();
    }

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        desktop_ = &program_->desktop;
        std::filesystem::create_directories(AppPath("temp"));
        WriteConfig("Terramason", "Previews", "1");
        WriteConfig("Previews", "PerspectiveTex", "1");
        WriteConfig("Previews", "ZoomAmount", "1000");
    }
    void cleanup() {
        frame_.reset();
        program_.reset();
    }

    void loadviewsLaysTheFourWindowsOutRightOfThePartsList() {
        openProject();
        const auto layout = PreviewWindowLayout();
        for (int i = 0; i < PreviewWindowCount; ++i) {
            auto* sub = qobject_cast<QMdiSubWindow*>(w(i)->parentWidget());
            QVERIFY(sub);
            QCOMPARE(sub->mdiArea(), frame_->mdiArea());
            QVERIFY(sub->isVisible());
            QCOMPARE(sub->geometry(), QRect(layout[i].Left, layout[i].Top, layout[i].Width, layout[i].Height));
            QCOMPARE(w(i)->Label()->text(), QString::fromLatin1(PreviewWindowNames[i]));
            QCOMPARE(w(i)->Cortona1()->scene(), QString::fromStdString(ViewFilePath(PreviewWindowNames[i])));
            QVERIFY(w(i)->Cortona1()->hasWorld());
        }
        // 1850 twips of 15 to the pixel, the strip of the parts list.
        QCOMPARE(w(ViewTop)->parentWidget()->x(), 123);
        QCOMPARE(w(ViewPerspective)->parentWidget()->x(), w(ViewTop)->parentWidget()->geometry().right() + 1);
        QCOMPARE(w(ViewBack)->parentWidget()->y(), w(ViewTop)->parentWidget()->geometry().bottom() + 1);
        QVERIFY(frame_->selectobj() && frame_->selectobj()->isVisible());
        QCOMPARE(frame_->selectobj()->objectbox()->count(), 1);
        QCOMPARE(PreviewViews, StartPreviewViews());
        QVERIFY(desktop_->messages.empty());
    }

    void everyViewerReachesTheScreen() {
        openProject();
        for (int i = 0; i < PreviewWindowCount; ++i) QVERIFY(QTest::qWaitForWindowExposed(w(i)->Cortona1()));
        QTest::qWait(200);
        const QImage screen = frame_->screen()->grabWindow(0).toImage();
        for (int i = 0; i < PreviewWindowCount; ++i) {
            VrmlView* view = w(i)->Cortona1();
            const QPoint centre = view->rect().center();
            const QColor drawn = view->grabFramebuffer().pixelColor(centre);
            const QColor shown = screen.pixelColor(view->mapToGlobal(centre));
            QVERIFY2(
                shown == drawn,
                qPrintable(
                    QString("%1: %2 on the screen, %3 drawn").arg(PreviewWindowNames[i], shown.name(), drawn.name())));
        }
    }

    void onlyThePerspectiveWindowShowsTheTexture() {
        openProject();
        QCOMPARE(w(ViewPerspective)->Cortona1()->renderFlags(), RenderTextured);
        for (int i : {ViewTop, ViewRight, ViewBack}) QCOMPARE(w(i)->Cortona1()->renderFlags(), RenderUntextured);
        const QImage perspective = picture(ViewPerspective);
        const QImage top = picture(ViewTop);
        QVERIFY(!perspective.isNull() && !top.isNull());
        QVERIFY2(RedPixels(perspective) > perspective.width() * perspective.height() / 10,
                 qPrintable(QString::number(RedPixels(perspective))));
        // Top sees the quad face on, untextured.
        QVERIFY(NotBackground(top) > top.width() * top.height() / 10);
        QCOMPARE(RedPixels(top), 0);
    }

    void withPerspectiveTexOffNoWindowShowsTheTexture() {
        WriteConfig("Previews", "PerspectiveTex", "0");
        openProject();
        QCOMPARE(w(ViewPerspective)->Cortona1()->renderFlags(), RenderUntextured);
        const QImage perspective = picture(ViewPerspective);
        QVERIFY(NotBackground(perspective) > perspective.width() * perspective.height() / 10);
        QCOMPARE(RedPixels(perspective), 0);
    }

    void withoutPreviewsNoWindowOpensAndNoFileIsWritten() {
        WriteConfig("Terramason", "Previews", "0");
        frame_ = std::make_unique<vorn>();
        frame_->createnew(0, "Project1");
        for (int i = 0; i < PreviewWindowCount; ++i) QVERIFY(!w(i));
        QVERIFY(!std::filesystem::exists(AppPath("temp/Top.wrl")));
        QCOMPARE(frame_->mdiArea()->subWindowList().size(), 1);  // the parts list alone
    }

    void hideAllLeavesViewsWithoutShapesAndShowAllBringsThemBack() {
        openProject();
        PopupEntry(*frame_, "hideallmenu")->trigger();
        for (const char* name : PreviewWindowNames) {
            QVERIFY2(temp(std::string(name) + ".wrl").find("Shape {") == std::string::npos, name);
            QVERIFY(w(PreviewWindowOf(name))->Cortona1()->hasWorld());
        }
        QCOMPARE(NotBackground(picture(ViewTop)), 0);
        // A rebuild by hand keeps to the shown parts.
        frame_->menuAction("Refresh")->trigger();
        QVERIFY(temp("Perspective.wrl").find("Shape {") == std::string::npos);

        PopupEntry(*frame_, "showallmenu")->trigger();
        for (const char* name : PreviewWindowNames)
            QVERIFY2(temp(std::string(name) + ".wrl").find("Shape {") != std::string::npos, name);
        QVERIFY(NotBackground(picture(ViewTop)) > 0);
    }

    void aCancelledQuitBringsThePreviewsBackAtTheirStartViews() {
        openProject();
        QTest::mouseClick(w(ViewTop)->zoomin(), Qt::LeftButton);
        QVERIFY(PreviewViews != StartPreviewViews());
        QPointer<CortonaViewer> before = w(ViewTop);
        desktop_->answers = {MessageAnswer::No};
        QVERIFY(!frame_->close());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY2(before.isNull(), "the close took the windows with it");
        for (int i = 0; i < PreviewWindowCount; ++i) {
            QVERIFY(w(i));
            QVERIFY(w(i)->isVisible());
            QCOMPARE(qobject_cast<QMdiSubWindow*>(w(i)->parentWidget())->mdiArea(), frame_->mdiArea());
            QVERIFY(w(i)->Cortona1()->hasWorld());
        }
        QCOMPARE(PreviewViews, StartPreviewViews());
        QVERIFY(frame_->selectobj() && frame_->selectobj()->isVisible());
        QCOMPARE(frame_->mdiArea()->subWindowList().size(), PreviewWindowCount + 1);
    }

    void aConfirmedQuitClosesThePreviews() {
        openProject();
        desktop_->answers = {MessageAnswer::Yes};
        QCOMPARE(RunEventLoop([&] { frame_->close(); }), 0);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        for (int i = 0; i < PreviewWindowCount; ++i) QVERIFY(!w(i));
    }

    void aPerspectiveWindowMadeByTheOptionsMovesIntoTheFrame() {
        // Options makes the Perspective window, without a parent, when previews are not open yet.
        QPointer<CortonaViewer> early = CortonaViewer::window(ViewPerspective);
        QVERIFY(!early->parentWidget());
        openProject();
        QCOMPARE(w(ViewPerspective), early.data());
        QCOMPARE(qobject_cast<QMdiSubWindow*>(w(ViewPerspective)->parentWidget())->mdiArea(), frame_->mdiArea());
        QVERIFY(w(ViewPerspective)->isVisible());
    }

    void theWireframeGoesToStadiumPreviewInsideTheFrame() {
        openProject();
        WriteWirePreview(CurrentProject.OIF.Parts, DefaultPreviewScene(), TheViews().Selection());
        vrmlviewer* wire = vrmlviewer::existing();
        QVERIFY(wire);
        QCOMPARE(wire->Cortona1()->scene(), QString::fromStdString(AppPath("temp/stad1.wrl")));
        QVERIFY(wire->Cortona1()->hasWorld());
        auto* sub = qobject_cast<QMdiSubWindow*>(wire->parentWidget());
        QVERIFY(sub && sub->isVisible());
        QCOMPARE(sub->mdiArea(), frame_->mdiArea());
        QCOMPARE(sub->geometry().right() + 1, frame_->mdiArea()->width());
    }

    void optionsEntryOpensTheOptionsWindowOnTheFrame() {
        frame_ = std::make_unique<vorn>();
        frame_->show();
        QWidget* parent = nullptr;
        WhenModalShown<VORNOptions>([&](VORNOptions* options) {
            parent = options->parentWidget();
            options->cmdCancel()->click();
        });
        frame_->menuAction("&Options")->trigger();
        QCOMPARE(parent, static_cast<QWidget*>(frame_.get()));
        QVERIFY(desktop_->messages.empty());
    }
};

QTEST_MAIN(FramePreviewsTest)
#include "FramePreviewsTest.moc"
