#pragma once
// The main window: a frame that holds the working windows as children, with the menus, the
// toolbar and the status bar. There is one, reached through vorn::instance().
#include <QMainWindow>
#include <QMap>
#include <memory>
#include <string>

#include "shell/Startup.h"

class FrameViews;
class QAction;
class QLabel;
class QMdiArea;
class QMenu;
class QToolBar;
class vornselectobj;
class JournalWriter;

class vorn : public QMainWindow, public StartupFrame {
    Q_OBJECT
public:
    explicit vorn(QWidget* parent = nullptr);
    ~vorn() override;

    // The live main window, or null before it is made and after it is gone.
    static vorn* instance();

    void refreshTitle();
    // Brings back the child windows of an open project after a cancelled quit.
    void rebuildChildWindows();

    // Makes the project: base stadium by its index in the "Based on:" list, name as document
    // text. Replaces any open project without a question.
    // `step` names the replacement of an open project in the history.
    void createnew(int index, const std::string& name, const std::string& step = "New Project");
    // Opens vornnewproj and makes the project it is closed with.
    void shownew();

    QMdiArea* mdiArea() const { return mdi_; }
    QLabel* commentline() const { return commentline_; }
    QToolBar* Toolbar1() const { return toolbar_; }
    // The hidden pop-up menu of the parts list, "Objects Select".
    QMenu* objselect() const { return objselect_; }
    // The parts list if it exists, else null.
    vornselectobj* selectobj() const;

    // A menu entry by its caption as written in the table, "E&xit", or a menu by its caption,
    // "&Edit"; null when there is none.
    QAction* menuAction(const QString& caption) const { return actions_.value(caption); }
    // A toolbar button by its key, "New"; null when there is none.
    QAction* toolbarAction(const QString& key) const { return buttons_.value(key); }

    // The one handler of the toolbar: it also answers keys that no button has.
    void Toolbar1ButtonClick(const QString& key);
    // Sets Cut, Copy and Paste for the control that has the focus; runs at each opening of Edit.
    void editupdate();

    // StartupFrame
    void SetMaximised(bool maximised) override;
    void ShowFrame() override;
    void ShowNewProject() override;
    void EndProgram() override;
    void OpenNamedFile(const std::string& path) override;
    void RecoverProject(StadiumProject project) override;

    // Files given to the program, by the command line or a drop: each imported by its extension,
    // into a new project named after the first when none is open yet.
    void importNamedFiles(const QStringList& paths);

protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct MenuCommand;
    static const MenuCommand MenuCommands[];
    struct ToolbarButton;
    static const ToolbarButton ToolbarButtons[];

    void buildMenus();
    void buildPopupMenus();
    void buildToolbar();
    void enableInstalledTools();
    void addStatusPanel();
    void fitStatusPanel();

    // file
    void filenew();
    void fileimport();
    void filesave();
    void fileexit();
    // edit
    void editcut();
    void editcopy();
    void editpaste();
    void editdelete();
    void editundo();
    void editredo();
    void showallmenu();
    void hideallmenu();
    // view
    void viewpreviews();
    void viewoifeditor();
    void viewstatusbar();
    void viewrefresh();
    void sourcetop();
    void sourceperspective();
    void sourceback();
    void sourceright();
    // project
    void importcrowd();
    void importadboard();
    void importbanner();
    void mergetextures();
    void importpreviewtextures();
    // tools
    void showstmap();
    void showcrowdwizard();
    void showlightingwizard();
    void showtransformwiz();
    void tooloedit();
    void tooloiftool();
    void toolzmodeler();
    void toolrhino();
    void showrhinoravconv();
    void toolconvrav();
    void showoptions();
    // help
    void helpcontents();
    void helpreadme();
    void helpsupport();
    void helponline();
    void helpsite();
    void helpforums();
    void helptools();
    void helpabout();
    void showstadwizard();

    // The windows of an open project: lists, previews, the OIF Editor as config.ini says.
    void openProjectWindows();
    // After an undo or redo: title, lists and previews as after any command.
    void afterHistoryMove();
    // The Undo and Redo entries name the steps they would take.
    void updateUndoActions();

    // The OIF Editor window, vornoifform, and the tick of its View entry, set when it shows.
    void showoifform();
    void hideoifform();
    void tickoifform();

    QMdiArea* mdi_;
    QLabel* commentline_ = nullptr;
    QToolBar* toolbar_ = nullptr;
    QMenu* objselect_ = nullptr;
    QMap<QString, QAction*> actions_;
    QMap<QString, QAction*> buttons_;
    std::unique_ptr<FrameViews> views_;
    std::unique_ptr<JournalWriter> journal_;
    // Set by the first createnew for good: a project made with an empty name is still open.
    bool projectOpen_ = false;
};
