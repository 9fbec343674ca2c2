#pragma once
// The About box: the program's name, version and credits, and the way to the machine's system
// information.
#include <QDialog>
#include <functional>
#include <string>

class QPushButton;

class vornabout : public QDialog {
    Q_OBJECT
public:
    explicit vornabout(QWidget* parent = nullptr);

    QPushButton* okbut() const { return okbut_; }
    QPushButton* sysinfobut() const { return sysinfobut_; }

    // "System Info...": starts the desktop's system information tool, or shows the facts that
    // can be gathered here when none is installed.
    void sysinfobutClick();
    // The facts shown without a tool: the logic's facts, then Qt and the screen.
    static std::string SystemFactsText();

private:
    QPushButton* okbut_;
    QPushButton* sysinfobut_;
};
