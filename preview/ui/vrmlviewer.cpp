#include "preview/ui/vrmlviewer.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QPointer>
#include <QScreen>

#include "preview/PreviewViewOps.h"
#include "preview/ui/VrmlView.h"

namespace {
QPointer<vrmlviewer> theWindow;
}

vrmlviewer::vrmlviewer(QWidget* parent) : QWidget(parent) {
    if (!theWindow) theWindow = this;
    setObjectName(QStringLiteral("vrmlviewer"));
    setWindowTitle(QStringLiteral("Stadium Preview"));
    cortona1_ = new VrmlView(this);
    resize(459, 459);
}

vrmlviewer::~vrmlviewer() = default;

vrmlviewer* vrmlviewer::window() {
    if (!theWindow) theWindow = new vrmlviewer;
    return theWindow;
}

vrmlviewer* vrmlviewer::existing() { return theWindow; }

void vrmlviewer::showvrml(int frameWidth) {
    QScreen* s = screen() ? screen() : QGuiApplication::primaryScreen();
    const QSize pixels = s ? s->size() : QSize(1024, 768);
    const PixelRect r = StadiumPreviewPlacement(pixels.width(), pixels.height(), frameWidth);
    resize(r.Width, r.Height);
    move(r.Left, r.Top);
    show();
}

void vrmlviewer::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const PixelRect r = StadiumPreviewControlRect(width(), height());
    cortona1_->setGeometry(r.Left, r.Top, r.Width, r.Height);
}

void vrmlviewer::closeEvent(QCloseEvent* event) {
    QWidget::closeEvent(event);
    // The next wireframe must not land in a window on its way out.
    if (event->isAccepted() && testAttribute(Qt::WA_DeleteOnClose) && theWindow == this) theWindow = nullptr;
}
