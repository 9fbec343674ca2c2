#include "shell/ui/vorn.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QLabel>
#include <QLayout>
#include <QMdiArea>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QUrl>

#include <ctime>

#include "core/Cp1252.h"
#include "core/Desktop.h"
#include "core/FileOps.h"
#include "core/OIFOps.h"
#include "core/ProgramState.h"
#include "core/Views.h"
#include "core/ui/Resources.h"
#include "editors/ImportOps.h"
#include "editors/PartOps.h"
#include "editors/TextureManagerOps.h"
#include "editors/ui/texturename.h"
#include "editors/ui/vornoifform.h"
#include "editors/ui/vornselectobj.h"
#include "editors/ui/vorntexture.h"
#include "exchange/ui/rhinoravconv.h"
#include "importer/ui/stmap.h"
#include "preview/VRMLOps.h"
#include "shell/CommandOps.h"
#include "shell/HelpOps.h"
#include "shell/HistoryOps.h"
#include "shell/IniOps.h"
#include "shell/JournalOps.h"
#include "shell/SaveOps.h"
#include "shell/StadiumCatalogue.h"
#include "shell/ToolsOps.h"
#include "shell/ui/EditCommands.h"
#include "shell/ui/FrameViews.h"
#include "shell/ui/VORNOptions.h"
#include "shell/ui/vornabout.h"
#include "shell/ui/vornnewproj.h"
#include "wizards/AdboardOps.h"
#include "wizards/CrowdModule.h"
#include "wizards/ui/crowdwizard.h"
#include "wizards/ui/lightingwizard.h"
#include "wizards/ui/stadwizard.h"
#include "wizards/ui/transformwiz.h"

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

// The state an entry has when the frame is made.
enum MenuState : unsigned {
    On = 0,
    Project = 1,   // disabled until the first project, then enabled for good
    Disabled = 2,  // disabled for good
    Hidden = 4,
    Checked = 8,   // checkable, with its check mark set
    Submenu = 16,  // the entry opens the menu named "<menu>|<caption>"
};
}  // namespace

// One entry of the menu bar. Menus appear in the order of their first entry, entries in table
// order; a caption of "-" is a separator. An entry without a handler does nothing.
struct vorn::MenuCommand {
    const char* menu;
    const char* caption;
    const char* shortcut;
    unsigned state;
    void (vorn::*handler)();
};

