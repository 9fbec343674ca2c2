// The menu bar, the toolbar and the keys of the main window: each entry reaches its command and
// the command's result shows, project entries wait for the first project, and the View and Tools
// entries follow what they switch or what is installed.

#include "WindowTestKit.h"
#include "editors/ImportOps.h"
#include "importer/ui/stmap.h"
#include "shell/Processes.h"
#include "shell/ToolsOps.h"
#include "shell/mdlOIFToolAuto.h"
#include "shell/ui/vornabout.h"
#include "wizards/AdboardOps.h"
#include "wizards/CrowdModule.h"
#include "wizards/ui/crowdwizard.h"
#include "wizards/ui/lightingwizard.h"
#include "wizards/ui/stadwizard.h"
#include "wizards/ui/transformwiz.h"

using Texts = std::vector<std::string>;

// The desktop's records of earlier commands dropped.
void Forget(ScriptedDesktop& d) {
    for (Texts* t : {&d.dialogTitles, &d.pages, &d.shownFiles, &d.commands}) t->clear();
    d.messages.clear();
}

class MainMenuTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    ScriptedDesktop* desktop_ = nullptr;

    template <class W>
    static bool Opened() {
        W* w = W::existing();
        const bool shown = w && w->isVisible();
        delete w;
        return shown;
    }

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        desktop_ = &program_->desktop;
        WriteConfig("Terramason", "OIFEditor", "1");
    }
    void cleanup() {
        delete stmap::existing();
        program_.reset();
    }

    // One row per entry with a command: whether it waits for a project, and what shows its run.
    void everyEntryReachesItsCommand() {
        WriteConfig("Web", "Forums", "https://forum.example.org/");
        vorn w;
        QString modal;
        auto dialog = [&](const std::string& title) {
            return [&, title] { return desktop_->dialogTitles == Texts{title}; };
        };
        auto page = [&](const std::string& address) {
            return [&, address] { return desktop_->pages == Texts{address}; };
        };
        auto modalOf = [&](const char* name) { return [&, name] { return modal == name; }; };
        auto source = [&](const char* view) {
            return [&, view] { return desktop_->shownFiles == Texts{AppPath("temp/" + std::string(view) + ".wrl")}; };
        };
        SpyViews spy;
        const struct {
            const char* caption;
            bool project;
            std::function<bool()> done;
        } rows[] = {
            {"&Open Project...", false, modalOf("vornnewproj")},
            {"&Options", false, modalOf("VORNOptions")},
            {"RAV Convertor", false, modalOf("rhinoravconv")},
            {"&About", false, modalOf("vornabout")},
            {"&Contents...", false, page(HelpPageAddress(HelpContentsPage))},
            {"View& Readme...", false, [&] { return desktop_->shownFiles == Texts{ReadmePath()}; }},
            {"&Technical Support", false, page(WebPageAddress(WebPage::TechnicalSupport))},
            {"&Online Help", false, page(WebPageAddress(WebPage::OnlineHelp))},
            {"FIFA OSK Online", false, page(WebPageAddress(WebPage::MakersSite))},
            {"Soccer Gaming Forums", false, page("https://forum.example.org/")},
            {"OEdit/OIFTool Online", false, page(WebPageAddress(WebPage::ToolsSite))},
            {"Stadium Building Wizard...", false, [] { return Opened<stadwizard>(); }},
            {"&Save OIF", true, dialog("Export OIF file...")},
            {"&Import to OIF...", true, dialog(ImportTitle)},
            {"Import Crowds...", true, dialog(ImportCrowdTitle)},
            {"Import Adboards...", true, dialog(ImportAdboardTitle)},
            {"Import Banners...", true, dialog(ImportBannerTitle)},
            {"Import Textures for Previews...", true, dialog("Import texture for preview...")},
            {"Stadium Importer", true, [&] { return desktop_->dialogTitles.at(0) == "Select file to import..."; }},
            {"Crowd Building Wizard", true, [] { return Opened<crowdwizard>(); }},
            {"Stadium Lighting Wizard", true, [] { return Opened<lightingwizard>(); }},
            {"Stadium Transformation Wizard", true, [] { return Opened<transformwiz>(); }},
            {"Refresh", true, [&] { return spy.flagAtRebuild == std::vector<bool>{true} && !PreviewRefreshOn; }},
            {"Top", false, source("Top")},
            {"Perspective", false, source("Perspective")},
            {"Back", false, source("Back")},
            {"Right", false, source("Right")},
            // The lists keep their rows until the next refresh.
            {"Merge parts with same texture...", true,
             [&] { return CurrentProject.OIF.Parts.size() == 1 && w.selectobj()->objectbox()->count() == 2; }},
        };
        for (const auto& row : rows) QVERIFY2(w.menuAction(row.caption)->isEnabled() != row.project, row.caption);
        OpenProjectOf(w, {"A", "B"});
        for (const char* view : {"Top", "Perspective", "Back", "Right"})
            WriteFile(AppPath("temp/" + std::string(view) + ".wrl"), {'#'});
        for (const auto& row : rows) {
            Forget(*desktop_);
            spy.flagAtRebuild.clear();
            PreviewRefreshOn = false;
            modal = OpenedModal([&] { w.menuAction(row.caption)->trigger(); });
            QVERIFY2(row.done(), row.caption);
            delete stmap::existing();
        }
    }

    void keysAndToolbarButtonsReachTheirCommands() {
        vorn w;
        QVERIFY(MakeActive(w));
        // Without a project the keys of disabled entries do nothing; the toolbar's Save still asks.
        int fired = 0;
        for (const char* entry : {"&Select All", "&Save OIF"})
            connect(w.menuAction(entry), &QAction::triggered, [&] { ++fired; });
        QTest::keyClick(&w, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&w, Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(fired, 0);
        QVERIFY(desktop_->dialogTitles.empty());
        w.toolbarAction("Save")->trigger();
        QCOMPARE(desktop_->dialogTitles, Texts{"Export OIF file..."});
        // Options and the keys without a button show the design's stray texts; Camera says nothing.
        w.toolbarAction("Options")->trigger();
        w.Toolbar1ButtonClick("Print");
        w.Toolbar1ButtonClick("Camera");
        QCOMPARE(desktop_->messages.size(), std::size_t(2));
        QCOMPARE(desktop_->messages[0].text + desktop_->messages[1].text,
                 std::string("Add 'Properties' button code.Add 'Print' button code."));
        w.toolbarAction("Help")->trigger();
        QCOMPARE(desktop_->pages, Texts{HelpPageAddress(HelpContentsPage)});
        QCOMPARE(OpenedModal([&] { w.toolbarAction("Open")->trigger(); }), QString("vornnewproj"));
        QVERIFY(MakeActive(w));
        QCOMPARE(OpenedModal([&] { QTest::keyClick(&w, Qt::Key_O, Qt::ControlModifier); }), QString("vornnewproj"));
        for (QAction* a : w.Toolbar1()->actions())
            QVERIFY2(a->isSeparator() || !a->icon().pixmap(24, 24).isNull(), qPrintable(a->objectName()));
        w.toolbarAction("New")->trigger();
        QVERIFY(w.windowTitle().endsWith("[Project1]"));
        QVERIFY(MakeActive(w));  // the closed window above took the activation with it
        SpyViews spy;
        QTest::keyClick(&w, Qt::Key_F5);
        QCOMPARE(spy.count("RebuildPreviews"), 1);
        desktop_->answers = {MessageAnswer::No};
        QTest::keyClick(&w, Qt::Key_Q, Qt::ControlModifier);
        QCOMPARE(desktop_->messages.back().text, std::string("Are you sure you want to quit VORN Terramason?   "));
        QVERIFY(w.isVisible());
    }

    void viewEntriesSwitchWhatTheyName() {
        WriteConfig("Terramason", "PreviewRefresh", "1 ");
        QVERIFY(!vorn().menuAction("Stadium Previews")->isEnabled());
        WriteConfig("Terramason", "PreviewRefresh", "1");
        vorn w;
        w.show();
        QAction* previews = w.menuAction("Stadium Previews");
        QAction* bar = w.menuAction("Status &Bar");
        QVERIFY(previews->isEnabled());
        for (bool on : {false, true}) {
            previews->trigger();
            bar->trigger();
            QVERIFY(previews->isChecked() == on && PreviewRefreshOn == on);
            QVERIFY(bar->isChecked() == on && w.statusBar()->isVisible() == on);
        }
    }

    void toolsAreEnabledByWhatIsInstalledAndStartedByTheirEntries() {
        const std::string oedit = program_->folder.file("OEdit/oedit.exe");
        std::filesystem::create_directories(program_->folder.file("OEdit"));
        WriteFile(oedit, {'M', 'Z'});
        desktop_->registry[OEditRegistryValue] = oedit;
        desktop_->registry[OIFToolRegistryValue] = program_->folder.file("OIFTool");  // registered, not there
        std::filesystem::create_directories(program_->folder.file("ZModeler"));
        WriteFile(program_->folder.file("ZModeler/zmodeler.exe"), {'M', 'Z'});
        desktop_->registry[ZModelerRegistryValue] = program_->folder.file("ZModeler");
        vorn w;
        QVERIFY(w.menuAction("OEdit")->isEnabled() && w.menuAction("ZModeler")->isEnabled());
        QVERIFY(!w.menuAction("Make stadium.big...")->isVisible());  // an entry the design keeps hidden
        QVERIFY(!w.menuAction("OIF Tool")->isEnabled() && !w.menuAction("Rhinoceros 3D")->isEnabled());
        w.menuAction("ConvRav")->trigger();  // its program missing: nothing, without a word
        QVERIFY(desktop_->commands.empty());
        desktop_->startedId = 4242;
        w.menuAction("OEdit")->trigger();
        if (WineInstalled()) QCOMPARE(desktop_->commands, Texts{"wine \"" + oedit + "\" /rgbemulation"});
        QVERIFY(desktop_->messages.empty());
    }

    void systemInfoStartsTheInstalledToolOrShowsTheFacts() {
        const QByteArray path = qgetenv("PATH");
        vornabout about;
        qputenv("PATH", program_->folder.file("nothing").c_str());
        about.sysinfobut()->click();
        QVERIFY(desktop_->messages.at(0).text.find("Qt: " + std::string(qVersion())) != std::string::npos);
        const std::string bin = program_->folder.file("bin");
        std::filesystem::create_directories(bin);
        WriteFile(bin + "/kinfocenter", {'#', '!', '/', 'b', 'i', 'n', '/', 's', 'h', '\n'});
        std::filesystem::permissions(bin + "/kinfocenter", std::filesystem::perms::owner_all);
        qputenv("PATH", bin.c_str());
        desktop_->runProcesses = true;
        about.sysinfobut()->click();
        qputenv("PATH", path);
        QCOMPARE(desktop_->commands, Texts{"kinfocenter"});
        QTRY_VERIFY(!desktop_->ProcessRunning(StartedProcessId()));
        QCOMPARE(desktop_->messages.size(), std::size_t(1));
    }
};

QTEST_MAIN(MainMenuTest)
#include "MainMenuTest.moc"
