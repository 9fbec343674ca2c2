#pragma once
// The Options window: the config.ini settings on four tabs, stored by "Apply" and "OK".
#include <QDialog>

#include "shell/OptionsOps.h"

class QPushButton;
class QTabWidget;

class VORNOptions : public QDialog {
    Q_OBJECT
public:
    // Reads every setting into its control.
    explicit VORNOptions(QWidget* parent = nullptr);

    // Tools, "&Options": opens the window modally and returns when it is closed.
    static void showModal(QWidget* parent);

    QTabWidget* OptionsTab() const { return optionsTab_; }
    QPushButton* cmdApply() const { return cmdApply_; }
    QPushButton* cmdCancel() const { return cmdCancel_; }
    QPushButton* cmdOK() const { return cmdOK_; }

    // The handlers of the three buttons.
    void cmdApplyClick();
    void cmdOKClick();
    void cmdCancelClick();

    // What the controls hold now, in the form the settings logic takes.
    OptionContents contents() const;

private:
    void fill(const OptionContents& contents);
    // Sets the Perspective preview's render flags from the stored "PerspectiveTex", making
    // that window if it does not exist yet.
    static void changePerspectiveViewer();

    QTabWidget* optionsTab_;
    QPushButton* cmdApply_;
    QPushButton* cmdCancel_;
    QPushButton* cmdOK_;
};
