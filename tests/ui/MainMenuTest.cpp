// The menu bar and toolbar of the main window: every entry with its caption, place, key and
// state before and after the first project, and the commands that need no other window.
#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QToolBar>
#include <QtTest>

#include <filesystem>
#include <memory>

#include "WindowTestKit.h"
#include "shell/HelpOps.h"
#include "shell/IniOps.h"
#include "shell/Processes.h"
#include "shell/ToolsOps.h"
#include "shell/mdlOIFToolAuto.h"
#include "shell/ui/vorn.h"
#include "shell/ui/vornabout.h"

namespace {

// A menu of the bar, or a submenu ("&View|Current VRML Source"), by its captions.
QMenu* MenuAt(vorn& w, const QString& path) {
    const QStringList names = path.split(QLatin1Char('|'));
    QAction* top = w.menuAction(names[0]);
    QMenu* menu = top ? top->menu() : nullptr;
    if (menu && names.size() > 1) {
        QAction* sub = w.menuAction(names[1]);
        menu = sub ? sub->menu() : nullptr;
    }
    return menu;
}

// Columns of the menu table: where the entry is, what it shows, and its state.
enum Flag { Visible = 1, EnabledAtStart = 2, EnabledWithProject = 4, Checkable = 8, CheckedAtStart = 16 };
constexpr int On = Visible | EnabledAtStart | EnabledWithProject;
constexpr int Project = Visible | EnabledWithProject;
constexpr int Off = Visible;

}  // namespace

class MainMenuTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    ScriptedDesktop* desktop_ = nullptr;
    const ScratchFolder* folder_ = nullptr;

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        desktop_ = &program_->desktop;
        folder_ = &program_->folder;
        // As on a first run: a new project opens the OIF Editor, and the entry's tick follows it.
        WriteConfig("Terramason", "OIFEditor", "1");
    }
    void cleanup() { program_.reset(); }

    void menuBarHoldsTheSixMenusInOrder() {
        vorn w;
        QStringList captions;
        for (QAction* a : w.menuBar()->actions()) captions << a->text();
        QCOMPARE(captions, QStringList({"&File", "&Edit", "&View", "&Project", "&Tools", "&Help"}));
    }

    void everyEntryHasItsCaptionPlaceKeyAndState_data() {
        QTest::addColumn<QString>("menu");
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("caption");  // "-" for a separator
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("flags");
        auto row = [](const char* menu, int index, const char* caption, const char* key, int flags) {
            QTest::addRow("%s %d %s", menu, index, caption) << menu << index << caption << key << flags;
        };
        row("&File", 0, "&New Project", "Ctrl+N", On);
        row("&File", 1, "&Open Project...", "Ctrl+O", On);
        row("&File", 2, "-", "", On);
        row("&File", 3, "&Import to OIF...", "", Project);
        row("&File", 4, "&Save OIF", "Ctrl+S", Project);
        row("&File", 5, "-", "", 0);
        row("&File", 6, "Make stadium.big...", "", 0);
        row("&File", 7, "-", "", On);
        row("&File", 8, "E&xit", "Ctrl+Q", On);

        // Undo and Redo come before the table's entries, which keep their order.
        row("&Edit", 0, "&Undo", "Ctrl+Z", Off);
        row("&Edit", 1, "&Redo", "Ctrl+Y", Off);
        row("&Edit", 2, "-", "", On);
        row("&Edit", 3, "Cu&t", "Ctrl+X", On);
        row("&Edit", 4, "&Copy", "Ctrl+C", On);
        row("&Edit", 5, "&Paste", "Ctrl+V", On);
        row("&Edit", 6, "Delete", "", On);
        row("&Edit", 7, "-", "", On);
        row("&Edit", 8, "&Hide All", "", Off);
        row("&Edit", 9, "&Select All", "Ctrl+A", Off);

        // "Stadium Previews" is enabled by config.ini only; this one has none.
        row("&View", 0, "Stadium Previews", "", Visible | Checkable | CheckedAtStart);
        row("&View", 1, "Object Browser", "", Visible | Checkable | CheckedAtStart);
        row("&View", 2, "-", "", On);
        row("&View", 3, "OIF Editor", "", Project | Checkable | CheckedAtStart);
        row("&View", 4, "-", "", On);
        row("&View", 5, "Status &Bar", "", On | Checkable | CheckedAtStart);
        row("&View", 6, "-", "", On);
        row("&View", 7, "Refresh", "F5", Project);
        row("&View", 8, "-", "", On);
        row("&View", 9, "Current VRML Source", "", Project);
        row("&View|Current VRML Source", 0, "Top", "", On);
        row("&View|Current VRML Source", 1, "Perspective", "", On);
        row("&View|Current VRML Source", 2, "Back", "", On);
        row("&View|Current VRML Source", 3, "Right", "", On);

        row("&Project", 0, "Import Crowds...", "", Project);
        row("&Project", 1, "Import Adboards...", "", Project);
        row("&Project", 2, "Import Banners...", "", Project);
        row("&Project", 3, "-", "", On);
        row("&Project", 4, "Merge parts with same texture...", "", Project);
        row("&Project", 5, "-", "", On);
        row("&Project", 6, "Import Textures for Previews...", "", Project);

        row("&Tools", 0, "Stadium Importer", "", Project);
        row("&Tools", 1, "Crowd Building Wizard", "", Project);
        row("&Tools", 2, "Stadium Lighting Wizard", "", Project);
        row("&Tools", 3, "Stadium Transformation Wizard", "", Project);
        row("&Tools", 4, "-", "", On);
        // Nothing is installed on the test's machine.
        row("&Tools", 5, "OEdit", "", Off);
        row("&Tools", 6, "OIF Tool", "", Off);
        row("&Tools", 7, "-", "", On);
        row("&Tools", 8, "ZModeler", "", Off);
        row("&Tools", 9, "Rhinoceros 3D", "", Off);
        row("&Tools", 10, "-", "", On);
        row("&Tools", 11, "Rhino3D Tools", "", On);
        row("&Tools|Rhino3D Tools", 0, "RAV Convertor", "", On);
        row("&Tools", 12, "ConvRav", "", On);
        row("&Tools", 13, "-", "", On);
        row("&Tools", 14, "&Options", "", On);

        row("&Help", 0, "&Contents...", "", On);
        row("&Help", 1, "View& Readme...", "", On);
        row("&Help", 2, "-", "", On);
        row("&Help", 3, "&Technical Support", "", On);
        row("&Help", 4, "&Online Help", "", On);
        row("&Help", 5, "-", "", On);
        row("&Help", 6, "FIFA OSK Online", "", On);
        row("&Help", 7, "Soccer Gaming Forums", "", On);
        row("&Help", 8, "OEdit/OIFTool Online", "", On);
        row("&Help", 9, "-", "", On);
        row("&Help", 10, "&About", "", On);
        row("&Help", 11, "-", "", On);
        row("&Help", 12, "Stadium Building Wizard...", "", On);
    }
    void everyEntryHasItsCaptionPlaceKeyAndState() {
        QFETCH(QString, menu);
        QFETCH(int, index);
        QFETCH(QString, caption);
        QFETCH(QString, key);
        QFETCH(int, flags);
        vorn w;
        QMenu* m = MenuAt(w, menu);
        QVERIFY(m);
        const QList<QAction*> entries = m->actions();
        QVERIFY(index < entries.size());
        QAction* a = entries[index];
        if (caption == QLatin1String("-")) {
            QVERIFY(a->isSeparator());
        } else {
            QVERIFY(!a->isSeparator());
            QCOMPARE(a->text(), caption);
            QCOMPARE(a->shortcut(), QKeySequence(key));
            QCOMPARE(w.menuAction(caption), a);
        }
        QCOMPARE(a->isVisible(), bool(flags & Visible));
        QCOMPARE(a->isCheckable(), bool(flags & Checkable));
        QCOMPARE(a->isChecked(), bool(flags & CheckedAtStart));
        if (a->isSeparator()) return;
        QCOMPARE(a->isEnabled(), bool(flags & EnabledAtStart));

        w.createnew(0, "Project1");
        QCOMPARE(a->isEnabled(), bool(flags & EnabledWithProject));
        QCOMPARE(a->isChecked(), bool(flags & CheckedAtStart));

        w.createnew(0, "Project2");
        // A second project changes nothing but what Undo offers: the project before it.
        QCOMPARE(a->isEnabled(), bool(flags & EnabledWithProject) || caption == QLatin1String("&Undo"));
    }

    void menusHoldNothingBeyondTheTable() {
        vorn w;
        const std::pair<const char*, int> sizes[] = {{"&File", 9},
                                                     {"&Edit", 10},
                                                     {"&View", 10},
                                                     {"&Project", 7},
                                                     {"&Tools", 15},
                                                     {"&Help", 13},
                                                     {"&View|Current VRML Source", 4},
                                                     {"&Tools|Rhino3D Tools", 1}};
        for (const auto& [menu, size] : sizes) QCOMPARE(MenuAt(w, menu)->actions().size(), size);
    }

    void stadiumPreviewsIsEnabledByConfig() {
        WriteConfig("Terramason", "PreviewRefresh", "1");
        vorn on;
        QVERIFY(on.menuAction("Stadium Previews")->isEnabled());
        WriteConfig("Terramason", "PreviewRefresh", "1 ");
        vorn off;
        QVERIFY(!off.menuAction("Stadium Previews")->isEnabled());
    }

    void stadiumPreviewsFlipsItsCheckAndThePreviewFlag() {
        WriteConfig("Terramason", "PreviewRefresh", "1");
        vorn w;
        QAction* previews = w.menuAction("Stadium Previews");
        previews->trigger();
        QVERIFY(!previews->isChecked());
        QVERIFY(!PreviewRefreshOn);
        previews->trigger();
        QVERIFY(previews->isChecked());
        QVERIFY(PreviewRefreshOn);
    }

    void refreshRebuildsWithTheFlagOnAndPutsItBack() {
        WriteConfig("Terramason", "PreviewRefresh", "1");
        vorn w;
        w.show();
        QVERIFY(MakeActive(w));
        w.createnew(0, "Project1");
        SpyViews spy;
        w.menuAction("Stadium Previews")->trigger();
        QVERIFY(!PreviewRefreshOn);

        QTest::keyClick(&w, Qt::Key_F5);
        QCOMPARE(spy.flagAtRebuild, std::vector<bool>{true});
        QVERIFY(!PreviewRefreshOn);
        QVERIFY(!w.menuAction("Stadium Previews")->isChecked());
    }

    void statusBarEntryHidesAndShowsTheBar() {
        vorn w;
        w.show();
        QAction* bar = w.menuAction("Status &Bar");
        bar->trigger();
        QVERIFY(!w.statusBar()->isVisible());
        QVERIFY(!bar->isChecked());
        bar->trigger();
        QVERIFY(w.statusBar()->isVisible());
        QVERIFY(bar->isChecked());
    }

    void oifEditorEntryFlipsItsCheck() {
        vorn w;
        w.createnew(0, "Project1");
        QAction* editor = w.menuAction("OIF Editor");
        editor->trigger();
        QVERIFY(!editor->isChecked());
        editor->trigger();
        QVERIFY(editor->isChecked());
    }

    void disabledEntriesDoNothingByTheirKeys() {
        vorn w;
        w.show();
        QVERIFY(MakeActive(w));
        int fired = 0;
        connect(w.menuAction("&Select All"), &QAction::triggered, [&] { ++fired; });
        connect(w.menuAction("&Save OIF"), &QAction::triggered, [&] { ++fired; });
        QTest::keyClick(&w, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&w, Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(fired, 0);
        QVERIFY(desktop_->dialogTitles.empty());
    }

    void vrmlSourceShowsThePreviewFile() {
        vorn w;
        w.createnew(0, "Project1");
        for (const char* view : {"Top", "Perspective", "Back", "Right"}) {
            WriteFile(folder_->file("temp/" + std::string(view) + ".wrl"), {'#'});
            w.menuAction(view)->trigger();
        }
        QCOMPARE(desktop_->shownFiles,
                 (std::vector<std::string>{folder_->file("temp/Top.wrl"), folder_->file("temp/Perspective.wrl"),
                                           folder_->file("temp/Back.wrl"), folder_->file("temp/Right.wrl")}));
    }

    void helpEntriesOpenTheBookTheReadmeAndTheWebPages() {
        WriteConfig("Web", "Forums", "https://forum.example.org/");
        vorn w;
        w.menuAction("&Contents...")->trigger();
        w.menuAction("View& Readme...")->trigger();
        for (const char* entry :
             {"&Technical Support", "&Online Help", "FIFA OSK Online", "Soccer Gaming Forums", "OEdit/OIFTool Online"})
            w.menuAction(entry)->trigger();
        QCOMPARE(desktop_->shownFiles, std::vector<std::string>{ReadmePath()});
        QCOMPARE(desktop_->pages,
                 (std::vector<std::string>{HelpPageAddress(HelpContentsPage), WebPageAddress(WebPage::TechnicalSupport),
                                           WebPageAddress(WebPage::OnlineHelp), WebPageAddress(WebPage::MakersSite),
                                           "https://forum.example.org/", WebPageAddress(WebPage::ToolsSite)}));
        QVERIFY(desktop_->messages.empty());
    }

    void toolsAreEnabledByWhatIsInstalledAndStartedByTheirEntries() {
        namespace fs = std::filesystem;
        const std::string oedit = folder_->file("OEdit/oedit.exe");
        fs::create_directories(folder_->file("OEdit"));
        WriteFile(oedit, {'M', 'Z'});
        fs::create_directories(folder_->file("ZModeler"));
        WriteFile(folder_->file("ZModeler/zmodeler.exe"), {'M', 'Z'});
        desktop_->registry[OEditRegistryValue] = oedit;
        desktop_->registry[OIFToolRegistryValue] = folder_->file("OIFTool");  // registered, not there
        desktop_->registry[ZModelerRegistryValue] = folder_->file("ZModeler");
        vorn w;
        QVERIFY(w.menuAction("OEdit")->isEnabled());
        QVERIFY(!w.menuAction("OIF Tool")->isEnabled());
        QVERIFY(w.menuAction("ZModeler")->isEnabled());
        QVERIFY(!w.menuAction("Rhinoceros 3D")->isEnabled());

        // ConvRav is always on: with its program missing the entry does nothing, without a word.
        w.menuAction("ConvRav")->trigger();
        QVERIFY(desktop_->commands.empty());
        QVERIFY(desktop_->messages.empty());

        desktop_->startedId = 4242;  // the start of a program the test does not run succeeds
        w.menuAction("OEdit")->trigger();
        if (WineInstalled())
            QCOMPARE(desktop_->commands, std::vector<std::string>{"wine \"" + oedit + "\" /rgbemulation"});
        else QVERIFY(desktop_->commands.empty());
        QVERIFY(desktop_->messages.empty());
    }

    void toolbarHasTheNineButtonsInOrderWithPictures() {
        vorn w;
        QStringList keys;
        for (QAction* a : w.Toolbar1()->actions())
            if (!a->isSeparator()) keys << a->objectName();
        QCOMPARE(keys, QStringList({"New", "Open", "Save", "Cut", "Copy", "Paste", "Delete", "Options", "Help"}));
        for (const QString& key : keys) {
            QAction* button = w.toolbarAction(key);
            QVERIFY2(!button->icon().isNull(), qPrintable(key));
            QVERIFY2(!button->icon().pixmap(24, 24).isNull(), qPrintable(key));
            QVERIFY2(button->isEnabled(), qPrintable(key));
        }
    }

    void toolbarSaveWorksWithoutAProject() {
        vorn w;
        QVERIFY(!w.menuAction("&Save OIF")->isEnabled());
        w.toolbarAction("Save")->trigger();
        QCOMPARE(desktop_->dialogTitles, std::vector<std::string>{"Export OIF file..."});
    }

    void toolbarOptionsShowsOnlyTheStrayText() {
        vorn w;
        w.toolbarAction("Options")->trigger();
        QCOMPARE(desktop_->messages.size(), std::size_t(1));
        QCOMPARE(desktop_->messages[0].text, std::string("Add 'Properties' button code."));
        QCOMPARE(desktop_->messages[0].buttons, MessageButtons::OK);
        QVERIFY(!QApplication::activeModalWidget());
    }

    void keysWithoutAButtonAnswerTheirTexts() {
        vorn w;
        for (const char* key : {"Print", "Undo", "Redo", "Help What's This", "Camera", "Find"})
            w.Toolbar1ButtonClick(key);
        std::vector<std::string> texts;
        for (const ShownMessage& m : desktop_->messages) texts.push_back(m.text);
        QCOMPARE(texts, (std::vector<std::string>{"Add 'Print' button code.", "Add 'Undo' button code.",
                                                  "Add 'Redo' button code.", "Add 'Help What's This' button code."}));
    }

    void toolbarNewAndHelpDoWhatTheirEntriesDo() {
        vorn w;
        w.toolbarAction("New")->trigger();
        QCOMPARE(w.windowTitle(), QString("VORN Terramason - [design] - [Project1]"));
        w.toolbarAction("Help")->trigger();
        QCOMPARE(desktop_->pages, std::vector<std::string>{HelpPageAddress(HelpContentsPage)});
    }

    void aboutShowsNameVersionAndItsButtons() {
        vorn w;
        w.show();
        bool seen = false;
        WhenModalShown<vornabout>([&](vornabout* about) {
            seen = true;
            QString texts;
            for (QLabel* l : about->findChildren<QLabel*>()) texts += l->text() + QLatin1Char('\n');
            QVERIFY(texts.contains("VORN Terramason"));
            QVERIFY(texts.contains("Version 1.0"));
            QCOMPARE(about->sysinfobut()->text(), QString("&System Info..."));
            about->okbut()->click();
        });
        w.menuAction("&About")->trigger();
        QVERIFY(seen);
    }

    void systemInfoStartsTheInstalledToolOrShowsTheFacts() {
        const QByteArray path = qgetenv("PATH");
        vornabout about;

        // No tool on PATH: the facts in a box.
        qputenv("PATH", folder_->file("nothing").c_str());
        about.sysinfobutClick();
        QCOMPARE(desktop_->messages.size(), std::size_t(1));
        QCOMPARE(desktop_->messages[0].title, std::string("System Information"));
        const std::string& facts = desktop_->messages[0].text;
        QVERIFY(facts.rfind("Operating system: ", 0) == 0);
        QVERIFY(facts.find("Qt: " + std::string(qVersion())) != std::string::npos);
        QVERIFY(facts.find("Screen: ") != std::string::npos);
        QVERIFY(desktop_->commands.empty());

        // A tool on PATH is started instead.
        const std::string bin = folder_->file("bin");
        std::filesystem::create_directories(bin);
        const std::string tool = bin + "/kinfocenter";
        WriteFile(tool, {'#', '!', '/', 'b', 'i', 'n', '/', 's', 'h', '\n'});
        std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
        qputenv("PATH", bin.c_str());
        desktop_->runProcesses = true;
        about.sysinfobutClick();
        qputenv("PATH", path);
        QCOMPARE(desktop_->commands, std::vector<std::string>{"kinfocenter"});
        QTRY_VERIFY(!desktop_->ProcessRunning(StartedProcessId()));
        QCOMPARE(desktop_->messages.size(), std::size_t(1));
    }
};

QTEST_MAIN(MainMenuTest)
#include "MainMenuTest.moc"
