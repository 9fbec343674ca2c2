// Projects from the File menu: "Open existing project..." with its refusals, "&New Project",
// and what createnew does to the frame.
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QtTest>

#include <filesystem>
#include <memory>

#include "FrameTestKit.h"
#include "editors/ui/vornselectobj.h"
#include "shell/IniOps.h"
#include "shell/StadiumCatalogue.h"
#include "shell/ui/vornnewproj.h"

class NewProjectTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    ScriptedDesktop* desktop_ = nullptr;

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        desktop_ = &program_->desktop;
    }
    void cleanup() { program_.reset(); }

    void windowShowsItsControlsWithTheirDefaults() {
        vornnewproj dialog;
        QCOMPARE(dialog.windowTitle(), QString("Open existing project..."));
        QCOMPARE(dialog.stadiumbased()->count(), 30);
        for (int i = 0; i < 30; ++i) QCOMPARE(dialog.stadiumbased()->itemText(i), QString(StadiumCaptions[i]));
        QCOMPARE(dialog.stadiumbased()->currentIndex(), 0);
        QCOMPARE(dialog.projectbox()->text(), QString("Project1"));
        QCOMPARE(dialog.okbut()->text(), QString("&Ok"));
        QCOMPARE(dialog.cancelbut()->text(), QString("Cancel"));
        QStringList labels;
        for (QLabel* l : dialog.findChildren<QLabel*>()) labels << l->text();
        QVERIFY(labels.contains("Based on:"));
        QVERIFY(labels.contains("Project name:"));
    }

    void refusedBasesKeepTheWindowOpenThenIndexZeroMakesTheProject() {
        vorn w;
        w.show();
        WriteFile(program_->folder.file("temp/stad5.big"), {'B', 'I', 'G'});
        bool driven = false;
        WhenModalShown<vornnewproj>([&](vornnewproj* dialog) {
            driven = true;
            QVERIFY(dialog->isModal());
            QCOMPARE(dialog->projectbox()->selectedText(), QString("Project1"));
            dialog->projectbox()->setText("Lyon");
            for (int refused : {4, 19, 24, 25, 26, 27}) {
                dialog->stadiumbased()->setCurrentIndex(refused);
                QTest::mouseClick(dialog->okbut(), Qt::LeftButton);
                QVERIFY(dialog->isVisible());
                QCOMPARE(dialog->projectbox()->text(), QString("Lyon"));
            }
            QCOMPARE(desktop_->messages.size(), std::size_t(6));
            QCOMPARE(dialog->stadiumbased()->itemText(4), QString("Gerland (SN) - stad8.big"));
            const ShownMessage& m = desktop_->messages[0];
            QCOMPARE(m.text, std::string("This stadium cannot be chosen as base, as it is not supported by OIFTool.   "
                                         "\r\n\r\nPlease choose another one."));
            QCOMPARE(m.icon, MessageIcon::Exclamation);
            QCOMPARE(m.title, std::string("Terramason"));
            QVERIFY(CurrentProject.Name.empty());

            dialog->stadiumbased()->setCurrentIndex(0);
            dialog->projectbox()->setText("Project1");
            QTest::mouseClick(dialog->okbut(), Qt::LeftButton);
        });
        w.menuAction("&Open Project...")->trigger();
        QVERIFY(driven);

        QCOMPARE(CurrentProject.Name, std::string("Project1"));
        QCOMPARE(CurrentProject.BasedOn, std::int16_t(-1));
        QVERIFY(CurrentProject.OIF.Parts.empty());
        QCOMPARE(CurrentProject.Textures.size(), std::size_t(35));
        QVERIFY2(desktop_->commands.empty(), "no outside tool for an empty project");
        QVERIFY(!std::filesystem::exists(program_->folder.file("temp/stad5.big")));
        QVERIFY(w.windowTitle().endsWith("[Project1]"));
        for (const char* entry : {"&Import to OIF...", "&Save OIF", "Stadium Importer", "Crowd Building Wizard",
                                  "Stadium Lighting Wizard", "Stadium Transformation Wizard", "OIF Editor", "Refresh",
                                  "Current VRML Source", "Import Crowds...", "Import Adboards...", "Import Banners...",
                                  "Merge parts with same texture...", "Import Textures for Previews..."})
            QVERIFY2(w.menuAction(entry)->isEnabled(), entry);
        QVERIFY(!w.menuAction("Object Browser")->isEnabled());
        // The parts list stands at the top left of the frame.
        QVERIFY(w.selectobj());
        QVERIFY(w.selectobj()->isVisible());
    }

    void cancelMakesNoProject() {
        vorn w;
        WhenModalShown<vornnewproj>([](vornnewproj* dialog) {
            dialog->stadiumbased()->setCurrentIndex(3);
            QTest::mouseClick(dialog->cancelbut(), Qt::LeftButton);
        });
        w.toolbarAction("Open")->trigger();
        QVERIFY(CurrentProject.Name.empty());
        QCOMPARE(w.windowTitle(), QString("VORN Terramason"));
        QVERIFY(!w.menuAction("&Save OIF")->isEnabled());
        QVERIFY(desktop_->messages.empty());
    }

    void theNameIsKeptAsDocumentTextAndMayBeEmpty() {
        vorn w;
        auto name = [](const QString& typed) {
            WhenModalShown<vornnewproj>([typed](vornnewproj* dialog) {
                dialog->projectbox()->setText(typed);
                QTest::mouseClick(dialog->okbut(), Qt::LeftButton);
            });
        };
        name(QString::fromUtf8("Stade V\xC3\xA9lodrome"));
        w.shownew();
        QCOMPARE(CurrentProject.Name, std::string("Stade V\xE9lodrome"));
        QCOMPARE(w.windowTitle(), QString::fromUtf8("VORN Terramason - [design] - [Stade V\xC3\xA9lodrome]"));
        name(QString());
        w.shownew();
        QVERIFY(CurrentProject.Name.empty());
        QVERIFY(w.menuAction("&Save OIF")->isEnabled());
        QCOMPARE(w.windowTitle(), QString("VORN Terramason - [design] - []"));
    }

    void newProjectReplacesAnOpenProjectAtOnce() {
        vorn w;
        QVERIFY(MakeActive(w));
        OpenProjectOf(w, {"Clock End", "North Bank"});
        CurrentProject.Name = "Highbury";
        WriteFile(program_->folder.file("temp/Top.wrl"), {'#'});
        QCOMPARE(w.selectobj()->objectbox()->count(), 2);

        SpyViews spy;
        QTest::keyClick(&w, Qt::Key_N, Qt::ControlModifier);
        QCOMPARE(CurrentProject.Name, std::string("Project1"));
        QVERIFY(CurrentProject.OIF.Parts.empty());
        QVERIFY(!std::filesystem::exists(program_->folder.file("temp/Top.wrl")));
        QVERIFY(desktop_->messages.empty());
        QCOMPARE(w.windowTitle(), QString("VORN Terramason - [design] - [Project1]"));
        QCOMPARE(w.selectobj()->objectbox()->count(), 0);
        QCOMPARE(spy.calls, (std::vector<std::string>{"RefreshPartsList", "loadviews", "showselectobj"}));
    }

    void newProjectKeyAtStartOpensTheWindow() {
        WriteConfig("Startup", "NewProj", "1");
        vorn w;
        bool shown = false;
        WhenModalShown<vornnewproj>([&](vornnewproj* dialog) {
            shown = true;
            dialog->reject();
        });
        RunStartup(w);
        QVERIFY(shown);
        QVERIFY(CurrentProject.Name.empty());
    }
};

QTEST_MAIN(NewProjectTest)
#include "NewProjectTest.moc"
