// Random use of every window: from the main window with the sample stadium, a seeded stream of
// clicks, double clicks, drags, keys, wheel turns and menu commands goes to the visible widgets
// (inside a modal window or an open pop-up when there is one), and every question and file
// dialog gets a random answer. The run fails on a crash, a sanitizer report, a box that does
// not come through the desktop, or a hang; it then prints its seed and its last actions.
//
// TM_MONKEY_SEEDS ("7 9 100-120") and TM_MONKEY_EVENTS (per seed) run other seeds, or longer;
// TM_MONKEY_TRACE prints every action.
#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAction>
#include <QFileDialog>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QtTest>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <random>
#include <thread>

#include <dlfcn.h>
#include <link.h>

#include "WindowTestKit.h"
#include "shell/IniOps.h"
#include "shell/Startup.h"
#include "shell/ui/helpviewer.h"
#include "shell/ui/textviewer.h"
#include "shell/ui/vorn.h"

namespace {

// The default run. A seed that found a fault stays here, with what it found.
// 1: an edit of a part with no vertices hashed it through memcpy from a null pointer (step 106).
const unsigned DefaultSeeds[] = {1, 2, 3, 4, 5};
constexpr int DefaultEvents = 500;
constexpr auto HangLimit = std::chrono::seconds(20);
// Answers of the file dialogs: the samples, test models, pictures, a missing file and new names,
// in a copy of their folders, the scoreboard (a model with its pictures) most often; "-" is a
// cancel. A folder is mostly that of the last file answered, "<".
constexpr const char* FileAnswers =
    "stadium.oif crowds.txt crowdplanes.3ds adboards.3ds banners.3ds scoreboard/scoreboard.3ds "
    "scoreboard/scoreboard.3ds scoreboard/scoreboard.3ds 3ds/atlas.3ds 3ds/terrace.3ds 3ds/box.obj "
    "scoreboard/screen.png textures/gras.png missing.oif saved.oif saved.bmp - -";
constexpr const char* FolderAnswers = "< < < < < < textures . missing -";
// The keys, as a key sequence names them.
constexpr const char* Keys =
    "Left Right Up Down Home End PgDown Del Backspace Return Esc Tab Space F5 + - A Z 0 7 . / \\ Shift+Left "
    "Ctrl+Up Ctrl+Z Ctrl+Y Ctrl+Shift+Z Ctrl+A Ctrl+C Ctrl+V Ctrl+X Ctrl+S";
// Words typed whole: numbers at and past the ends of their fields, and names that are no numbers.
constexpr const char* Words = "0 -1 12.5 255 32768 -65536 2147483648 1e39 -1e-45 99999999999999999999 abc ../x tp01";

// The last actions of the run, printed when it fails in any way, a signal included.
struct Trail {
    unsigned seed = 0;
    std::array<std::string, 40> lines;
    std::atomic<long> steps{0};
    bool all = qEnvironmentVariableIsSet("TM_MONKEY_TRACE");  // every action, as it is done
    void add(std::string line) {
        if (all) std::fprintf(stderr, "%s\n", line.c_str());
        lines[static_cast<std::size_t>(steps++) % lines.size()] = std::move(line);
    }
    void print() const {
        std::fprintf(stderr, "monkey seed %u, last actions up to step %ld:\n", seed, steps.load());
        for (long i = std::max(0L, steps - long(lines.size())); i < steps; ++i)
            std::fprintf(stderr, "  %s\n", lines[static_cast<std::size_t>(i) % lines.size()].c_str());
    }
};
Trail trail;

void PrintTrailAndDie(int sig) {
    trail.print();
    std::signal(sig, SIG_DFL);
    std::raise(sig);
}

// "stmap/picTex2", "vornnewproj/QPushButton &Ok": enough to find the widget again.
std::string Describe(const QWidget* w) {
    auto name = [](const QWidget* x) {
        return x->objectName().isEmpty() ? QString(x->metaObject()->className()) : x->objectName();
    };
    QString text = name(w->window()) + "/" + name(w);
    if (auto* b = qobject_cast<const QAbstractButton*>(w)) text += " " + b->text();
    return text.toStdString();
}

// The window a widget is in, or the window inside the main window.
QWidget* AreaOf(QWidget* w) {
    while (!w->isWindow() && !qobject_cast<QMdiSubWindow*>(w)) w = w->parentWidget();
    return w;
}

// The user's desktop, with the help book and text files in the program's own windows.
class MonkeyDesktop : public ScriptedDesktop {
public:
    void ShowHelpBook(const std::string& path) override { helpviewer::showPage(QString::fromStdString(path)); }
    void ShowTextFile(const std::string& path) override { textviewer::showFile(QString::fromStdString(path)); }
};

class Monkey {
public:
    Monkey(unsigned seed, int events, MonkeyDesktop& desktop, const std::string& scratch)
        : random_(seed), events_(events), desktop_(desktop), files_(scratch + "/files/") {
        std::filesystem::copy(TM_SAMPLES, files_, std::filesystem::copy_options::recursive);
        std::filesystem::copy(TM_TEST_DATA "/3ds", files_ + "3ds");
        desktop_.onPump = [] { QCoreApplication::processEvents(); };
        desktop_.answerer = [this](MessageButtons buttons) { return answer(buttons); };
        desktop_.dialogAnswerer = [this](const std::string& filter) { return path(filter); };
    }

