// "OIF Editor", "Texture Manager" and "Select texture name...": their controls reach the document
// and the views, and what they store shows. Row texts, brightness, predefined UVs, the export's
// file and the size, pick and import rules are OIFEditorOpsTest's and TextureManagerOpsTest's.

#include "WindowTestKit.h"
#include "editors/ui/texturename.h"
#include "editors/ui/vorntexture.h"

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
void WriteImage(const std::string& path, int width, int height, const char* format = "PNG") {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(QColor(255, 0, 0));
    QVERIFY(image.save(QString::fromStdString(path), format));
}
void Press(QWidget* widget, Qt::MouseButton button, QPoint at) {
    QMouseEvent press(QEvent::MouseButtonPress, at, widget->mapToGlobal(at), button, button, Qt::NoModifier);
    QApplication::sendEvent(widget, &press);
}
}  // namespace

class EditorWindowsTest : public QObject {
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
    static const OIFVertex& vertex(int p, int v) {
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
        for (int i = 0; i < PreviewWindowCount; ++i) delete CortonaViewer::existing(i);
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

    void theEditorShowsTheDocumentItsControlsWriteItBackAndItsButtonsReachIt() {
        vornoifform* f = openStadium();
        QCOMPARE(f->oifpartbox()->count(), 3);
        QCOMPARE(f->oifpartvertices()->itemText(1), QString("-1.5, 0, 100000"));
        QVERIFY(f->indicesbox()->count() == 4 && f->Frame2()->isEnabled());
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
        // A UV field takes digits and one point after a digit; a key of no character passes.
        QLineEdit* u = f->oifvertextexx();
        u->clear();
        QTest::keyClicks(u, ".-0.5.2x");
        QVERIFY(u->text() == "0.52" && vertex(0, 1).U == 0.52f);
        QTest::keyClick(u, Qt::Key_Home);
        QTest::keyClick(u, Qt::Key_Delete);
        QCOMPARE(u->text(), QString(".52"));
        // Selecting a vertex stores its fields back in seven digits; a predefined UV goes to it.
        UserPicksRow(f->oifpartbox(), 1);
        UserPicksRow(f->oifpartvertices(), 1);
        QVERIFY(vertex(1, 1).X == 0.1234568f);
        UserPicksRow(f->oifvertexpointsel(), 2);
        QVERIFY(vertex(1, 1).U + vertex(1, 1).V == 1.75f && vertex(1, 0).U == 0.0f);
        QCOMPARE(f->oifvertextexx()->text(), QString("0.75"));
        // The selected vertex is marked in the wireframe.
        const std::string wire =
            WirePreviewText(CurrentProject.OIF.Parts, CurrentProject.Scene, TheViews().Selection());
        QVERIFY(wire.find("   translation 0.1234568 1 2\r\n") != std::string::npos);
        QVERIFY(wire.find("description \"Vertex\"") < wire.find("description \"Top\""));
        UserPicksRow(f->oifpartbox(), 2);
        QVERIFY(!f->oifvertexx()->isEnabled() && !f->oifvertexpointsel()->isEnabled());
        QCOMPARE(TheViews().Selection().vertex, -1);
        // Export and Delete reach the document and the list.
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
        QCOMPARE(CurrentProject.OIF.Parts[1].Header.Name.str().substr(0, 5), std::string("Empty"));
        QCOMPARE(spy.calls, (std::vector<std::string>{"RefreshPartsList", "RefreshPartsList"}));
        QVERIFY(CurrentProject.OIF.Header.PartCount == 2 && f->oifpartbox()->count() == 2);
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
        QVERIFY(f && entry->isChecked() && f->oifpartbox()->count() == 3);
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

    void aNewPointReachesTheOIFEditorAndAPressOnThePicturePicksItsUV() {
        frame_ = std::make_unique<vorn>();
        frame_->createnew(0, "Project1");
        vorntexture* t = vorntexture::existing();
        QCOMPARE(t->Picture1()->size(), QSize(0, 0));
        CurrentProject.OIF = NamedParts({"Roof"});
        CurrentProject.OIF.Parts[0].Header.Texture = "tp01";
        TheViews().RefreshPartsList();
        WriteImage(AppPath("temp/tp01.png"), 64, 32);
        UserPicksRow(t->texturebox(), 1);
        QCOMPARE(t->Picture1()->size(), QSize(64, 32));
        QCOMPARE(t->size().width(), 64 + 257);
        t->addtexturepart()->click();
        QCOMPARE(ComboRows(vornoifform::existing()->oifvertexpointsel()),
                 QStringList({"[Select predefined UV]", "[New Item]"}));
        // Renaming to nothing leaves an empty row; the Delete button has no handler.
        t->texturepartchange()->clear();
        QCOMPARE(ComboRows(t->texturepartbox()), QStringList({""}));
        t->deltexturepart()->click();
        const auto point = [] { return CurrentProject.Textures[1].Parts.at(0); };
        Press(t->Picture1(), Qt::LeftButton, QPoint(63, 31));
        QVERIFY(point().U + point().V == 2.0f && t->uvbox(0)->text() + t->uvbox(1)->text() == "11");
        Press(t->Picture1(), Qt::RightButton, QPoint(0, 0));
        QCOMPARE(point().U, 1.0f);
        t->uvbox(1)->clear();
        QTest::keyClicks(t->uvbox(1), "-.0.25");
        QVERIFY(point().V == 0.25f && point().U == 1.0f);
        QVERIFY(MakeActive(*t));
        QTest::mouseMove(t->Picture1(), QPoint(12, 30));
        QTRY_COMPARE(t->panel(3)->text(), QString("(12, 30)"));
    }

    void anImportedTextureReachesThePerspectivePreviewAndABadOneIsTold() {
        WriteConfig("Terramason", "Previews", "1");
        WriteConfig("Previews", "PerspectiveTex", "1");
        OpenFrameWithProject(frame_);
        vorntexture* t = vorntexture::existing();
        const std::string bad = program_->folder.file("bad.bmp"), jpeg = program_->folder.file("red.jpg");
        WriteFile(bad, {'n', 'o'});
        WriteImage(jpeg, 40, 20, "JPEG");
        program_->desktop.dialogAnswers = {bad, jpeg};
        t->importtex()->click();
        QVERIFY(!std::filesystem::exists(AppPath("temp/tp00.png")));
        QCOMPARE(program_->desktop.messages.at(0).icon, MessageIcon::Critical);
        t->importtex()->click();
        QCOMPARE(QImage(QString::fromStdString(AppPath("temp/tp00.png")), "PNG").size(), QSize(40, 20));
        QCOMPARE(t->Picture1()->size(), QSize(40, 20));
        frame_->menuAction("Refresh")->trigger();
        VrmlView* perspective = CortonaViewer::existing(ViewPerspective)->Cortona1();
        QVERIFY(QTest::qWaitForWindowExposed(perspective));
        const QImage shown = perspective->grabFramebuffer();
        QVERIFY(RedPixels(shown) > shown.width() * shown.height() / 10);
        // Import Textures for Previews names the picture, refusing no name, and forces a refresh.
        const std::string chosen = program_->folder.file("chosen.png");
        WriteImage(chosen, 8, 8);
        program_->desktop.dialogAnswers = {chosen};
        PreviewRefreshOn = false;
        SpyViews spy;
        bool refusedFirst = false;
        const auto import = [&] { frame_->menuAction("Import Textures for Previews...")->trigger(); };
        RunModal<texturename>(import, [&](texturename* w) {
            w->texbox()->setEditText(QString());
            w->okbut()->click();
            refusedFirst = w->isVisible() && program_->desktop.messages.size() == 2;
            w->texbox()->setEditText("rwa2");
            w->okbut()->click();
        });
        QVERIFY(refusedFirst && !PreviewRefreshOn);
        QCOMPARE(ReadFile(AppPath("temp/rwa2.png")), ReadFile(chosen));
        QCOMPARE(spy.flagAtRebuild, std::vector<bool>{true});
    }
};

QTEST_MAIN(EditorWindowsTest)
#include "EditorWindowsTest.moc"
