// Random use of every window: from the main window with the sample stadium, a seeded stream of
// clicks, double clicks, drags, keys, wheel turns and menu commands goes to the visible widgets
// (inside a modal window or an open pop-up when there is one), and every question and file
// dialog gets a random answer. The run fails on a crash, a sanitizer report, a box that does
// not come through the desktop, or a hang; it then prints its seed and its last actions.
//
// TM_MONKEY_SEEDS ("7 9 100-120") and TM_MONKEY_EVENTS (per seed) run other seeds, or longer;
// TM_MONKEY_TRACE prints every action.

#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <random>
#include <thread>

#include <dlfcn.h>
#include <link.h>

#include "WindowTestKit.h"
#include "shell/Startup.h"
#include "shell/ui/helpviewer.h"
#include "shell/ui/textviewer.h"

namespace {

// The default run. A seed that found a fault stays here, with what it found.
// 1: an edit of a part with no vertices hashed it through memcpy from a null pointer (step 106).
const unsigned DefaultSeeds[] = {1, 2, 3, 4, 5};
constexpr int DefaultEvents = 500;
constexpr auto HangLimit = std::chrono::seconds(20);
// Answers of the file dialogs, in a copy of their folders, the scoreboard most often; "-" is a
// cancel. A folder is mostly that of the last file answered, "<".
QStringList List(const char* items) { return QString(items).split(' '); }
const QStringList FileAnswers = List(
    "stadium.oif crowds.txt crowdplanes.3ds adboards.3ds banners.3ds scoreboard/scoreboard.3ds "
    "scoreboard/scoreboard.3ds scoreboard/scoreboard.3ds 3ds/atlas.3ds 3ds/terrace.3ds 3ds/box.obj "
    "scoreboard/screen.png textures/gras.png missing.oif saved.oif saved.bmp - -");
const QStringList FolderAnswers = List("< < < < < < textures . missing -");
const QStringList Keys = List(
    "Left Right Up Down Home End PgDown Del Backspace Return Esc Tab Space F5 + - A Z 0 7 . / \\ Shift+Left "
    "Ctrl+Up Ctrl+Z Ctrl+Y Ctrl+Shift+Z Ctrl+A Ctrl+C Ctrl+V Ctrl+X Ctrl+S");
// Words typed whole: numbers at and past the ends of their fields, and names that are no numbers.
const QStringList Words = List("0 -1 12.5 255 32768 -65536 2147483648 1e39 -1e-45 99999999999999999999 abc ../x tp01");

// The last actions of the run, printed when it fails in any way, a signal included.
struct Trail {
    unsigned seed = 0;
    std::array<std::string, 40> lines;
    std::atomic<long> steps{0};
    bool all = qEnvironmentVariableIsSet("TM_MONKEY_TRACE");
    void add(std::string line) {
        if (all) std::fprintf(stderr, "%s\n", line.c_str());
        lines[std::size_t(steps++) % lines.size()] = std::move(line);
    }
    void print() const {
        std::fprintf(stderr, "monkey seed %u, last actions up to step %ld:\n", seed, steps.load());
        for (long i = std::max(0L, steps - long(lines.size())); i < steps; ++i)
            std::fprintf(stderr, "  %s\n", lines[std::size_t(i) % lines.size()].c_str());
    }
} trail;

// "stmap/picTex2", "vornnewproj/QPushButton &Ok": enough to find the widget again.
std::string Describe(const QWidget* w) {
    auto name = [](const QWidget* x) {
        return x->objectName().isEmpty() ? x->metaObject()->className() : x->objectName();
    };
    auto* b = qobject_cast<const QAbstractButton*>(w);
    return (name(w->window()) + "/" + name(w) + (b ? " " + b->text() : QString())).toStdString();
}
// The window a widget is in, or the window inside the main window.
QWidget* AreaOf(QWidget* w) {
    while (!w->isWindow() && !qobject_cast<QMdiSubWindow*>(w)) w = w->parentWidget();
    return w;
}
std::string At(QPoint p) { return " at " + std::to_string(p.x()) + "," + std::to_string(p.y()); }
void KeyClick(QWidget* w, QKeyCombination key) { QTest::keyClick(w, key.key(), key.keyboardModifiers()); }

// The user's desktop, with the help book and text files in the program's own windows.
struct MonkeyDesktop : ScriptedDesktop {
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
            if (frame_ && !frame_->isVisible()) endProgram();  // its quit question: it starts again
        }
        endProgram();
        return failure_;
    }

