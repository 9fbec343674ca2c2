#include "preview/ui/PartShapeNode.h"

#include <GL/gl.h>

#include <Inventor/C/glue/gl.h>
#include <Inventor/SbBox3f.h>
#include <Inventor/SbMatrix.h>
#include <Inventor/SbViewportRegion.h>
#include <Inventor/SoPrimitiveVertex.h>
#include <Inventor/actions/SoGLRenderAction.h>
#include <Inventor/actions/SoGetPrimitiveCountAction.h>
#include <Inventor/bundles/SoMaterialBundle.h>
#include <Inventor/elements/SoDrawStyleElement.h>
#include <Inventor/elements/SoGLCacheContextElement.h>
#include <Inventor/elements/SoLazyElement.h>
#include <Inventor/elements/SoLightModelElement.h>
#include <Inventor/elements/SoModelMatrixElement.h>
#include <Inventor/elements/SoMultiTextureEnabledElement.h>
#include <Inventor/elements/SoProjectionMatrixElement.h>
#include <Inventor/elements/SoShapeHintsElement.h>
#include <Inventor/elements/SoViewingMatrixElement.h>
#include <Inventor/elements/SoViewportRegionElement.h>
#include <Inventor/misc/SoContextHandler.h>
#include <Inventor/misc/SoState.h>

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <thread>

SO_NODE_SOURCE(PartShapeNode);

