#pragma once
// "OIF Editor": the document part by part and vertex by vertex, a child of the main window.
// Every edit goes straight into CurrentProject; there is no Apply and no Undo, and no edit here
// rebuilds the previews.
#include <QWidget>

#include "editors/ui/ChangeHandlers.h"

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

class vornoifform : public QWidget {
    Q_OBJECT
public:
    explicit vornoifform(QWidget* parent = nullptr);
    ~vornoifform() override;

    // The live window, or null; a closed one no longer counts.
    static vornoifform* existing();

    // The window's half of RefreshPartsList: every part by its name, the first one selected,
    // and the part controls enabled only when there are parts.
    void fillFromDocument();

    // The selected part and vertex; -1 for none.
    int selectedPart() const;
    int selectedVertex() const;

    // Handlers. Setting a control from code runs its handler through `handlers`, as the user's
    // change does.
    void oifpartboxClick();
    void oifpartverticesClick();
    void oifparttextureChange();
    void oifvertexpointselClick();
    void oifpartdelClick();
    void oifpartexpClick();
    void refreshoifClick();
    void texturesmanagerbutClick();

    ChangeHandlers& handlers() { return handlers_; }

    QComboBox* oifpartbox() const { return oifpartbox_; }
    QLineEdit* oifpartname() const { return oifpartname_; }
    QComboBox* oifparttexture() const { return oifparttexture_; }
    QPushButton* oifpartdel() const { return oifpartdel_; }
    QPushButton* oifpartexp() const { return oifpartexp_; }
    QPushButton* refreshoif() const { return refreshoif_; }
    QGroupBox* Frame2() const { return frame2_; }
    QGroupBox* Frame3() const { return frame3_; }
    QComboBox* oifpartvertices() const { return oifpartvertices_; }
    QLineEdit* oifvertexx() const { return vertexFields_[0]; }
    QLineEdit* oifvertexy() const { return vertexFields_[1]; }
    QLineEdit* oifvertexz() const { return vertexFields_[2]; }
    QLineEdit* oifvertextexx() const { return vertexFields_[3]; }
    QLineEdit* oifvertextexy() const { return vertexFields_[4]; }
    QLineEdit* oifvertexshadowbox() const { return oifvertexshadowbox_; }
    QLabel* percentbright() const { return percentbright_; }
    QComboBox* oifvertexpointsel() const { return oifvertexpointsel_; }
    QListWidget* indicesbox() const { return indicesbox_; }

signals:
    // The window was closed by its close box, or with the frame.
    void unloaded();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QGroupBox* buildPartFrame();
    void buildVertexFrame();
    void wireHandlers();
    void enablePartControls(bool enabled);
    void enableVertexControls(bool enabled);
    // Typing in X, Y, Z (fields 0 to 2), U or V (3 and 4).
    void vertexFieldChange(int field);
    void oifpartnameChange();
    // The step of a change the user made in a control.
    void recordEdit(QObject* control);

    ChangeHandlers handlers_;
    QComboBox* oifpartbox_;
    QLabel* nameLabel_;
    QLineEdit* oifpartname_;
    QLabel* textureLabel_;
    QComboBox* oifparttexture_;
    QPushButton* oifpartdel_;
    QPushButton* oifpartexp_;
    QPushButton* refreshoif_;
    QGroupBox* frame2_;
    QComboBox* oifpartvertices_;
    QLineEdit* vertexFields_[5];
    QLineEdit* oifvertexshadowbox_;
    QLabel* percentbright_;
    QComboBox* oifvertexpointsel_;
    QPushButton* texturesmanagerbut_;
    QGroupBox* frame3_;
    QListWidget* indicesbox_;
};
