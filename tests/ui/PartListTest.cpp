// "OIF Objects": the parts list inside vorn, its guard, its pop-up menu and its placement.
#include <QAction>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QtTest>

#include <memory>

#include "FrameTestKit.h"
#include "editors/ui/vornselectobj.h"

class PartListTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ScratchProgram> program_;

    static std::vector<bool> Rows(vornselectobj* list) { return list->selectedRows(); }

private slots:
    void init() { program_ = std::make_unique<ScratchProgram>(); }
    void cleanup() { program_.reset(); }

    void refreshListsEveryPartByItsNameAllSelectedWithoutReloading() {
        vorn w;
        w.createnew(0, "Project1");
        CurrentProject.OIF = NamedParts({"North stand", "Caf\xE9 roof", "Pitch"});
        program_->desktop.loadingTexts.clear();
        SpyViews spy;
        TheViews().RefreshPartsList();

        vornselectobj* list = w.selectobj();
        QCOMPARE(list->windowTitle(), QString("OIF Objects"));
        QListWidget* box = list->objectbox();
        QCOMPARE(box->objectName(), QString("objectbox"));
        QCOMPARE(box->selectionMode(), QAbstractItemView::ExtendedSelection);
        QCOMPARE(box->count(), 3);
        QCOMPARE(box->item(0)->text(), QString("North stand").leftJustified(28));
        QCOMPARE(box->item(1)->text(), QString::fromUtf8("Caf\xC3\xA9 roof").leftJustified(28));
        QCOMPARE(Rows(list), (std::vector<bool>{true, true, true}));
        QCOMPARE(box->currentRow(), 0);
        QVERIFY(list->ListReady);
        QCOMPARE(spy.count("ReloadPreviews"), 0);
        QCOMPARE(program_->desktop.loadingTexts, std::vector<std::string>{"Loading OIF parts interface..."});
        QVERIFY(!program_->desktop.loadingShown);
    }

    void aSelectionChangeReloadsOnlyWhenTheListIsReady() {
        vorn w;
        OpenProjectOf(w, {"A", "B", "C"});
        vornselectobj* list = w.selectobj();
        SpyViews spy;

        list->objectbox()->item(1)->setSelected(false);
        QCOMPARE(spy.count("ReloadPreviews"), 1);
        QCOMPARE(TheViews().SelectedParts(), (std::vector<bool>{true, false, true}));

        list->ListReady = false;
        list->objectbox()->item(0)->setSelected(false);
        QCOMPARE(spy.count("ReloadPreviews"), 1);
    }

    void rightButtonReleasePopsUpShowAllAndHideAll() {
        vorn w;
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        OpenProjectOf(w, {"A", "B", "C", "D"});
        vornselectobj* list = w.selectobj();
        QVERIFY(QTest::qWaitForWindowExposed(list));
        QWidget* viewport = list->objectbox()->viewport();
        const QPoint onRow = list->objectbox()->visualItemRect(list->objectbox()->item(2)).center();

        QMenu* popup = w.objselect();
        QCOMPARE(popup->title(), QString("Objects Select"));
        QVERIFY(!popup->isVisible());
        QTest::mousePress(viewport, Qt::RightButton, {}, onRow);
        // The right button selects nothing.
        QCOMPARE(Rows(list), (std::vector<bool>{true, true, true, true}));
        QTest::mouseRelease(viewport, Qt::RightButton, {}, onRow);
        QTRY_VERIFY(popup->isVisible());
        QStringList captions;
        for (QAction* a : popup->actions()) captions << a->text();
        QCOMPARE(captions, QStringList({"Show All", "Hide All"}));

        SpyViews spy;
        popup->actions()[1]->trigger();
        popup->hide();
        QCOMPARE(Rows(list), (std::vector<bool>{false, false, false, false}));
        QCOMPARE(spy.count("ReloadPreviews"), 1);  // one reload for the whole change
        QVERIFY(list->ListReady);

        popup->actions()[0]->trigger();
        QCOMPARE(Rows(list), (std::vector<bool>{true, true, true, true}));
        QCOMPARE(spy.count("ReloadPreviews"), 2);
    }

    void controlAReachesNeitherTheListNorTheDisabledEntry() {
        vorn w;
        QVERIFY(MakeActive(w));
        OpenProjectOf(w, {"A", "B", "C"});
        vornselectobj* list = w.selectobj();
        list->objectbox()->clearSelection();
        list->objectbox()->setFocus();
        QTRY_COMPARE(QApplication::focusWidget(), list->objectbox());
        QTest::keyClick(list->objectbox(), Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(Rows(list), (std::vector<bool>{false, false, false}));
    }

    void showselectobjPlacesTheListAtTheTopLeftInTwips() {
        vorn w;
        w.resize(1000, 800);
        w.show();
        w.createnew(0, "Project1");
        QMdiSubWindow* frame = qobject_cast<QMdiSubWindow*>(w.selectobj()->parentWidget());
        QVERIFY(frame);
        QVERIFY(frame->isVisible());
        QCOMPARE(frame->geometry(), QRect(0, 0, 1850 / 15, 9500 / 15));
        // The list fills the window.
        QCOMPARE(w.selectobj()->objectbox()->geometry(), w.selectobj()->rect());
    }

    void editMenuShowAndHideAllAreTheSameCommandsButStayDisabled() {
        vorn w;
        w.createnew(0, "Project1");
        QVERIFY(!w.menuAction("&Hide All")->isEnabled());
        QVERIFY(!w.menuAction("&Select All")->isEnabled());
        CurrentProject.OIF = NamedParts({"A", "B"});
        TheViews().RefreshPartsList();
        // Enabled by hand, the entries hide and show the parts as the pop-up does.
        w.menuAction("&Hide All")->setEnabled(true);
        w.menuAction("&Hide All")->trigger();
        QCOMPARE(Rows(w.selectobj()), (std::vector<bool>{false, false}));
        w.menuAction("&Select All")->setEnabled(true);
        w.menuAction("&Select All")->trigger();
        QCOMPARE(Rows(w.selectobj()), (std::vector<bool>{true, true}));
    }

    void mergeChangesTheDocumentButLeavesTheListStale() {
        vorn w;
        OpenProjectOf(w, {"A", "B", "C"});  // all of texture tp00
        SpyViews spy;
        w.menuAction("Merge parts with same texture...")->trigger();
        QCOMPARE(CurrentProject.OIF.Parts.size(), std::size_t(1));
        QCOMPARE(w.selectobj()->objectbox()->count(), 3);
        QVERIFY(spy.calls.empty());
        QVERIFY(program_->desktop.messages.empty());
    }
};

QTEST_MAIN(PartListTest)
#include "PartListTest.moc"
