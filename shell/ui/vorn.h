#pragma once
// The main window: a frame that holds the working windows as children, with the menus, the
// toolbar and the status bar. There is one, reached through vorn::instance().
#include <QMainWindow>
#include <QMap>

#include "shell/Startup.h"

class QAction;
class QLabel;
class QMdiArea;

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

    QMdiArea* mdiArea() const { return mdi_; }
    QLabel* commentline() const { return commentline_; }
    // A menu entry by its caption as written in the table, "E&xit"; null when there is none.
    QAction* menuAction(const QString& caption) const { return actions_.value(caption); }

    // StartupFrame
    void SetMaximised(bool maximised) override;
    void ShowFrame() override;
    void ShowNewProject() override;
    void EndProgram() override;

protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct MenuCommand;
    static const MenuCommand MenuCommands[];

    void buildMenus();
    void addStatusPanel();
    void fitStatusPanel();

    void fileexit();

    QMdiArea* mdi_;
    QLabel* commentline_ = nullptr;
    QMap<QString, QAction*> actions_;
};