private:
    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random_); }
    template <class List>
    auto& pickOf(const List& items) {
        return items[pick(int(std::size(items)))];
    }
    QPoint anywhere(QWidget* w, int margin = 0) {
        return {pick(w->width() + 2 * margin) - margin, pick(w->height() + 2 * margin) - margin};
    }

    MessageAnswer answer(MessageButtons buttons) {
        using A = MessageAnswer;
        static const std::map<MessageButtons, std::vector<A>> choices = {
            {MessageButtons::OKCancel, {A::OK, A::Cancel}},
            {MessageButtons::YesNo, {A::Yes, A::No}},
            {MessageButtons::YesNoCancel, {A::Yes, A::No, A::Cancel}},
            {MessageButtons::RetryCancel, {A::Retry, A::Cancel}}};
        const A a = pickOf(choices.at(buttons));
        static const char* const names[] = {"OK", "Cancel", "Yes", "No", "Retry"};
        trail.add("  " + std::string(names[int(a)]) + " to " + desktop_.messages.back().text.substr(0, 60));
        return a;
    }
    // Mostly a file of a kind the dialog's filter names ("*.3ds" of "Autodesk 3DS (*.3ds)|*.3ds"),
    // as a user picks; at times anything.
    std::string path(const std::string& filter) {
        QStringList list = filter.empty() ? FolderAnswers : FileAnswers;
        if (!filter.empty() && pick(4)) {
            QStringList kinds;
            const QStringList parts = QString::fromStdString(filter).split('|');
            for (int i = 1; i < parts.size(); i += 2) kinds += parts[i].split(';');
            list.removeIf([&](const QString& file) {
                return std::none_of(kinds.begin(), kinds.end(), [&](const QString& kind) {
                    return file.endsWith(kind.mid(1), Qt::CaseInsensitive);
                });
            });
        }
        const QString name = list.isEmpty() ? "-" : pickOf(list);
        const std::string answer = name == "<" ? lastFolder_ : name == "-" ? "" : files_ + name.toStdString();
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
            // At the end, modal windows and pop-ups are closed as a user would close them.
            QWidget* top = QApplication::activePopupWidget();
            if (!top) top = QApplication::activeModalWidget();
            if (!top) return QCoreApplication::exit(0);
            if (++closing_ > 50) {
                failure_ = "a window does not close: " + Describe(top);
                QCoreApplication::exit(0);
            } else if (closing_ % 2) KeyClick(top, Qt::Key_Escape);
            else top->close();
            return;
        }
        if (!frame_) return startProgram();
        if (!frame_->isVisible()) return QCoreApplication::exit(0);
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->isVisible() && (qobject_cast<QMessageBox*>(w) || qobject_cast<QFileDialog*>(w)))
                return void(failure_ = "a box not asked through the desktop: " + Describe(w));
        ++done_;
        act();
    }

    // What the user can reach now (the open pop-up, else the modal window, else every window),
    // grouped so that each window, and each window inside the main window, gets its share.
    std::vector<std::vector<QWidget*>> targets() {
        std::vector<QWidget*> tops;
        if (QWidget* popup = QApplication::activePopupWidget()) tops = {popup};
        else if (QWidget* modal = QApplication::activeModalWidget()) tops = {modal};
        else
            for (QWidget* w : QApplication::topLevelWidgets())
                if (w->isVisible() && w->windowType() != Qt::Popup && w->windowType() != Qt::ToolTip) tops.push_back(w);
        // Top-level widgets come in no set order: sorted, the seed finds the same ones.
        auto key = [](QWidget* w) { return Describe(w) + w->windowTitle().toStdString(); };
        std::stable_sort(tops.begin(), tops.end(), [&](QWidget* a, QWidget* b) { return key(a) < key(b); });
        // A control is worth more than a label; a scroll area's viewport takes its mouse.
        auto weight = [](QWidget* w) {
            if (!w->isVisible() || !w->isEnabled() || w->width() < 2 || w->height() < 2) return 0;
            if (qobject_cast<QAbstractScrollArea*>(w)) return 0;
            auto* area = qobject_cast<QAbstractScrollArea*>(w->parentWidget());
            if (w->focusPolicy() != Qt::NoFocus || (area && area->viewport() == w)) return 4;
            return w->findChild<QWidget*>() ? 0 : 1;
        };
        std::vector<std::vector<QWidget*>> found;
        std::vector<QWidget*> areas;
        for (QWidget* top : tops)
            for (QWidget* w : QList<QWidget*>{top} + top->findChildren<QWidget*>()) {
                const auto at = std::size_t(std::find(areas.begin(), areas.end(), AreaOf(w)) - areas.begin());
                if (at == areas.size()) areas.push_back(AreaOf(w)), found.emplace_back();
                found[at].insert(found[at].end(), weight(w), w);
            }
        std::erase_if(found, [](const auto& group) { return group.empty(); });
        return found;
    }

    void act() {
        const auto found = targets();
        // A modal window is left after a few actions, a pop-up at any one, as a user would.
        QWidget* modal = QApplication::activeModalWidget();
        QWidget* popup = QApplication::activePopupWidget();
        if (modal != modal_) modal_ = modal, modalSteps_ = 0, modalLimit_ = 3 + pick(12);
        modalSteps_ += !popup;
        const std::string step = "#" + std::to_string(done_) + " ";
        if (QWidget* top = popup ? popup : modal; popup ? pick(4) == 0 : modal && modalSteps_ > modalLimit_) {
            trail.add(step + "Escape on " + Describe(top));
            return modalSteps_ > modalLimit_ + 3 ? void(top->close()) : KeyClick(top, Qt::Key_Escape);
        }
        const int kind = pick(100);
        if (found.empty() || (!modal && !popup && kind >= 90)) return menuCommand(step);
        QPointer<QWidget> w = pickOf(pickOf(found));
        if (!modal && !popup) {
            QApplication::setActiveWindow(w->window());
            w->window()->raise();
        }
        const std::string name = Describe(w);
        QPoint p = kind < 48 || (kind >= 78 && kind < 88) ? anywhere(w) : QPoint();
        if (kind < 36) {  // a click, a right click or a double click
            const bool twice = kind >= 28;
            const Qt::MouseButton button = twice || pick(6) ? Qt::LeftButton : Qt::RightButton;
            static const char* const clicks[] = {"click ", "right click ", "double click "};
            trail.add(step + clicks[twice ? 2 : button == Qt::RightButton] + name + At(p));
            QTest::mousePress(w, button, {}, p);
            if (w) QTest::mouseRelease(w, button, {}, p);
            if (w && twice) QTest::mouseDClick(w, button, {}, p);
            if (w && twice) QTest::mouseRelease(w, button, {}, p);
        } else if (kind < 48) {
            const Qt::KeyboardModifiers mods = pick(4) ? Qt::NoModifier : Qt::ShiftModifier;
            std::string text = step + "drag " + name + At(p);
            QTest::mousePress(w, Qt::LeftButton, mods, p);
            for (int moves = 1 + pick(4); moves > 0 && w; --moves) {
                p = anywhere(w, 30);
                text += " to" + At(p);
                QTest::mouseMove(w, p);
            }
            trail.add(text);
            if (w) QTest::mouseRelease(w, Qt::LeftButton, mods, p);
        } else if (kind < 78) {
            typeKey(step, w);
        } else if (kind < 88) {
            static const int deltas[] = {-240, -120, 120, 240};
            const int delta = pickOf(deltas);
            const Qt::KeyboardModifiers mods = pick(4) ? Qt::NoModifier : Qt::ControlModifier;
            trail.add(step + "wheel " + std::to_string(delta) + " " + name + At(p));
            QWheelEvent e(p, w->mapToGlobal(p), {}, {0, delta}, Qt::NoButton, mods, Qt::NoScrollPhase, false);
            QApplication::sendEvent(w, &e);
        } else {  // the close button of its title bar
            trail.add(step + "close " + Describe(AreaOf(w)) + " " + AreaOf(w)->windowTitle().toStdString());
            AreaOf(w)->close();
        }
    }

    // A key, or a word, to the widget when it takes the focus, else to what has the focus in its window.
    void typeKey(const std::string& step, QWidget* w) {
        QPointer<QWidget> to = w;
        if (w->focusPolicy() & Qt::ClickFocus) w->setFocus(Qt::MouseFocusReason);
        else if (QWidget* focus = w->window()->focusWidget()) to = focus;
        if (pick(4) == 0) {
            const QString& word = pickOf(Words);
            trail.add(step + "type " + word.toStdString() + " in " + Describe(to));
            for (QChar c : word)
                if (to) QTest::keyClick(to, c.toLatin1());
            return;
        }
        const QString& key = pickOf(Keys);
        trail.add(step + "key " + key.toStdString() + " in " + Describe(to));
        KeyClick(to, QKeySequence(key)[0]);
    }

    // An enabled entry of the main window's menus, as a click on it would run it.
    void menuCommand(const std::string& step) {
        std::vector<QAction*> entries;
        std::function<void(QMenu*)> collect = [&](QMenu* menu) {
            for (QAction* a : menu->actions())
                if (a->menu()) collect(a->menu());
                else if (!a->isSeparator() && a->isEnabled() && a->isVisible()) entries.push_back(a);
        };
        for (QAction* a : frame_->menuBar()->actions())
            if (a->menu()) collect(a->menu());
        if (entries.empty()) return;
        QAction* entry = pickOf(entries);
        trail.add(step + "menu " + entry->text().toStdString());
        QApplication::setActiveWindow(frame_.get());
        entry->trigger();
    }

    QObject context_;  // the turns asked for go with the monkey
    std::mt19937 random_;
    const int events_;
    MonkeyDesktop& desktop_;
    const std::string files_;
    std::string lastFolder_, failure_;
    std::unique_ptr<vorn> frame_;
    int done_ = 0, closing_ = 0, modalSteps_ = 0, modalLimit_ = 0;
    bool starting_ = false;  // the program starts; the turns its waits run do nothing
    QWidget* modal_ = nullptr;
};

