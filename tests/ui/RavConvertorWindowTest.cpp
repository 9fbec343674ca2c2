// The RAV Convertor: the browse buttons and the enable rule of "&Ok", what "&Ok" does with a
// good export, a refused one and a missing choice, and its help page. The script is
// RhinoScriptTest's.
#include <QAction>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include <memory>

#include "WindowTestKit.h"
#include "exchange/RhinoScriptOps.h"
#include "exchange/ui/rhinoravconv.h"
#include "shell/HelpOps.h"
#include "shell/ui/vorn.h"

namespace {
// One crowd row after the exporter's empty first polygon.
const char* const OneRow =
    "Version=1\r\nNumPoly=2\r\n[P0]\r\nName=\r\nNumVert=0\r\nNumGrps=0\r\n"
    "[P1]\r\nName=row\r\nNumVert=4\r\n  200,0,0,1,0,FFFFFF\r\n  200,100,50,1,1,FFFFFF\r\n"
    "  0,100,50,0,1,FFFFFF\r\n  0,0,0,0,0,FFFFFF\r\nNumGrps=1\r\nGroup1=rowb\r\nNumIdx=4\r\nIndices=0,1,2,3\r\n";
}  // namespace

class RavConvertorWindowTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    ScriptedDesktop* desktop_ = nullptr;
    ScratchFolder* folder_ = nullptr;

    // Fills the three boxes through their browse buttons, in the order the window lists them.
    void Browse(rhinoravconv& w, const std::string& rav, const std::string& folder, const std::string& script) {
        desktop_->dialogAnswers = {rav, folder, script};
        QTest::mouseClick(w.ravbut(), Qt::LeftButton);
        QTest::mouseClick(w.texbut(), Qt::LeftButton);
        QTest::mouseClick(w.rhinobut(), Qt::LeftButton);
    }

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        desktop_ = &program_->desktop;
        folder_ = &program_->folder;
    }
    void cleanup() { program_.reset(); }

    void browseButtonsFillTheBoxesOkWaitsForAllThreeAndHelpOpensItsPage() {
        rhinoravconv w;
        QVERIFY2(w.okbut()->isEnabled(), "paths typed by hand must be usable");
        // The third answer cancels the script dialog; a folder gets one "/".
        desktop_->dialogAnswers = {"/data/stand.txt", "/data/tex", "", "/data/out", "/data/tex/"};
        for (QWidget* button : {w.ravbut(), w.texbut(), w.rhinobut()}) QTest::mouseClick(button, Qt::LeftButton);
        QVERIFY(!w.okbut()->isEnabled());
        QTest::mouseClick(w.rhinobut(), Qt::LeftButton);
        QVERIFY(w.okbut()->isEnabled());
        QTest::mouseClick(w.texbut(), Qt::LeftButton);
        QCOMPARE((QStringList{w.ravbox()->text(), w.texbox()->text(), w.rhinobox()->text()}),
                 (QStringList{"/data/stand.txt", "/data/tex/", "/data/out.txt"}));
        QTest::mouseClick(w.helpbut(), Qt::LeftButton);
        QCOMPARE(desktop_->pages, (std::vector<std::string>{HelpPageAddress("ravconvertor.html")}));
    }

    void okWritesTheScriptAndClosesTheWindow() {
        vorn frame;
        WriteFile(folder_->file("rows.txt"), Bytes().raw(OneRow).data);
        const std::string script = folder_->file("rows.rvb");
        bool driven = false;
        WhenModalShown<rhinoravconv>([&](rhinoravconv* w) {
            driven = true;
            Browse(*w, folder_->file("rows.txt"), folder_->file("tex"), script);
            QTest::mouseClick(w->okbut(), Qt::LeftButton);
        });
        frame.menuAction("RAV Convertor")->trigger();
        QVERIFY(driven);
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(ReadText(script), RhinoScriptText(OneRow, folder_->file("tex") + "/").text);
        QVERIFY(desktop_->messages.empty());
    }

    void okTellsWhatIsMissingAndARefusedExportKeepsTheWindowOpen() {
        rhinoravconv w;
        w.show();
        WriteFile(folder_->file("short.txt"), Bytes().raw("Version=1\r\nNumPoly=2\r\n").data);
        const std::string script = folder_->file("script.txt");
        Browse(w, folder_->file("short.txt"), folder_->path(), script);
        w.ravbox()->clear();
        QVERIFY2(w.okbut()->isEnabled(), "typing does not run checkboxes");
        QTest::mouseClick(w.okbut(), Qt::LeftButton);
        QVERIFY(desktop_->messages.at(0).text.rfind("Please choose the RAV Text file", 0) == 0);

        w.ravbox()->setText(QString::fromStdString(folder_->file("short.txt")));
        QTest::mouseClick(w.okbut(), Qt::LeftButton);
        QCOMPARE(desktop_->messages.size(), std::size_t(2));
        QVERIFY(desktop_->messages[1].text.rfind("Invalid RAV file!", 0) == 0);
        QVERIFY(w.isVisible());
        QVERIFY(!QFile::exists(QString::fromStdString(script)));
    }
};

QTEST_MAIN(RavConvertorWindowTest)
#include "RavConvertorWindowTest.moc"