const vorn::MenuCommand vorn::MenuCommands[] = {
    {"&File", "&New Project", "Ctrl+N", On, &vorn::filenew},
    {"&File", "&Open Project...", "Ctrl+O", On, &vorn::shownew},
    {"&File", "-", "", On, nullptr},
    {"&File", "&Import to OIF...", "", Project, &vorn::fileimport},
    {"&File", "&Save OIF", "Ctrl+S", Project, &vorn::filesave},
    {"&File", "-", "", Hidden, nullptr},
    {"&File", "Make stadium.big...", "", Hidden | Disabled, nullptr},
    {"&File", "-", "", On, nullptr},
    {"&File", "E&xit", "Ctrl+Q", On, &vorn::fileexit},

    {"&Edit", "&Undo", "Ctrl+Z", Disabled, &vorn::editundo},
    {"&Edit", "&Redo", "Ctrl+Y|Ctrl+Shift+Z", Disabled, &vorn::editredo},
    {"&Edit", "-", "", On, nullptr},
    {"&Edit", "Cu&t", "Ctrl+X", On, &vorn::editcut},
    {"&Edit", "&Copy", "Ctrl+C", On, &vorn::editcopy},
    {"&Edit", "&Paste", "Ctrl+V", On, &vorn::editpaste},
    {"&Edit", "Delete", "", On, &vorn::editdelete},
    {"&Edit", "-", "", On, nullptr},
    {"&Edit", "&Hide All", "", Disabled, &vorn::hideallmenu},
    {"&Edit", "&Select All", "Ctrl+A", Disabled, &vorn::showallmenu},

    {"&View", "Stadium Previews", "", Checked, &vorn::viewpreviews},
    {"&View", "Object Browser", "", Checked | Disabled, nullptr},
    {"&View", "-", "", On, nullptr},
    {"&View", "OIF Editor", "", Checked | Project, &vorn::viewoifeditor},
    {"&View", "-", "", On, nullptr},
    {"&View", "Status &Bar", "", Checked, &vorn::viewstatusbar},
    {"&View", "-", "", On, nullptr},
    {"&View", "Refresh", "F5", Project, &vorn::viewrefresh},
    {"&View", "-", "", On, nullptr},
    {"&View", "Current VRML Source", "", Project | Submenu, nullptr},
    {"&View|Current VRML Source", "Top", "", On, &vorn::sourcetop},
    {"&View|Current VRML Source", "Perspective", "", On, &vorn::sourceperspective},
    {"&View|Current VRML Source", "Back", "", On, &vorn::sourceback},
    {"&View|Current VRML Source", "Right", "", On, &vorn::sourceright},

    {"&Project", "Import Crowds...", "", Project, &vorn::importcrowd},
    {"&Project", "Import Adboards...", "", Project, &vorn::importadboard},
    {"&Project", "Import Banners...", "", Project, &vorn::importbanner},
    {"&Project", "-", "", On, nullptr},
    {"&Project", "Merge parts with same texture...", "", Project, &vorn::mergetextures},
    {"&Project", "-", "", On, nullptr},
    {"&Project", "Import Textures for Previews...", "", Project, &vorn::importpreviewtextures},

    {"&Tools", "Stadium Importer", "", Project, &vorn::showstmap},
    {"&Tools", "Crowd Building Wizard", "", Project, &vorn::showcrowdwizard},
    {"&Tools", "Stadium Lighting Wizard", "", Project, &vorn::showlightingwizard},
    {"&Tools", "Stadium Transformation Wizard", "", Project, &vorn::showtransformwiz},
    {"&Tools", "-", "", On, nullptr},
    {"&Tools", "OEdit", "", On, &vorn::tooloedit},
    {"&Tools", "OIF Tool", "", On, &vorn::tooloiftool},
    {"&Tools", "-", "", On, nullptr},
    {"&Tools", "ZModeler", "", On, &vorn::toolzmodeler},
    {"&Tools", "Rhinoceros 3D", "", On, &vorn::toolrhino},
    {"&Tools", "-", "", On, nullptr},
    {"&Tools", "Rhino3D Tools", "", Submenu, nullptr},
    {"&Tools|Rhino3D Tools", "RAV Convertor", "", On, &vorn::showrhinoravconv},
    {"&Tools", "ConvRav", "", On, &vorn::toolconvrav},
    {"&Tools", "-", "", On, nullptr},
    {"&Tools", "&Options", "", On, &vorn::showoptions},

    {"&Help", "&Contents...", "", On, &vorn::helpcontents},
    {"&Help", "View& Readme...", "", On, &vorn::helpreadme},
    {"&Help", "-", "", On, nullptr},
    {"&Help", "&Technical Support", "", On, &vorn::helpsupport},
    {"&Help", "&Online Help", "", On, &vorn::helponline},
    {"&Help", "-", "", On, nullptr},
    {"&Help", "FIFA OSK Online", "", On, &vorn::helpsite},
    {"&Help", "Soccer Gaming Forums", "", On, &vorn::helpforums},
    {"&Help", "OEdit/OIFTool Online", "", On, &vorn::helptools},
    {"&Help", "-", "", On, nullptr},
    {"&Help", "&About", "", On, &vorn::helpabout},
    // The Stadium Building Wizard has no other way in.
    {"&Help", "-", "", On, nullptr},
    {"&Help", "Stadium Building Wizard...", "", On, &vorn::showstadwizard},
};

// One button of Toolbar1: its key, the picture built into the program and the name of the
// desktop theme's icon that stands for the same command.
struct vorn::ToolbarButton {
    const char* key;
    const char* picture;
    const char* themeIcon;
    const char* tip;
    bool groupEnd;
};

