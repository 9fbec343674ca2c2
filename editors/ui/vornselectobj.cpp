#include "editors/ui/vornselectobj.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QListWidget>
#include <QMenu>
#include <QMouseEvent>
#include <QVBoxLayout>

#include "core/Cp1252.h"
#include "core/Desktop.h"
#include "core/ProgramState.h"
#include "core/Views.h"

vornselectobj::vornselectobj(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("vornselectobj"));
    setWindowTitle(QStringLiteral("OIF Objects"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    objectbox_ = new QListWidget(this);
    objectbox_->setObjectName(QStringLiteral("objectbox"));
    objectbox_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    objectbox_->setUniformItemSizes(true);
    layout->addWidget(objectbox_);
    objectbox_->installEventFilter(this);
    objectbox_->viewport()->installEventFilter(this);
    connect(objectbox_, &QListWidget::itemSelectionChanged, this, &vornselectobj::objectboxSelectionChanged);
}

void vornselectobj::objectboxSelectionChanged() {
    if (!ListReady) return;
    GuardedRun("Showing the selected parts", [] { TheViews().ReloadPreviews(); });
}

void vornselectobj::fillFromDocument() {
    ListReady = false;
    objectbox_->clear();
    for (const OIFPart& part : CurrentProject.OIF.Parts)
        objectbox_->addItem(QString::fromStdString(Cp1252ToUtf8(part.Header.Name.view())));
    objectbox_->selectAll();
    if (objectbox_->count() > 0)
        objectbox_->selectionModel()->setCurrentIndex(objectbox_->model()->index(0, 0), QItemSelectionModel::NoUpdate);
    ListReady = true;
}

void vornselectobj::selectAllRows(bool selected) {
    ListReady = false;
    if (selected) objectbox_->selectAll();
    else objectbox_->clearSelection();
    ListReady = true;
}

std::vector<bool> vornselectobj::selectedRows() const {
    std::vector<bool> rows(static_cast<std::size_t>(objectbox_->count()), false);
    for (int i = 0; i < objectbox_->count(); ++i) rows[static_cast<std::size_t>(i)] = objectbox_->item(i)->isSelected();
    return rows;
}

void vornselectobj::closeEvent(QCloseEvent* event) {
    closed_ = true;
    QWidget::closeEvent(event);
}

bool vornselectobj::eventFilter(QObject* watched, QEvent* event) {
    if (watched == objectbox_->viewport()) {
        // The right button is for the pop-up menu only: it must not change which parts are shown.
        if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick) {
            if (static_cast<QMouseEvent*>(event)->button() == Qt::RightButton) return true;
        } else if (event->type() == QEvent::MouseButtonRelease) {
            auto* mouse = static_cast<QMouseEvent*>(event);
            if (mouse->button() == Qt::RightButton) {
                if (popup_) popup_->popup(mouse->globalPosition().toPoint());
                return true;
            }
        }
    } else if (watched == objectbox_ && event->type() == QEvent::KeyPress) {
        // Selecting every row is the disabled "&Select All" of the Edit menu: Ctrl+A does nothing.
        if (static_cast<QKeyEvent*>(event)->matches(QKeySequence::SelectAll)) return true;
    }
    return QWidget::eventFilter(watched, event);
}
