#pragma once
// Operations on whole parts of the document.
#include "core/oif.h"

// Merges every part into the first earlier part of exactly the same texture (case counts),
// joining their strips; with crowdOnly only textures starting "rw" take part. The merged part
// keeps the first part's name and place; the other parts keep their order.
void MergeSameTexture(OIFFile& doc, bool crowdOnly);
