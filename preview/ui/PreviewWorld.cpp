#include "preview/ui/PreviewWorld.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <Inventor/VRMLnodes/SoVRMLAppearance.h>
#include <Inventor/VRMLnodes/SoVRMLImageTexture.h>
#include <Inventor/VRMLnodes/SoVRMLMaterial.h>
#include <Inventor/VRMLnodes/SoVRMLShape.h>
#include <Inventor/nodes/SoSeparator.h>

#include <algorithm>
#include <map>
#include <vector>

#include "preview/PreviewViewOps.h"
#include "preview/ui/CoinRuntime.h"
#include "preview/ui/PartShapeNode.h"

namespace {

// A picture as read, known by its file: a changed file is read again.
struct Picture {
    QDateTime modified;
    qint64 size = -1;
    SoVRMLImageTexture* node = nullptr;
};

// The nodes made for one set of joined parts. Held while anyone holds the parts.
struct Built {
    std::weak_ptr<const PartShapes> parts;
    QString folder;
    SoSeparator* groups[2] = {nullptr, nullptr};  // untextured, textured
    std::map<const PartShape*, PartShapeNode*> shapes;
    std::map<QString, Picture> pictures;

    Built() = default;
    Built(const Built&) = delete;
    Built& operator=(const Built&) = delete;
    ~Built() {
        for (SoSeparator* g : groups)
            if (g) g->unref();
        for (auto& [shape, node] : shapes) node->unref();
        for (auto& [path, picture] : pictures) picture.node->unref();
    }
};

std::vector<std::unique_ptr<Built>>& AllBuilt() {
    static auto* all = new std::vector<std::unique_ptr<Built>>;
    return *all;
}

PartShapeNode* ShapeNode(Built& built, const std::shared_ptr<const PartShape>& shape) {
    PartShapeNode*& node = built.shapes[shape.get()];
    if (node) return node;
    // A node made for the same part of another set of joined parts keeps its buffers.
    for (const auto& other : AllBuilt())
        if (const auto found = other->shapes.find(shape.get()); found != other->shapes.end()) node = found->second;
    if (!node) node = new PartShapeNode(shape);
    node->ref();
    return node;
}

// The texture of a picture in the folder, or null when there is no such file.
SoVRMLImageTexture* PictureNode(Built& built, const std::string& picture) {
    const QFileInfo file(QDir(built.folder), QString::fromLatin1(picture));
    if (!file.isFile()) return nullptr;
    const QString path = file.absoluteFilePath();
    const auto same = [&](const Picture& p) { return p.modified == file.lastModified() && p.size == file.size(); };
    Picture& entry = built.pictures[path];
    if (entry.node) return entry.node;
    for (const auto& other : AllBuilt())
        if (const auto found = other->pictures.find(path); found != other->pictures.end() && same(found->second))
            entry = found->second;
    if (!entry.node) {
        entry = {file.lastModified(), file.size(), new SoVRMLImageTexture};
        // The url as the file has it, read while its folder is searched.
        WithCoinFolder(built.folder, [&] { entry.node->url.setValue(picture.c_str()); });
    }
    entry.node->ref();
    return entry.node;
}

SoVRMLAppearance* TintAppearance(int partNumber) {
    const Tint t = PartTint(partNumber);
    auto* material = new SoVRMLMaterial;
    material->diffuseColor.setValue(t.R, t.G, t.B);
    // A little light of its own, so that faces turned from the light keep their colour.
    material->emissiveColor.setValue(t.R * 0.3f, t.G * 0.3f, t.B * 0.3f);
    auto* appearance = new SoVRMLAppearance;
    appearance->material = material;
    return appearance;
}

SoSeparator* MakeGroup(Built& built, const PartShapes& parts, bool textured) {
    auto* group = new SoSeparator;
    group->ref();
    // The shapes keep their own buffers; a cache of the group would only copy them.
    group->renderCaching = SoSeparator::OFF;
    for (const std::shared_ptr<const PartShape>& part : parts) {
        auto* shape = new SoVRMLShape;
        shape->renderCaching = SoVRMLShape::OFF;
        shape->geometry = ShapeNode(built, part);
        SoVRMLImageTexture* picture = textured ? PictureNode(built, part->Picture) : nullptr;
        if (picture) {
            // No material, as in the file: the picture shows unlit.
            auto* appearance = new SoVRMLAppearance;
            appearance->texture = picture;
            shape->appearance = appearance;
        } else {
            shape->appearance = TintAppearance(part->Number);
        }
        group->addChild(shape);
    }
    return group;
}

}  // namespace

SoNode* SharedPreviewParts(const std::shared_ptr<const PartShapes>& parts, const QString& folder, bool textured) {
    std::vector<std::unique_ptr<Built>>& all = AllBuilt();
    // Sets whose parts nobody holds any more are let go, after the new one took what it can use.
    Built* built = nullptr;
    const auto sameParts = [&](const Built& b) {
        return !b.parts.expired() && !b.parts.owner_before(parts) && !parts.owner_before(b.parts);
    };
    for (const auto& b : all)
        if (sameParts(*b) && b->folder == folder) built = b.get();
    if (!built) {
        all.push_back(std::make_unique<Built>());
        built = all.back().get();
        built->parts = parts;
        built->folder = folder;
    }
    SoSeparator*& group = built->groups[textured ? 1 : 0];
    if (!group) group = MakeGroup(*built, *parts, textured);
    std::erase_if(all, [](const std::unique_ptr<Built>& b) { return b->parts.expired(); });
    return group;
}
