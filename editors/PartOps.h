#pragma once
// Operations on whole parts of the document.
#include <vector>

#include "core/oif.h"

// The document without the parts whose flag is set; the others keep their order. A part
// without a flag (the list is shorter than the document) is kept.
OIFFile RemoveParts(const OIFFile& doc, const std::vector<bool>& selected);

// How many flags are set.
int CountSelected(const std::vector<bool>& selected);
