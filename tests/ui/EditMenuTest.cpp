// The Edit menu: deleting the parts selected in the parts list, and the clipboard entries that
// follow the focused control.
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <QTextEdit>
#include <QVBoxLayout>
#include <QtTest>

#include <memory>

#include "FrameTestKit.h"
#include "editors/ui/vornselectobj.h"

namespace {

// A working window inside vorn with one control of each kind, as the editors will have them.
struct Controls {
    QWidget* page;
    QLineEdit* line;
    QTextEdit* text;
    QComboBox* combo;
    QListWidget* list;
    QLabel* picture;
    QPushButton* button;

    explicit Controls(vorn& w) {
        page = new QWidget;
        auto* layout = new QVBoxLayout(page);
        line = new QLineEdit(QStringLiteral("North stand"));
        text = new QTextEdit;
        text->setPlainText(QStringLiteral("first\nsecond"));
        combo = new QComboBox;
        combo->setEditable(true);
        combo->addItems({QStringLiteral("tp00"), QStringLiteral("tp01")});
        list = new QListWidget;
        list->addItems({QStringLiteral("skcd"), QStringLiteral("tp03")});
        picture = new QLabel;
        picture->setFocusPolicy(Qt::StrongFocus);
        QPixmap red(8, 8);
        red.fill(Qt::red);
        picture->setPixmap(red);
        button = new QPushButton(QStringLiteral("Apply"));
        for (QWidget* c : std::initializer_list<QWidget*>{line, text, combo, list, picture, button})
            layout->addWidget(c);
        w.mdiArea()->addSubWindow(page)->show();
    }
};

}  // namespace

class EditMenuTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;
    ScriptedDesktop* desktop_ = nullptr;

    // Opens the Edit menu as the user does, which runs the edit update, and closes it again.
    static void OpenEdit(vorn& w) {
        QMenu* edit = w.menuAction("&Edit")->menu();
        edit->popup(w.mapToGlobal(QPoint(10, 30)));
        QTRY_VERIFY(edit->isVisible());
        edit->hide();
    }
    static bool On(vorn& w, const char* caption) { return w.menuAction(caption)->isEnabled(); }

    static void Focus(vorn& w, QWidget* control) {
        w.activateWindow();
        control->setFocus(Qt::OtherFocusReason);
        QTRY_COMPARE(QApplication::focusWidget(), control);
    }