namespace {

bool skipUnseenFaces = true;

// A point this far (in pixels) from a face still counts as inside it: more than the renderer's
// snapping to 1/256 of a pixel and the rounding of two ways of projecting the same point.
constexpr float Margin = 1.0f / 32;
// Points further off the screen than this, or behind the eye, are not worked out; their faces are
// always sent, and the renderer clips them.
constexpr float FarOff = 100000;

bool ValidIndex(std::int16_t index, std::size_t points) { return index >= 0 && std::size_t(index) < points; }

SbVec3f FaceNormal(const float* a, const float* b, const float* c) {
    const float ux = b[0] - a[0], uy = b[1] - a[1], uz = b[2] - a[2];
    const float vx = c[0] - a[0], vy = c[1] - a[1], vz = c[2] - a[2];
    const float nx = uy * vz - uz * vy, ny = uz * vx - ux * vz, nz = ux * vy - uy * vx;
    const float length = std::sqrt(nx * nx + ny * ny + nz * nz);
    return length > 0 ? SbVec3f(nx / length, ny / length, nz / length) : SbVec3f(0, 0, 0);
}

int Floor(float v) {
    const int i = static_cast<int>(v);
    return i - (v < static_cast<float>(i));
}

// Whether a face with these corners on the screen (pixel centres at whole numbers) may cover a
// pixel centre inside width x height. It answers yes whenever unsure. A point that was not worked
// out stands at infinity.
inline bool MayCoverPixelCentre(const float* a, const float* b, const float* c, int width, int height) {
    const float ax = a[0], ay = a[1], bx = b[0], by = b[1], cx = c[0], cy = c[1];
    const float minX = std::min(ax, std::min(bx, cx)), maxX = std::max(ax, std::max(bx, cx));
    if (!(maxX < FarOff)) return true;
    const float minY = std::min(ay, std::min(by, cy)), maxY = std::max(ay, std::max(by, cy));
    const int x0 = -Floor(Margin - minX), x1 = Floor(maxX + Margin);
    const int y0 = -Floor(Margin - minY), y1 = Floor(maxY + Margin);
    if (x1 < x0 || y1 < y0 || x1 < 0 || y1 < 0 || x0 >= width || y0 >= height) return false;
    if ((x1 - x0 + 1) * (y1 - y0 + 1) > 4) return true;
    const float area = (bx - ax) * (cy - ay) - (by - ay) * (cx - ax);
    if (area == 0) return true;
    const float s = area > 0 ? 1.0f : -1.0f;
    // Edge functions, positive inside; each may fall short by what a move of Margin can change.
    const float e0x = s * (bx - ax), e0y = s * (by - ay), e1x = s * (cx - bx), e1y = s * (cy - by);
    const float e2x = s * (ax - cx), e2y = s * (ay - cy);
    const float m0 = -Margin * (std::fabs(e0x) + std::fabs(e0y)), m1 = -Margin * (std::fabs(e1x) + std::fabs(e1y));
    const float m2 = -Margin * (std::fabs(e2x) + std::fabs(e2y));
    for (int y = y0; y <= y1; ++y)
        for (int x = x0; x <= x1; ++x) {
            const auto px = static_cast<float>(x), py = static_cast<float>(y);
            if (e0x * (py - ay) - e0y * (px - ax) >= m0 && e1x * (py - by) - e1y * (px - bx) >= m1 &&
                e2x * (py - cy) - e2y * (px - cx) >= m2)
                return true;
        }
    return false;
}

// The points on the screen, relative to the viewport, with the pixel centres at whole numbers; a
// point behind the eye or far off the screen at infinity.
void Project(const float* points, std::size_t from, std::size_t to, const float* k, int width, int height, float* out) {
    const float halfW = static_cast<float>(width) * 0.5f, halfH = static_cast<float>(height) * 0.5f;
    for (std::size_t i = from; i < to; ++i) {
        const float x = points[3 * i], y = points[3 * i + 1], z = points[3 * i + 2];
        const float cx = x * k[0] + y * k[4] + z * k[8] + k[12];
        const float cy = x * k[1] + y * k[5] + z * k[9] + k[13];
        const float cw = x * k[3] + y * k[7] + z * k[11] + k[15];
        float sx = (cx / cw + 1) * halfW - 0.5f, sy = (cy / cw + 1) * halfH - 0.5f;
        if (!(cw > 0) || !(std::fabs(sx) < FarOff && std::fabs(sy) < FarOff)) sx = sy = INFINITY;
        out[2 * i] = sx;
        out[2 * i + 1] = sy;
    }
}

// Writes the corners of the faces from `first` to `last` that may cover a pixel centre to `sent`, in
// the order that keeps the strip's turning sense; returns the end.
std::uint32_t* KeepSeenFaces(const std::uint32_t* first, const std::uint32_t* last, const std::int16_t* strip,
                             const float* projected, int width, int height, std::uint32_t* sent) {
    for (; first != last; ++first) {
        const std::uint32_t start = *first;
        if (!MayCoverPixelCentre(projected + 2 * strip[start], projected + 2 * strip[start + 1],
                                 projected + 2 * strip[start + 2], width, height))
            continue;
        const std::uint32_t odd = start % 2;
        sent[0] = start + odd;
        sent[1] = start + 1 - odd;
        sent[2] = start + 2;
        sent += 3;
    }
    return sent;
}

// A second thread for the work of a frame on a large part: while a frame chooses its faces, the
// renderer's own threads have nothing to do.
class Helper {
public:
    ~Helper() {
        {
            std::lock_guard lock(mutex_);
            stopping_ = true;
        }
        wake_.notify_all();
        if (thread_.joinable()) thread_.join();
    }
    void start(std::function<void()> job) {
        if (!thread_.joinable()) thread_ = std::thread([this] { loop(); });
        {
            std::lock_guard lock(mutex_);
            job_ = std::move(job);
        }
        wake_.notify_all();
    }
    void wait() {
        std::unique_lock lock(mutex_);
        done_.wait(lock, [this] { return !job_; });
    }

private:
    void loop() {
        std::unique_lock lock(mutex_);
        while (true) {
            wake_.wait(lock, [this] { return stopping_ || job_; });
            if (stopping_) return;
            lock.unlock();
            job_();
            lock.lock();
            job_ = nullptr;
            done_.notify_all();
        }
    }
    std::mutex mutex_;
    std::condition_variable wake_, done_;
    std::function<void()> job_;
    bool stopping_ = false;
    std::thread thread_;
};

// Runs work(from, to) over [0, count): a large count in two halves at once.
void InTwo(std::size_t count, const std::function<void(std::size_t, std::size_t)>& work) {
    static Helper helper;
    if (count < 20000) {
        work(0, count);
        return;
    }
    const std::size_t half = count / 2;
    helper.start([&] { work(half, count); });
    work(0, half);
    helper.wait();
}

struct DoomedBuffers {
    unsigned ids[2];
};

void DeleteBuffers(void* closure, std::uint32_t context) {
    auto* doomed = static_cast<DoomedBuffers*>(closure);
    const cc_glglue* gl = cc_glglue_instance(static_cast<int>(context));
    for (unsigned id : doomed->ids)
        if (id) cc_glglue_glDeleteBuffers(gl, 1, &id);
    delete doomed;
}

}  // namespace

