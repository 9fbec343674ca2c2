#include "shell/ui/FrameViews.h"

#include <algorithm>

#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScreen>

#include "core/Desktop.h"
#include "core/ProgramState.h"
#include "editors/ui/vornselectobj.h"
#include "preview/VRMLOps.h"
#include "preview/ui/CortonaViewer.h"
#include "preview/ui/VrmlView.h"
#include "preview/ui/vrmlviewer.h"

namespace {
// The parts list's place at the top left of the frame.
constexpr int ListWidthTwips = 1850, ListHeightTwips = 9500;
}  // namespace

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
        QMdiSubWindow* sub =
            area_->addSubWindow(selectobj_, Qt::SubWindow | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                                Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
        sub->setAttribute(Qt::WA_DeleteOnClose);
    }
    return selectobj_;
}

vornoifform* FrameViews::existingOifform() const { return vornoifform::existing(); }

vornoifform* FrameViews::oifform() {
    if (!existingOifform()) {
        auto* form = new vornoifform;
        QMdiSubWindow* sub = area_->addSubWindow(form);
        sub->setAttribute(Qt::WA_DeleteOnClose);
        form->setAttribute(Qt::WA_DeleteOnClose);
        sub->hide();
    }
    return existingOifform();
}

PixelSize FrameViews::WorkingAreaNeed() {
    PixelSize need{PixelsFromTwips(ListWidthTwips), PixelsFromTwips(ListHeightTwips)};
    for (const PixelRect& r : PreviewWindowLayout()) {
        need.Width = std::max(need.Width, r.Left + r.Width);
        need.Height = std::max(need.Height, r.Top + r.Height);
    }
    return need;
}

FramePlacement FrameViews::PlaceFrame(const QWidget& frame, const QWidget& area, int beside) {
    const QScreen* s = frame.screen();
    const QRect screen = s ? s->availableGeometry() : QRect(0, 0, 1024, 768);
    // What the window manager adds round the window counts as chrome too, once it is known.
    const PixelSize chrome{frame.frameGeometry().width() - area.width(),
                           frame.frameGeometry().height() - area.height()};
    return PlaceMainWindow(WorkingAreaNeed(), beside, chrome, {screen.width(), screen.height()});
}

void FrameViews::showoifform() {
    const bool fresh = !existingOifform();
    vornoifform* form = oifform();
    if (fresh) form->fillFromDocument();
    auto* frame = static_cast<QMdiSubWindow*>(form->parentWidget());
    // A minimised editor that was hidden would come back as an empty frame.
    if (frame->isMinimized()) frame->showNormal();
    if (frame->isHidden()) {
        frame->resize(frame->sizeHint());
        QWidget* window = area_->window();
        // The area grows with the window; the window system may tell the new size only later.
        int areaWidth = area_->width();
        const FramePlacement wanted = PlaceFrame(*window, *area_, frame->width());
        if (!window->isMaximized() && !window->isFullScreen() && !wanted.Maximised && wanted.Width > window->width()) {
            const int grow = wanted.Width - window->frameGeometry().width();
            window->resize(window->width() + grow, window->height());
            areaWidth += grow;
            if (const QScreen* s = window->screen()) {
                const QRect avail = s->availableGeometry();
                if (window->frameGeometry().right() > avail.right())
                    window->move(std::max(avail.left(), avail.right() + 1 - window->frameGeometry().width()),
                                 window->y());
            }
        }
        int previewsRight = 0;
        for (const PixelRect& r : PreviewWindowLayout()) previewsRight = std::max(previewsRight, r.Left + r.Width);
        const EditorPlacement placed =
            PlaceEditor(areaWidth, previewsRight, frame->width(), frame->minimumSizeHint().width());
        frame->setGeometry(placed.Left, 0, placed.Width, frame->height());
    }
    frame->show();
    frame->raise();
}

void FrameViews::hideoifform() {
    if (vornoifform* form = existingOifform()) form->parentWidget()->hide();
}

