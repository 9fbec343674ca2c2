#pragma once
// The VRML97 viewer behind the preview windows' control Cortona1, drawn by Coin3D in a
// QOpenGLWidget. It loads one world by path, takes its camera from the world's first Viewpoint,
// lights it with a headlight, and reports mouse, wheel and focus to the window, which does all
// navigation by rewriting the file: the viewer never moves its camera on its own.
//
// A preview file that the writers describe is shown without reading it: the head as a Viewpoint
// and three turns of this viewer's own, the parts as nodes shared with the other previews. A new
// file with the same parts changes only the camera and the turns.
#include <QOpenGLWidget>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

#include "preview/PreviewViewOps.h"
#include "preview/VRMLOps.h"

class SoComplexity;
class SoDirectionalLight;
class SoNode;
class SoPerspectiveCamera;
class SoSeparator;
class SoVRMLTransform;
class SoVRMLViewpoint;
class SoNodeSensor;
class SoSensor;

class VrmlView : public QOpenGLWidget {
    Q_OBJECT
public:
    explicit VrmlView(QWidget* parent = nullptr);
    ~VrmlView() override;

    // The text that drops the world and lets go of its file.
    static constexpr const char* NoScene = "None";

    // Loads the world at path, or drops it for "None". The file is read whole and closed before
    // this returns, so the caller may rewrite or delete it at once. A file that cannot be read
    // or parsed shows nothing, without a message.
    void setScene(const QString& path);
    // The last text given to setScene, whether or not it loaded.
    QString scene() const { return scene_; }
    bool hasWorld() const;

    // Shows the preview file at path from what the writers wrote into it, as setScene would show
    // it after reading it.
    void showPreview(const QString& path, const ViewFileContents& contents);
    // Puts the camera and the turns of the preview shown where this head would: for a view change
    // before its file is written, and for a turn while the button is held. Nothing without a
    // preview shown.
    void showPose(const ViewPose& pose);
    // Draws the picture before returning, instead of at the next pass of the event loop.
    void drawNow();
    // What is drawn: the world read or the preview shown, below the camera and the light.
    const SoNode* world() const;

    // The control's "property 21". See RenderFlagsShowTextures for the meaning.
    void setRenderFlags(int flags);
    int renderFlags() const { return renderFlags_; }
    bool showsTextures() const;

    // Draws the world again, e.g. after a texture file changed; the world is not re-read.
    void refresh();

    // The camera the world's first Viewpoint set, in world coordinates.
    struct Camera {
        float x = 0, y = 0, z = 0;
        float axisX = 0, axisY = 0, axisZ = 1, angle = 0;
        float fieldOfView = 0;
    };
    Camera camera() const;

signals:
    // Button 1 left, 2 right, 4 middle; shift 1, 2 for Ctrl, 4 for Alt; x and y in pixels from the
    // top left of the viewer.
    void mousePressed(int button, int shift, float x, float y);
    void mouseReleased(int button, int shift, float x, float y);
    // The mouse moved with buttons held (the same codes, added up).
    void mouseMoved(int buttons, int shift, float x, float y);
    // Whole wheel notches, positive away from the user (the "+" direction).
    void wheelTurned(int notches);
    void focusGained();
    void focusLost();

protected:
    void initializeGL() override;
    void paintGL() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void dropWorld();
    void attachParts();
    void bindFirstViewpoint();
    void fitClippingPlanes();
    void releaseGLCaches();
    static void sceneChanged(void* data, SoSensor* sensor);

    QString scene_ = QString::fromLatin1(NoScene);
    int renderFlags_;
    int wheelRest_ = 0;  // eighths of a degree not yet a whole notch

    SoSeparator* root_;
    SoPerspectiveCamera* camera_;
    SoDirectionalLight* headlight_;
    SoComplexity* texturing_;
    SoSeparator* world_;  // holds the loaded world or the preview; empty for "None"
    // The preview's head: its Viewpoint and the turns about Z, X and Y, nested in that order.
    SoVRMLViewpoint* viewpoint_;
    SoVRMLTransform* turns_[3];
    std::shared_ptr<const PartShapes> parts_;  // of the preview shown; null for a world read
    QString partsFolder_;
    std::optional<ViewPose> pose_;  // of the preview shown
    SoNodeSensor* sensor_;
    std::uint32_t cacheContext_ = 0;
    bool glReady_ = false;
};