const vorn::ToolbarButton vorn::ToolbarButtons[] = {
    {"New", "new", "document-new", "New Project", false},
    {"Open", "open", "document-open", "Open Project", false},
    {"Save", "save", "document-save", "Save OIF", true},
    {"Cut", "cut", "edit-cut", "Cut", false},
    {"Copy", "copy", "edit-copy", "Copy", false},
    {"Paste", "paste", "edit-paste", "Paste", false},
    {"Delete", "delete", "edit-delete", "Delete", true},
    {"Options", "options", "document-properties", "Options", false},
    {"Help", "help", "help-contents", "Help", false},
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

    setAcceptDrops(true);
    buildMenus();
    buildPopupMenus();
    buildToolbar();
    views_ = std::make_unique<FrameViews>(mdi_, objselect_);

    // The load of the frame.
    PreviewRefreshOn = true;
    addStatusPanel();
    enableInstalledTools();
    menuAction(QStringLiteral("Stadium Previews"))->setEnabled(ReadConfigFlag("Terramason", "PreviewRefresh"));
    refreshTitle();

    // Every recorded step names itself in the Edit menu and goes to the recovery journal.
    History = ProjectHistory{};
    if (!AppFolder.empty()) journal_ = std::make_unique<JournalWriter>(RecoveryFolder());
    SetHistoryListener([this](const std::shared_ptr<const ProjectState>& state) {
        updateUndoActions();
        if (journal_) journal_->Offer(state, static_cast<std::int64_t>(std::time(nullptr)));
    });
    // A typing run ends where the user leaves the field.
    connect(qApp, &QApplication::focusChanged, this, [] { EndTypingRun(History); });
}

vorn::~vorn() {
    SetHistoryListener(nullptr);
    // The children go first, while the views that reach them still stand.
    mdi_->closeAllSubWindows();
    views_.reset();
    if (liveFrame == this) liveFrame = nullptr;
}

vorn* vorn::instance() { return liveFrame; }

vornselectobj* vorn::selectobj() const { return views_->existingSelectobj(); }

void vorn::buildMenus() {
    QMap<QString, QMenu*> menus;
    for (const MenuCommand& c : MenuCommands) {
        const QString menuName = QString::fromUtf8(c.menu);
        QMenu*& menu = menus[menuName];
        if (!menu) {
            menu = menuBar()->addMenu(menuName);
            actions_.insert(menuName, menu->menuAction());
        }
        QAction* action = nullptr;
        const QString caption = QString::fromUtf8(c.caption);
        if (caption == QLatin1String("-")) {
            action = menu->addSeparator();
        } else if (c.state & Submenu) {
            QMenu* sub = menu->addMenu(caption);
            menus.insert(menuName + QLatin1Char('|') + caption, sub);
            action = sub->menuAction();
            actions_.insert(caption, action);
        } else {
            action = menu->addAction(caption);
            actions_.insert(caption, action);
        }
        // "Ctrl+Y|Ctrl+Shift+Z": one entry answers either key.
        QList<QKeySequence> keys;
        for (const QString& key : QString::fromUtf8(c.shortcut).split(QLatin1Char('|'), Qt::SkipEmptyParts))
            keys << QKeySequence(key);
        action->setShortcuts(keys);
        if (c.state & Checked) {
            action->setCheckable(true);
            action->setChecked(true);
        }
        if (c.state & (Project | Disabled)) action->setEnabled(false);
        if (c.state & Hidden) action->setVisible(false);
        if (c.handler) {
            const auto handler = c.handler;
            const std::string what = CommandName(c.caption);
            connect(action, &QAction::triggered, this,
                    [this, handler, what] { GuardedRun(what, [&] { (this->*handler)(); }); });
        }
    }
    connect(menus.value(QStringLiteral("&Edit")), &QMenu::aboutToShow, this, &vorn::editupdate);
}

