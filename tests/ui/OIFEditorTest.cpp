// "OIF Editor": the reload through RefreshPartsList, the handler chains of part and vertex
// selection, typing and its key filter, predefined UVs, Delete, Export, the View menu's tick and
// the vertex marker of the wireframe.
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
#include "core/ProgramState.h"
#include "editors/ui/vornoifform.h"
#include "editors/ui/vornselectobj.h"
#include "editors/ui/vorntexture.h"
#include "preview/PreviewViewOps.h"
#include "preview/VRMLOps.h"
#include "shell/IniOps.h"
#include "shell/ui/vorn.h"

namespace {

OIFVertex Vertex(float x, float y, float z, std::uint32_t shadow = 0) { return OIFVertex{x, y, z, shadow, 0, 0}; }

// Three parts: a stand with three vertices and a strip of four indices, a roof of texture tp01
// whose one vertex carries too many digits, and a part without vertices.
OIFFile Stadium() {
    OIFFile doc = NewOIFFile();
    OIFPart stand;
    stand.Header.Name = "North stand";
    stand.Header.Texture = "tp00";
    stand.Vertices = {Vertex(1, 2, 3, 0x00FFFFFF), Vertex(-1.5f, 0, 100000, 0x00008000), Vertex(0.25f, 7, 8)};
    stand.Indices = {0, 1, 2, 2};
    OIFPart roof;
    roof.Header.Name = "Roof";
    roof.Header.Texture = "tp01";
    roof.Vertices = {Vertex(5, 5, 5), Vertex(0.1234567891f, 1, 2)};
    roof.Indices = {0, 1};
    OIFPart empty;
    empty.Header.Name = "Empty";
    empty.Header.Texture = "gras";
    for (OIFPart* p : {&stand, &roof, &empty}) {
        p->Header.VertexCount = static_cast<std::int32_t>(p->Vertices.size());
        p->Header.IndexCount = static_cast<std::int32_t>(p->Indices.size());
        doc = AddPart(*p, doc);
    }
    return doc;
}

}  // namespace

class OIFEditorTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    std::unique_ptr<vorn> frame_;

    // A project of the Stadium document, loaded as every command loads it.
    vornoifform* openStadium() {
        frame_ = std::make_unique<vorn>();
        frame_->createnew(0, "Project1");
        CurrentProject.OIF = Stadium();
        CurrentProject.Textures[1].Parts = {{"Left post", 0.25f, 0.5f}, {"Right post", 0.75f, 1}};
        CurrentProject.Textures[1].PartCount = 2;
        TheViews().RefreshPartsList();
        return vornoifform::existing();
    }
    const OIFPart& part(int p) const { return CurrentProject.OIF.Parts[static_cast<std::size_t>(p)]; }
    const OIFVertex& vertex(int p, int v) const { return part(p).Vertices[static_cast<std::size_t>(v)]; }

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

    void anEmptyDocumentListsNothingAndDisablesThePartControls() {
        frame_ = std::make_unique<vorn>();
        frame_->createnew(0, "Project1");
        vornoifform* f = vornoifform::existing();
        QVERIFY(f);
        QCOMPARE(f->windowTitle(), QString("OIF Editor"));
        QCOMPARE(f->oifpartbox()->count(), 0);
        QCOMPARE(f->indicesbox()->count(), 0);
        for (QWidget* w : std::initializer_list<QWidget*>{f->oifpartdel(), f->oifpartexp(), f->oifpartname(),
                                                          f->oifparttexture(), f->Frame2(), f->Frame3()})
            QVERIFY2(!w->isEnabled(), qPrintable(w->objectName()));
        QVERIFY(f->refreshoif()->isEnabled());
        QCOMPARE(f->oifpartname()->text(), QString());
        QCOMPARE(TheViews().Selection().part, -1);
    }

    // Beside the previews on a wide screen, so that none is hidden; at the right edge otherwise.
    void theEditorOpensBesideThePreviewsWhenThereIsRoom() {
        int previewsRight = 0;
        for (const PixelRect& r : PreviewWindowLayout()) previewsRight = std::max(previewsRight, r.Left + r.Width);
        for (const int width : {1000, 2400}) {
            frame_ = std::make_unique<vorn>();
            frame_->resize(width, 900);
            frame_->show();
            frame_->createnew(0, "Project1");
            QWidget* editor = vornoifform::existing()->parentWidget();
            QVERIFY(editor->isVisible());
            const int areaWidth = editor->parentWidget()->width();
            if (width > previewsRight + editor->width() + 200) QCOMPARE(editor->x(), previewsRight);
            else QCOMPARE(editor->geometry().right() + 1, areaWidth);
        }
    }

    void refreshListsEveryPartAndShowsTheFirst() {
        vornoifform* f = openStadium();
        QCOMPARE(f->oifparttexture()->count(), 39);
        // The selected row is rewritten trimmed by the name field's handler; the others keep
        // their 28 characters.
        QCOMPARE(ComboRows(f->oifpartbox()),
                 QStringList({"North stand", QString("Roof").leftJustified(28), QString("Empty").leftJustified(28)}));
        QCOMPARE(f->oifpartbox()->currentIndex(), 0);
        QCOMPARE(f->oifpartname()->text(), QString("North stand").leftJustified(28));
        QCOMPARE(f->oifparttexture()->currentText(), QString("tp00"));
        QCOMPARE(ComboRows(f->oifpartvertices()), QStringList({"1, 2, 3", "-1.5, 0, 100000", "0.25, 7, 8"}));
        QCOMPARE(f->oifpartvertices()->currentIndex(), 0);
        QStringList indices;
        for (int i = 0; i < f->indicesbox()->count(); ++i) indices << f->indicesbox()->item(i)->text();
        QCOMPARE(indices, QStringList({"0: 1, 2, 3", "1: -1.5, 0, 100000", "2: 0.25, 7, 8", "2: 0.25, 7, 8"}));
        QCOMPARE(ComboRows(f->oifvertexpointsel()), QStringList({"[Select predefined UV]"}));
        QVERIFY(f->Frame2()->isEnabled() && f->oifpartdel()->isEnabled());
        QCOMPARE(vorntexture::existing()->windowTitle(), QString("Texture Manager - [North stand] - tp00"));
        QVERIFY(!vorntexture::existing()->isVisible());
        f->findChild<QPushButton*>("texturesmanagerbut")->click();
        QVERIFY(vorntexture::existing()->isVisible());
        // The parts list is reloaded by the same refresh, every part shown.
        QCOMPARE(frame_->selectobj()->selectedRows(), (std::vector<bool>{true, true, true}));
    }

    void vertexSelectionShowsTheBrightnessOfTheSecondByte() {
        vornoifform* f = openStadium();
        QCOMPARE(f->oifvertexshadowbox()->text(), QString("0"));  // 00FFFFFF rounds up to 65536
        QCOMPARE(f->percentbright()->text(), QString("0%"));
        UserPicksRow(f->oifpartvertices(), 1);
        QCOMPARE(f->oifvertexx()->text(), QString("-1.5"));
        QCOMPARE(f->oifvertexz()->text(), QString("100000"));
        QCOMPARE(f->oifvertexshadowbox()->text(), QString("128"));
        QCOMPARE(f->percentbright()->text(), QString("50.2%"));
    }

    void selectingAVertexStoresItsFieldsBackInSevenDigits() {
        vornoifform* f = openStadium();
        UserPicksRow(f->oifpartbox(), 1);
        // Exact comparisons: the two differ by less than a fuzzy compare sees.
        QVERIFY(vertex(1, 1).X == 0.1234567891f);  // not selected yet
        UserPicksRow(f->oifpartvertices(), 1);
        QCOMPARE(f->oifvertexx()->text(), QString("0.1234568"));
        QVERIFY(vertex(1, 1).X == 0.1234568f);
        // The list row keeps what it showed; only the next part selection rewrites it.
        QCOMPARE(f->oifpartvertices()->itemText(1), QString("0.1234568, 1, 2"));
    }

    void typingStoresEveryKeystrokeAsALeadingNumberOrATrimmedName() {
        vornoifform* f = openStadium();
        f->oifvertexx()->clear();
        QTest::keyClicks(f->oifvertexx(), "12.5abc");
        QCOMPARE(vertex(0, 0).X, 12.5f);

        f->oifpartname()->selectAll();
        QTest::keyClicks(f->oifpartname(), "  West  ");
        QCOMPARE(part(0).Header.Name.str(), QString("West").leftJustified(28).toStdString());
        QCOMPARE(f->oifpartbox()->itemText(0), QString("West"));

        // The texture field keeps what is typed, cut to four characters.
        f->oifparttexture()->lineEdit()->selectAll();
        QTest::keyClicks(f->oifparttexture(), "custom");
        QCOMPARE(part(0).Header.Texture.str(), std::string("cust"));
    }

    void uvFieldsTakeDigitsAndOnePointAfterADigit() {
        vornoifform* f = openStadium();
        QLineEdit* u = f->oifvertextexx();
        u->clear();
        QTest::keyClicks(u, ".");
        QCOMPARE(u->text(), QString());
        QTest::keyClicks(u, "-0.5.2x");
        QCOMPARE(u->text(), QString("0.52"));
        QCOMPARE(vertex(0, 0).U, 0.52f);
        QTest::keyClick(u, Qt::Key_Backspace);
        QCOMPARE(u->text(), QString("0.5"));
        QTest::keyClick(u, Qt::Key_Home);
        QTest::keyClick(u, Qt::Key_Delete);  // types no character: it passes
        QCOMPARE(u->text(), QString(".5"));
        // X has no filter.
        f->oifvertexx()->clear();
        QTest::keyClicks(f->oifvertexx(), "-.5");
        QCOMPARE(vertex(0, 0).X, -0.5f);
    }

    void theTextureFieldOffersThePredefinedUVsOfItsSlot() {
        vornoifform* f = openStadium();
        UserPicksRow(f->oifpartbox(), 1);
        QCOMPARE(ComboRows(f->oifvertexpointsel()), QStringList({"[Select predefined UV]", "Left post", "Right post"}));
        UserPicksRow(f->oifpartvertices(), 1);
        UserPicksRow(f->oifvertexpointsel(), 2);
        QCOMPARE(vertex(1, 1).U, 0.75f);
        QCOMPARE(vertex(1, 1).V, 1.0f);
        QCOMPARE(f->oifvertextexx()->text(), QString("0.75"));
        QCOMPARE(vertex(1, 0).U, 0.0f);  // only the selected vertex

        // Any case finds the slot's points, but a pick needs the list's own spelling.
        f->handlers().setText(f->oifparttexture(), "TP01");
        QCOMPARE(f->oifvertexpointsel()->count(), 3);
        UserPicksRow(f->oifvertexpointsel(), 1);
        QCOMPARE(vertex(1, 1).U, 0.75f);
        // A name without a slot offers none.
        UserPicksRow(f->oifparttexture(), 35);
        QCOMPARE(ComboRows(f->oifvertexpointsel()), QStringList({"[Select predefined UV]"}));
        QCOMPARE(part(1).Header.Texture.str(), std::string("alga"));

        // A part without vertices disables the vertex fields.
        UserPicksRow(f->oifpartbox(), 2);
        QCOMPARE(f->oifpartvertices()->count(), 0);
        QVERIFY(!f->oifvertexx()->isEnabled() && !f->oifvertexpointsel()->isEnabled());
        QCOMPARE(TheViews().Selection().vertex, -1);
    }

    void deleteAsksNothingAndRefreshesWithoutRebuilding() {
        vornoifform* f = openStadium();
        UserPicksRow(f->oifpartbox(), 1);
        SpyViews spy;
        f->oifpartdel()->click();
        QCOMPARE(CurrentProject.OIF.Parts.size(), std::size_t(2));
        QCOMPARE(CurrentProject.OIF.Header.PartCount, 2);
        QCOMPARE(part(1).Header.Name.str(), QString("Empty").leftJustified(28).toStdString());
        QCOMPARE(spy.calls, std::vector<std::string>{"RefreshPartsList"});
        QCOMPARE(f->oifpartbox()->count(), 2);
        QCOMPARE(f->oifpartbox()->currentIndex(), 0);
        QVERIFY(program_->desktop.messages.empty());
    }

    void exportWritesTheSelectedPartAloneAndKeepsTheDocumentsNames() {
        vornoifform* f = openStadium();
        UserPicksRow(f->oifpartbox(), 1);
        const OIFFile before = CurrentProject.OIF;
        const std::string path = program_->folder.file("roof.oif");
        program_->desktop.dialogAnswers = {path};
        SpyViews spy;
        f->oifpartexp()->click();
        const OIFParse read = ParseOIF(ReadFile(path));
        QCOMPARE(read.error, std::string());
        QCOMPARE(read.doc.Parts.size(), std::size_t(1));
        QCOMPARE(read.doc.Parts[0].Header.Texture.str(), std::string("tp01"));
        QVERIFY(read.doc.Parts[0].Vertices == before.Parts[1].Vertices);
        QVERIFY(CurrentProject.OIF == before);
        QCOMPARE(spy.count("RefreshPartsList"), 1);
    }

    void theViewEntryTickFollowsTheEditor() {
        WriteConfig("Terramason", "OIFEditor", "0");
        frame_ = std::make_unique<vorn>();
        frame_->createnew(0, "Project1");
        CurrentProject.OIF = Stadium();
        TheViews().RefreshPartsList();
        QAction* entry = frame_->menuAction("OIF Editor");
        QVERIFY(!entry->isChecked());
        QVERIFY(!vornoifform::existing());
        entry->trigger();
        vornoifform* f = vornoifform::existing();
        QVERIFY(f && entry->isChecked());
        QCOMPARE(f->oifpartbox()->count(), 3);  // a new window lists the document at once
        auto* sub = qobject_cast<QMdiSubWindow*>(f->parentWidget());
        QVERIFY(sub && sub->mdiArea() == frame_->mdiArea() && !sub->isHidden());
        entry->trigger();
        QVERIFY(sub->isHidden() && !entry->isChecked());
        entry->trigger();
        QVERIFY(!sub->isHidden() && entry->isChecked());
        // A minimised editor keeps its tick; hidden and shown from View it comes back whole.
        sub->showMinimized();
        entry->trigger();
        entry->trigger();
        QVERIFY(!sub->isMinimized() && !f->isHidden());
        sub->close();
        QVERIFY(!entry->isChecked());
        QVERIFY(!vornoifform::existing());
    }

    void theSelectedVertexIsMarkedInTheWireframe() {
        vornoifform* f = openStadium();
        UserPicksRow(f->oifpartvertices(), 2);
        const PreviewSelection selection = TheViews().Selection();
        QCOMPARE(selection.part, 0);
        QCOMPARE(selection.vertex, 2);
        const std::string wire = WirePreviewText(CurrentProject.OIF.Parts, CurrentProject.Scene, selection);
        QVERIFY(wire.find("   translation 0.25 7 8\r\n") != std::string::npos);
        QVERIFY(wire.find("   position 0.25 7 108\r\n") != std::string::npos);
        QVERIFY(wire.find("description \"Vertex\"") < wire.find("description \"Top\""));
    }
};

QTEST_MAIN(OIFEditorTest)
#include "OIFEditorTest.moc"
