// The Qt side of the desktop seam: what the program's filters, command lines and message texts
// become when they reach Qt and the system.

#include "WindowTestKit.h"
#include "shell/ui/QtDesktop.h"
#include "shell/ui/helpviewer.h"
#include "shell/ui/textviewer.h"

class QtDesktopTest : public QObject {
    Q_OBJECT

private slots:
    void clicksDuringAnOperationsPumpAreDroppedNotKept() {
        QtDesktop desktop;
        QPushButton button("Delete");
        button.show();
        QVERIFY(QTest::qWaitForWindowExposed(&button));
        int clicks = 0;
        connect(&button, &QPushButton::clicked, [&] { ++clicks; });
        auto click = [&] {
            const QPointF at = QRectF(button.rect()).center();
            for (QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
                QCoreApplication::postEvent(
                    &button,
                    new QMouseEvent(type, at, button.mapToGlobal(at), Qt::LeftButton,
                                    type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier));
        };
        int timerRuns = 0;
        QTimer::singleShot(0, [&] { ++timerRuns; });
        click();
        desktop.ProcessEvents();
        QCOMPARE(timerRuns, 1);  // the windows go on working
        QCoreApplication::processEvents();
        QCOMPARE(clicks, 0);  // and the click is not handed on later either
        click();
        QCoreApplication::processEvents();
        QCOMPARE(clicks, 1);
    }

    void filtersTakeQtsForm() {
        const std::pair<const char*, const char*> rows[] = {
            {"3D Studio|*.3ds;*.3DS", "3D Studio (*.3ds *.3DS)"},
            {"OIF file|*.oif|O file|*.o", "OIF file (*.oif);;O file (*.o)"},
            {"Text Files (*.txt)|*.txt|All Files (*.*)|*.*", "Text Files (*.txt);;All Files (*.*)"},
            {"Bitmap (24 bit)|*.bmp", "Bitmap (24 bit) (*.bmp)"},
            {"CSV|*.csv|Half", "CSV (*.csv)"},
            {"", ""}};
        for (const auto& [filter, expected] : rows) QCOMPARE(QtFileFilter(filter), QString(expected));
    }

    void messageBoxShowsTheTextWithNewlinesAndReturnsTheAnswer() {
        const struct {
            MessageIcon icon;
            MessageButtons buttons;
            QMessageBox::StandardButton press;
            MessageAnswer answer;
            QMessageBox::Icon qtIcon;
        } rows[] = {
            {MessageIcon::Question, MessageButtons::YesNo, QMessageBox::No, MessageAnswer::No, QMessageBox::Question},
            {MessageIcon::Exclamation, MessageButtons::YesNo, QMessageBox::Yes, MessageAnswer::Yes,
             QMessageBox::Warning},
            {MessageIcon::Critical, MessageButtons::OK, QMessageBox::Ok, MessageAnswer::OK, QMessageBox::Critical},
            {MessageIcon::Information, MessageButtons::RetryCancel, QMessageBox::Retry, MessageAnswer::Retry,
             QMessageBox::Information},
            {MessageIcon::None, MessageButtons::YesNoCancel, QMessageBox::Cancel, MessageAnswer::Cancel,
             QMessageBox::NoIcon}};
        QtDesktop desktop;
        for (const auto& row : rows) {
            QString seen;  // what the box shows, and whether its icon and buttons are those asked for
            MessageAnswer got{};
            const auto ask = [&] {
                got = desktop.Message("First line\r\n\r\nThird line", "VORN Terramason", row.icon, row.buttons);
            };
            QVERIFY(RunModal<QMessageBox>(ask, [&](QMessageBox* box) {
                const bool asked = box->icon() == row.qtIcon && (box->standardButtons() & row.press);
                seen = box->text() + "|" + box->windowTitle() + (asked ? "" : " not as asked");
                box->button(row.press)->click();
            }));
            QVERIFY(got == row.answer);
            QCOMPARE(seen, QString("First line\n\nThird line|VORN Terramason"));
        }
    }

    void saveDialogTakesAnExistingFileWithoutAskingItself() {
        QTemporaryDir dir;
        const QString existing = dir.filePath("stadium.oif");
        WriteFile(existing.toStdString(), {'o', 'l', 'd'});
        bool dialogSeen = false;
        int questions = 0;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, [&] {
            QWidget* modal = QApplication::activeModalWidget();
            if (auto* box = qobject_cast<QMessageBox*>(modal)) {
                // A question of the dialog's own: counted and answered, so that the test ends.
                ++questions;
                if (QAbstractButton* yes = box->button(QMessageBox::Yes)) yes->click();
                return;
            }
            auto* dialog = qobject_cast<QFileDialog*>(modal);
            if (!dialog || !dialog->isVisible() || dialogSeen) return;
            dialogSeen = true;
            dialog->selectFile(existing);
            // Queued, so that a question opened by the accept finds this timer free to answer it.
            QMetaObject::invokeMethod(dialog, "accept", Qt::QueuedConnection);
        });
        poll.start(20);
        QtDesktop desktop;
        const std::string chosen =
            desktop.SaveFile("Export OIF file...", "OIF file|*.oif", "stadium.oif", dir.path().toStdString());
        poll.stop();
        QVERIFY(dialogSeen && questions == 0);
        QCOMPARE(QString::fromStdString(chosen), existing);
    }