void vorn::buildPopupMenus() {
    // Not in the menu bar: popped up by the parts list.
    objselect_ = new QMenu(QStringLiteral("Objects Select"), this);
    objselect_->setObjectName(QStringLiteral("objselect"));
    QAction* showall = objselect_->addAction(QStringLiteral("Show All"));
    showall->setObjectName(QStringLiteral("showallmenu"));
    QAction* hideall = objselect_->addAction(QStringLiteral("Hide All"));
    hideall->setObjectName(QStringLiteral("hideallmenu"));
    connect(showall, &QAction::triggered, this, [this] { GuardedRun("Show All", [this] { showallmenu(); }); });
    connect(hideall, &QAction::triggered, this, [this] { GuardedRun("Hide All", [this] { hideallmenu(); }); });
}

void vorn::buildToolbar() {
    toolbar_ = addToolBar(QStringLiteral("Toolbar1"));
    toolbar_->setObjectName(QStringLiteral("Toolbar1"));
    toolbar_->setMovable(false);
    toolbar_->setIconSize(QSize(24, 24));
    for (const ToolbarButton& b : ToolbarButtons) {
        const QString key = QString::fromUtf8(b.key);
        // The desktop's own icons where its theme has them, so the bar looks like its neighbours.
        const QIcon own(QStringLiteral(":/icons/%1.png").arg(QLatin1String(b.picture)));
        QAction* action = toolbar_->addAction(QIcon::fromTheme(QString::fromUtf8(b.themeIcon), own), key);
        action->setObjectName(key);
        action->setToolTip(QString::fromUtf8(b.tip));
        buttons_.insert(key, action);
        connect(action, &QAction::triggered, this,
                [this, key] { GuardedRun(key.toStdString(), [&] { Toolbar1ButtonClick(key); }); });
        if (b.groupEnd) toolbar_->addSeparator();
    }
}

void vorn::enableInstalledTools() {
    menuAction(QStringLiteral("OEdit"))->setEnabled(ToolInstalled(OutsideTool::OEdit));
    menuAction(QStringLiteral("OIF Tool"))->setEnabled(ToolInstalled(OutsideTool::OIFTool));
    menuAction(QStringLiteral("ZModeler"))->setEnabled(ToolInstalled(OutsideTool::ZModeler));
    menuAction(QStringLiteral("Rhinoceros 3D"))->setEnabled(ToolInstalled(OutsideTool::Rhinoceros));
}

void vorn::Toolbar1ButtonClick(const QString& key) {
    if (key == QLatin1String("New")) filenew();
    else if (key == QLatin1String("Open")) shownew();
    else if (key == QLatin1String("Save")) filesave();
    else if (key == QLatin1String("Cut")) editcut();
    else if (key == QLatin1String("Copy")) editcopy();
    else if (key == QLatin1String("Paste")) editpaste();
    else if (key == QLatin1String("Delete")) editdelete();
    // "Options" and the keys that no button has answer with placeholder texts that users have
    // long seen; they stay as they are.
    else if (key == QLatin1String("Options")) ShowMessage("Add 'Properties' button code.", MessageIcon::None);
    else if (key == QLatin1String("Help")) helpcontents();
    else if (key == QLatin1String("Print")) ShowMessage("Add 'Print' button code.", MessageIcon::None);
    else if (key == QLatin1String("Undo")) ShowMessage("Add 'Undo' button code.", MessageIcon::None);
    else if (key == QLatin1String("Redo")) ShowMessage("Add 'Redo' button code.", MessageIcon::None);
    else if (key == QLatin1String("Help What's This"))
        ShowMessage("Add 'Help What's This' button code.", MessageIcon::None);
    // "Camera" and "Find" are accepted and do nothing.
}

void vorn::addStatusPanel() {
    commentline_ = new QLabel(QString::fromUtf8(StatusPanelText), this);
    commentline_->setObjectName(QStringLiteral("commentline"));
    commentline_->setFrameShape(QFrame::Panel);
    commentline_->setFrameShadow(QFrame::Sunken);
    statusBar()->setObjectName(QStringLiteral("StatusBar1"));
    // Panel 1 sits at the left end of the bar.
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
    setWindowTitle(QString::fromStdString(Cp1252ToUtf8(MainTitle(projectOpen_, CurrentProject.Name))));
}