    // Runs the stream in the program's own event loop; "" when nothing went wrong.
    std::string run() {
        QTimer::singleShot(0, &context_, [this] { tick(); });
        while (failure_.empty() && done_ < events_) {
            QCoreApplication::exec();
            // Ended by its quit question: it starts again at the next turn.
            if (frame_ && !frame_->isVisible()) endProgram();
        }
        endProgram();
        return failure_;
    }

private:
    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random_); }
    template <class T, std::size_t N>
    const T& pick(const T (&items)[N]) {
        return items[pick(int(N))];
    }

    MessageAnswer answer(MessageButtons buttons) {
        using A = MessageAnswer;
        static const std::map<MessageButtons, std::vector<A>> choices = {
            {MessageButtons::OKCancel, {A::OK, A::Cancel}},
            {MessageButtons::YesNo, {A::Yes, A::No}},
            {MessageButtons::YesNoCancel, {A::Yes, A::No, A::Cancel}},
            {MessageButtons::RetryCancel, {A::Retry, A::Cancel}}};
        const std::vector<A>& some = choices.at(buttons);
        const A a = some[static_cast<std::size_t>(pick(int(some.size())))];
        static const char* const names[] = {"OK", "Cancel", "Yes", "No", "Retry"};
        trail.add("  " + std::string(names[int(a)]) + " to " + desktop_.messages.back().text.substr(0, 60));
        return a;
    }
    // Mostly a file of a kind the dialog's filter names, as a user picks; at times anything.
    std::string path(const std::string& filter) {
        static const QStringList files = QString(FileAnswers).split(' ');
        static const QStringList folders = QString(FolderAnswers).split(' ');
        QStringList list = filter.empty() ? folders : files;
        if (!filter.empty() && pick(4)) {
            // The kinds the filter names: "*.3ds" of "Autodesk 3DS (*.3ds)|*.3ds".
            QStringList kinds;
            const QStringList parts = QString::fromStdString(filter).split('|');
            for (int i = 1; i < parts.size(); i += 2) kinds += parts[i].split(';');
            list.removeIf([&](const QString& file) {
                return std::none_of(kinds.begin(), kinds.end(), [&](const QString& kind) {
                    return file.endsWith(kind.mid(1), Qt::CaseInsensitive);
                });
            });
        }
        const QString name = list.isEmpty() ? "-" : list[pick(int(list.size()))];
        std::string answer = name == "<" ? lastFolder_ : name == "-" ? "" : files_ + name.toStdString();
        trail.add("  " + (answer.empty() ? "cancel" : answer) + " to " + desktop_.dialogTitles.back());
        if (name != "<" && name != "-") lastFolder_ = std::filesystem::path(answer).parent_path().string();
        return answer;
    }

    // The program as a user starts it, with the sample stadium imported through the menu.
    void startProgram() {
        QScopedValueRollback starting(starting_, true);
        ResetProgramState();
        frame_ = std::make_unique<vorn>();
        frame_->setGeometry(QGuiApplication::primaryScreen()->availableGeometry());
        RunStartup(*frame_, "");
        if (!MakeActive(*frame_)) failure_ = "the main window does not show";
        frame_->menuAction("&New Project")->trigger();
        desktop_.dialogAnswers = {files_ + "stadium.oif"};
        frame_->menuAction("&Import to OIF...")->trigger();
    }
    // The event loop has been left; the windows go, in any order, before the program starts again.
    void endProgram() {
        frame_.reset();
        QList<QPointer<QWidget>> windows;
        for (QWidget* w : QApplication::topLevelWidgets())
            if (!w->parentWidget()) windows << w;
        for (const QPointer<QWidget>& w : windows) delete w.data();
    }

    // One action per turn of the event loop; the next turn is asked first, so that a modal
    // window the action opens is driven from inside its own loop.
    void tick() {
        QTimer::singleShot(0, &context_, [this] { tick(); });
        if (InsideEventPump() || starting_) return;
        if (!failure_.empty() || done_ >= events_) {
            if (!closeModal()) QCoreApplication::exit(0);
            return;
        }
        if (!frame_) return startProgram();
        if (!frame_->isVisible()) return QCoreApplication::exit(0);
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->isVisible() && (qobject_cast<QMessageBox*>(w) || qobject_cast<QFileDialog*>(w))) {
                failure_ = "a box not asked through the desktop: " + Describe(w);
                return;
            }
        ++done_;
        act();
    }

    // At the end of the run, modal windows and pop-ups are closed as a user would close them;
    // false when none is left.
    bool closeModal() {
        QWidget* top = QApplication::activePopupWidget();
        if (!top) top = QApplication::activeModalWidget();
        if (!top) return false;
        if (++closing_ > 50) {
            failure_ = "a window does not close: " + Describe(top);
            return false;
        }
        if (closing_ % 2) keyClick(top, Qt::Key_Escape);
        else top->close();
        return true;
    }

    // What the user can reach now: the open pop-up, else the modal window, else every window.
    std::vector<std::vector<QWidget*>> targets() {
        std::vector<QWidget*> tops;
        if (QWidget* popup = QApplication::activePopupWidget()) tops = {popup};
        else if (QWidget* modal = QApplication::activeModalWidget()) tops = {modal};
        else
            for (QWidget* w : QApplication::topLevelWidgets())
                if (w->isVisible() && !(w->windowType() == Qt::Popup || w->windowType() == Qt::ToolTip))
                    tops.push_back(w);
        // Top-level widgets come in no set order: sorted, the seed finds the same ones.
        auto key = [](QWidget* w) { return Describe(w) + w->windowTitle().toStdString(); };
        std::stable_sort(tops.begin(), tops.end(), [&](QWidget* a, QWidget* b) { return key(a) < key(b); });
        // A control is worth more of the monkey's time than a label; a scroll area's viewport
        // takes its mouse.
        auto weight = [](QWidget* w) {
            if (!w->isVisible() || !w->isEnabled() || w->width() < 2 || w->height() < 2) return 0;
            if (qobject_cast<QAbstractScrollArea*>(w)) return 0;
            auto* area = qobject_cast<QAbstractScrollArea*>(w->parentWidget());
            if (w->focusPolicy() != Qt::NoFocus || (area && area->viewport() == w)) return 4;
            return w->findChild<QWidget*>() ? 0 : 1;
        };
        // Each window, and each window inside the main window, gets its share of the actions.
        std::vector<std::vector<QWidget*>> found;
        std::vector<QWidget*> areas;
        for (QWidget* top : tops)
            for (QWidget* w : QList<QWidget*>{top} + top->findChildren<QWidget*>()) {
                QWidget* area = AreaOf(w);
                const auto at = std::find(areas.begin(), areas.end(), area) - areas.begin();
                if (at == long(areas.size())) areas.push_back(area), found.emplace_back();
                found[static_cast<std::size_t>(at)].insert(found[static_cast<std::size_t>(at)].end(), weight(w), w);
            }
        std::erase_if(found, [](const std::vector<QWidget*>& group) { return group.empty(); });
        return found;
    }

    QPoint anywhere(QWidget* w, int margin = 0) {
        return {pick(w->width() + 2 * margin) - margin, pick(w->height() + 2 * margin) - margin};
    }
    static std::string at(QPoint p) { return " at " + std::to_string(p.x()) + "," + std::to_string(p.y()); }

    void act() {
        const std::vector<std::vector<QWidget*>> found = targets();
        // A modal window is left after a few actions, a pop-up at any one, as a user would.
        QWidget* modal = QApplication::activeModalWidget();
        QWidget* popup = QApplication::activePopupWidget();
        if (modal != modal_) modal_ = modal, modalSteps_ = 0, modalLimit_ = 3 + pick(12);
        modalSteps_ += !popup;
        const std::string step = "#" + std::to_string(done_) + " ";
        if (QWidget* top = popup ? popup : modal; popup ? pick(4) == 0 : modal && modalSteps_ > modalLimit_) {
            trail.add(step + "Escape on " + Describe(top));
            if (modalSteps_ > modalLimit_ + 3) top->close();
            else keyClick(top, Qt::Key_Escape);
            return;
        }
        if (popup) modal = popup;
        const int kind = pick(100);
        if (found.empty() || (!modal && kind >= 90)) return menuCommand(step);
        const std::vector<QWidget*>& area = found[static_cast<std::size_t>(pick(int(found.size())))];
        QPointer<QWidget> w = area[static_cast<std::size_t>(pick(int(area.size())))];
        if (!modal) {
            QApplication::setActiveWindow(w->window());
            w->window()->raise();
        }
        const std::string name = Describe(w);
        if (kind < 28) {
            const QPoint p = anywhere(w);
            const Qt::MouseButton button = pick(6) ? Qt::LeftButton : Qt::RightButton;
            trail.add(step + (button == Qt::LeftButton ? "click " : "right click ") + name + at(p));
            QTest::mousePress(w, button, {}, p);
            if (w) QTest::mouseRelease(w, button, {}, p);
        } else if (kind < 36) {
            const QPoint p = anywhere(w);
            trail.add(step + "double click " + name + at(p));
            QTest::mousePress(w, Qt::LeftButton, {}, p);
            if (w) QTest::mouseRelease(w, Qt::LeftButton, {}, p);
            if (w) QTest::mouseDClick(w, Qt::LeftButton, {}, p);
            if (w) QTest::mouseRelease(w, Qt::LeftButton, {}, p);
        } else if (kind < 48) {
            QPoint p = anywhere(w);
            const Qt::KeyboardModifiers mods = pick(4) ? Qt::NoModifier : Qt::ShiftModifier;
            std::string text = step + "drag " + name + at(p);
            QTest::mousePress(w, Qt::LeftButton, mods, p);
            for (int moves = 1 + pick(4); moves > 0 && w; --moves) {
                p = anywhere(w, 30);
                text += " to" + at(p);
                QTest::mouseMove(w, p);
            }
            trail.add(text);
            if (w) QTest::mouseRelease(w, Qt::LeftButton, mods, p);
        } else if (kind < 78) {
            typeKey(step, w);
        } else if (kind < 88) {
            const QPoint p = anywhere(w);
            const int delta = pick({-240, -120, 120, 240});
            const Qt::KeyboardModifiers mods = pick(4) ? Qt::NoModifier : Qt::ControlModifier;
            trail.add(step + "wheel " + std::to_string(delta) + " " + name + at(p));
            QWheelEvent e(p, w->mapToGlobal(p), {}, {0, delta}, Qt::NoButton, mods, Qt::NoScrollPhase, false);
            QApplication::sendEvent(w, &e);
        } else {
            // The close button of its title bar.
            QWidget* window = AreaOf(w);
            trail.add(step + "close " + Describe(window) + " " + window->windowTitle().toStdString());
            window->close();
        }
    }

    // A key to the widget when it takes the focus, else to what has the focus in its window.
    void typeKey(const std::string& step, QWidget* w) {
        static const QStringList keys = QString(Keys).split(' ');
        QWidget* to = w;
        if (w->focusPolicy() & Qt::ClickFocus) w->setFocus(Qt::MouseFocusReason);
        else if (QWidget* focus = w->window()->focusWidget()) to = focus;
        if (pick(4) == 0) {
            static const QStringList words = QString(Words).split(' ');
            const QString& word = words[pick(int(words.size()))];
            trail.add(step + "type " + word.toStdString() + " in " + Describe(to));
            QPointer<QWidget> guard = to;
            for (QChar c : word)
                if (guard) QTest::keyClick(guard, c.toLatin1());
            return;
        }
        const QString& key = keys[pick(int(keys.size()))];
        trail.add(step + "key " + key.toStdString() + " in " + Describe(to));
        keyClick(to, QKeySequence(key)[0]);
    }
    static void keyClick(QWidget* w, QKeyCombination key) { QTest::keyClick(w, key.key(), key.keyboardModifiers()); }

    // An enabled entry of the main window's menus, as a click on it would run it.
    void menuCommand(const std::string& step) {
        std::vector<QAction*> entries;
        std::function<void(QMenu*)> collect = [&](QMenu* menu) {
            for (QAction* a : menu->actions()) {
                if (a->menu()) collect(a->menu());
                else if (!a->isSeparator() && a->isEnabled() && a->isVisible()) entries.push_back(a);
            }
        };
        for (QAction* a : frame_->menuBar()->actions())
            if (a->menu()) collect(a->menu());
        if (entries.empty()) return;
        QAction* entry = entries[static_cast<std::size_t>(pick(int(entries.size())))];
        trail.add(step + "menu " + entry->text().toStdString());
        QApplication::setActiveWindow(frame_.get());
        entry->trigger();
    }

    QObject context_;  // the turns asked for go with the monkey
    std::mt19937 random_;
    const int events_;
    MonkeyDesktop& desktop_;
    const std::string files_;
    std::string lastFolder_;
    std::unique_ptr<vorn> frame_;
    std::string failure_;
    int done_ = 0, closing_ = 0;
    bool starting_ = false;  // the program starts; the turns its waits run do nothing
    QWidget* modal_ = nullptr;
    int modalSteps_ = 0, modalLimit_ = 0;
};