private slots:
    void init() {
        program_ = std::make_unique<ScratchProgram>();
        desktop_ = &program_->desktop;
    }
    void cleanup() { program_.reset(); }

    // The question and the rule of what goes are the command's (CommandOpsTest); here the menu
    // and the toolbar reach it with the list's selection, and the list follows.
    void deleteRemovesTheSelectedPartsAfterYes() {
        vorn w;
        w.show();
        OpenProjectOf(w, {"North stand", "Roof", "South stand"});
        QListWidget* box = w.selectobj()->objectbox();
        box->clearSelection();
        box->item(0)->setSelected(true);
        box->item(2)->setSelected(true);

        desktop_->answers = {MessageAnswer::No};
        w.toolbarAction("Delete")->trigger();
        QCOMPARE(CurrentProject.OIF.Parts.size(), std::size_t(3));
        QCOMPARE(box->count(), 3);

        SpyViews spy;
        desktop_->answers = {MessageAnswer::Yes};
        OpenEdit(w);
        w.menuAction("Delete")->trigger();
        QCOMPARE(desktop_->messages.size(), std::size_t(2));
        QCOMPARE(desktop_->messages[1].text, std::string("Are you sure you want to delete the 2 selected parts?"));
        QCOMPARE(CurrentProject.OIF.Parts.size(), std::size_t(1));
        QVERIFY(CurrentProject.OIF.Parts[0].Header.Name.str().starts_with("Roof "));
        QCOMPARE(spy.calls, (std::vector<std::string>{"RefreshPartsList", "RebuildPreviews"}));
        // The list was refreshed: one row, the part that is left, selected.
        QCOMPARE(box->count(), 1);
        QVERIFY(box->item(0)->text().startsWith("Roof"));
        QVERIFY(box->item(0)->isSelected());

        box->clearSelection();
        w.menuAction("Delete")->trigger();
        QCOMPARE(desktop_->messages.size(), std::size_t(2));
        QCOMPARE(CurrentProject.OIF.Parts.size(), std::size_t(1));
    }

    // EditUpdate's table is checked in CommandOpsTest; here each kind of control is recognised
    // when focused and the entries are set at the opening of the menu.
    void editUpdateFollowsTheFocusedControl() {
        vorn w;
        QVERIFY(MakeActive(w));
        Controls c(w);
        struct Case {
            QWidget* control;
            bool textOnClipboard;
            bool cut, paste;
        };
        const Case cases[] = {{c.line, true, true, true},
                              {c.line, false, true, false},
                              {c.picture, false, true, true},
                              {c.picture, true, true, false},
                              {c.combo, true, true, true},
                              {c.list, true, true, true},
                              {c.button, true, false, false},
                              {c.text, true, true, true},
                              // The frame's own area is no control: the state of a fresh start.
                              {w.mdiArea(), true, true, false}};
        for (const Case& k : cases) {
            if (k.textOnClipboard) desktop_->SetClipboardText("tp05");
            else desktop_->SetClipboardImage(PngOf(Qt::blue));
            Focus(w, k.control);
            OpenEdit(w);
            const QString what = k.control->metaObject()->className();
            QVERIFY2(On(w, "Cu&t") == k.cut && On(w, "&Copy") == k.cut, qPrintable(what));
            QVERIFY2(On(w, "&Paste") == k.paste, qPrintable(what));
        }
    }

    void clipboardCommandsWorkOnTheFocusedControlOnly() {
        vorn w;
        QVERIFY(MakeActive(w));
        Controls c(w);
        CurrentProject.OIF = NamedParts({"Roof"});
        const OIFFile before = CurrentProject.OIF;

        // Text box: the selection goes to the clipboard and back.
        Focus(w, c.line);
        c.line->setSelection(0, 5);
        w.menuAction("Cu&t")->trigger();
        QCOMPARE(desktop_->clipboard, std::string("North"));
        QCOMPARE(c.line->text(), QString(" stand"));
        c.line->setCursorPosition(6);
        w.menuAction("&Paste")->trigger();
        QCOMPARE(c.line->text(), QString(" standNorth"));

        Focus(w, c.text);
        QTextCursor cursor = c.text->textCursor();
        cursor.select(QTextCursor::Document);
        c.text->setTextCursor(cursor);
        w.menuAction("&Copy")->trigger();
        QCOMPARE(desktop_->clipboard, std::string("first\nsecond"));

        // Combo box: its whole text.
        Focus(w, c.combo);
        w.toolbarAction("Cut")->trigger();
        QCOMPARE(desktop_->clipboard, std::string("tp00"));
        QCOMPARE(c.combo->currentText(), QString());
        desktop_->SetClipboardText("rwh2");
        w.toolbarAction("Paste")->trigger();
        QCOMPARE(c.combo->currentText(), QString("rwh2"));

        // List box: the current item is copied, cut removes it, paste adds the text as an item.
        Focus(w, c.list);
        c.list->setCurrentRow(1);
        w.menuAction("Cu&t")->trigger();
        QCOMPARE(desktop_->clipboard, std::string("tp03"));
        QCOMPARE(c.list->count(), 1);
        desktop_->SetClipboardText("gras");
        w.menuAction("&Paste")->trigger();
        QCOMPARE(c.list->count(), 2);
        QCOMPARE(c.list->item(1)->text(), QString("gras"));

        // Picture box: the picture as a bitmap.
        Focus(w, c.picture);
        w.menuAction("Cu&t")->trigger();
        QVERIFY(!desktop_->clipboardImage.empty());
        QVERIFY(c.picture->pixmap().isNull());
        QImage copied;
        QVERIFY(copied.loadFromData(desktop_->clipboardImage.data(), int(desktop_->clipboardImage.size())));
        QCOMPARE(copied.pixelColor(3, 3), QColor(Qt::red));
        desktop_->SetClipboardImage(PngOf(Qt::green));
        w.menuAction("&Paste")->trigger();
        QCOMPARE(c.picture->pixmap().size(), QSize(4, 3));
        QCOMPARE(c.picture->pixmap().toImage().pixelColor(1, 1), QColor(Qt::green));

        // Another control: nothing happens.
        Focus(w, c.button);
        desktop_->SetClipboardText("kept");
        w.toolbarAction("Cut")->trigger();
        w.toolbarAction("Paste")->trigger();
        QCOMPARE(desktop_->clipboard, std::string("kept"));
        QCOMPARE(CurrentProject.OIF, before);
    }
};

QTEST_MAIN(EditMenuTest)
#include "EditMenuTest.moc"