void vorn::rebuildChildWindows() {
    TheViews().RefreshPartsList();
    TheViews().showselectobj();
    TheViews().loadviews();
}

void vorn::createnew(int index, const std::string& name, const std::string& step) {
    const bool first = !projectOpen_;
    // Making the project empties the scratch folder: a view file still being written goes first.
    GuardedRun("Writing the previews", [] { FinishViewFiles(); });
    // A project whose making failed half-way still opens: its windows show what there is.
    GuardedRun("Making the project", [&] { CurrentProject = MakeProject(CurrentProject, index, name); });
    openProjectWindows();
    // The first project starts the history; a later one replaces the open project as a step, so
    // that undo brings the earlier one back.
    if (first) StartProjectHistory();
    else RecordCommand(step);
}

void vorn::RecoverProject(StadiumProject project) {
    CurrentProject = std::move(project);
    openProjectWindows();
    StartProjectHistory();
}

void vorn::openProjectWindows() {
    // MakeProject leaves the parts list to the windows; it is filled here, before they open.
    TheViews().RefreshPartsList();
    // A new project opens the Texture Manager (hidden) on its first texture, image and points.
    vorntexture* textures = vorntexture::window(this);
    textures->handlers().setRow(textures->texturebox(), 0);
    projectOpen_ = true;
    refreshTitle();
    for (const MenuCommand& c : MenuCommands)
        if (c.state & Project) menuAction(QString::fromUtf8(c.caption))->setEnabled(true);
    TheViews().loadviews();
    TheViews().showselectobj();
    if (ReadConfigFlag("Terramason", "OIFEditor")) showoifform();
    else tickoifform();
}

void vorn::shownew() {
    vornnewproj dialog(this);
    if (dialog.shownew() == QDialog::Accepted) createnew(dialog.basedOn(), dialog.projectName(), "Open Project");
}

void vorn::SetMaximised(bool maximised) { setWindowState(maximised ? Qt::WindowMaximized : Qt::WindowNoState); }

void vorn::ShowFrame() {
    if (!isMaximized()) {
        // Big enough for the previews to be seen whole; the OIF Editor widens it when it opens.
        layout()->activate();
        const FramePlacement placed = FrameViews::PlaceFrame(*this, *mdi_, 0);
        if (placed.Maximised) setWindowState(Qt::WindowMaximized);
        else resize(placed.Width, placed.Height);
        if (QScreen* s = screen()) move(s->availableGeometry().center() - rect().center());
    }
    show();
}

void vorn::OpenNamedFile(const std::string& path) { importNamedFiles({QString::fromStdString(path)}); }

void vorn::importNamedFiles(const QStringList& paths) {
    for (const QString& path : paths) {
        const std::string file = path.toStdString();
        GuardedRun("Importing " + file, [&] {
            if (!FileExists(file)) {
                ShowMessage("The file " + file + " could not be opened: it does not exist.", MessageIcon::Exclamation);
                return;
            }
            if (!projectOpen_) createnew(0, Utf8ToCp1252(QFileInfo(path).completeBaseName().toStdString()));
            const CommandStep step("Import");
            ImportByExtension(file);
        });
    }
}

namespace {
QStringList LocalFiles(const QMimeData* data) {
    QStringList files;
    if (data && data->hasUrls())
        for (const QUrl& url : data->urls())
            if (url.isLocalFile()) files << url.toLocalFile();
    return files;
}
}  // namespace

void vorn::dragEnterEvent(QDragEnterEvent* event) {
    if (!LocalFiles(event->mimeData()).isEmpty()) event->acceptProposedAction();
}

void vorn::dropEvent(QDropEvent* event) {
    const QStringList files = LocalFiles(event->mimeData());
    if (files.isEmpty()) return;
    event->acceptProposedAction();
    // The drop ends before the imports ask their questions, so the dragging program is not held.
    QTimer::singleShot(0, this, [this, files] { importNamedFiles(files); });
}