// A long run may take longer than Qt Test gives a test function; the watchdog above is the one
// that tells a hang.
const bool NoTestFunctionLimit =
    qEnvironmentVariableIsSet("QTEST_FUNCTION_TIMEOUT") || qputenv("QTEST_FUNCTION_TIMEOUT", "86400000");

// "7 9 100-120": seeds and ranges of seeds.
std::vector<unsigned> Seeds() {
    std::vector<unsigned> seeds;
    const QString list = qEnvironmentVariable("TM_MONKEY_SEEDS");
    for (const QString& part : list.split(QRegularExpression("[ ,]+"), Qt::SkipEmptyParts)) {
        const QStringList ends = part.split('-');
        for (unsigned s = ends[0].toUInt(); s <= ends.back().toUInt(); ++s) seeds.push_back(s);
    }
    if (seeds.empty()) seeds.assign(std::begin(DefaultSeeds), std::end(DefaultSeeds));
    return seeds;
}

}  // namespace

class MonkeyTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        // Each sanitizer runtime (ASan's, UBSan's) ends the process its own way and prints the
        // trail first; without one, the signals of a crash do.
        bool sanitized = false;
        dl_iterate_phdr(
            [](dl_phdr_info* info, std::size_t, void* found) {
                void* lib =
                    std::strstr(info->dlpi_name, "san.so") ? dlopen(info->dlpi_name, RTLD_NOW | RTLD_NOLOAD) : nullptr;
                if (auto set =
                        lib ? reinterpret_cast<void (*)(void (*)())>(dlsym(lib, "__sanitizer_set_death_callback"))
                            : nullptr) {
                    set([] { trail.print(); });
                    *static_cast<bool*>(found) = true;
                }
                return 0;
            },
            &sanitized);
        for (int sig : {SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL})
            if (sig == SIGABRT || !sanitized) std::signal(sig, PrintTrailAndDie);
        // As in the program: only its quit question ends it.
        QApplication::setQuitOnLastWindowClosed(false);
        // Clicks on widgets that take no mouse are what a monkey does; Qt need not say so each time.
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
            if (!text.contains("not accepted by receiving widget")) std::fprintf(stderr, "%s\n", qPrintable(text));
            if (type == QtFatalMsg) std::abort();
        });
    }

    void randomUseEndsInNoCrashNoReportAndNoHang_data() {
        QTest::addColumn<unsigned>("seed");
        for (unsigned seed : Seeds()) QTest::addRow("seed %u", seed) << seed;
    }
    void randomUseEndsInNoCrashNoReportAndNoHang() {
        QFETCH(unsigned, seed);
        const int events = qEnvironmentVariableIsSet("TM_MONKEY_EVENTS")
                               ? qEnvironmentVariableIntValue("TM_MONKEY_EVENTS")
                               : DefaultEvents;
        ScratchProgram program;
        MonkeyDesktop desktop;
        WriteConfig("Terramason", "Previews", "1");
        WriteConfig("Terramason", "OIFEditor", "1");
        trail.seed = seed;
        trail.steps = 0;
        std::fprintf(stderr, "monkey seed %u, %d events\n", seed, events);

        std::atomic<bool> running{true};
        std::chrono::steady_clock::duration longest{};
        std::thread watchdog([&] {
            long seen = -1;
            auto since = std::chrono::steady_clock::now();
            while (running) {
                std::this_thread::sleep_for(std::chrono::milliseconds(200));
                const auto now = std::chrono::steady_clock::now();
                if (trail.steps != seen) seen = trail.steps, since = now;
                longest = std::max(longest, now - since);
                if (now - since < HangLimit) continue;
                std::fprintf(stderr, "HANG: no step for %lld s\n", (long long)HangLimit.count());
                trail.print();
                std::_Exit(3);
            }
        });
        const std::string failure = Monkey(seed, events, desktop, program.folder.path()).run();
        running = false;
        watchdog.join();
        std::fprintf(stderr, "longest step %lld ms\n",
                     (long long)std::chrono::duration_cast<std::chrono::milliseconds>(longest).count());
        if (!failure.empty()) trail.print();
        QVERIFY2(failure.empty(), failure.c_str());
    }
};

QTEST_MAIN(MonkeyTest)
#include "MonkeyTest.moc"