// A long run may take longer than Qt Test gives a test function; the watchdog tells a hang.
const bool NoTestFunctionLimit =
    qEnvironmentVariableIsSet("QTEST_FUNCTION_TIMEOUT") || qputenv("QTEST_FUNCTION_TIMEOUT", "86400000");

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
            if (sig == SIGABRT || !sanitized)
                std::signal(sig, [](int s) {
                    trail.print();
                    std::signal(s, SIG_DFL);
                    std::raise(s);
                });
        QApplication::setQuitOnLastWindowClosed(false);  // as in the program: only its quit question ends it
        // Clicks on widgets that take no mouse are what a monkey does; Qt need not say so each time.
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
            if (!text.contains("not accepted by receiving widget")) std::fprintf(stderr, "%s\n", qPrintable(text));
            if (type == QtFatalMsg) std::abort();
        });
    }

    void randomUseEndsInNoCrashNoReportAndNoHang_data() {
        QTest::addColumn<unsigned>("seed");
        std::vector<unsigned> seeds;  // "7 9 100-120": seeds and ranges of seeds
        for (const QString& part :
             qEnvironmentVariable("TM_MONKEY_SEEDS").split(QRegularExpression("[ ,]+"), Qt::SkipEmptyParts))
            for (unsigned s = part.split('-')[0].toUInt(); s <= part.split('-').back().toUInt(); ++s)
                seeds.push_back(s);
        if (seeds.empty()) seeds.assign(std::begin(DefaultSeeds), std::end(DefaultSeeds));
        for (unsigned seed : seeds) QTest::addRow("seed %u", seed) << seed;
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
        std::thread watchdog([&] {
            long seen = -1;
            for (auto since = std::chrono::steady_clock::now(); running;) {
                std::this_thread::sleep_for(std::chrono::milliseconds(200));
                if (trail.steps != seen) seen = trail.steps, since = std::chrono::steady_clock::now();
                if (std::chrono::steady_clock::now() - since < HangLimit) continue;
                std::fprintf(stderr, "HANG: no step for %lld s\n", (long long)HangLimit.count());
                trail.print();
                std::_Exit(3);
            }
        });
        const std::string failure = Monkey(seed, events, desktop, program.folder.path()).run();
        running = false;
        watchdog.join();
        if (!failure.empty()) trail.print();
        QVERIFY2(failure.empty(), failure.c_str());
    }
};

QTEST_MAIN(MonkeyTest)
#include "MonkeyTest.moc"
