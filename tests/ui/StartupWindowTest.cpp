// The start-up and close of the editor, driven through the real windows with the scripted
// desktop answering the questions. config.ini lives in a scratch folder per test.
#include <QAction>
#include <QCursor>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPointer>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QtTest>

#include <memory>

#include "WindowTestKit.h"
#include "core/OIFOps.h"
#include "core/ProgramState.h"
#include "editors/ui/vornoifform.h"
#include "editors/ui/vornselectobj.h"
#include "shell/IniOps.h"
#include "shell/Startup.h"
#include "shell/ui/QtDesktop.h"
#include "shell/ui/stadiumsplash.h"
#include "shell/ui/vorn.h"
#include "shell/ui/vornloading.h"

namespace {

// A subwindow standing in for the working windows of a project.
QPointer<QWidget> AddChildWindow(vorn& w) {
    QPointer<QWidget> child = new QWidget;
    QMdiSubWindow* sub = w.mdiArea()->addSubWindow(child);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->show();
    return child;
}

// The real desktop, watched at every turn of the event pump, where a long operation hands the
// windows their time.
class WatchedDesktop : public QtDesktop {
public:
    struct Moment {
        bool loadingVisible;
        QString loadingText;
        Qt::CursorShape frameCursor;
    };
    std::vector<Moment> moments;

    void ProcessEvents() override {
        vornloading* l = loadingWindow();
        vorn* frame = vorn::instance();
        moments.push_back({l && l->isVisible(), l ? l->loadtext()->text() : QString(),
                           frame ? frame->cursor().shape() : Qt::BlankCursor});
        QtDesktop::ProcessEvents();
    }
};

}  // namespace

class StartupWindowTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    ScriptedDesktop* desktop_ = nullptr;

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        desktop_ = &program_->desktop;
    }
    void cleanup() { program_.reset(); }

    void splashShowsItsCaptionsAndHandsOverToVornWhenItsTimerFires() {
        stadiumsplash splash;
        splash.show();
        QCOMPARE(splash.findChild<QLabel*>("Label1")->text(), QString("Version 1.2"));
        QCOMPARE(splash.findChild<QLabel*>("Label2")->text(), QString("02.10.03"));
        QCOMPARE(splash.findChild<QLabel*>("Label3")->text(), QString("Build 1.2.4"));
        QVERIFY(splash.windowFlags() & Qt::FramelessWindowHint);
        QCOMPARE(splash.Timer1()->interval(), 2000);
        QVERIFY(splash.Timer1()->isSingleShot());
        QVERIFY(splash.Timer1()->isActive());
        QVERIFY(!splash.mainWindow());

        QTRY_VERIFY_WITH_TIMEOUT(splash.mainWindow() && splash.mainWindow()->isVisible(), 5000);
        QVERIFY(!splash.isVisible());
        QVERIFY(!splash.Timer1()->isActive());
        QCOMPARE(vorn::instance(), splash.mainWindow());
    }

    void maximiseKeyDecidesTheWindowState_data() {
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("maximised");
        QTest::newRow("1") << "1" << true;
        QTest::newRow("0") << "0" << false;
    }
    void maximiseKeyDecidesTheWindowState() {
        QFETCH(QString, value);
        QFETCH(bool, maximised);
        WriteConfig("Startup", "Maximise", value.toStdString());
        stadiumsplash splash;
        splash.Timer1Timer();
        QVERIFY(splash.mainWindow()->isVisible());
        QCOMPARE(splash.mainWindow()->isMaximized(), maximised);
    }

    void viewerQuestionAnsweredNoIsAskedOnceAndStartUpGoesOn() {
        WriteConfig("Terramason", "Starter", "1");
        desktop_->answers = {MessageAnswer::No};
        {
            stadiumsplash splash;
            splash.Timer1Timer();
            QVERIFY(splash.mainWindow()->isVisible());
        }
        // The question and its answers are Startup's (StartupTest); the splash asks it once.
        QCOMPARE(desktop_->messages.size(), std::size_t(1));
        QCOMPARE(ReadConfig("Terramason", "Starter"), std::string("0"));

        stadiumsplash again;
        again.Timer1Timer();
        QCOMPARE(desktop_->messages.size(), std::size_t(1));
    }

    void viewerQuestionAnsweredYesOpensTheDownloadPageAndEndsTheProgram() {
        WriteConfig("Terramason", "Starter", "1");
        desktop_->answers = {MessageAnswer::Yes};
        stadiumsplash splash;
        splash.show();
        QCOMPARE(RunEventLoop([&] { splash.Timer1Timer(); }), 0);
        QCOMPARE(desktop_->pages, std::vector<std::string>{ViewerDownloadAddress});
        QCOMPARE(ReadConfig("Terramason", "Starter"), std::string("0"));
    }

    void loadOfVornTurnsPreviewRefreshOnAndBuildsTheFrame() {
        PreviewRefreshOn = false;
        vorn w;
        QVERIFY(PreviewRefreshOn);
        QVERIFY(w.findChild<QToolBar*>("Toolbar1"));
        QCOMPARE(w.statusBar()->objectName(), QString("StatusBar1"));
        // The menus and toolbar have a test of their own (MainMenuTest).
        QVERIFY(w.menuAction("E&xit"));
    }

    void statusPanelHoldsTheProgramNameInAThirdOfTheBar() {
        vorn w;
        w.resize(900, 600);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QLabel* panel = w.commentline();
        QCOMPARE(panel->text(), QString("VORN Terramason v1.0"));
        QCOMPARE(w.statusBar()->findChildren<QLabel*>().size(), 1);
        QTRY_COMPARE(panel->width(), w.statusBar()->width() / 3);

        QVERIFY(panel->x() < panel->width());  // panel 1: the left end of the bar

        w.resize(1230, 600);
        QTRY_COMPARE(w.statusBar()->width(), w.width());
        QTRY_COMPARE(panel->width(), w.statusBar()->width() / 3);

        // A menu entry's status tip must not cover the panel.
        QStatusTipEvent tip("Opens a project");
        QCoreApplication::sendEvent(&w, &tip);
        QVERIFY(w.statusBar()->currentMessage().isEmpty());
        QVERIFY(panel->isVisible());
    }

    void refusedQuitKeepsVornOpenAndCreatesNoChildWithoutProject_data() {
        QTest::addColumn<bool>("throughMenu");
        QTest::newRow("close box") << false;
        QTest::newRow("File, Exit") << true;
    }
    void refusedQuitKeepsVornOpenAndCreatesNoChildWithoutProject() {
        QFETCH(bool, throughMenu);
        vorn w;
        w.show();
        QPointer<QWidget> child = AddChildWindow(w);
        desktop_->answers = {MessageAnswer::No};

        if (throughMenu) w.menuAction("E&xit")->trigger();
        else QVERIFY(!w.close());

        QCOMPARE(desktop_->messages.size(), std::size_t(1));
        QCOMPARE(desktop_->messages[0].text, std::string("Are you sure you want to quit VORN Terramason?   "));
        QVERIFY(w.isVisible());
        // The children went with the close; with no project nothing brings them back.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(child.isNull());
        QVERIFY(w.mdiArea()->subWindowList().isEmpty());
    }

    void refusedQuitWithAProjectBringsBackItsWindowsWithTheEditor() {
        vorn w;
        w.show();
        WriteConfig("Terramason", "OIFEditor", "1");
        w.createnew(0, "Highbury");
        desktop_->answers = {MessageAnswer::No};
        QVERIFY(!w.close());
        QVERIFY(w.isVisible());
        QCOMPARE(desktop_->messages.size(), std::size_t(1));
        QCOMPARE(w.windowTitle(), QString("VORN Terramason - [design] - [Highbury]"));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(w.selectobj() && w.selectobj()->isVisible());
        QVERIFY(vornoifform::existing() && vornoifform::existing()->isVisible());
        QVERIFY(w.menuAction("OIF Editor")->isChecked());
    }

    void confirmedQuitEndsTheEventLoop() {
        vorn w;
        w.show();
        desktop_->answers = {MessageAnswer::Yes};
        QCOMPARE(RunEventLoop([&] { w.close(); }), 0);
        QVERIFY(!w.isVisible());
        QCOMPARE(desktop_->messages.size(), std::size_t(1));
    }

    void progressWindowShowsItsTextWithTheBusyPointer() {
        vorn w;
        w.show();
        vornloading loading(&w);
        QCOMPARE(loading.windowTitle(), QString("Loading"));
        QCOMPARE(loading.loadtext()->text(), QString("Loading ..."));
        QVERIFY(loading.windowFlags() & Qt::Tool);

        loading.showLoading("Creating crowds...");
        QVERIFY(loading.isVisible());
        QCOMPARE(loading.loadtext()->text(), QString("Creating crowds..."));
        QCOMPARE(loading.cursor().shape(), Qt::WaitCursor);
        QCOMPARE(w.cursor().shape(), Qt::WaitCursor);
        QVERIFY(!loading.isModal());

        loading.hideLoading();
        QVERIFY(!loading.isVisible());
        QCOMPARE(loading.cursor().shape(), Qt::ArrowCursor);
        QCOMPARE(w.cursor().shape(), Qt::ArrowCursor);
    }

    void loadOIFShowsTheProgressWindowWhileItReads() {
        const std::string path = program_->folder.file("small.oif");
        OIFFile two = NamedParts({"one", "two"});
        WriteFile(path, EncodeOIF(two));

        vorn w;
        w.show();
        WatchedDesktop real;
        Desktop* scripted = InstallDesktop(&real);
        bool ok = false;
        const OIFFile doc = LoadOIF(path, &ok);
        InstallDesktop(scripted);

        QVERIFY(ok);
        QCOMPARE(doc.Parts.size(), std::size_t(2));
        QVERIFY(!real.moments.empty());
        for (const WatchedDesktop::Moment& m : real.moments) {
            QVERIFY(m.loadingVisible);
            QCOMPARE(m.loadingText, QString("Loading OIF file..."));
            QCOMPARE(m.frameCursor, Qt::WaitCursor);
        }
        QVERIFY(real.loadingWindow() && !real.loadingWindow()->isVisible());
        QCOMPARE(w.cursor().shape(), Qt::ArrowCursor);
    }
};

QTEST_MAIN(StartupWindowTest)
#include "StartupWindowTest.moc"
