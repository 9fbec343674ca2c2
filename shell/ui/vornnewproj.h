#pragma once
// "Open existing project...": a new project, empty or on top of one of the game's stadiums.
#include <QDialog>
#include <string>

class QComboBox;
class QLineEdit;
class QPushButton;

class vornnewproj : public QDialog {
    Q_OBJECT
public:
    explicit vornnewproj(QWidget* parent = nullptr);

    // Selects the whole project name and shows the window modally. Accepted means: make the
    // project of basedOn() and projectName().
    int shownew();

    int basedOn() const;
    // The name as document text (Windows-1252).
    std::string projectName() const;

    QComboBox* stadiumbased() const { return stadiumbased_; }
    QLineEdit* projectbox() const { return projectbox_; }
    QPushButton* okbut() const { return okbut_; }
    QPushButton* cancelbut() const { return cancelbut_; }

private:
    void okbutClick();

    QComboBox* stadiumbased_;
    QLineEdit* projectbox_;
    QPushButton* okbut_;
    QPushButton* cancelbut_;
};
