// The main window at work: the start and the quit, projects from the File menu, the parts list,
// the Edit menu on the focused control, imports, long operations that fail or are clicked into
// half-way, and no work lost: undo after a save and a merge, recovery after a kill.

#include <csignal>
#include <stdexcept>

#include "WindowTestKit.h"
#include "shell/JournalOps.h"
#include "shell/Startup.h"
#include "shell/ui/QtDesktop.h"
#include "shell/ui/stadiumsplash.h"
#include "shell/ui/vornloading.h"
#include "shell/ui/vornnewproj.h"
#include "support/Chunks3DS.h"

namespace {
// The real desktop, watched at every turn of the event pump of a long operation.
struct WatchedDesktop : QtDesktop {
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
    void run(const char* entry) { frame_->menuAction(entry)->trigger(); }
    void focus(QWidget* control) {
        frame_->activateWindow();
        control->setFocus(Qt::OtherFocusReason);
        QTRY_COMPARE(QApplication::focusWidget(), control);
    }
    // A stadium of 40 parts: its load pumps events.
    std::string bigStadium() {
        OIFFile doc = NewOIFFile();
        for (int p = 0; p < 40; ++p) doc = AddPart(TexturedQuad(100.0f + float(p)).Parts[0], doc);
        WriteFile(program_->folder.file("big.oif"), SaveOIF(doc));
        return program_->folder.file("big.oif");
    }
    void openFrame() {
        frame_ = std::make_unique<vorn>();
        QVERIFY(MakeActive(*frame_));
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

    void theSplashHandsOverAsConfiguredAndTheViewerQuestionsYesEndsTheProgram() {
        WriteConfig("Startup", "Maximise", "1");
        PreviewRefreshOn = false;
        stadiumsplash splash;
        splash.show();
        QTRY_VERIFY_WITH_TIMEOUT(splash.mainWindow() && splash.mainWindow()->isVisible(), 5000);
        QVERIFY(!splash.isVisible() && splash.mainWindow()->isMaximized() && PreviewRefreshOn);
        QCOMPARE(vorn::instance(), splash.mainWindow());
        QStatusTipEvent tip("Opens a project");  // a status tip does not cover the program's panel
        QCoreApplication::sendEvent(splash.mainWindow(), &tip);
        QVERIFY(splash.mainWindow()->statusBar()->currentMessage().isEmpty());
        WriteConfig("Startup", "Maximise", "0");
        WriteConfig("Terramason", "Starter", "1");
        desktop_->answers = {MessageAnswer::No, MessageAnswer::Yes};
        stadiumsplash plain;
        plain.Timer1Timer();
        QVERIFY(plain.mainWindow()->isVisible() && !plain.mainWindow()->isMaximized());
        QCOMPARE(desktop_->messages.size(), std::size_t(1));  // the viewer question, answered No
        WriteConfig("Terramason", "Starter", "1");
        stadiumsplash yes;
        yes.show();
        QCOMPARE(RunEventLoop([&] { yes.Timer1Timer(); }), 0);
        QCOMPARE(desktop_->pages, std::vector<std::string>{ViewerDownloadAddress});
        WriteConfig("Startup", "NewProj", "1");
        vorn w;
        QCOMPARE(OpenedModal([&] { RunStartup(w); }), QString("vornnewproj"));
    }

    void aRefusedQuitKeepsTheWindowsAndAConfirmedOneEndsTheProgram() {
        WriteConfig("Terramason", "OIFEditor", "1");
        vorn w;
        w.show();
        desktop_->answers = {MessageAnswer::No, MessageAnswer::No, MessageAnswer::Yes};
        QVERIFY(!w.close() && w.isVisible());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY2(w.mdiArea()->subWindowList().isEmpty(), "without a project nothing comes back");
        w.createnew(0, "Highbury");
        w.menuAction("E&xit")->trigger();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(w.isVisible() && w.selectobj()->isVisible() && vornoifform::existing()->isVisible());
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
        QVERIFY(!real.loadingWindow()->isVisible() && w.cursor().shape() == Qt::ArrowCursor);
    }

    // Which bases are refused is the catalogue's (ProjectTest); the window stays open for another.
    void theProjectWindowRefusesABaseAndKeepsTheNameAsDocumentText() {
        vorn w;
        w.show();
        const auto open = [&] { w.menuAction("&Open Project...")->trigger(); };
        QVERIFY(RunModal<vornnewproj>(open, [](vornnewproj* d) { QTest::mouseClick(d->cancelbut(), Qt::LeftButton); }));
        QVERIFY(CurrentProject.Name.empty() && !w.menuAction("&Save OIF")->isEnabled());
        WriteFile(program_->folder.file("temp/stad5.big"), {'B', 'I', 'G'});
        bool refusedKept = false;
        RunModal<vornnewproj>(open, [&](vornnewproj* d) {
            d->projectbox()->setText(QString::fromUtf8("Stade V\xC3\xA9lodrome"));
            d->stadiumbased()->setCurrentIndex(4);
            QTest::mouseClick(d->okbut(), Qt::LeftButton);
            refusedKept = d->isVisible() && desktop_->messages.size() == 1 && CurrentProject.Name.empty();
            d->stadiumbased()->setCurrentIndex(0);
            QTest::mouseClick(d->okbut(), Qt::LeftButton);
        });
        QVERIFY(refusedKept);
        QCOMPARE(w.windowTitle(), QString::fromUtf8("VORN Terramason - [design] - [Stade V\xC3\xA9lodrome]"));
        QCOMPARE(CurrentProject.Name, std::string("Stade V\xE9lodrome"));
        QVERIFY(!std::filesystem::exists(program_->folder.file("temp/stad5.big")));
        QVERIFY(w.menuAction("&Save OIF")->isEnabled() && w.selectobj()->isVisible());
        QVERIFY2(desktop_->commands.empty(), "no outside tool for an empty project");
        // Ctrl+N replaces the open project at once.
        OpenProjectOf(w, {"Clock End", "North Bank"});
        WriteFile(program_->folder.file("temp/Top.wrl"), {'#'});
        QVERIFY(MakeActive(w));
        SpyViews spy;
        QTest::keyClick(&w, Qt::Key_N, Qt::ControlModifier);
        QVERIFY(CurrentProject.OIF.Parts.empty() && desktop_->messages.size() == 1);
        QVERIFY(!std::filesystem::exists(program_->folder.file("temp/Top.wrl")));
        QCOMPARE(w.selectobj()->objectbox()->count(), 0);
        QCOMPARE(spy.calls, (std::vector<std::string>{"RefreshPartsList", "loadviews", "showselectobj"}));
    }

    // Its right button pops up Show All and Hide All; the rule of what Delete takes is CommandOpsTest's.
    void thePartsListsSelectionReloadsThePreviewsAndDeleteTakesItAfterYes() {
        openFrame();
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
        box->clearSelection();  // Ctrl+A reaches neither the list nor the disabled Select All
        focus(box);
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(list->selectedRows(), std::vector<bool>(4, false));
        box->item(0)->setSelected(true);
        box->item(2)->setSelected(true);
        desktop_->answers = {MessageAnswer::No, MessageAnswer::Yes};
        frame_->toolbarAction("Delete")->trigger();
        QCOMPARE(CurrentProject.OIF.Parts.size(), std::size_t(4));
        spy.calls.clear();
        run("Delete");
        QCOMPARE(desktop_->messages[1].text, std::string("Are you sure you want to delete the 2 selected parts?"));
        QCOMPARE(spy.calls, (std::vector<std::string>{"RefreshPartsList", "RebuildPreviews"}));
        QCOMPARE(box->count(), 2);
        QVERIFY(box->item(1)->text().startsWith("D") && box->item(1)->isSelected());
    }

    // EditUpdate's table is CommandOpsTest's; here the entries are set as the menu opens and the
    // commands reach the focused control of each kind.
    void theEditMenuWorksOnTheFocusedControl() {
        openFrame();
        auto* page = new QWidget;
        auto* line = new QLineEdit(QStringLiteral("North stand"), page);
        auto* combo = new QComboBox(page);
        auto* list = new QListWidget(page);
        auto* picture = new QLabel(page);
        auto* button = new QPushButton(QStringLiteral("Apply"), page);
        auto* layout = new QVBoxLayout(page);
        for (QWidget* c : std::initializer_list<QWidget*>{line, combo, list, picture, button}) layout->addWidget(c);
        combo->setEditable(true);
        combo->addItems({"tp00", "tp01"});
        list->addItems({"skcd", "tp03"});
        picture->setFocusPolicy(Qt::StrongFocus);
        frame_->mdiArea()->addSubWindow(page)->show();
        focus(line);
        line->setSelection(0, 5);
        run("Cu&t");
        QCOMPARE(desktop_->clipboard, std::string("North"));
        line->setCursorPosition(6);
        run("&Paste");
        QCOMPARE(line->text(), QString(" standNorth"));
        focus(combo);
        frame_->toolbarAction("Copy")->trigger();
        QCOMPARE(desktop_->clipboard, std::string("tp00"));
        focus(list);
        list->setCurrentRow(1);
        frame_->toolbarAction("Cut")->trigger();
        QCOMPARE(desktop_->clipboard, std::string("tp03"));
        frame_->toolbarAction("Paste")->trigger();
        QVERIFY(list->item(1)->text() == "tp03" && list->count() == 2);
        focus(picture);
        desktop_->SetClipboardImage(PngOf(Qt::green));
        run("&Paste");
        QCOMPARE(picture->pixmap().toImage().pixelColor(1, 1), QColor(Qt::green));
        run("&Copy");
        QImage copied;
        QVERIFY(copied.loadFromData(desktop_->clipboardImage.data(), int(desktop_->clipboardImage.size())));
        QCOMPARE(copied.size(), QSize(4, 3));
        focus(button);
        desktop_->SetClipboardText("kept");
        frame_->toolbarAction("Cut")->trigger();
        QCOMPARE(desktop_->clipboard, std::string("kept"));
        QMenu* edit = frame_->menuAction("&Edit")->menu();
        for (const auto& [control, enabled] : {std::pair<QWidget*, bool>{line, true}, {button, false}}) {
            focus(control);
            edit->popup(frame_->mapToGlobal(QPoint(10, 30)));
            QTRY_VERIFY(edit->isVisible());
            edit->hide();
            QVERIFY(frame_->menuAction("Cu&t")->isEnabled() == enabled &&
                    frame_->menuAction("&Paste")->isEnabled() == enabled);
        }
    }

    // How a model is read is Reader3DSTest's; the import reaches the list and the previews.
    void anImportReachesTheListAndTheViewsAndADamagedModelChangesNothing() {
        using namespace chunks3ds;
        WriteConfig("Terramason", "Previews", "1");
        OpenFrameWithProject(frame_);
        const Bytes3DS roof = File({Object("Roof", {Vertices({{0, 0, 4}, {2, 0, 4}, {2, 3, 4}}),
                                                    TexVerts({{0, 0}, {1, 0}, {1, 1}}), Faces({{0, 1, 2}})})});
        WriteFile(program_->folder.file("roof.3ds"), roof);
        WriteFile(program_->folder.file("cut.3ds"), Bytes3DS(roof.begin(), roof.end() - 5));
        SpyViews spy;
        desktop_->dialogAnswers = {program_->folder.file("cut.3ds"), program_->folder.file("roof.3ds")};
        run("&Import to OIF...");
        QVERIFY(listed() == 1 && spy.count("RebuildPreviews") == 0);
        QVERIFY(desktop_->messages.at(0).text.find("damaged") != std::string::npos);
        run("&Import to OIF...");
        QVERIFY(listed() == 2 && spy.count("RebuildPreviews") == 1);
        // (2, 3, 4) in 3DS axes is (200, 400, -300) in the game's, in the Top view.
        QVERIFY(ReadText(ViewFilePath("Top")).find("200 400 -300") != std::string::npos);
    }

    // A fault half-way is one box and the document and windows go on; a command clicked while an
    // operation pumps does not run.
    void aFaultOrAClickHalfWayLeavesTheDocumentAndWindowsGoingOn() {
        WriteConfig("Terramason", "Previews", "1");
        OpenFrameWithProject(frame_);
        const OIFFile before = CurrentProject.OIF;
        int pumps = 0;
        desktop_->onPump = [&] {
            if (++pumps == 1) throw std::runtime_error("The disk went away.");
            if (pumps == 2) run("&Import to OIF...");
        };
        desktop_->dialogAnswers = {bigStadium(), bigStadium(), bigStadium()};
        InstallDesktop(desktop_);  // the next operation pumps at its first chance
        run("&Import to OIF...");
        QCOMPARE(desktop_->messages.size(), std::size_t{1});
        QCOMPARE(desktop_->messages[0].text, std::string("Import to OIF failed.\r\n\r\nThe disk went away."));
        QVERIFY(CurrentProject.OIF == before && !desktop_->loadingShown && listed() == 1);
        for (int i = 0; i < 4; ++i) QVERIFY(CortonaViewer::existing(i) && CortonaViewer::existing(i)->isVisible());
        InstallDesktop(desktop_);
        run("&Import to OIF...");
        QVERIFY(pumps >= 2 && listed() == 41 && desktop_->messages.size() == 1);
        QCOMPARE(desktop_->dialogAnswers.size(), std::size_t{1});  // the click's import never asked
    }

    // Dropped files are imported into a new project; undo brings back what a save and a merge took.
    void undoBringsBackWhatADropSaveAndMergeTookAndAFieldKeepsItsOwn() {
        openFrame();
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
        const OIFFile imported = CurrentProject.OIF;
        desktop_->dialogAnswers = {program_->folder.file("saved.oif"), program_->folder.file("again.oif")};
        run("&Save OIF");
        run("Merge parts with same texture...");
        QCOMPARE(CurrentProject.OIF.Parts.size(), std::size_t{1});
        QCOMPARE(frame_->menuAction("&Undo")->text(), QString("&Undo Merge parts"));
        QTest::keyClick(frame_.get(), Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(CurrentProject.OIF.Parts == imported.Parts && listed() == 6);
        QCOMPARE(frame_->menuAction("&Redo")->text(), QString("&Redo Merge parts"));
        run("&Save OIF");
        QCOMPARE(LoadOIF(program_->folder.file("again.oif")).Parts, imported.Parts);
        QTest::keyClick(frame_.get(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QVERIFY(CurrentProject.OIF.Parts.size() == 1 && listed() == 1);
        // A typing run in a field is one step, and the field's Ctrl+Z is its own.
        run("&Undo");
        run("OIF Editor");
        QLineEdit* name = vornoifform::existing()->oifpartname();
        name->setFocus();
        name->selectAll();
        QTest::keyClicks(name, "Turf");
        QCOMPARE(CurrentProject.OIF.Parts[0].Header.Name.str().substr(0, 4), std::string("Turf"));
        QCOMPARE(frame_->menuAction("&Undo")->text(), QString("&Undo Part name"));
        QTest::keyClick(name, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(CurrentProject.OIF.Parts == imported.Parts && name->text() != QString("Turf"));
        run("&Undo");
        QVERIFY(CurrentProject.OIF.Parts.empty());
    }

    void aKilledEditorOffersItsStadiumAtTheNextStart() {
        QProcess editor;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("XDG_DATA_HOME", QString::fromStdString(program_->folder.path()));
        editor.setProcessEnvironment(env);
        editor.start(TM_EDITOR, {TM_SAMPLES "/stadium.oif"});
        QVERIFY(editor.waitForStarted());
        AppFolder = program_->folder.file("terramason");
        const auto journalled = [] {  // the journal of the session once it holds the import
            std::error_code ec;
            for (const auto& e : std::filesystem::directory_iterator(RecoveryFolder(), ec))
                if (e.path().extension() == ".tmj") {
                    const JournalParse j = ParseJournal(ReadFile(e.path().string()));
                    return j.entry && j.entry->Project.OIF.Parts.size() == 6;
                }
            return false;
        };
        QTRY_VERIFY_WITH_TIMEOUT(journalled(), 20000);
        ::kill(static_cast<pid_t>(editor.processId()), SIGKILL);
        QVERIFY(editor.waitForFinished());
        desktop_->answers = {MessageAnswer::Yes};
        frame_ = std::make_unique<vorn>();
        frame_->show();
        OfferRecovery(*frame_);
        QCOMPARE(desktop_->messages.size(), std::size_t{1});
        QVERIFY(desktop_->messages[0].text.find("\"stadium\"") != std::string::npos);
        QCOMPARE(CurrentProject.OIF.Parts, LoadOIF(TM_SAMPLES "/stadium.oif").Parts);
        QCOMPARE(listed(), 6);
        QCOMPARE(frame_->windowTitle(), QString("VORN Terramason - [design] - [stadium]"));
    }
};

QTEST_MAIN(MainWindowTest)
#include "MainWindowTest.moc"