void FrameViews::RefreshPartsList() {
    TheDesktop().ShowLoading("Loading OIF parts interface...");
    selectobj()->fillFromDocument();
    if (vornoifform* form = existingOifform()) form->fillFromDocument();
    TheDesktop().HideLoading();
}

PreviewSelection FrameViews::Selection() {
    PreviewSelection selection{SelectedParts(), -1, -1};
    if (vornoifform* form = existingOifform()) {
        selection.part = form->selectedPart();
        selection.vertex = form->selectedVertex();
    }
    return selection;
}

void FrameViews::showselectobj() {
    QWidget* frame = selectobj()->parentWidget();
    frame->setGeometry(0, 0, PixelsFromTwips(ListWidthTwips), PixelsFromTwips(ListHeightTwips));
    frame->show();
}

std::vector<bool> FrameViews::SelectedParts() {
    vornselectobj* list = existingSelectobj();
    // A list that is not there has no rows, so nothing is selected, as in a freshly made one.
    return list ? list->selectedRows() : std::vector<bool>();
}

QMdiSubWindow* FrameViews::childFrame(QWidget* w, Qt::WindowFlags flags) {
    auto* frame = qobject_cast<QMdiSubWindow*>(w->parentWidget());
    if (frame && frame->mdiArea() == area_) return frame;
    frame = area_->addSubWindow(w, flags);
    frame->setAttribute(Qt::WA_DeleteOnClose);
    // The window goes with its frame, and knows it from its own close.
    w->setAttribute(Qt::WA_DeleteOnClose);
    return frame;
}

void FrameViews::loadviews() {
    if (!StartPreviews(CurrentProject.OIF, Selection())) return;
    const auto flags = PreviewRenderFlags();
    const auto layout = PreviewWindowLayout();
    std::array<QMdiSubWindow*, PreviewWindowCount> frames{};
    for (int i = 0; i < PreviewWindowCount; ++i) {
        CortonaViewer* w = CortonaViewer::window(i);
        // Frames without a border, side by side as the layout puts them, leave all but one viewer
        // black on the screen: Qt composes the viewers wrongly when frameless siblings touch. No
        // close box: only loadviews brings a preview back.
        frames[i] =
            childFrame(w, Qt::SubWindow | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowMinMaxButtonsHint);
        w->Cortona1()->setRenderFlags(flags[i]);
    }
    for (int i = 0; i < PreviewWindowCount; ++i)
        CortonaViewer::LoadView(PreviewWindowNames[i], ViewFilePath(PreviewWindowNames[i]));
    for (int i = 0; i < PreviewWindowCount; ++i) {
        CortonaViewer::window(i)->Label()->setText(QString::fromLatin1(PreviewWindowNames[i]));
        frames[i]->setGeometry(layout[i].Left, layout[i].Top, layout[i].Width, layout[i].Height);
    }
    for (int i : {ViewTop, ViewBack, ViewPerspective, ViewRight}) frames[i]->show();
}

void FrameViews::RebuildPreviews() { ::RebuildPreviews(CurrentProject.OIF, Selection()); }

void FrameViews::ReloadPreviews() { ::ReloadPreviews(CurrentProject.OIF, Selection()); }

void FrameViews::ReleaseView(const std::string& description) { CortonaViewer::ReleaseView(description); }

void FrameViews::LoadView(const std::string& description, const std::string& path) {
    CortonaViewer::LoadView(description, path);
}

void FrameViews::ShowWirePreview(const std::string& path) {
    vrmlviewer* viewer = vrmlviewer::window();
    QMdiSubWindow* frame = childFrame(viewer, Qt::SubWindow);
    viewer->Cortona1()->setScene(QString::fromStdString(path));
    if (frame->isVisible()) return;
    // Placed as showvrml places it: sized by the screen, at the right edge of the frame.
    const QScreen* screen = area_->screen();
    const QSize pixels = screen ? screen->size() : QSize(1024, 768);
    const PixelRect r = StadiumPreviewPlacement(pixels.width(), pixels.height(), area_->width());
    frame->setGeometry(r.Left, r.Top, r.Width, r.Height);
    frame->show();
}
