#pragma once
// The pieces of the Stadium Importer's sheet, each with one job. They know nothing of the
// layout: each shows itself and hands its mouse and keys to the callbacks stmap gives it.
#include <QImage>
#include <QObject>
#include <QWidget>
#include <functional>

class QAbstractButton;

// The sheet: a chequer under the texture boxes. While a handle is dragged it holds the mouse,
// and hands the moves and the release on, in its own pixels.
class AtlasSheet : public QWidget {
public:
    explicit AtlasSheet(QWidget* parent);
    std::function<bool()> handleDragging;
    std::function<void(QPointF)> onHandleMove;
    std::function<void()> onHandleRelease;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
};

// One texture on the sheet: its picture stretched over the box, framed while it is the current
// one. Mouse positions are in the box's own pixels; the arrow keys are taken, others pass on.
class TextureBoxView : public QWidget {
public:
    TextureBoxView(QWidget* sheet, std::function<const QImage&()> picture, std::function<bool()> isCurrent);
    std::function<void(Qt::MouseButton, QPointF)> onPress;
    std::function<void(QPointF)> onMove;
    std::function<void()> onRelease;
    std::function<void(int key, Qt::KeyboardModifiers)> onKey;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    std::function<const QImage&()> picture_;
    std::function<bool()> isCurrent_;
};

// One of the eight sizing handles round the current box: a framed square that hands on a
// press, and passes the focus back to the box when it takes it.
class SizingHandle : public QWidget {
public:
    explicit SizingHandle(QWidget* sheet);
    std::function<void(Qt::MouseButton, QPointF)> onPress;
    std::function<void()> onFocus;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
};

// Calls `onCtrlRelease` when the button is released with the left mouse button and Ctrl alone
// held, before the button's own click.
class CtrlReleaseWatcher : public QObject {
public:
    CtrlReleaseWatcher(QAbstractButton* button, std::function<void()> onCtrlRelease);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> onCtrlRelease_;
};

// Fills the widget with a plain colour behind whatever it paints.
void FillWith(QWidget* widget, const QColor& colour);
