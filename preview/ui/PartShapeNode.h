#pragma once
// One part of the preview files as a Coin shape: the faces its file lists, drawn the way Coin
// draws that file's IndexedFaceSet (both sides, lit by face, textured by its coordinates), but
// from buffers made once and kept in each viewer's GL context. The four previews share the node.
//
// A frame sends only the faces that can reach a pixel: in a large stadium most faces are smaller
// than a pixel and cover no pixel centre, and the software renderer pays for every face it is
// given. The test is conservative, so the picture is the same as with every face sent.
#include <Inventor/nodes/SoShape.h>

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "preview/VRMLOps.h"

class PartShapeNode : public SoShape {
    SO_NODE_HEADER(PartShapeNode);

public:
    static void initClass();
    PartShapeNode();
    explicit PartShapeNode(std::shared_ptr<const PartShape> shape);

    const PartShape* shape() const { return shape_.get(); }
    // Whether frames leave out the faces that cover no pixel centre; on unless a test turns it off
    // to compare the two pictures.
    static void setSkipUnseenFaces(bool on);

protected:
    ~PartShapeNode() override;
    void GLRender(SoGLRenderAction* action) override;
    void generatePrimitives(SoAction* action) override;
    void computeBBox(SoAction* action, SbBox3f& box, SbVec3f& center) override;
    void getPrimitiveCount(SoGetPrimitiveCountAction* action) override;

private:
    // One vertex per place in the strip: the point and texture coordinates of its index, and the
    // normal of the face that ends there, which flat shading takes from that last vertex.
    struct Vertex {
        float x, y, z;
        std::int8_t nx, ny, nz, pad;
        float u, v;
    };
    // What one GL context holds of the node.
    struct Buffers {
        unsigned vertices = 0, faces = 0;
        int faceCount = 0;
        bool multisampled = false;
        bool keyed = false;  // the faces are those of `key` and `viewport`
        float key[16] = {};
        int viewport[4] = {};
    };

    void prepare();
    bool uploaded(std::uint32_t context, Buffers& b);
    void selectFaces(SoState* state, std::uint32_t context, Buffers& b);
    // Appends the three places in the strip of the face that starts at `start`, in the order
    // that keeps the strip's turning sense, so that its normal faces the way GL takes its front.
    void appendFace(std::uint32_t start, std::vector<std::uint32_t>& out) const;
    static void contextDestroyed(std::uint32_t context, void* node);

    std::shared_ptr<const PartShape> shape_;
    std::vector<Vertex> vertices_;
    std::vector<std::uint32_t> faceStarts_;  // the strip places where a face of the file starts
    std::map<std::uint32_t, Buffers> buffers_;
    std::vector<float> projected_;      // scratch of a frame: the points on the screen
    std::vector<std::uint32_t> shown_;  // scratch of a frame: the faces sent
};