void vorn::ShowNewProject() {
    GuardedRun("Open Project", [this] { shownew(); });
}

// Ends the event loop without closing the windows first: Qt's quit() would close them, and the
// close of this frame asks the quit question again.
void vorn::EndProgram() {
    // A normal end: nothing is left to recover.
    if (journal_) journal_->Close();
    QCoreApplication::exit(0);
}

void vorn::closeEvent(QCloseEvent* event) {
    event->ignore();
    GuardedRun("Closing VORN Terramason", [&] {
        // The child windows go before the question is asked, so a cancelled quit has to bring
        // back those of an open project, the OIF Editor too when it was showing.
        const bool editorShown = menuAction(QStringLiteral("OIF Editor"))->isChecked();
        mdi_->closeAllSubWindows();
        if (ConfirmQuit()) {
            event->accept();
            EndProgram();
            return;
        }
        if (CurrentProject.Name.empty()) return;
        rebuildChildWindows();
        if (editorShown) showoifform();
    });
}

// ---- File

void vorn::filenew() { createnew(0, "Project1"); }

void vorn::fileimport() {
    const CommandStep step("Import");
    importfile();
}

void vorn::filesave() { exportoif(); }

void vorn::fileexit() { close(); }

// ---- Edit

void vorn::editupdate() {
    EditCommandState state;
    try {
        const ControlKind kind = KindOfControl(QApplication::focusWidget());
        const bool takesText =
            kind == ControlKind::TextBox || kind == ControlKind::ComboBox || kind == ControlKind::ListBox;
        const bool hasText = takesText && !TheDesktop().ClipboardText().empty();
        const bool hasPicture = kind == ControlKind::PictureBox && !TheDesktop().ClipboardImage().empty();
        state = EditUpdate(kind, hasText, hasPicture);
    } catch (...) {
        // A clipboard that cannot be read leaves the entries as the update starts them.
    }
    menuAction(QStringLiteral("Cu&t"))->setEnabled(state.cut);
    menuAction(QStringLiteral("&Copy"))->setEnabled(state.copy);
    menuAction(QStringLiteral("&Paste"))->setEnabled(state.paste);
}

void vorn::editcut() { CutFromControl(QApplication::focusWidget()); }

void vorn::editcopy() { CopyFromControl(QApplication::focusWidget()); }

void vorn::editpaste() { PasteIntoControl(QApplication::focusWidget()); }

void vorn::editundo() {
    if (UndoCommand()) afterHistoryMove();
}

void vorn::editredo() {
    if (RedoCommand()) afterHistoryMove();
}

void vorn::afterHistoryMove() {
    // The windows follow the document as after any command: the lists are never stale.
    refreshTitle();
    TheViews().RefreshPartsList();
    TheViews().RebuildPreviews();
    if (vorntexture* textures = vorntexture::existing())
        textures->handlers().setRow(textures->texturebox(), std::max(0, textures->texturebox()->currentIndex()));
}

void vorn::updateUndoActions() {
    const std::string undo = UndoCaption(History), redo = RedoCaption(History);
    QAction* u = menuAction(QStringLiteral("&Undo"));
    QAction* r = menuAction(QStringLiteral("&Redo"));
    u->setText(undo.empty() ? QStringLiteral("&Undo") : QStringLiteral("&Undo ") + QString::fromStdString(undo));
    r->setText(redo.empty() ? QStringLiteral("&Redo") : QStringLiteral("&Redo ") + QString::fromStdString(redo));
    u->setEnabled(!undo.empty());
    r->setEnabled(!redo.empty());
}

void vorn::editdelete() {
    const CommandStep step("Delete");
    DeleteSelectedParts();
}

void vorn::showallmenu() {
    if (vornselectobj* list = selectobj()) list->selectAllRows(true);
    TheViews().ReloadPreviews();
}

