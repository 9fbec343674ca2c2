#include "importer/ui/SheetWidgets.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "importer/AtlasLayout.h"

namespace {
bool IsArrow(int key) {
    return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
}

void DrawFrame(QWidget* widget) {
    QPainter p(widget);
    p.setPen(Qt::black);
    p.drawRect(0, 0, widget->width() - 1, widget->height() - 1);
}
}  // namespace

void FillWith(QWidget* widget, const QColor& colour) {
    widget->setAutoFillBackground(true);
    QPalette palette = widget->palette();
    palette.setColor(QPalette::Window, colour);
    widget->setPalette(palette);
}

AtlasSheet::AtlasSheet(QWidget* parent) : QWidget(parent) {}

void AtlasSheet::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), palette().color(QPalette::Window));
    const int c = ChequerCell(height());
    for (int i = 0; i <= 50; ++i)
        for (int j = 0; j <= 50; ++j)
            p.fillRect(i * c, j * c, c, c, (i + j) % 2 == 0 ? QColor(0xEE, 0xEE, 0xEE) : QColor(Qt::white));
}

void AtlasSheet::mouseMoveEvent(QMouseEvent* event) {
    if (handleDragging && handleDragging() && onHandleMove) onHandleMove(event->position());
    else QWidget::mouseMoveEvent(event);
}

void AtlasSheet::mouseReleaseEvent(QMouseEvent* event) {
    if (handleDragging && handleDragging() && onHandleRelease) onHandleRelease();
    else QWidget::mouseReleaseEvent(event);
}

TextureBoxView::TextureBoxView(QWidget* sheet, std::function<const QImage&()> picture, std::function<bool()> isCurrent)
    : QWidget(sheet), picture_(std::move(picture)), isCurrent_(std::move(isCurrent)) {
    setFocusPolicy(Qt::ClickFocus);
}

void TextureBoxView::paintEvent(QPaintEvent*) {
    {
        QPainter p(this);
        p.drawImage(rect(), picture_());
    }
    if (isCurrent_ && isCurrent_()) DrawFrame(this);
}

void TextureBoxView::mousePressEvent(QMouseEvent* event) {
    if (onPress) onPress(event->button(), event->position());
}

void TextureBoxView::mouseMoveEvent(QMouseEvent* event) {
    if (onMove) onMove(event->position());
}

void TextureBoxView::mouseReleaseEvent(QMouseEvent*) {
    if (onRelease) onRelease();
}

void TextureBoxView::keyPressEvent(QKeyEvent* event) {
    if (onKey) onKey(event->key(), event->modifiers());
    if (!IsArrow(event->key())) QWidget::keyPressEvent(event);
}

void TextureBoxView::focusInEvent(QFocusEvent* event) {
    update();
    QWidget::focusInEvent(event);
}

void TextureBoxView::focusOutEvent(QFocusEvent* event) {
    update();
    QWidget::focusOutEvent(event);
}

SizingHandle::SizingHandle(QWidget* sheet) : QWidget(sheet) { setFocusPolicy(Qt::ClickFocus); }

void SizingHandle::paintEvent(QPaintEvent*) { DrawFrame(this); }

void SizingHandle::mousePressEvent(QMouseEvent* event) {
    if (onPress) onPress(event->button(), event->position());
}

void SizingHandle::focusInEvent(QFocusEvent* event) {
    if (onFocus) onFocus();
    QWidget::focusInEvent(event);
}

CtrlReleaseWatcher::CtrlReleaseWatcher(QAbstractButton* button, std::function<void()> onCtrlRelease)
    : QObject(button), onCtrlRelease_(std::move(onCtrlRelease)) {
    button->installEventFilter(this);
}

bool CtrlReleaseWatcher::eventFilter(QObject*, QEvent* event) {
    if (event->type() != QEvent::MouseButtonRelease) return false;
    const auto* mouse = static_cast<QMouseEvent*>(event);
    if (mouse->button() == Qt::LeftButton && mouse->modifiers() == Qt::ControlModifier) onCtrlRelease_();
    return false;
}
