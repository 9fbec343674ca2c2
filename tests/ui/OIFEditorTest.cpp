// "OIF Editor": its controls reach the document and the views. Row texts, brightness, predefined
// UVs and the export's file are OIFEditorOpsTest's.
#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QtTest>

#include <memory>

#include "WindowTestKit.h"
#include "core/OIFOps.h"
#include "editors/ui/vornoifform.h"
#include "editors/ui/vornselectobj.h"
#include "editors/ui/vorntexture.h"
#include "preview/PreviewViewOps.h"
#include "shell/IniOps.h"

namespace {
// A stand of three vertices, a roof of tp01 whose vertex needs more than seven digits, an empty part.
OIFFile Stadium() {
    OIFFile doc = NamedParts({"North stand", "Roof", "Empty"});
    doc.Parts[0].Vertices = {{1, 2, 3, 0, 0, 0}, {-1.5f, 0, 100000, 0x00008000, 0, 0}, {0.25f, 7, 8, 0, 0, 0}};
    doc.Parts[0].Indices = {0, 1, 2, 2};
    doc.Parts[1].Header.Texture = "tp01";
    doc.Parts[1].Vertices = {{5, 5, 5, 0, 0, 0}, {0.1234567891f, 1, 2, 0, 0, 0}};
    doc.Parts[1].Indices = {0, 1};
    for (OIFPart& p : doc.Parts) {
        p.Header.VertexCount = std::int32_t(p.Vertices.size());
        p.Header.IndexCount = std::int32_t(p.Indices.size());
    }
    return doc;
}
}  // namespace

class OIFEditorTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    std::unique_ptr<vorn> frame_;

    vornoifform* openStadium() {
        frame_ = std::make_unique<vorn>();
        frame_->createnew(0, "Project1");
        CurrentProject.OIF = Stadium();
        CurrentProject.Textures[1].Parts = {{"Left post", 0.25f, 0.5f}, {"Right post", 0.75f, 1}};
        CurrentProject.Textures[1].PartCount = 2;
        TheViews().RefreshPartsList();
        return vornoifform::existing();
    }
    const OIFVertex& vertex(int p, int v) const {
        return CurrentProject.OIF.Parts[std::size_t(p)].Vertices[std::size_t(v)];
    }

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        WriteConfig("Terramason", "OIFEditor", "1");
    }
    void cleanup() {
        frame_.reset();
        delete vorntexture::existing();
        program_.reset();
    }

    void anEmptyDocumentDisablesThePartControlsAndTheEditorLeavesThePreviewsFree() {
        int previewsRight = 0;
        for (const PixelRect& r : PreviewWindowLayout()) previewsRight = std::max(previewsRight, r.Left + r.Width);
        for (const int width : {1000, 2400}) {
            frame_ = std::make_unique<vorn>();
            frame_->resize(width, 900);
            frame_->show();
            frame_->createnew(0, "Project1");
            vornoifform* f = vornoifform::existing();
            QVERIFY(!f->oifpartdel()->isEnabled() && !f->Frame2()->isEnabled() && f->refreshoif()->isEnabled());
            QWidget* editor = f->parentWidget();
            if (width > previewsRight + editor->width() + 200) QCOMPARE(editor->x(), previewsRight);
            else QCOMPARE(editor->geometry().right() + 1, editor->parentWidget()->width());
        }
    }

    void refreshShowsTheDocumentAndTheControlsWriteItBack() {
        vornoifform* f = openStadium();
        QCOMPARE(f->oifpartbox()->count(), 3);
        QCOMPARE(f->oifpartvertices()->itemText(1), QString("-1.5, 0, 100000"));
        QCOMPARE(f->indicesbox()->count(), 4);
        QVERIFY(f->Frame2()->isEnabled());
        QCOMPARE(frame_->selectobj()->selectedRows(), (std::vector<bool>{true, true, true}));
        QCOMPARE(vorntexture::existing()->windowTitle(), QString("Texture Manager - [North stand] - tp00"));
        f->findChild<QPushButton*>("texturesmanagerbut")->click();
        QVERIFY(vorntexture::existing()->isVisible());
        UserPicksRow(f->oifpartvertices(), 1);
        QCOMPARE(f->oifvertexz()->text() + " " + f->percentbright()->text(), QString("100000 50.2%"));
        // Typing stores at once: a leading number, a trimmed name, four characters of texture.
        f->oifvertexx()->clear();
        QTest::keyClicks(f->oifvertexx(), "12.5abc");
        QCOMPARE(vertex(0, 1).X, 12.5f);
        f->oifpartname()->selectAll();
        QTest::keyClicks(f->oifpartname(), "  West  ");
        QCOMPARE(f->oifpartbox()->itemText(0), QString("West"));
        f->oifparttexture()->lineEdit()->selectAll();
        QTest::keyClicks(f->oifparttexture(), "custom");
        QCOMPARE(CurrentProject.OIF.Parts[0].Header.Texture.str(), std::string("cust"));
        // Selecting a vertex stores its fields back in seven digits.
        UserPicksRow(f->oifpartbox(), 1);
        UserPicksRow(f->oifpartvertices(), 1);
        QVERIFY(vertex(1, 1).X == 0.1234568f);
    }

    void uvFieldsTakeDigitsAndOnePointAfterADigit() {
        QLineEdit* u = openStadium()->oifvertextexx();
        u->clear();
        QTest::keyClicks(u, ".-0.5.2x");
        QCOMPARE(u->text(), QString("0.52"));
        QCOMPARE(vertex(0, 0).U, 0.52f);
        QTest::keyClick(u, Qt::Key_Home);
        QTest::keyClick(u, Qt::Key_Delete);  // types no character: it passes
        QCOMPARE(u->text(), QString(".52"));
    }

    void aPredefinedUVGoesToTheSelectedVertexAndAnEmptyPartDisablesTheFields() {
        vornoifform* f = openStadium();
        UserPicksRow(f->oifpartbox(), 1);
        UserPicksRow(f->oifpartvertices(), 1);
        UserPicksRow(f->oifvertexpointsel(), 2);
        QCOMPARE(vertex(1, 1).U + vertex(1, 1).V, 1.75f);
        QCOMPARE(f->oifvertextexx()->text(), QString("0.75"));
        QCOMPARE(vertex(1, 0).U, 0.0f);
        UserPicksRow(f->oifpartbox(), 2);
        QVERIFY(!f->oifvertexx()->isEnabled() && !f->oifvertexpointsel()->isEnabled());
        QCOMPARE(TheViews().Selection().vertex, -1);
    }

    void deleteAndExportReachTheDocumentAndTheList() {
        vornoifform* f = openStadium();
        UserPicksRow(f->oifpartbox(), 1);
        const OIFFile before = CurrentProject.OIF;
        program_->desktop.dialogAnswers = {program_->folder.file("roof.oif")};
        SpyViews spy;
        f->oifpartexp()->click();
        const OIFParse read = ParseOIF(ReadFile(program_->folder.file("roof.oif")));
        QVERIFY(read.doc.Parts.size() == 1 && read.doc.Parts[0].Vertices == before.Parts[1].Vertices);
        QVERIFY(CurrentProject.OIF == before);
        UserPicksRow(f->oifpartbox(), 1);
        f->oifpartdel()->click();
        QCOMPARE(CurrentProject.OIF.Header.PartCount, 2);
        QCOMPARE(CurrentProject.OIF.Parts[1].Header.Name.str().substr(0, 5), std::string("Empty"));
        QCOMPARE(spy.calls, (std::vector<std::string>{"RefreshPartsList", "RefreshPartsList"}));
        QCOMPARE(f->oifpartbox()->count(), 2);
        QVERIFY(program_->desktop.messages.empty());
    }

    void theViewEntryTickFollowsTheEditor() {
        WriteConfig("Terramason", "OIFEditor", "0");
        frame_ = std::make_unique<vorn>();
        frame_->createnew(0, "Project1");
        CurrentProject.OIF = Stadium();
        TheViews().RefreshPartsList();
        QAction* entry = frame_->menuAction("OIF Editor");
        QVERIFY(!entry->isChecked() && !vornoifform::existing());
        entry->trigger();
        vornoifform* f = vornoifform::existing();
        QVERIFY(f && entry->isChecked());
        QCOMPARE(f->oifpartbox()->count(), 3);
        auto* sub = qobject_cast<QMdiSubWindow*>(f->parentWidget());
        QVERIFY(sub && sub->mdiArea() == frame_->mdiArea());
        sub->showMinimized();
        entry->trigger();
        QVERIFY(sub->isHidden() && !entry->isChecked());
        entry->trigger();
        QVERIFY(!sub->isMinimized() && !sub->isHidden() && entry->isChecked());
        sub->close();
        QVERIFY(!entry->isChecked() && !vornoifform::existing());
    }

    void theSelectedVertexIsMarkedInTheWireframe() {
        UserPicksRow(openStadium()->oifpartvertices(), 2);
        const std::string wire =
            WirePreviewText(CurrentProject.OIF.Parts, CurrentProject.Scene, TheViews().Selection());
        QVERIFY(wire.find("   translation 0.25 7 8\r\n") != std::string::npos);
        QVERIFY(wire.find("description \"Vertex\"") < wire.find("description \"Top\""));
    }
};

QTEST_MAIN(OIFEditorTest)
#include "OIFEditorTest.moc"
