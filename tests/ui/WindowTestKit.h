#pragma once
// Helpers of the window tests: acting on a modal window from inside its own event loop, and
// watching what the windows ask of the views.
#include <QApplication>
#include <QBuffer>
#include <QComboBox>
#include <QImage>
#include <QPointer>
#include <QTimer>
#include <QtTest>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/ProgramState.h"
#include "core/Views.h"
#include "preview/VRMLOps.h"
#include "shell/HelpOps.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"

// What a window test starts from: the program state of a fresh start, a scratch folder as
// AppFolder (and its "share" as ResourceFolder) and the scripted desktop. Made in init() and dropped in cleanup().
struct ScratchProgram {
    ScratchProgram() {
        ResetProgramState();
        AppFolder = folder.path();
        // The shipped help book and read-me: the windows show them.
        ResourceFolder = TM_RESOURCES;
    }
    ~ScratchProgram() {
        // A view file still being written goes into the folder before it is removed.
        FinishViewFiles();
        AppFolder.clear();
        ResourceFolder.clear();
        ResetProgramState();
    }
    ScratchProgram(const ScratchProgram&) = delete;
    ScratchProgram& operator=(const ScratchProgram&) = delete;
    ScratchFolder folder;
    ScriptedDesktop desktop;
};

// Runs `act` once on the next modal window of class T, as soon as it is shown: the test's hand
// inside exec().
template <class T>
void WhenModalShown(std::function<void(T*)> act) {
    auto* poll = new QTimer;
    QObject::connect(poll, &QTimer::timeout, poll, [poll, act] {
        auto* window = qobject_cast<T*>(QApplication::activeModalWidget());
        if (!window || !window->isVisible()) return;
        poll->stop();
        poll->deleteLater();
        act(window);
    });
    poll->start(10);
}

// Shows the window and makes it the active one, as a click on it would: keys then reach its
// shortcuts and focus. Xvfb without a window manager activates nothing by itself.
inline bool MakeActive(QWidget& window) {
    window.show();
    if (!QTest::qWaitForWindowExposed(&window)) return false;
    window.activateWindow();
    QApplication::setActiveWindow(&window);
    return QTest::qWaitFor([&] { return window.isActiveWindow(); }, 2000);
}

// Put over the views that vorn installs: counts what the commands ask and hands it on.
class SpyViews : public Views {
public:
    SpyViews() { inner_ = InstallViews(this); }
    ~SpyViews() override { InstallViews(inner_); }
    SpyViews(const SpyViews&) = delete;
    SpyViews& operator=(const SpyViews&) = delete;

    std::vector<std::string> calls;
    std::vector<bool> flagAtRebuild;

    void RefreshPartsList() override {
        calls.push_back("RefreshPartsList");
        inner().RefreshPartsList();
    }
    void loadviews() override {
        calls.push_back("loadviews");
        inner().loadviews();
    }
    void RebuildPreviews() override {
        calls.push_back("RebuildPreviews");
        flagAtRebuild.push_back(PreviewRefreshOn);
        inner().RebuildPreviews();
    }
    void ReloadPreviews() override {
        calls.push_back("ReloadPreviews");
        inner().ReloadPreviews();
    }
    void showselectobj() override {
        calls.push_back("showselectobj");
        inner().showselectobj();
    }
    std::vector<bool> SelectedParts() override { return inner().SelectedParts(); }
    PreviewSelection Selection() override { return inner().Selection(); }

    int count(const std::string& call) const {
        int n = 0;
        for (const std::string& c : calls) n += c == call;
        return n;
    }

private:
    Views& inner() { return inner_ ? *inner_ : idle_; }
    Views* inner_ = nullptr;
    Views idle_;
};

// A document of parts with these names.
inline OIFFile NamedParts(std::initializer_list<const char*> names) {
    OIFFile doc = NewOIFFile();
    for (const char* name : names) {
        OIFPart part;
        part.Header.Name = name;
        part.Header.Texture = "tp00";
        doc = AddPart(part, doc);
    }
    return doc;
}

// A square pitch in the X-Z plane around the origin, where every view looks, as one strip of
// two triangles with the texture over its whole face; by default 30000 units across.
inline OIFFile TexturedQuad(float half = 15000, const char* texture = "tp00") {
    OIFPart p;
    p.Header.Name = "pitch";
    p.Header.Texture = texture;
    auto v = [](float x, float z, float u, float w) {
        OIFVertex r;
        r.X = x;
        r.Z = z;
        r.U = u;
        r.V = w;
        return r;
    };
    p.Vertices = {v(-half, -half, 0, 0), v(half, -half, 1, 0), v(-half, half, 0, 1), v(half, half, 1, 1)};
    p.Indices = {0, 1, 2, 3};
    p.Header.VertexCount = 4;
    p.Header.IndexCount = 4;
    OIFFile doc = NewOIFFile();
    return AddPart(p, doc);
}

// Pixels that are clearly a texture's red, not the grey of the background or of a lit
// untextured face.
inline int RedPixels(const QImage& image) {
    int n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QColor c = image.pixelColor(x, y);
            n += c.red() > 150 && c.green() < 60 && c.blue() < 60;
        }
    return n;
}

// The rows of a drop-down list.
inline QStringList ComboRows(const QComboBox* box) {
    QStringList rows;
    for (int i = 0; i < box->count(); ++i) rows << box->itemText(i);
    return rows;
}

// The user picks a row of a drop-down list: the list shows it and says it was chosen, also when
// it was the row already shown.
inline void UserPicksRow(QComboBox* box, int row) {
    box->setCurrentIndex(row);
    emit box->activated(row);
}

// Runs the application's own event loop until something ends it, as main() does. Gives -1 if
// nothing ended it within five seconds.
inline int RunEventLoop(const std::function<void()>& first) {
    QTimer watchdog;
    watchdog.setSingleShot(true);
    QObject::connect(&watchdog, &QTimer::timeout, [] { QCoreApplication::exit(-1); });
    watchdog.start(5000);
    QTimer::singleShot(0, first);
    return QCoreApplication::exec();
}

// Pixels that are not the grey background of the previews.
inline int NotBackground(const QImage& image) {
    int n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) n += (image.pixel(x, y) & 0xFFFFFF) != 0xC0C0C0;
    return n;
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
