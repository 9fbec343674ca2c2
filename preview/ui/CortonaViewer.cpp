#include "preview/ui/CortonaViewer.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFocusEvent>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>

#include <algorithm>
#include <array>

#include "core/Desktop.h"
#include "core/ProgramState.h"
#include "preview/VRMLOps.h"
#include "preview/ui/VrmlView.h"
#include "shell/IniOps.h"

namespace {

std::array<QPointer<CortonaViewer>, PreviewWindowCount> windows;

constexpr int StripHeight = 22;
constexpr int ButtonWidth = 20;

// Qt's keys as the handlers' key codes; keys without a code of their own pass as 0, which pans
// nowhere but still rewrites the view.
int KeyCode(int qtKey) {
    switch (qtKey) {
    case Qt::Key_Left: return KeyLeft;
    case Qt::Key_Up: return KeyUp;
    case Qt::Key_Right: return KeyRight;
    case Qt::Key_Down: return KeyDown;
    default: return 0;
    }
}

}  // namespace

CortonaViewer::CortonaViewer(int index, QWidget* parent) : QWidget(parent), index_(index) {
    Q_ASSERT(index >= 0 && index < PreviewWindowCount);
    if (!windows[index]) windows[index] = this;
    setObjectName(QStringLiteral("CortonaViewer"));
    setWindowTitle(QString::fromLatin1(PreviewWindowNames[index]));
    resize(PreviewWindowLayout()[index].Width, PreviewWindowLayout()[index].Height);

    frame1_ = new QFrame(this);
    frame1_->setObjectName(QStringLiteral("Frame1"));
    frame1_->setAutoFillBackground(true);

    label_ = new QLabel(QString::fromLatin1(PreviewWindowNames[index]), frame1_);
    label_->setObjectName(QStringLiteral("Label"));
    label_->setContentsMargins(4, 0, 4, 0);
    label_->installEventFilter(this);

    picture1_ = new QFrame(frame1_);
    picture1_->setObjectName(QStringLiteral("Picture1"));
    picture1_->setFocusPolicy(Qt::StrongFocus);
    picture1_->setAutoFillBackground(true);
    QPalette grey = picture1_->palette();
    grey.setColor(QPalette::Window, QColor(0xC0, 0xC0, 0xC0));
    picture1_->setPalette(grey);
    picture1_->installEventFilter(this);

    zoomin_ = new QPushButton(QStringLiteral("+"), picture1_);
    zoomin_->setObjectName(QStringLiteral("zoomin"));
    zoomout_ = new QPushButton(QStringLiteral("-"), picture1_);
    zoomout_->setObjectName(QStringLiteral("zoomout"));
    connect(zoomin_, &QPushButton::clicked, this, &CortonaViewer::zoominClick);
    connect(zoomout_, &QPushButton::clicked, this, &CortonaViewer::zoomoutClick);

    cortona1_ = new VrmlView(this);
    connect(cortona1_, &VrmlView::focusGained, this, [this] { setActiveColour(true); });
    connect(cortona1_, &VrmlView::focusLost, this, [this] { setActiveColour(false); });
    connect(cortona1_, &VrmlView::wheelTurned, this, &CortonaViewer::wheelTurned);
    connect(cortona1_, &VrmlView::mousePressed, this, &CortonaViewer::viewerPressed);
    connect(cortona1_, &VrmlView::mouseReleased, this, &CortonaViewer::viewerReleased);
    connect(cortona1_, &VrmlView::mouseMoved, this, &CortonaViewer::viewerMoved);

    setActiveColour(false);
    layoutControls();
}

CortonaViewer::~CortonaViewer() {
    if (windows[index_] == this) windows[index_] = nullptr;
}

CortonaViewer* CortonaViewer::window(int index) {
    if (!windows[index]) windows[index] = new CortonaViewer(index);
    return windows[index];
}

CortonaViewer* CortonaViewer::existing(int index) { return windows[index]; }

CortonaViewer* CortonaViewer::existing(const std::string& description) {
    const int index = PreviewWindowOf(description);
    return index < 0 ? nullptr : existing(index);
}

int CortonaViewer::activeIndex() {
    std::array<bool, PreviewWindowCount> active{};
    for (int i = 0; i < PreviewWindowCount; ++i) active[i] = windows[i] && windows[i]->showsActiveColour();
    return ActiveViewIndex(active);
}

void CortonaViewer::ReleaseView(const std::string&) {
    // The viewer reads a file whole and closes it, so it has nothing to let go of; and dropping
    // the picture here would throw away the parts that the new file shares with the old.
}

void CortonaViewer::LoadView(const std::string& description, const std::string& path) {
    CortonaViewer* w = existing(description);
    if (!w) return;
    if (const auto contents = WrittenViewFile(path))
        w->Cortona1()->showPreview(QString::fromStdString(path), *contents);
    else w->Cortona1()->setScene(QString::fromStdString(path));
}

QColor CortonaViewer::activeTitleColour() {
    return QApplication::palette().color(QPalette::Active, QPalette::Highlight);
}

QColor CortonaViewer::inactiveTitleColour() { return QApplication::palette().color(QPalette::Active, QPalette::Mid); }

bool CortonaViewer::showsActiveColour() const {
    return frame1_->palette().color(QPalette::Window) == activeTitleColour();
}

