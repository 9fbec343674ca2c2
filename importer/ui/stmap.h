#pragma once
// "Stadium Importer": lays out the textures of a 3DS or RAV model by hand on one sheet, paints
// the sheet to a Windows bitmap and adds one part whose UVs point into it. The layout's numbers
// and rules are AtlasLayout's; this window shows the boxes and feeds them its mouse and keys.
#include <QImage>
#include <QWidget>
#include <string>
#include <vector>

#include "importer/AtlasLayout.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QStatusBar;
class QTreeWidget;
class QTreeWidgetItem;

inline constexpr const char* ImporterTitle = "Stadium Importer";
inline constexpr const char* ExitQuestion = "Are you sure you want to exit Stadium Importer?   ";
inline constexpr const char* ExportQuestion =
    "Are you sure you want to import this file and export the resulting bitmap?   \r\n\r\n"
    "Note: It can take upto 3 minutes for this process depending on the size of the imported file.   ";
inline constexpr const char* ImportedMessage =
    "The model has now been updated.  Click Cancel to exit Terramason.   \r\n\r\n"
    "If you wish to change the model, you can simply delete the imported parts and reimport it afterwards.   \r\n\r\n"
    "If you exit Stadium Importer, you may not edit the model again, unless you rearrange all textures.   ";

class stmap : public QWidget {
    Q_OBJECT
public:
    explicit stmap(QWidget* owner = nullptr);
    ~stmap() override;

    // The Tools menu's command: shows the open importer again, or opens it and starts its load.
    static void open(QWidget* owner);
    // The importer if it is open (or loading), else null.
    static stmap* existing();

    // The load sequence: the model and textures dialogs, then the sheet. Ends with the window
    // shown, or closed when the user gives up and answers the exit question with Yes.
    void StartImport();
    void DoLoad();

    // Handlers of the sheet and its list.
    void cboTexsizeChange();
    void DrawBackground();
    void PaintTexture(int n);
    void lvTexItemClick(int n);
    void cmdMapClick();
    void cmdMapCtrlRelease();
    void cmdResetClick();
    void cmdResetCtrlRelease();
    bool CheckBounds(bool verbose);
    void PlaceHandles();
    // The export and the bitmap it writes; false when the bitmap could not be written.
    void cmdExportClick();
    void cmdSettingsClick();
    void Command1Click();

    // Mouse and keys of texture box n (from 1) and handle e (1 to 8), in the box's own pixels.
    void picTexMouseDown(int n, Qt::MouseButton button, QPointF position);
    void picTexMouseMove(int n, QPointF position);
    void picTexMouseUp(int n);
    void picTexKeyDown(int n, int key, Qt::KeyboardModifiers modifiers);
    void picHandleMouseDown(int e, Qt::MouseButton button, QPointF position);
    void picHandleMouseMove(int e, QPointF position);
    void picHandleMouseUp(int e);

    // The layout as the boxes show it: texture n of the list is box(n), from 1.
    const TextureBox& box(int n) const { return boxes_[static_cast<std::size_t>(n - 1)]; }
    int textureCount() const { return static_cast<int>(boxes_.size()); }
    int currentItem() const { return currentItem_; }
    bool texDragging() const { return texDragging_; }
    bool handleDragging() const { return handleDragging_; }

    QTreeWidget* lvTex() const { return lvTex_; }
    QWidget* picBg() const { return picBg_; }
    QWidget* picTex(int n) const { return picTex_[static_cast<std::size_t>(n)]; }
    QWidget* picHandle(int e) const { return picHandle_[static_cast<std::size_t>(e)]; }
    QPushButton* cmdMap() const { return cmdMap_; }
    QPushButton* cmdReset() const { return cmdReset_; }
    QCheckBox* chkSnapToEdge() const { return chkSnapToEdge_; }
    QCheckBox* chkSnapToTex() const { return chkSnapToTex_; }
    QCheckBox* chkAutoselect() const { return chkAutoselect_; }
    QComboBox* cboTexsize() const { return cboTexsize_; }
    QComboBox* texturebox() const { return texturebox_; }
    QPushButton* cmdCheckBounds() const { return cmdCheckBounds_; }
    QPushButton* cmdExport() const { return cmdExport_; }
    QPushButton* cmdSettings() const { return cmdSettings_; }
    QPushButton* cmdExit() const { return cmdExit_; }
    QPushButton* Command1() const { return command1_; }
    QLabel* lblSize() const { return lblSize_; }
    QLabel* Label1() const { return label1_; }
    // Panels 1 and 2 of StatusBar1.
    QLabel* panel(int number) const { return panels_[number - 1]; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void buildColumn();
    void buildSheet();
    void buildStatusBar();
    void wireHandlers();
    // The box of texture n shows the layout's numbers.
    void placeBox(int n);
    void setMapped(int n, bool mapped);
    void resetBox(int n);
    // The dialogs and the reading of the model; false when the user gave up or the model was
    // refused.
    bool loadModel();
    ImportSheet sheet() const;
    // The bitmap's name from the save dialog, with ".bmp" when none was typed and a question
    // before an existing file is replaced; empty when the user gave up.
    std::string chooseBitmap();

    std::vector<TextureBox> boxes_;
    std::vector<QImage> pictures_;
    int currentItem_ = 0;
    bool texDragging_ = false;
    bool handleDragging_ = false;
    int dragStartX_ = 0, dragStartY_ = 0;
    int handleDragged_ = 0;

    QTreeWidget* lvTex_;
    QWidget* picBg_;
    std::vector<QWidget*> picTex_;     // element 0 is the hidden template
    std::vector<QWidget*> picHandle_;  // element 0 is the hidden template
    QPushButton* cmdMap_;
    QPushButton* cmdReset_;
    QCheckBox* chkSnapToEdge_;
    QCheckBox* chkSnapToTex_;
    QCheckBox* chkAutoselect_;
    QLabel* lblSize_;
    QComboBox* cboTexsize_;
    QLabel* label1_;
    QComboBox* texturebox_;
    QPushButton* cmdCheckBounds_;
    QPushButton* cmdExport_;
    QPushButton* cmdSettings_;
    QPushButton* cmdExit_;
    QPushButton* command1_;
    QStatusBar* statusBar1_;
    QLabel* panels_[2];
};
