#pragma once
// "Select texture name...": names the PNG chosen by Project, "Import Textures for Previews...",
// so that it becomes the image of that texture in the previews.
#include <QDialog>
#include <string>

class QComboBox;
class QPushButton;

class texturename : public QDialog {
    Q_OBJECT
public:
    // `file` is the PNG the window keeps until "&Ok" copies it.
    explicit texturename(const std::string& file, QWidget* parent = nullptr);

    // Shows the window modally and returns when it closes.
    static void showModal(const std::string& file, QWidget* parent);

    // Copies the kept file under the typed name and closes; an empty name is refused with a
    // message and the window stays.
    void okbutClick();

    QComboBox* texbox() const { return texbox_; }
    QPushButton* okbut() const { return okbut_; }

private:
    std::string file_;
    QComboBox* texbox_;
    QPushButton* okbut_;
};
