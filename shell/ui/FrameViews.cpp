#include "shell/ui/FrameViews.h"

#include <QMdiArea>
#include <QMdiSubWindow>

#include "core/Desktop.h"
#include "core/ProgramState.h"
#include "editors/ui/vornselectobj.h"

FrameViews::FrameViews(QMdiArea* area, QMenu* objselect) : area_(area), objselect_(objselect) {
    previous_ = InstallViews(this);
}

FrameViews::~FrameViews() {
    if (&TheViews() == this) InstallViews(previous_);
}

vornselectobj* FrameViews::existingSelectobj() const {
    return selectobj_ && !selectobj_->closed() ? selectobj_.data() : nullptr;
}

vornselectobj* FrameViews::selectobj() {
    if (!existingSelectobj()) {
        selectobj_ = new vornselectobj;
        selectobj_->setPopupMenu(objselect_);
        // The parts list is always there ("Object Browser" stays checked), so it has no close
        // box; and at 1850 twips it is narrow: without the icon and the maximise button its title
        // still reads "OIF Objects".
        QMdiSubWindow* sub = area_->addSubWindow(
            selectobj_, Qt::SubWindow | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowMinimizeButtonHint |
                            Qt::WindowCloseButtonHint);
        sub->setAttribute(Qt::WA_DeleteOnClose);
    }
    return selectobj_;
}

void FrameViews::RefreshPartsList() {
    TheDesktop().ShowLoading("Loading OIF parts interface...");
    selectobj()->fillFromDocument();
    TheDesktop().HideLoading();
}

void FrameViews::showselectobj() {
    QWidget* frame = selectobj()->parentWidget();
    frame->setGeometry(0, 0, TwipsToPixels(1850), TwipsToPixels(9500));
    frame->show();
}

std::vector<bool> FrameViews::SelectedParts() {
    vornselectobj* list = existingSelectobj();
    // A list that is not there has no rows, so nothing is selected, as in a freshly made one.
    return list ? list->selectedRows() : std::vector<bool>();
}