void CortonaViewer::setActiveColour(bool active) {
    QPalette p = frame1_->palette();
    p.setColor(QPalette::Window, active ? activeTitleColour() : inactiveTitleColour());
    frame1_->setPalette(p);
    QPalette text = label_->palette();
    text.setColor(QPalette::WindowText,
                  QApplication::palette().color(active ? QPalette::HighlightedText : QPalette::WindowText));
    label_->setPalette(text);
}

void CortonaViewer::applyView(int a) {
    if (a < 0 || static_cast<std::size_t>(a) >= PreviewViews.size()) return;
    // The picture moves first; the file, which for a large stadium takes far longer, after.
    if (CortonaViewer* w = existing(a)) {
        w->Cortona1()->showPose(HeadPose(PreviewViews[a]));
        w->Cortona1()->drawNow();
    }
    GuardedRun(PreviewViews[a].Description + " preview",
               [a] { InstallViewLater(CurrentProject.OIF, PreviewViews[a]); });
}

void CortonaViewer::wheelTurned(int notches) {
    const int a = activeIndex();
    if (a < 0 || static_cast<std::size_t>(a) >= PreviewViews.size()) return;
    ZoomView(PreviewViews[a], notches, ReadConfigNumber("Previews", "ZoomAmount"));
    applyView(a);
}

void CortonaViewer::keyPressed(int keyCode) {
    const int a = activeIndex();
    if (a < 0 || static_cast<std::size_t>(a) >= PreviewViews.size()) return;
    PanView(PreviewViews[a], keyCode);
    applyView(a);
}

void CortonaViewer::zoomButton(int notches) {
    // The window of the button becomes the active one before the zoom looks for it.
    setActiveColour(true);
    wheelTurned(notches);
    picture1_->setFocus(Qt::OtherFocusReason);
}

void CortonaViewer::zoominClick() { zoomButton(1); }

void CortonaViewer::zoomoutClick() { zoomButton(-1); }

void CortonaViewer::viewerPressed(int button, int, float x, float y) {
    PressTurn(turnStart_, static_cast<std::int16_t>(button), x, y);
}

double CortonaViewer::twipsPerPixel() const { return TwipsPerPixelAt(screen() ? screen()->logicalDotsPerInch() : 0); }

void CortonaViewer::viewerMoved(int buttons, int, float x, float y) {
    const int a = activeIndex();
    if (!(buttons & MouseLeft) || a < 0 || static_cast<std::size_t>(a) >= PreviewViews.size()) return;
    // The turn the release would make, shown and not yet kept.
    PreviewViewpoint turned = PreviewViews[a];
    if (ReleaseTurn(turned, turnStart_, x, y, twipsPerPixel()))
        if (CortonaViewer* w = existing(a)) w->Cortona1()->showPose(HeadPose(turned));
}

void CortonaViewer::viewerReleased(int, int, float x, float y) {
    const int a = activeIndex();
    if (a >= 0 && static_cast<std::size_t>(a) < PreviewViews.size() &&
        ReleaseTurn(PreviewViews[a], turnStart_, x, y, twipsPerPixel()))
        applyView(a);
    // A turn shown while the button was held and not kept goes back.
    for (int i = 0; i < PreviewWindowCount; ++i)
        if (CortonaViewer* w = existing(i); w && static_cast<std::size_t>(i) < PreviewViews.size())
            w->Cortona1()->showPose(HeadPose(PreviewViews[i]));
    // The viewer hands the keyboard to the strip after a click, so that the arrow keys pan.
    picture1_->setFocus(Qt::MouseFocusReason);
}

bool CortonaViewer::eventFilter(QObject* watched, QEvent* event) {
    if (watched == picture1_) {
        switch (event->type()) {
        case QEvent::FocusIn: setActiveColour(true); break;
        case QEvent::FocusOut: setActiveColour(false); break;
        case QEvent::KeyPress: keyPressed(KeyCode(static_cast<QKeyEvent*>(event)->key())); return true;
        default: break;
        }
    } else if (watched == label_ && event->type() == QEvent::MouseButtonPress) {
        picture1_->setFocus(Qt::MouseFocusReason);
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void CortonaViewer::closeEvent(QCloseEvent* event) {
    QWidget::closeEvent(event);
    // A close of the main window takes the previews with it and may open them again at once,
    // before the deferred deletion: the new ones must not be these.
    if (event->isAccepted() && testAttribute(Qt::WA_DeleteOnClose) && windows[index_] == this)
        windows[index_] = nullptr;
}

void CortonaViewer::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layoutControls();
}

void CortonaViewer::layoutControls() {
    const PixelRect view = CortonaViewerControlRect(width(), height(), StripHeight);
    frame1_->setGeometry(0, 0, width(), StripHeight);
    // The caption sits on the title colour; the grey strip runs from it to the viewer's right
    // edge, so the colour shows at both ends.
    const int labelWidth = label_->sizeHint().width();
    label_->setGeometry(0, 0, labelWidth, StripHeight);
    const int stripLeft = std::min(labelWidth, view.Width);
    picture1_->setGeometry(stripLeft, 2, std::max(0, view.Width - stripLeft), StripHeight - 4);
    const int right = picture1_->width();
    const int h = picture1_->height();
    zoomout_->setGeometry(right - ButtonWidth, 0, ButtonWidth, h);
    zoomin_->setGeometry(right - 2 * ButtonWidth, 0, ButtonWidth, h);
    cortona1_->setGeometry(view.Left, view.Top, view.Width, view.Height);
}
