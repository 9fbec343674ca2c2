#pragma once
// "Texture Manager": puts an image into the scratch folder under a texture's name, for the
// textured previews, and keeps per texture a list of named UV points, the predefined UVs that
// the OIF Editor offers. A point is picked by one click on the image.
#include <QWidget>

#include "editors/ui/ChangeHandlers.h"

class QComboBox;
class QImage;
class QLabel;
class QLineEdit;
class QPushButton;
class QStatusBar;

class vorntexture : public QWidget {
    Q_OBJECT
public:
    explicit vorntexture(QWidget* parent = nullptr);
    ~vorntexture() override;

    // The window, made hidden the first time it is touched; it stands beside `owner` (the main
    // window) when one is given then.
    static vorntexture* window(QWidget* owner = nullptr);
    // The window if it exists, else null.
    static vorntexture* existing();

    // Handlers. Setting a control from code runs its handler through `handlers`.
    void textureboxClick();
    void texturepartboxClick();
    void addtexturepartClick();
    void texturepartchangeChange();
    void uvboxChange(int index);
    void importtexClick();
    void Picture1MouseDown(Qt::MouseButton button, int x, int y);
    void Picture1MouseMove(int x, int y);
    // The window follows the picture's size.
    void Picture1Resize();

    ChangeHandlers& handlers() { return handlers_; }

    QComboBox* texturebox() const { return texturebox_; }
    QWidget* Picture1() const { return picture1_; }
    QLabel* Image1() const { return image1_; }
    QPushButton* importtex() const { return importtex_; }
    QComboBox* texturepartbox() const { return texturepartbox_; }
    QPushButton* addtexturepart() const { return addtexturepart_; }
    QPushButton* deltexturepart() const { return deltexturepart_; }
    QLineEdit* texturepartchange() const { return texturepartchange_; }
    QLineEdit* uvbox(int index) const { return uvbox_[index]; }
    QLabel* mylabel(int index) const { return mylabel_[index]; }
    // Panels 1 to 3 of StatusBar1.
    QLabel* panel(int number) const { return panels_[number - 1]; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void buildPicture();
    void buildColumn();
    void buildStatusBar();
    void wireHandlers();
    void enablePointControls(bool enabled);
    // Sizes Picture1 to the image, shows it, and runs the resize handler.
    void showImage(const QImage& image);

    ChangeHandlers handlers_;
    QComboBox* texturebox_;
    QWidget* picture1_;
    QLabel* image1_;
    QWidget* points_;
    QWidget* column_;
    QPushButton* importtex_;
    QComboBox* texturepartbox_;
    QPushButton* addtexturepart_;
    QPushButton* deltexturepart_;
    QLineEdit* texturepartchange_;
    QLineEdit* uvbox_[2];
    QLabel* mylabel_[3];
    QStatusBar* statusBar1_;
    QLabel* panels_[3];
};
