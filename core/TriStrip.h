#pragma once
// The triangle stripper: triangles in, one strip out, joined by repeated indices. The four calls
// keep the handle-based contract the 3DS reader and the Stadium Importer are written against.
#include <cstdint>
#include <vector>

// Strips `triangleCount` triangles of `indices` (three per triangle); returns a handle to the
// result. Fewer indices than the count asks for are refused: only whole triangles are read.
std::int32_t StripTriangles(std::int32_t triangleCount, const std::int32_t* indices, std::size_t indexCount);
std::int32_t GetTriStripCount(std::int32_t handle);
void GetTriStripData(std::int32_t handle, std::int32_t* out);
void CleanUpData(std::int32_t handle);

// The whole calling sequence for a part's 16-bit indices.
std::vector<std::int16_t> StripPartIndices(const std::vector<std::int16_t>& triangles);