void PartShapeNode::initClass() { SO_NODE_INIT_CLASS(PartShapeNode, SoShape, "Shape"); }

void PartShapeNode::setSkipUnseenFaces(bool on) { skipUnseenFaces = on; }

PartShapeNode::PartShapeNode() {
    SO_NODE_CONSTRUCTOR(PartShapeNode);
    SoContextHandler::addContextDestructionCallback(contextDestroyed, this);
}

PartShapeNode::PartShapeNode(std::shared_ptr<const PartShape> shape) : PartShapeNode() {
    shape_ = std::move(shape);
    prepare();
}

PartShapeNode::~PartShapeNode() {
    SoContextHandler::removeContextDestructionCallback(contextDestroyed, this);
    for (const auto& [context, b] : buffers_)
        SoGLCacheContextElement::scheduleDeleteCallback(context, DeleteBuffers,
                                                        new DoomedBuffers{{b.vertices, b.faces}});
}

void PartShapeNode::contextDestroyed(std::uint32_t context, void* node) {
    auto* self = static_cast<PartShapeNode*>(node);
    const auto found = self->buffers_.find(context);
    if (found == self->buffers_.end()) return;
    // The viewer makes its context current before it lets go of it.
    DeleteBuffers(new DoomedBuffers{{found->second.vertices, found->second.faces}}, context);
    self->buffers_.erase(found);
}

void PartShapeNode::prepare() {
    if (!shape_) return;
    const std::vector<float>& points = shape_->Points;
    const std::vector<float>& tex = shape_->TexPoints;
    const std::vector<std::int16_t>& strip = shape_->Strip;
    const std::size_t count = points.size() / 3;
    vertices_.assign(strip.size(), Vertex{0, 0, 0, 0, 0, 0, 0, 0, 0});
    for (std::size_t i = 0; i < strip.size(); ++i) {
        if (!ValidIndex(strip[i], count)) continue;
        const auto at = static_cast<std::size_t>(strip[i]);
        Vertex& v = vertices_[i];
        v.x = points[3 * at];
        v.y = points[3 * at + 1];
        v.z = points[3 * at + 2];
        if (2 * at + 1 < tex.size()) {
            v.u = tex[2 * at];
            v.v = tex[2 * at + 1];
        }
    }
    for (std::size_t i = 0; i + 2 < strip.size(); ++i) {
        if (!IsFace(strip[i], strip[i + 1], strip[i + 2]) || !ValidIndex(strip[i], count) ||
            !ValidIndex(strip[i + 1], count) || !ValidIndex(strip[i + 2], count))
            continue;
        faceStarts_.push_back(static_cast<std::uint32_t>(i));
        // The order appendFace sends the corners in.
        const Vertex& a = vertices_[i % 2 ? i + 1 : i];
        const Vertex& b = vertices_[i % 2 ? i : i + 1];
        Vertex& c = vertices_[i + 2];
        const SbVec3f n = FaceNormal(&a.x, &b.x, &c.x);
        c.nx = static_cast<std::int8_t>(std::lround(n[0] * 127));
        c.ny = static_cast<std::int8_t>(std::lround(n[1] * 127));
        c.nz = static_cast<std::int8_t>(std::lround(n[2] * 127));
    }
}

void PartShapeNode::appendFace(std::uint32_t start, std::vector<std::uint32_t>& out) const {
    // Every other face of a strip turns the other way; the last corner stays last either way.
    if (start % 2) out.insert(out.end(), {start + 1, start, start + 2});
    else out.insert(out.end(), {start, start + 1, start + 2});
}

