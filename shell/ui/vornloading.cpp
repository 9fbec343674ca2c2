#include "shell/ui/vornloading.h"

#include <QApplication>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>

#include "shell/ui/vorn.h"

vornloading::vornloading(QWidget* parent) : QWidget(parent, Qt::Tool) {
    setObjectName(QStringLiteral("vornloading"));
    setWindowTitle(QStringLiteral("Loading"));
    loadtext_ = new QLabel(QStringLiteral("Loading ..."), this);
    loadtext_->setObjectName(QStringLiteral("loadtext"));
    loadtext_->setMinimumWidth(260);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(18, 14, 18, 14);
    layout->addWidget(loadtext_);
}

void vornloading::showLoading(const QString& text) {
    loadtext_->setText(text);
    adjustSize();
    setBusy(true);
    if (!isVisible()) placeCentred();
    show();
    raise();
    // The window has to be mapped and painted now; user input stays queued, so no command can
    // start from here behind the caller's back.
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    repaint();
}

void vornloading::hideLoading() {
    hide();
    setBusy(false);
}

void vornloading::placeCentred() {
    QRect area;
    if (QWidget* frame = parentWidget(); frame && frame->isVisible()) area = frame->frameGeometry();
    else if (QScreen* s = screen()) area = s->availableGeometry();
    if (area.isValid()) move(area.center() - rect().center());
}

void vornloading::setBusy(bool busy) {
    QWidget* frame = vorn::instance();
    if (busy) {
        setCursor(Qt::WaitCursor);
        if (frame) frame->setCursor(Qt::WaitCursor);
    } else {
        unsetCursor();
        if (frame) frame->unsetCursor();
    }
}
