#include "shell/ui/vorn.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QLabel>
#include <QMdiArea>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QToolBar>

#include "core/Cp1252.h"
#include "core/Desktop.h"
#include "core/ProgramState.h"
#include "shell/ui/Resources.h"

namespace {
vorn* liveFrame = nullptr;

// "E&xit" -> "Exit", for the error box of a command that failed.
std::string CommandName(const char* caption) {
    std::string name;
    for (const char* c = caption; *c; ++c)
        if (*c != '&') name += *c;
    while (!name.empty() && name.back() == '.') name.pop_back();
    return name;
}
}  // namespace

// One entry of the menu bar. Menus appear in the order of their first entry, entries in table
// order; a caption of "-" is a separator.
struct vorn::MenuCommand {
    const char* menu;
    const char* caption;
    const char* shortcut;
    void (vorn::*handler)();
};

const vorn::MenuCommand vorn::MenuCommands[] = {
    {"&File", "E&xit", "Ctrl+Q", &vorn::fileexit},
};

vorn::vorn(QWidget* parent) : QMainWindow(parent) {
    liveFrame = this;
    setObjectName(QStringLiteral("vorn"));
    LoadResources();
    setWindowIcon(QIcon(QStringLiteral(":/terramason.png")));
    resize(1024, 700);

    mdi_ = new QMdiArea(this);
    mdi_->setObjectName(QStringLiteral("mdiarea"));
    mdi_->setBackground(QColor(128, 128, 128));
    setCentralWidget(mdi_);

    buildMenus();
    // Its buttons join with the commands they stand for.
    QToolBar* toolbar = addToolBar(QStringLiteral("Toolbar1"));
    toolbar->setObjectName(QStringLiteral("Toolbar1"));
    toolbar->setMovable(false);

    // The load of the frame. The Tools entries by installed tool and the View menu's previews
    // entry take their Enabled state here too, once those menus exist.
    PreviewRefreshOn = true;
    addStatusPanel();
    refreshTitle();
}

vorn::~vorn() {
    if (liveFrame == this) liveFrame = nullptr;
}

vorn* vorn::instance() { return liveFrame; }

void vorn::buildMenus() {
    QMap<QString, QMenu*> menus;
    for (const MenuCommand& c : MenuCommands) {
        const QString menuName = QString::fromUtf8(c.menu);
        QMenu*& menu = menus[menuName];
        if (!menu) menu = menuBar()->addMenu(menuName);
        if (QLatin1String(c.caption) == QLatin1String("-")) {
            menu->addSeparator();
            continue;
        }
        const QString caption = QString::fromUtf8(c.caption);
        QAction* action = menu->addAction(caption);
        if (*c.shortcut) action->setShortcut(QKeySequence(QString::fromUtf8(c.shortcut)));
        const auto handler = c.handler;
        const std::string what = CommandName(c.caption);
        connect(action, &QAction::triggered, this, [this, handler, what] { GuardedRun(what, [&] { (this->*handler)(); }); });
        actions_.insert(caption, action);
    }
}

void vorn::addStatusPanel() {
    commentline_ = new QLabel(QString::fromUtf8(StatusPanelText), this);
    commentline_->setObjectName(QStringLiteral("commentline"));
    commentline_->setFrameShape(QFrame::Panel);
    commentline_->setFrameShadow(QFrame::Sunken);
    statusBar()->setObjectName(QStringLiteral("StatusBar1"));
    // Panel 1 of the original sits at the left end of the bar.
    statusBar()->addWidget(commentline_);
    statusBar()->installEventFilter(this);
    fitStatusPanel();
}

void vorn::fitStatusPanel() { commentline_->setFixedWidth(statusBar()->width() / 3); }

bool vorn::event(QEvent* event) {
    // Menu entries would put their status tips in the bar over the panel; the bar shows the
    // panel and nothing else.
    if (event->type() == QEvent::StatusTip) return true;
    return QMainWindow::event(event);
}

bool vorn::eventFilter(QObject* watched, QEvent* event) {
    if (watched == statusBar() && event->type() == QEvent::Resize) fitStatusPanel();
    return QMainWindow::eventFilter(watched, event);
}

void vorn::refreshTitle() {
    // The project's name is document text, kept in the file's 8-bit code page.
    setWindowTitle(QString::fromStdString(Cp1252ToUtf8(MainTitle(CurrentProject.Name))));
}

void vorn::rebuildChildWindows() {
    // RefreshPartsList, showselectobj and loadviews are called here, in that order, once the
    // parts list, the part selector and the previews exist.
}

void vorn::SetMaximised(bool maximised) { setWindowState(maximised ? Qt::WindowMaximized : Qt::WindowNoState); }

void vorn::ShowFrame() {
    if (!isMaximized()) {
        if (QScreen* s = screen()) move(s->availableGeometry().center() - rect().center());
    }
    show();
}

void vorn::ShowNewProject() {
    // shownew opens vornnewproj, which comes with projects; until then "NewProj" has no effect.
}

// Ends the event loop without closing the windows first: Qt's quit() would close them, and the
// close of this frame asks the quit question again.
void vorn::EndProgram() { QCoreApplication::exit(0); }

void vorn::fileexit() { close(); }

void vorn::closeEvent(QCloseEvent* event) {
    event->ignore();
    GuardedRun("Closing VORN Terramason", [&] {
        // The child windows go before the question is asked, so a cancelled quit has to bring
        // back those of an open project.
        mdi_->closeAllSubWindows();
        if (ConfirmQuit()) {
            event->accept();
            EndProgram();
            return;
        }
        if (!CurrentProject.Name.empty()) rebuildChildWindows();
    });
}