bool PartShapeNode::uploaded(std::uint32_t context, Buffers& b) {
    const cc_glglue* gl = cc_glglue_instance(static_cast<int>(context));
    if (!cc_glglue_has_vertex_buffer_object(gl)) return false;
    if (b.vertices) return true;
    cc_glglue_glGenBuffers(gl, 1, &b.vertices);
    cc_glglue_glGenBuffers(gl, 1, &b.faces);
    cc_glglue_glBindBuffer(gl, GL_ARRAY_BUFFER, b.vertices);
    cc_glglue_glBufferData(gl, GL_ARRAY_BUFFER, static_cast<GLsizei>(vertices_.size() * sizeof(Vertex)),
                           vertices_.data(), GL_STATIC_DRAW);
    cc_glglue_glBindBuffer(gl, GL_ARRAY_BUFFER, 0);
    GLint samples = 0;
    glGetIntegerv(GL_SAMPLE_BUFFERS, &samples);
    b.multisampled = samples > 0;
    return true;
}

void PartShapeNode::selectFaces(SoState* state, std::uint32_t context, Buffers& b) {
    SbMatrix m = SoModelMatrixElement::get(state);
    m.multRight(SoViewingMatrixElement::get(state));
    m.multRight(SoProjectionMatrixElement::get(state));
    const SbViewportRegion& region = SoViewportRegionElement::get(state);
    const SbVec2s origin = region.getViewportOriginPixels(), size = region.getViewportSizePixels();
    const int viewport[4] = {origin[0], origin[1], size[0], size[1]};
    const bool skip =
        skipUnseenFaces && !b.multisampled && SoDrawStyleElement::get(state) == SoDrawStyleElement::FILLED;
    float key[16];
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) key[4 * r + c] = skip ? m[r][c] : 0;
    if (b.keyed && std::equal(key, key + 16, b.key) && std::equal(viewport, viewport + 4, b.viewport)) return;

    if (skip) {
        const std::size_t count = shape_->Points.size() / 3;
        projected_.resize(2 * count);
        InTwo(count, [&](std::size_t from, std::size_t to) {
            Project(shape_->Points.data(), from, to, key, size[0], size[1], projected_.data());
        });
        shown_.resize(3 * faceStarts_.size());
        std::uint32_t* ends[2] = {};
        InTwo(faceStarts_.size(), [&](std::size_t from, std::size_t to) {
            ends[from ? 1 : 0] = KeepSeenFaces(faceStarts_.data() + from, faceStarts_.data() + to, shape_->Strip.data(),
                                               projected_.data(), size[0], size[1], shown_.data() + 3 * from);
        });
        // The second half's faces follow the first half's.
        std::uint32_t* end = ends[0];
        if (ends[1]) {
            std::uint32_t* second = shown_.data() + 3 * (faceStarts_.size() / 2);
            end = std::copy(second, ends[1], ends[0]);
        }
        shown_.resize(static_cast<std::size_t>(end - shown_.data()));
    } else {
        shown_.clear();
        for (const std::uint32_t start : faceStarts_) appendFace(start, shown_);
    }
    const cc_glglue* gl = cc_glglue_instance(static_cast<int>(context));
    cc_glglue_glBindBuffer(gl, GL_ELEMENT_ARRAY_BUFFER, b.faces);
    cc_glglue_glBufferData(gl, GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizei>(shown_.size() * sizeof(std::uint32_t)),
                           shown_.data(), GL_STREAM_DRAW);
    cc_glglue_glBindBuffer(gl, GL_ELEMENT_ARRAY_BUFFER, 0);
    b.faceCount = static_cast<int>(shown_.size());
    b.keyed = true;
    std::copy(key, key + 16, b.key);
    std::copy(viewport, viewport + 4, b.viewport);
}

