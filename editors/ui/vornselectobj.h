#pragma once
// "OIF Objects": the list of the document's parts, a child of the main window. A selected row is
// a part that the previews show; the program keeps no other record of it.
#include <QMenu>
#include <QPointer>
#include <QWidget>
#include <vector>

class QListWidget;

class vornselectobj : public QWidget {
    Q_OBJECT
public:
    explicit vornselectobj(QWidget* parent = nullptr);

    // While false, a change of the selection does not reload the previews. Whoever changes many
    // rows from code sets it false first and true after. It starts false, so nothing reloads
    // before the first fill.
    bool ListReady = false;

    QListWidget* objectbox() const { return objectbox_; }
    // The pop-up menu `objselect`, shown at the mouse on a right-button release in the list.
    void setPopupMenu(QMenu* menu) { popup_ = menu; }

    // Fills the list with the 28-character names of the current document's parts, every row
    // selected, without reloading the previews.
    void fillFromDocument();
    // Show All (true) or Hide All (false) on every row, without reloading the previews.
    void selectAllRows(bool selected);
    // One flag per row.
    std::vector<bool> selectedRows() const;
    // The window was closed: it is on its way out and the next touch makes a new one.
    bool closed() const { return closed_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void objectboxSelectionChanged();

    QListWidget* objectbox_;
    QPointer<QMenu> popup_;
    bool closed_ = false;
};
