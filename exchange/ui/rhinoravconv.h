#pragma once
// "Rhino Tools | RAV Convertor": picks a RAV export, a texture folder and a script file, and
// writes the Rhinoceros script of the export.
#include <QDialog>

class QLineEdit;
class QPushButton;

class rhinoravconv : public QDialog {
    Q_OBJECT
public:
    explicit rhinoravconv(QWidget* parent = nullptr);

    // Tools, Rhino3D Tools, "RAV Convertor": opens the window modally and returns when it closes.
    static void showModal(QWidget* parent);

    // Enables "&Ok" when all three boxes hold text. Only the browse buttons call it, so a box
    // emptied by typing leaves "&Ok" as it was, and "&Ok" tells what is missing.
    void checkboxes();

    void ravbutClick();
    void texbutClick();
    void rhinobutClick();
    void okbutClick();
    void helpbutClick();

    QLineEdit* ravbox() const { return ravbox_; }
    QLineEdit* texbox() const { return texbox_; }
    QLineEdit* rhinobox() const { return rhinobox_; }
    QPushButton* ravbut() const { return ravbut_; }
    QPushButton* texbut() const { return texbut_; }
    QPushButton* rhinobut() const { return rhinobut_; }
    QPushButton* okbut() const { return okbut_; }
    QPushButton* cancelbut() const { return cancelbut_; }
    QPushButton* helpbut() const { return helpbut_; }

private:
    QLineEdit* ravbox_;
    QLineEdit* texbox_;
    QLineEdit* rhinobox_;
    QPushButton* ravbut_;
    QPushButton* texbut_;
    QPushButton* rhinobut_;
    QPushButton* okbut_;
    QPushButton* cancelbut_;
    QPushButton* helpbut_;
};
