#pragma once
// The VRML97 viewer behind the preview windows' control Cortona1, drawn by Coin3D in a
// QOpenGLWidget. It loads one world by path, takes its camera from the world's first Viewpoint,
// lights it with a headlight, and reports mouse, wheel and focus to the window, which does all
// navigation by rewriting the file: the viewer itself never moves its camera.
#include <QOpenGLWidget>
#include <QString>

#include <cstdint>

class SoComplexity;
class SoDirectionalLight;
class SoPerspectiveCamera;
class SoSeparator;
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
    // top left of the viewer, so that a turn takes 100 pixels of drag to the degree.
    void mousePressed(int button, int shift, float x, float y);
    void mouseReleased(int button, int shift, float x, float y);
    // Whole wheel notches, positive away from the user (the "+" direction).
    void wheelTurned(int notches);
    void focusGained();
    void focusLost();

protected:
    void initializeGL() override;
    void paintGL() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void dropWorld();
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
    SoSeparator* world_;  // holds the loaded world; empty for "None"
    SoNodeSensor* sensor_;
    std::uint32_t cacheContext_ = 0;
    bool glReady_ = false;
};
