#pragma once
// The parts behind the heads of the four preview files as Coin nodes, made once from what the
// writers kept and shared by every viewer that shows them: nothing is parsed, and the geometry of
// a rebuild is held once however many previews show it.
#include <QString>

#include <memory>

#include "preview/VRMLOps.h"

class SoNode;

// The shapes of `parts` for a viewer, as the view files describe them. Untextured, every part is
// lit in its tint; textured, a part whose picture stands in `folder` shows it, unlit as its file
// asks, and the others are lit in their tint. The same parts give the same node (not referenced
// for the caller) as long as any viewer holds the parts; the textures are read again only when
// their files changed.
SoNode* SharedPreviewParts(const std::shared_ptr<const PartShapes>& parts, const QString& folder, bool textured);
