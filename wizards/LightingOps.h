#pragma once
// The Stadium Lighting Wizard's light: a grey baked into every vertex's shadow colour by its
// distance from the origin, brightest at the centre and darkest at the farthest vertex.
#include <string>

#include "core/oif.h"

// The document with every vertex of every part lit by DistanceShade against the farthest vertex
// of the whole document, dimmed by the origin's brightness in percent (`originText` read as the
// box reads it, clamped to 0..100). The farthest grey stays 30 whatever the wizard's "Furthest
// point:" box says. Throws std::runtime_error when vertices exist and all lie at the origin.
OIFFile ApplyLighting(const OIFFile& doc, const std::string& originText);

// The key filter of the two brightness boxes: digits, one ".", Tab, Enter and Backspace; a "0"
// is dropped when the box holds just "0", and a key that would make the value negative is
// dropped. Returns the key if it may pass, else 0.
int LightingKeyFilter(int key, const std::string& text);
