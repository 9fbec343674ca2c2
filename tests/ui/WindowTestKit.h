#pragma once
// Helpers of the window tests: acting on a modal window from inside its own event loop, and
// watching what the windows ask of the views.
#include <QApplication>
#include <QPointer>
#include <QTimer>
#include <QtTest>
#include <functional>
#include <string>
#include <vector>

#include "core/ProgramState.h"
#include "core/Views.h"
#include "support/ScriptedDesktop.h"
#include "support/TestFiles.h"

// What a window test starts from: the program state of a fresh start, a scratch folder as
// AppFolder and the scripted desktop. Made in init() and dropped in cleanup().
struct ScratchProgram {
    ScratchProgram() {
        ResetProgramState();
        AppFolder = folder.path();
    }
    ~ScratchProgram() {
        AppFolder.clear();
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