void vorn::hideallmenu() {
    if (vornselectobj* list = selectobj()) list->selectAllRows(false);
    TheViews().ReloadPreviews();
}

// ---- View

void vorn::viewpreviews() { PreviewRefreshOn = menuAction(QStringLiteral("Stadium Previews"))->isChecked(); }

void vorn::viewoifeditor() {
    // The check mark has already flipped: checked now means the editor was hidden.
    if (menuAction(QStringLiteral("OIF Editor"))->isChecked()) showoifform();
    else hideoifform();
}

void vorn::viewstatusbar() { statusBar()->setVisible(menuAction(QStringLiteral("Status &Bar"))->isChecked()); }

void vorn::viewrefresh() { RefreshPreviewsByHand(); }

void vorn::sourcetop() { OpenVRMLSource(PreviewViewNames[0]); }
void vorn::sourceperspective() { OpenVRMLSource(PreviewViewNames[1]); }
void vorn::sourceback() { OpenVRMLSource(PreviewViewNames[2]); }
void vorn::sourceright() { OpenVRMLSource(PreviewViewNames[3]); }

void vorn::showoifform() {
    views_->showoifform();
    connect(views_->existingOifform(), &vornoifform::unloaded, this, &vorn::tickoifform, Qt::UniqueConnection);
    tickoifform();
}

void vorn::hideoifform() {
    views_->hideoifform();
    tickoifform();
}

void vorn::tickoifform() {
    const vornoifform* form = views_->existingOifform();
    menuAction(QStringLiteral("OIF Editor"))->setChecked(form && !form->parentWidget()->isHidden());
}

// ---- Project

void vorn::importcrowd() {
    const CommandStep step("Import Crowds");
    ::importcrowd();
}

void vorn::importadboard() {
    const CommandStep step("Import Adboards");
    ::importadboard();
}

void vorn::importbanner() {
    const CommandStep step("Import Banners");
    ::importbanner();
}

// The lists are not refreshed: they keep their rows until the next refresh, or an undo.
void vorn::mergetextures() {
    const CommandStep step("Merge parts");
    MergeSameTexture(CurrentProject.OIF, false);
}

void vorn::importpreviewtextures() {
    const std::string file = TheDesktop().OpenFile(PreviewTextureTitle, PreviewTextureFilter, "", AppFolder);
    if (file.empty()) return;
    texturename::showModal(file, this);
    viewrefresh();
}

// ---- Tools

void vorn::showstmap() { stmap::open(this); }

void vorn::showcrowdwizard() { crowdwizard::showWizard(this); }

void vorn::showlightingwizard() { lightingwizard::showWizard(this); }

void vorn::showtransformwiz() { transformwiz::showWizard(this); }

void vorn::tooloedit() { StartTool(OutsideTool::OEdit); }
void vorn::tooloiftool() { StartTool(OutsideTool::OIFTool); }
void vorn::toolzmodeler() { StartTool(OutsideTool::ZModeler); }
void vorn::toolrhino() { StartTool(OutsideTool::Rhinoceros); }
void vorn::toolconvrav() { StartTool(OutsideTool::ConvRav); }

void vorn::showrhinoravconv() { rhinoravconv::showModal(this); }

void vorn::showoptions() { VORNOptions::showModal(this); }

// ---- Help

void vorn::helpcontents() { OpenHelpPage(HelpContentsPage); }
void vorn::helpreadme() { OpenReadme(); }
void vorn::helpsupport() { OpenHelpWebPage(WebPage::TechnicalSupport); }
void vorn::helponline() { OpenHelpWebPage(WebPage::OnlineHelp); }
void vorn::helpsite() { OpenHelpWebPage(WebPage::MakersSite); }
void vorn::helpforums() { OpenHelpWebPage(WebPage::Forums); }
void vorn::helptools() { OpenHelpWebPage(WebPage::ToolsSite); }

void vorn::showstadwizard() { stadwizard::showWizard(this); }

void vorn::helpabout() {
    vornabout about(this);
    about.exec();
}