void PartShapeNode::GLRender(SoGLRenderAction* action) {
    if (faceStarts_.empty() || !shouldGLRender(action)) return;
    SoState* state = action->getState();
    const std::uint32_t context = action->getCacheContext();
    Buffers& b = buffers_[context];
    if (!uploaded(context, b)) return;
    // The buffers are this node's cache; a display list of them would only copy them again.
    SoGLCacheContextElement::shouldAutoCache(state, SoGLCacheContextElement::DONT_AUTO_CACHE);
    state->push();
    // As Coin draws an IndexedFaceSet with ccw TRUE and solid FALSE: both sides, both lit.
    SoShapeHintsElement::set(state, this, SoShapeHintsElement::COUNTERCLOCKWISE,
                             SoShapeHintsElement::UNKNOWN_SHAPE_TYPE, SoShapeHintsElement::CONVEX);
    SoLazyElement::setShadeModel(state, TRUE);
    SoMaterialBundle material(action);
    material.sendFirst();
    selectFaces(state, context, b);

    const bool lit = SoLightModelElement::get(state) != SoLightModelElement::BASE_COLOR;
    const bool textured = SoMultiTextureEnabledElement::get(state, 0);
    const cc_glglue* gl = cc_glglue_instance(static_cast<int>(context));
    cc_glglue_glBindBuffer(gl, GL_ARRAY_BUFFER, b.vertices);
    cc_glglue_glBindBuffer(gl, GL_ELEMENT_ARRAY_BUFFER, b.faces);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, sizeof(Vertex), reinterpret_cast<const void*>(offsetof(Vertex, x)));
    if (lit) {
        glEnableClientState(GL_NORMAL_ARRAY);
        glNormalPointer(GL_BYTE, sizeof(Vertex), reinterpret_cast<const void*>(offsetof(Vertex, nx)));
    }
    if (textured) {
        cc_glglue_glClientActiveTexture(gl, GL_TEXTURE0);
        glEnableClientState(GL_TEXTURE_COORD_ARRAY);
        glTexCoordPointer(2, GL_FLOAT, sizeof(Vertex), reinterpret_cast<const void*>(offsetof(Vertex, u)));
    }
    glDrawElements(GL_TRIANGLES, b.faceCount, GL_UNSIGNED_INT, nullptr);
    if (textured) glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    if (lit) glDisableClientState(GL_NORMAL_ARRAY);
    glDisableClientState(GL_VERTEX_ARRAY);
    cc_glglue_glBindBuffer(gl, GL_ARRAY_BUFFER, 0);
    cc_glglue_glBindBuffer(gl, GL_ELEMENT_ARRAY_BUFFER, 0);
    state->pop();
}

void PartShapeNode::generatePrimitives(SoAction* action) {
    if (!shape_) return;
    const std::vector<float>& points = shape_->Points;
    const std::vector<float>& tex = shape_->TexPoints;
    const std::vector<std::int16_t>& strip = shape_->Strip;
    SoPrimitiveVertex pv;
    beginShape(action, TRIANGLES);
    for (const std::uint32_t start : faceStarts_) {
        // In the file's order: a b c as the index blocks list them.
        const float* corner[3];
        for (int k = 0; k < 3; ++k) corner[k] = &points[3 * std::size_t(strip[start + k])];
        pv.setNormal(FaceNormal(corner[0], corner[1], corner[2]));
        for (int k = 0; k < 3; ++k) {
            const auto at = std::size_t(strip[start + k]);
            pv.setPoint(SbVec3f(corner[k]));
            // The file gives them whether or not a picture shows.
            if (2 * at + 1 < tex.size()) pv.setTextureCoords(SbVec4f(tex[2 * at], tex[2 * at + 1], 0, 1));
            shapeVertex(&pv);
        }
    }
    endShape();
}

void PartShapeNode::computeBBox(SoAction*, SbBox3f& box, SbVec3f& center) {
    box.makeEmpty();
    if (shape_)
        for (std::size_t i = 0; i + 2 < shape_->Points.size(); i += 3) box.extendBy(SbVec3f(&shape_->Points[i]));
    if (!box.isEmpty()) center = box.getCenter();
}

void PartShapeNode::getPrimitiveCount(SoGetPrimitiveCountAction* action) {
    action->addNumTriangles(static_cast<int>(faceStarts_.size()));
}
