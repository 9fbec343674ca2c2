#pragma once
// Helpers of the window tests, with the headers they all use: a scratch program, a hand inside modal windows, a spy on what the
// windows ask of the views, the main window with a project, small documents and pixel counts.
#include <QtTest>
#include <QtWidgets>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/OIFOps.h"
#include "core/ProgramState.h"
#include "core/Views.h"
#include "editors/ui/vornoifform.h"
#include "editors/ui/vornselectobj.h"
#include "preview/PreviewViewOps.h"
#include "preview/VRMLOps.h"
#include "preview/ui/CortonaViewer.h"
#include "preview/ui/VrmlView.h"
#include "shell/HelpOps.h"
#include "shell/IniOps.h"
#include "shell/ui/vorn.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"

// The program state of a fresh start, a scratch folder as AppFolder, the shipped resources and
// the scripted desktop. Made in init() and dropped in cleanup().
struct ScratchProgram {
    ScratchProgram() {
        ResetProgramState();
        AppFolder = folder.path();
        ResourceFolder = TM_RESOURCES;
    }
    ~ScratchProgram() {
        FinishViewFiles();  // a view file still being written goes in before the folder goes
        AppFolder.clear();
        ResourceFolder.clear();
        ResetProgramState();
    }
    ScratchProgram(const ScratchProgram&) = delete;
    ScratchProgram& operator=(const ScratchProgram&) = delete;
    ScratchFolder folder;
    ScriptedDesktop desktop;
};

// Runs `act` once on the next modal window of class T as soon as it is shown (the test's hand
// inside exec()), then `open`, which opens it; false if no such window came.
template <class T>
bool RunModal(const std::function<void()>& open, const std::function<void(T*)>& act) {
    bool driven = false;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        auto* window = qobject_cast<T*>(QApplication::activeModalWidget());
        if (!window || !window->isVisible() || driven) return;
        driven = true;
        act(window);
    });
    poll.start(10);
    open();
    return driven;
}

// The class of the modal window that `trigger` opens, closed again at once; empty for none.
inline QString OpenedModal(const std::function<void()>& trigger) {
    QString seen;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        auto* d = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!d || !d->isVisible() || !seen.isEmpty()) return;
        seen = d->metaObject()->className();
        d->reject();
    });
    poll.start(10);
    trigger();
    return seen;
}

// Shows the window and makes it the active one, as a click on it would: Xvfb without a window
// manager activates nothing by itself.
inline bool MakeActive(QWidget& window) {
    window.show();
    if (!QTest::qWaitForWindowExposed(&window)) return false;
    window.activateWindow();
    QApplication::setActiveWindow(&window);
    return QTest::qWaitFor([&] { return window.isActiveWindow(); }, 2000);
}

// Put over the installed views: notes what the commands ask and hands it on.
class SpyViews : public Views {
public:
    SpyViews() { inner_ = InstallViews(this); }
    ~SpyViews() override { InstallViews(inner_); }
    SpyViews(const SpyViews&) = delete;
    SpyViews& operator=(const SpyViews&) = delete;
    std::vector<std::string> calls;
    std::vector<bool> flagAtRebuild;
    void RefreshPartsList() override { note("RefreshPartsList"), inner().RefreshPartsList(); }
    void loadviews() override { note("loadviews"), inner().loadviews(); }
    void RebuildPreviews() override {
        flagAtRebuild.push_back(PreviewRefreshOn), note("RebuildPreviews"), inner().RebuildPreviews();
    }
    void ReloadPreviews() override { note("ReloadPreviews"), inner().ReloadPreviews(); }
    void showselectobj() override { note("showselectobj"), inner().showselectobj(); }
    std::vector<bool> SelectedParts() override { return inner().SelectedParts(); }
    PreviewSelection Selection() override { return inner().Selection(); }
    int count(const std::string& call) const { return int(std::count(calls.begin(), calls.end(), call)); }

private:
    void note(const char* call) { calls.push_back(call); }
    Views& inner() { return inner_ ? *inner_ : idle_; }
    Views* inner_ = nullptr;
    Views idle_;
};

// A document of parts with these names, all of texture tp00.
inline OIFFile NamedParts(std::initializer_list<const char*> names) {
    OIFFile doc = NewOIFFile();
    for (const char* name : names)
        doc = AddPart(OIFPart{.Header = {.Name = name, .Texture = "tp00"}, .Vertices = {}, .Indices = {}}, doc);
    return doc;
}

// A square pitch in the X-Z plane around the origin, where every view looks, as one strip of two
// triangles with the texture over its whole face.
inline OIFFile TexturedQuad(float half = 15000, const char* texture = "tp00") {
    const OIFPart p{.Header = {.Name = "pitch", .Texture = texture, .VertexCount = 4, .IndexCount = 4},
                    .Vertices = {{-half, 0, -half, 0, 0, 0},
                                 {half, 0, -half, 0, 1, 0},
                                 {-half, 0, half, 0, 0, 1},
                                 {half, 0, half, 0, 1, 1}},
                    .Indices = {0, 1, 2, 3}};
    return AddPart(p, NewOIFFile());
}

// The main window, shown and active, with a new project of `doc` listed and previewed.
inline void OpenFrameWithProject(std::unique_ptr<vorn>& frame, const OIFFile& doc = TexturedQuad()) {
    frame = std::make_unique<vorn>();
    frame->resize(1200, 900);
    QVERIFY(MakeActive(*frame));
    frame->createnew(0, "Project1");
    CurrentProject.OIF = doc;
    TheViews().RefreshPartsList();
    TheViews().loadviews();
}

inline void OpenProjectOf(vorn& frame, std::initializer_list<const char*> names) {
    frame.createnew(0, "Project1");
    CurrentProject.OIF = NamedParts(names);
    TheViews().RefreshPartsList();
}

// Pixels of the image that pass the test.
inline int CountPixels(const QImage& image, const std::function<bool(QColor)>& test) {
    int n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) n += test(image.pixelColor(x, y));
    return n;
}
// A texture's clear red, not the grey of the background or of a lit untextured face.
inline int RedPixels(const QImage& image) {
    return CountPixels(image, [](QColor c) { return c.red() > 150 && c.green() < 60 && c.blue() < 60; });
}
inline int NotBackground(const QImage& image) {
    return CountPixels(image, [](QColor c) { return c != QColor(0xC0, 0xC0, 0xC0); });
}

// The rows of a drop-down list.
inline QStringList ComboRows(const QComboBox* box) {
    QStringList rows;
    for (int i = 0; i < box->count(); ++i) rows << box->itemText(i);
    return rows;
}

// The user picks a row of a drop-down list, also the row already shown.
inline void UserPicksRow(QComboBox* box, int row) {
    box->setCurrentIndex(row);
    emit box->activated(row);
}

// Runs the application's event loop as main() does; -1 if nothing ended it within five seconds.
inline int RunEventLoop(const std::function<void()>& first) {
    QTimer watchdog;
    watchdog.callOnTimeout([] { QCoreApplication::exit(-1); });
    watchdog.start(5000);
    QTimer::singleShot(0, first);
    return QCoreApplication::exec();
}

// The mouse wheel turned over the widget by `delta` (120 to a notch).
inline void TurnWheel(QWidget* target, int delta) {
    QWheelEvent e(QPointF(5, 5), target->mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, delta), Qt::NoButton,
                  Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(target, &e);
}

// A PNG of one colour, as the clipboard hands pictures over.
inline std::vector<std::uint8_t> PngOf(QColor colour, int width = 4, int height = 3) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return {bytes.begin(), bytes.end()};
}
