#include "preview/ui/VrmlView.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFocusEvent>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QRegularExpression>
#include <QWheelEvent>

#include <Inventor/SbLinear.h>
#include <Inventor/SbViewportRegion.h>
#include <Inventor/SoDB.h>
#include <Inventor/SoInput.h>
#include <Inventor/SoPath.h>
#include <Inventor/VRMLnodes/SoVRMLTransform.h>
#include <Inventor/VRMLnodes/SoVRMLViewpoint.h>
#include <Inventor/actions/SoGLRenderAction.h>
#include <Inventor/actions/SoGetBoundingBoxAction.h>
#include <Inventor/actions/SoGetMatrixAction.h>
#include <Inventor/actions/SoSearchAction.h>
#include <Inventor/elements/SoGLCacheContextElement.h>
#include <Inventor/misc/SoContextHandler.h>
#include <Inventor/nodes/SoComplexity.h>
#include <Inventor/nodes/SoDirectionalLight.h>
#include <Inventor/nodes/SoPerspectiveCamera.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/sensors/SoNodeSensor.h>

#include <algorithm>
#include <cmath>

#include "preview/ui/CoinRuntime.h"
#include "preview/ui/PreviewWorld.h"

namespace {

// A VRML97 world without a Viewpoint is seen from here.
const SbVec3f DefaultPosition(0, 0, 10);
constexpr float DefaultFieldOfView = 0.785398f;
// Coin's own default: textures at the quality it picks for the hardware.
constexpr float TextureQualityOn = 0.5f;

int ButtonCode(Qt::MouseButton button) {
    switch (button) {
    case Qt::LeftButton: return MouseLeft;
    case Qt::RightButton: return MouseRight;
    case Qt::MiddleButton: return MouseMiddle;
    default: return 0;
    }
}

int ShiftCode(Qt::KeyboardModifiers modifiers) {
    return (modifiers & Qt::ShiftModifier ? 1 : 0) | (modifiers & Qt::ControlModifier ? 2 : 0) |
           (modifiers & Qt::AltModifier ? 4 : 0);
}

// A part without a texture to show has no colour of its own: drawn unlit it is a flat white
// shape on the pale background. Its appearance gets a lit slate-blue material, which shows its
// form and stands out: every appearance when textures are off, and when they are on those whose
// picture is not in the world's folder.
QByteArray ShadeUntextured(const QByteArray& world, const QString& folder, bool textured) {
    static const QRegularExpression appearance(
        QStringLiteral(R"re(Appearance\s*\{(\s*texture\s+ImageTexture\s*\{\s*url\s+"([^"]*)")?)re"));
    static const QString slate =
        QStringLiteral(" material Material { diffuseColor 0.4 0.46 0.6 emissiveColor 0.2 0.22 0.28 }");
    const QString text = QString::fromLatin1(world);
    QString shaded;
    qsizetype done = 0;
    for (auto it = appearance.globalMatch(text); it.hasNext();) {
        const QRegularExpressionMatch m = it.next();
        const bool pictureShown = textured && m.hasCaptured(2) && QFileInfo(QDir(folder), m.captured(2)).isFile();
        const qsizetype brace = text.indexOf(QLatin1Char('{'), m.capturedStart()) + 1;
        shaded += QStringView(text).mid(done, brace - done);
        if (!pictureShown) shaded += slate;
        done = brace;
    }
    shaded += QStringView(text).mid(done);
    return shaded.toLatin1();
}

}  // namespace

VrmlView::VrmlView(QWidget* parent) : QOpenGLWidget(parent), renderFlags_(RenderUntextured) {
    EnsureCoin();
    setObjectName(QStringLiteral("Cortona1"));
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(1, 1);

    root_ = new SoSeparator;
    root_->ref();
    camera_ = new SoPerspectiveCamera;
    headlight_ = new SoDirectionalLight;
    // Texturing is switched off by a texture quality of 0, forced over anything the world says.
    texturing_ = new SoComplexity;
    texturing_->setOverride(TRUE);
    world_ = new SoSeparator;
    viewpoint_ = new SoVRMLViewpoint;
    viewpoint_->ref();
    for (SoVRMLTransform*& turn : turns_) {
        turn = new SoVRMLTransform;
        turn->ref();
    }
    turns_[0]->addChild(turns_[1]);
    turns_[1]->addChild(turns_[2]);
    root_->addChild(camera_);
    root_->addChild(headlight_);
    root_->addChild(texturing_);
    root_->addChild(world_);
    setRenderFlags(renderFlags_);
    bindFirstViewpoint();

    sensor_ = new SoNodeSensor(sceneChanged, this);
    sensor_->attach(root_);
}

VrmlView::~VrmlView() {
    delete sensor_;
    releaseGLCaches();
    // The base class destroys the context after this body; its last signal must not reach a
    // VrmlView that no longer exists.
    if (QOpenGLContext* c = context()) disconnect(c, nullptr, this, nullptr);
    root_->unref();
    viewpoint_->unref();
    for (SoVRMLTransform* turn : turns_) turn->unref();
}

void VrmlView::sceneChanged(void* data, SoSensor*) { static_cast<VrmlView*>(data)->update(); }

bool VrmlView::hasWorld() const { return world_->getNumChildren() > 0; }

bool VrmlView::showsTextures() const { return RenderFlagsShowTextures(renderFlags_); }

void VrmlView::dropWorld() {
    world_->removeAllChildren();
    turns_[2]->removeAllChildren();
    parts_.reset();
    pose_.reset();
}

const SoNode* VrmlView::world() const { return world_; }

void VrmlView::setScene(const QString& path) {
    scene_ = path;
    dropWorld();
    if (path != QLatin1String(NoScene)) {
        QByteArray bytes;
        {
            QFile file(path);
            if (file.open(QIODevice::ReadOnly)) bytes = file.readAll();
        }
        bytes = ShadeUntextured(bytes, QFileInfo(path).absolutePath(), showsTextures());
        if (!bytes.isEmpty()) {
            SoInput in;
            in.setBuffer(bytes.constData(), static_cast<size_t>(bytes.size()));
            // Textures are named relative to the world's folder and read while the world is.
            SoSeparator* read = nullptr;
            WithCoinFolder(QFileInfo(path).absolutePath(), [&] { read = SoDB::readAll(&in); });
            if (read) world_->addChild(read);
        }
    }
    bindFirstViewpoint();
    update();
}

void VrmlView::showPreview(const QString& path, const ViewFileContents& contents) {
    scene_ = path;
    const QString folder = QFileInfo(path).absolutePath();
    if (!parts_ || parts_ != contents.Parts || partsFolder_ != folder) {
        dropWorld();
        parts_ = contents.Parts;
        partsFolder_ = folder;
        world_->addChild(viewpoint_);
        world_->addChild(turns_[0]);
        attachParts();
    }
    showPose(HeadPose(contents.Head));
}

void VrmlView::attachParts() {
    turns_[2]->removeAllChildren();
    turns_[2]->addChild(SharedPreviewParts(parts_, partsFolder_, showsTextures()));
}

void VrmlView::showPose(const ViewPose& pose) {
    if (!parts_ || pose_ == pose) return;
    pose_ = pose;
    // The same fields a reader of the head fills, through the same setters.
    viewpoint_->position.setValue(pose.X, pose.Y, pose.Z);
    viewpoint_->orientation.setValue(SbVec3f(pose.AxisX, pose.AxisY, pose.AxisZ), pose.Angle);
    turns_[0]->rotation.setValue(SbVec3f(0, 0, 1), pose.TurnZ);
    turns_[1]->rotation.setValue(SbVec3f(1, 0, 0), pose.TurnX);
    turns_[2]->rotation.setValue(SbVec3f(0, 1, 0), pose.TurnY);
    bindFirstViewpoint();
    update();
}

void VrmlView::drawNow() { repaint(); }

void VrmlView::bindFirstViewpoint() {
    SbVec3f position = DefaultPosition;
    SbRotation orientation = SbRotation::identity();
    float fieldOfView = DefaultFieldOfView;

    SoSearchAction search;
    search.setType(SoVRMLViewpoint::getClassTypeId());
    search.setInterest(SoSearchAction::FIRST);
    search.setSearchingAll(TRUE);
    search.apply(world_);
    if (SoPath* path = search.getPath()) {
        path->ref();
        const auto* viewpoint = static_cast<const SoVRMLViewpoint*>(path->getTail());
        // A Viewpoint inside transforms is placed by them.
        SoGetMatrixAction toWorld(SbViewportRegion(1, 1));
        toWorld.apply(path);
        const SbMatrix& m = toWorld.getMatrix();
        SbVec3f t, s;
        SbRotation r, so;
        m.getTransform(t, r, s, so);
        m.multVecMatrix(viewpoint->position.getValue(), position);
        orientation = viewpoint->orientation.getValue() * r;
        fieldOfView = viewpoint->fieldOfView.getValue();
        path->unref();
    }

    camera_->position = position;
    camera_->orientation = orientation;
    camera_->heightAngle = fieldOfView;
    // The light comes from over the viewer's left shoulder rather than from the eye, so that
    // faces at different angles to the view (a tread and its riser) get different shades.
    SbVec3f ahead;
    orientation.multVec(SbVec3f(0.3f, -0.45f, -1), ahead);
    ahead.normalize();
    headlight_->direction = ahead;
    fitClippingPlanes();
}

void VrmlView::fitClippingPlanes() {
    float nearest = 0.1f, farthest = 1000;
    // The box does not depend on the window's size; any viewport will do.
    SoGetBoundingBoxAction bounds(SbViewportRegion(100, 100));
    bounds.apply(world_);
    const SbBox3f box = bounds.getBoundingBox();
    if (!box.isEmpty()) {
        SbVec3f ahead;
        camera_->orientation.getValue().multVec(SbVec3f(0, 0, -1), ahead);
        const float radius = (box.getMax() - box.getMin()).length() / 2;
        const float distance = (box.getCenter() - camera_->position.getValue()).dot(ahead);
        farthest = std::max(distance + radius * 1.01f, 1.0f);
        // A near plane too close to the eye costs the depth buffer its precision.
        nearest = std::max(distance - radius * 1.01f, farthest / 5000);
    }
    camera_->nearDistance = nearest;
    camera_->farDistance = farthest;
}

VrmlView::Camera VrmlView::camera() const {
    Camera c;
    const SbVec3f p = camera_->position.getValue();
    c.x = p[0];
    c.y = p[1];
    c.z = p[2];
    SbVec3f axis;
    camera_->orientation.getValue().getValue(axis, c.angle);
    c.axisX = axis[0];
    c.axisY = axis[1];
    c.axisZ = axis[2];
    c.fieldOfView = camera_->heightAngle.getValue();
    return c;
}

void VrmlView::setRenderFlags(int flags) {
    renderFlags_ = flags;
    const bool wasTextured = texturing_->textureQuality.getValue() > 0;
    texturing_->textureQuality = showsTextures() ? TextureQualityOn : 0.0f;
    // A preview swaps its parts for the other kind; a world read gets the slate material while it
    // is read.
    if (wasTextured != showsTextures() && parts_) attachParts();
    else if (wasTextured != showsTextures() && hasWorld()) setScene(scene_);
    update();
}

void VrmlView::refresh() { update(); }

void VrmlView::initializeGL() {
    cacheContext_ = SoGLCacheContextElement::getUniqueCacheContext();
    glReady_ = true;
    // A widget moved to another top-level window gets a new context; Coin's textures and display
    // lists of the old one go with it.
    connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &VrmlView::releaseGLCaches, Qt::UniqueConnection);
}

void VrmlView::releaseGLCaches() {
    if (!glReady_) return;
    glReady_ = false;
    makeCurrent();
    SoContextHandler::destructingContext(cacheContext_);
    doneCurrent();
}

void VrmlView::paintGL() {
    QOpenGLFunctions* gl = context()->functions();
    gl->glClearColor(192 / 255.0f, 192 / 255.0f, 192 / 255.0f, 1.0f);
    gl->glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    gl->glEnable(GL_DEPTH_TEST);

    const qreal ratio = devicePixelRatioF();
    const auto w = static_cast<short>(std::clamp<qreal>(std::round(width() * ratio), 1, 32767));
    const auto h = static_cast<short>(std::clamp<qreal>(std::round(height() * ratio), 1, 32767));
    SoGLRenderAction render(SbViewportRegion(w, h));
    render.setCacheContext(cacheContext_);
    render.setTransparencyType(SoGLRenderAction::SORTED_OBJECT_BLEND);
    render.apply(root_);
}

void VrmlView::mousePressEvent(QMouseEvent* event) {
    const QPointF at = event->position();
    emit mousePressed(ButtonCode(event->button()), ShiftCode(event->modifiers()), float(at.x()), float(at.y()));
}

void VrmlView::mouseReleaseEvent(QMouseEvent* event) {
    const QPointF at = event->position();
    emit mouseReleased(ButtonCode(event->button()), ShiftCode(event->modifiers()), float(at.x()), float(at.y()));
}

void VrmlView::mouseMoveEvent(QMouseEvent* event) {
    const QPointF at = event->position();
    int buttons = 0;
    for (Qt::MouseButton b : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton})
        if (event->buttons() & b) buttons |= ButtonCode(b);
    emit mouseMoved(buttons, ShiftCode(event->modifiers()), float(at.x()), float(at.y()));
}

void VrmlView::wheelEvent(QWheelEvent* event) {
    // Fine-grained wheels and touch pads deliver parts of a notch; they add up to whole ones.
    wheelRest_ += event->angleDelta().y();
    const int notches = wheelRest_ / 120;
    wheelRest_ -= notches * 120;
    event->accept();
    if (notches != 0) emit wheelTurned(notches);
}

void VrmlView::focusInEvent(QFocusEvent* event) {
    QOpenGLWidget::focusInEvent(event);
    emit focusGained();
}

void VrmlView::focusOutEvent(QFocusEvent* event) {
    QOpenGLWidget::focusOutEvent(event);
    emit focusLost();
}
