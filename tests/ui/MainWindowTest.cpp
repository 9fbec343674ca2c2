// The main window at work: the start and the quit, projects from the File menu, the parts list,
// the Edit menu on the focused control, imports, and long operations that fail or are clicked
// into half-way.
#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMimeData>
#include <QScreen>
#include <QStatusBar>
#include <QTextEdit>
#include <QVBoxLayout>
#include <QtTest>

#include <filesystem>
#include <stdexcept>
#include <utility>

#include "WindowTestKit.h"
#include "core/OIFOps.h"
#include "editors/ui/vornoifform.h"
#include "editors/ui/vornselectobj.h"
#include "preview/PreviewViewOps.h"
#include "preview/ui/CortonaViewer.h"
#include "shell/IniOps.h"
#include "shell/Startup.h"
#include "shell/ui/QtDesktop.h"
#include "shell/ui/stadiumsplash.h"
#include "shell/ui/vornloading.h"
#include "shell/ui/vornnewproj.h"
#include "support/Chunks3DS.h"

namespace {

// A working window inside the frame with one control of each kind the Edit menu knows.
struct Controls {
    QLineEdit* line = new QLineEdit(QStringLiteral("North stand"));
    QTextEdit* text = new QTextEdit(QStringLiteral("first"));
    QComboBox* combo = new QComboBox;
    QListWidget* list = new QListWidget;
    QLabel* picture = new QLabel;
    QPushButton* button = new QPushButton(QStringLiteral("Apply"));
    explicit Controls(vorn& w) {
        auto* page = new QWidget;
        auto* layout = new QVBoxLayout(page);
        combo->setEditable(true);
        combo->addItems({QStringLiteral("tp00"), QStringLiteral("tp01")});
        list->addItems({QStringLiteral("skcd"), QStringLiteral("tp03")});
        picture->setFocusPolicy(Qt::StrongFocus);
        QPixmap red(8, 8);
        red.fill(Qt::red);
        picture->setPixmap(red);
        for (QWidget* c : std::initializer_list<QWidget*>{line, text, combo, list, picture, button})
            layout->addWidget(c);
        w.mdiArea()->addSubWindow(page)->show();
    }
};

void Focus(vorn& w, QWidget* control) {
    w.activateWindow();
    control->setFocus(Qt::OtherFocusReason);
    QTRY_COMPARE(QApplication::focusWidget(), control);
}

// The real desktop, watched at every turn of the event pump of a long operation.
class WatchedDesktop : public QtDesktop {
public:
    std::vector<QString> moments;  // the loading text, or "-" with the window hidden or no busy pointer
    void ProcessEvents() override {
        vornloading* l = loadingWindow();
        const bool busy = l && l->isVisible() && vorn::instance()->cursor().shape() == Qt::WaitCursor;
        moments.push_back(busy ? l->loadtext()->text() : QString("-"));
        QtDesktop::ProcessEvents();
    }
};

}  // namespace

class MainWindowTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    ScriptedDesktop* desktop_ = nullptr;
    std::unique_ptr<vorn> frame_;

    int listed() { return frame_->selectobj()->objectbox()->count(); }
    // A stadium of 40 parts: its load pumps events.
    std::string bigStadium() {
        OIFFile doc = NewOIFFile();
        for (int p = 0; p < 40; ++p) doc = AddPart(TexturedQuad(100.0f + float(p)).Parts[0], doc);
        WriteFile(program_->folder.file("big.oif"), SaveOIF(doc));
        return program_->folder.file("big.oif");
    }

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        desktop_ = &program_->desktop;
    }
    void cleanup() {
        frame_.reset();
        program_.reset();
    }

    void theSplashHandsOverToTheMainWindowAsConfigured() {
        WriteConfig("Startup", "Maximise", "1");
        PreviewRefreshOn = false;
        stadiumsplash splash;
        splash.show();
        QTRY_VERIFY_WITH_TIMEOUT(splash.mainWindow() && splash.mainWindow()->isVisible(), 5000);
        QVERIFY(!splash.isVisible() && splash.mainWindow()->isMaximized() && PreviewRefreshOn);
        QCOMPARE(vorn::instance(), splash.mainWindow());
        // A menu entry's status tip does not cover the program's panel.
        QStatusTipEvent tip("Opens a project");
        QCoreApplication::sendEvent(splash.mainWindow(), &tip);
        QVERIFY(splash.mainWindow()->statusBar()->currentMessage().isEmpty());
        WriteConfig("Startup", "Maximise", "0");
        WriteConfig("Terramason", "Starter", "1");
        desktop_->answers = {MessageAnswer::No};
        stadiumsplash plain;
        plain.Timer1Timer();
        QVERIFY(plain.mainWindow()->isVisible() && !plain.mainWindow()->isMaximized());
        QCOMPARE(desktop_->messages.size(), std::size_t(1));  // the viewer question, answered No
    }

    void theViewerQuestionAnsweredYesOpensTheDownloadPageAndEndsTheProgram() {
        WriteConfig("Terramason", "Starter", "1");
        desktop_->answers = {MessageAnswer::Yes};
        stadiumsplash splash;
        splash.show();
        QCOMPARE(RunEventLoop([&] { splash.Timer1Timer(); }), 0);
        QCOMPARE(desktop_->pages, std::vector<std::string>{ViewerDownloadAddress});
    }

    void theNewProjectKeyAtStartOpensTheProjectWindow() {
        WriteConfig("Startup", "NewProj", "1");
        vorn w;
        QCOMPARE(OpenedModal([&] { RunStartup(w); }), QString("vornnewproj"));
        QVERIFY(CurrentProject.Name.empty());
    }

    void aRefusedQuitKeepsTheWindowsAndAConfirmedOneEndsTheProgram() {
        WriteConfig("Terramason", "OIFEditor", "1");
        vorn w;
        w.show();
        desktop_->answers = {MessageAnswer::No, MessageAnswer::No, MessageAnswer::Yes};
        QVERIFY(!w.close());
        QVERIFY(w.isVisible());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY2(w.mdiArea()->subWindowList().isEmpty(), "without a project nothing comes back");
        w.createnew(0, "Highbury");
        w.menuAction("E&xit")->trigger();
        QVERIFY(w.isVisible());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(w.selectobj() && w.selectobj()->isVisible());
        QVERIFY(vornoifform::existing() && vornoifform::existing()->isVisible());
        QVERIFY(w.menuAction("OIF Editor")->isChecked());
        QCOMPARE(RunEventLoop([&] { w.close(); }), 0);
        QVERIFY(!w.isVisible());
        QCOMPARE(desktop_->messages.size(), std::size_t(3));
    }

    // The test screen is too narrow for the previews and the editor side by side: the frame takes
    // the screen's width and the editor its right edge, leaving the Top and Back previews whole.
    void theEditorWidensTheFrameAndKeepsOffThePreviewsItCan() {
        WriteConfig("Terramason", "OIFEditor", "1");
        vorn w;
        w.ShowFrame();
        const int before = w.width();
        w.createnew(0, "Highbury");
        QWidget* editor = vornoifform::existing()->parentWidget();
        QTRY_COMPARE(w.width(), w.screen()->availableGeometry().width());
        QVERIFY(w.width() > before);
        QTRY_COMPARE(editor->geometry().right(), w.mdiArea()->width() - 1);
        int leftColumn = w.mdiArea()->width();
        for (const PixelRect& r : PreviewWindowLayout()) leftColumn = std::min(leftColumn, r.Left + r.Width);
        QVERIFY(editor->x() >= leftColumn);
    }

    void loadingAFileShowsTheProgressWindowWithTheBusyPointer() {
        OIFFile two = NamedParts({"one", "two"});
        WriteFile(program_->folder.file("small.oif"), EncodeOIF(two));
        vorn w;
        w.show();
        WatchedDesktop real;
        Desktop* scripted = InstallDesktop(&real);
        const OIFFile doc = LoadOIF(program_->folder.file("small.oif"));
        InstallDesktop(scripted);
        QCOMPARE(doc.Parts.size(), std::size_t(2));
        QVERIFY(!real.moments.empty());
        for (const QString& m : real.moments) QCOMPARE(m, QString("Loading OIF file..."));
        QVERIFY(!real.loadingWindow()->isVisible());
        QCOMPARE(w.cursor().shape(), Qt::ArrowCursor);
    }

    // Which bases are refused is the catalogue's (ProjectTest); the window stays open for another.
    void theProjectWindowRefusesABaseAndKeepsTheNameAsDocumentText() {
        vorn w;
        w.show();
        WhenModalShown<vornnewproj>([](vornnewproj* d) { QTest::mouseClick(d->cancelbut(), Qt::LeftButton); });
        w.menuAction("&Open Project...")->trigger();
        QVERIFY(CurrentProject.Name.empty() && !w.menuAction("&Save OIF")->isEnabled());
        WriteFile(program_->folder.file("temp/stad5.big"), {'B', 'I', 'G'});
        bool refusedKept = false;
        WhenModalShown<vornnewproj>([&](vornnewproj* d) {
            d->projectbox()->setText(QString::fromUtf8("Stade V\xC3\xA9lodrome"));
            d->stadiumbased()->setCurrentIndex(4);
            QTest::mouseClick(d->okbut(), Qt::LeftButton);
            refusedKept = d->isVisible() && desktop_->messages.size() == 1 && CurrentProject.Name.empty();
            d->stadiumbased()->setCurrentIndex(0);
            QTest::mouseClick(d->okbut(), Qt::LeftButton);
        });
        w.menuAction("&Open Project...")->trigger();
        QVERIFY(refusedKept);
        QCOMPARE(CurrentProject.Name, std::string("Stade V\xE9lodrome"));
        QCOMPARE(w.windowTitle(), QString::fromUtf8("VORN Terramason - [design] - [Stade V\xC3\xA9lodrome]"));
        QVERIFY(!std::filesystem::exists(program_->folder.file("temp/stad5.big")));
        QVERIFY(w.menuAction("&Save OIF")->isEnabled() && w.selectobj()->isVisible());
        QVERIFY2(desktop_->commands.empty(), "no outside tool for an empty project");
    }

    void newProjectReplacesAnOpenProjectAtOnce() {
        vorn w;
        QVERIFY(MakeActive(w));
        OpenProjectOf(w, {"Clock End", "North Bank"});
        WriteFile(program_->folder.file("temp/Top.wrl"), {'#'});
        SpyViews spy;
        QTest::keyClick(&w, Qt::Key_N, Qt::ControlModifier);
        QVERIFY(CurrentProject.OIF.Parts.empty() && desktop_->messages.empty());
        QVERIFY(!std::filesystem::exists(program_->folder.file("temp/Top.wrl")));
        QCOMPARE(w.selectobj()->objectbox()->count(), 0);
        QCOMPARE(spy.calls, (std::vector<std::string>{"RefreshPartsList", "loadviews", "showselectobj"}));
    }

    void thePartsListShowsThePartsAndItsSelectionReloadsThePreviews() {
        frame_ = std::make_unique<vorn>();
        QVERIFY(MakeActive(*frame_));
        OpenProjectOf(*frame_, {"North stand", "Caf\xE9 roof", "C", "D"});
        vornselectobj* list = frame_->selectobj();
        QVERIFY(QTest::qWaitForWindowExposed(list));
        QListWidget* box = list->objectbox();
        QCOMPARE(box->item(1)->text().trimmed(), QString::fromUtf8("Caf\xC3\xA9 roof"));
        QCOMPARE(list->selectedRows(), std::vector<bool>(4, true));
        SpyViews spy;
        box->item(1)->setSelected(false);
        QCOMPARE(spy.count("ReloadPreviews"), 1);
        QCOMPARE(TheViews().SelectedParts(), (std::vector<bool>{true, false, true, true}));
        list->ListReady = false;
        box->item(0)->setSelected(false);
        QCOMPARE(spy.count("ReloadPreviews"), 1);
        list->ListReady = true;

        // The right button selects nothing and its release pops up Show All and Hide All.
        const QPoint onRow = box->visualItemRect(box->item(2)).center();
        QTest::mousePress(box->viewport(), Qt::RightButton, {}, onRow);
        QCOMPARE(list->selectedRows(), (std::vector<bool>{false, false, true, true}));
        QTest::mouseRelease(box->viewport(), Qt::RightButton, {}, onRow);
        QTRY_VERIFY(frame_->objselect()->isVisible());
        frame_->objselect()->actions()[1]->trigger();
        frame_->objselect()->hide();
        QCOMPARE(list->selectedRows(), std::vector<bool>(4, false));
        QCOMPARE(spy.count("ReloadPreviews"), 2);  // one reload for the whole change
        frame_->objselect()->actions()[0]->trigger();
        QCOMPARE(list->selectedRows(), std::vector<bool>(4, true));
        // Ctrl+A reaches neither the list nor the disabled Select All.
        box->clearSelection();
        Focus(*frame_, box);
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(list->selectedRows(), std::vector<bool>(4, false));
    }

    // The question and the rule of what goes are CommandOpsTest's; here menu and toolbar reach it.
    void deleteRemovesTheSelectedPartsAfterYes() {
        vorn w;
        w.show();
        OpenProjectOf(w, {"North stand", "Roof", "South stand"});
        QListWidget* box = w.selectobj()->objectbox();
        box->item(1)->setSelected(false);
        desktop_->answers = {MessageAnswer::No, MessageAnswer::Yes};
        w.toolbarAction("Delete")->trigger();
        QCOMPARE(CurrentProject.OIF.Parts.size(), std::size_t(3));
        SpyViews spy;
        w.menuAction("Delete")->trigger();
        QCOMPARE(desktop_->messages[1].text, std::string("Are you sure you want to delete the 2 selected parts?"));
        QCOMPARE(CurrentProject.OIF.Parts.size(), std::size_t(1));
        QCOMPARE(spy.calls, (std::vector<std::string>{"RefreshPartsList", "RebuildPreviews"}));
        QCOMPARE(box->count(), 1);
        QVERIFY(box->item(0)->text().startsWith("Roof") && box->item(0)->isSelected());
    }

    // EditUpdate's table is CommandOpsTest's; here the entries are set as the menu opens.
    void theEditEntriesFollowTheFocusedControl() {
        vorn w;
        QVERIFY(MakeActive(w));
        Controls c(w);
        desktop_->SetClipboardText("tp05");
        QMenu* edit = w.menuAction("&Edit")->menu();
        for (const auto& [control, enabled] : {std::pair<QWidget*, bool>{c.line, true}, {c.button, false}}) {
            Focus(w, control);
            edit->popup(w.mapToGlobal(QPoint(10, 30)));
            QTRY_VERIFY(edit->isVisible());
            edit->hide();
            QVERIFY(w.menuAction("Cu&t")->isEnabled() == enabled && w.menuAction("&Paste")->isEnabled() == enabled);
        }
    }

    void clipboardCommandsWorkOnTheFocusedControlOnly() {
        vorn w;
        QVERIFY(MakeActive(w));
        Controls c(w);
        Focus(w, c.line);
        c.line->setSelection(0, 5);
        w.menuAction("Cu&t")->trigger();
        QCOMPARE(desktop_->clipboard, std::string("North"));
        c.line->setCursorPosition(6);
        w.menuAction("&Paste")->trigger();
        QCOMPARE(c.line->text(), QString(" standNorth"));
        Focus(w, c.combo);
        w.toolbarAction("Copy")->trigger();
        QCOMPARE(desktop_->clipboard, std::string("tp00"));
        Focus(w, c.list);
        c.list->setCurrentRow(1);
        w.toolbarAction("Cut")->trigger();
        QCOMPARE(desktop_->clipboard, std::string("tp03"));
        w.toolbarAction("Paste")->trigger();
        QCOMPARE(c.list->item(1)->text(), QString("tp03"));
        QCOMPARE(c.list->count(), 2);
        Focus(w, c.picture);
        desktop_->SetClipboardImage(PngOf(Qt::green));
        w.menuAction("&Paste")->trigger();
        QCOMPARE(c.picture->pixmap().toImage().pixelColor(1, 1), QColor(Qt::green));
        w.menuAction("&Copy")->trigger();
        QImage copied;
        QVERIFY(copied.loadFromData(desktop_->clipboardImage.data(), int(desktop_->clipboardImage.size())));
        QCOMPARE(copied.size(), QSize(4, 3));
        Focus(w, c.button);
        desktop_->SetClipboardText("kept");
        w.toolbarAction("Cut")->trigger();
        QCOMPARE(desktop_->clipboard, std::string("kept"));
    }

    // How a model is read is Reader3DSTest's; the command reaches the list and the previews.
    void anImportedModelBecomesAPartAndADamagedOneChangesNothing() {
        using namespace chunks3ds;
        WriteConfig("Terramason", "Previews", "1");
        OpenFrameWithProject(frame_);
        const Bytes3DS roof = File({Object("Roof", {Vertices({{0, 0, 4}, {2, 0, 4}, {2, 3, 4}}),
                                                    TexVerts({{0, 0}, {1, 0}, {1, 1}}), Faces({{0, 1, 2}})})});
        Bytes3DS cut = roof;
        cut.resize(cut.size() - 5);
        WriteFile(program_->folder.file("roof.3ds"), roof);
        WriteFile(program_->folder.file("cut.3ds"), cut);
        SpyViews spy;
        desktop_->dialogAnswers = {program_->folder.file("cut.3ds"), program_->folder.file("roof.3ds")};
        frame_->menuAction("&Import to OIF...")->trigger();
        QCOMPARE(listed(), 1);
        QCOMPARE(spy.count("RebuildPreviews"), 0);
        QVERIFY(desktop_->messages.at(0).text.find("damaged") != std::string::npos);
        frame_->menuAction("&Import to OIF...")->trigger();
        QCOMPARE(listed(), 2);
        QCOMPARE(spy.count("RebuildPreviews"), 1);
        // (2, 3, 4) in 3DS axes is (200, 400, -300) in the game's, in the Top view.
        QVERIFY(ReadText(ViewFilePath("Top")).find("200 400 -300") != std::string::npos);
        QCOMPARE(desktop_->messages.size(), std::size_t(1));
    }

    void droppedFilesAreImportedIntoANewProject() {
        frame_ = std::make_unique<vorn>();
        frame_->show();
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(TM_SAMPLES "/stadium.oif"), QUrl::fromLocalFile(TM_SAMPLES "/gone.oif")});
        QDragEnterEvent enter(QPoint(200, 200), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(frame_.get(), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop(QPointF(200, 200), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(frame_.get(), &drop);
        QTRY_COMPARE(desktop_->messages.size(), std::size_t{1});
        QVERIFY(desktop_->messages[0].text.find("gone.oif") != std::string::npos);
        QCOMPARE(frame_->windowTitle(), QString("VORN Terramason - [design] - [stadium]"));
        QCOMPARE(listed(), 6);
    }

    void aFaultHalfWayIsOneBoxAndTheDocumentAndWindowsGoOn() {
        WriteConfig("Terramason", "Previews", "1");
        OpenFrameWithProject(frame_);
        const OIFFile before = CurrentProject.OIF;
        int pumps = 0;
        desktop_->onPump = [&] {
            if (++pumps == 1) throw std::runtime_error("The disk went away.");
        };
        desktop_->dialogAnswers = {bigStadium(), bigStadium()};
        InstallDesktop(desktop_);  // the next operation pumps at its first chance
        frame_->menuAction("&Import to OIF...")->trigger();
        QCOMPARE(desktop_->messages.size(), std::size_t{1});
        QCOMPARE(desktop_->messages[0].text, std::string("Import to OIF failed.\r\n\r\nThe disk went away."));
        QVERIFY(CurrentProject.OIF == before && !desktop_->loadingShown);
        QCOMPARE(listed(), 1);
        for (int i = 0; i < 4; ++i) QVERIFY(CortonaViewer::existing(i) && CortonaViewer::existing(i)->isVisible());
        desktop_->onPump = nullptr;
        frame_->menuAction("&Import to OIF...")->trigger();
        QCOMPARE(listed(), 41);
    }

    void aCommandClickedWhileAnOperationPumpsDoesNotRun() {
        OpenFrameWithProject(frame_);
        desktop_->dialogAnswers = {bigStadium(), bigStadium()};
        bool clicked = false;
        desktop_->onPump = [&] {
            if (!std::exchange(clicked, true)) frame_->menuAction("&Import to OIF...")->trigger();
        };
        InstallDesktop(desktop_);
        frame_->menuAction("&Import to OIF...")->trigger();
        QVERIFY(clicked);
        QCOMPARE(CurrentProject.OIF.Header.PartCount, 41);
        QCOMPARE(desktop_->dialogAnswers.size(), std::size_t{1});  // the second never asked
        QVERIFY(desktop_->messages.empty());
    }
};

QTEST_MAIN(MainWindowTest)
#include "MainWindowTest.moc"