    void processesStartRunEndAndWriteTheirOutput() {
        QtDesktop desktop;
        const std::int64_t sleeper = desktop.StartProcess("\"/bin/sleep\" 30", WindowMode::Hidden);
        QVERIFY(sleeper > 0 && desktop.ProcessRunning(sleeper));
        desktop.EndProcess(sleeper);
        QTRY_VERIFY_WITH_TIMEOUT(!desktop.ProcessRunning(sleeper), 5000);
        const std::int64_t quitter = desktop.StartProcess("/bin/sh -c \"exit 3\"", WindowMode::Normal);
        QTRY_VERIFY_WITH_TIMEOUT(quitter > 0 && !desktop.ProcessRunning(quitter), 5000);
        QCOMPARE(desktop.ProcessExitCode(quitter), 3);
        QCOMPARE(desktop.StartProcess("\"/nonexistent/folder/oiftool.exe\" -x", WindowMode::Normal), std::int64_t(0));
        QTemporaryDir dir;
        const std::string log = dir.filePath("tool.log").toStdString();
        const std::int64_t pid = desktop.StartCapturedProcess("/bin/sh -c \"echo converted; echo failed >&2\"", log);
        QTRY_VERIFY_WITH_TIMEOUT(pid > 0 && !desktop.ProcessRunning(pid), 5000);
        QCOMPARE(ReadFile(log), (std::vector<std::uint8_t>{'c', 'o', 'n', 'v', 'e', 'r', 't', 'e', 'd', '\n', 'f', 'a',
                                                           'i', 'l', 'e', 'd', '\n'}));
    }

    void clipboardTextAndPictureGoBothWaysAndReplaceEachOther() {
        QtDesktop desktop;
        desktop.SetClipboardText("tp01 cr02 \xC3\xA9");
        QCOMPARE(desktop.ClipboardText(), std::string("tp01 cr02 \xC3\xA9"));
        desktop.SetClipboardImage(PngOf(QColor(10, 200, 30), 5, 2));
        const std::vector<std::uint8_t> back = desktop.ClipboardImage();
        const QImage read = QImage::fromData(back.data(), int(back.size()));
        QVERIFY(read.size() == QSize(5, 2) && read.pixelColor(4, 1) == QColor(10, 200, 30));
        QCOMPARE(desktop.ClipboardText(), std::string());
        desktop.SetClipboardText("tp02");
        QVERIFY(desktop.ClipboardImage().empty());
    }

    // Help and text files stay inside the program; the book's web links go to the browser.
    void helpAndTextFilesShowInWindowsOfTheProgram() {
        ScratchProgram program;
        QtDesktop desktop;
        desktop.ShowHelpBook(HelpPagePath(HelpContentsPage));
        helpviewer* help = helpviewer::existing();
        QVERIFY(help && help->isVisible() && help->page()->toPlainText().contains("Terramason"));
        emit help->page()->anchorClicked(QUrl("sample.html"));
        QVERIFY(help->page()->source().toString().endsWith("/help/sample.html") && help->backbut()->isEnabled());
        InstallDesktop(&program.desktop);
        emit help->page()->anchorClicked(QUrl("https://example.org/fifa"));
        QCOMPARE(program.desktop.pages, std::vector<std::string>{"https://example.org/fifa"});
        QVERIFY(help->page()->source().toString().endsWith("/help/sample.html"));
        help->close();

        desktop.ShowTextFile(ReadmePath());
        bool shown = false;
        for (QWidget* w : QApplication::topLevelWidgets())
            if (auto* t = qobject_cast<textviewer*>(w)) {
                shown = t->isVisible() && t->text()->isReadOnly() && t->text()->toPlainText().contains("Terramason");
                t->close();
            }
        QVERIFY(shown);
    }
};

QTEST_MAIN(QtDesktopTest)
#include "QtDesktopTest.moc"
