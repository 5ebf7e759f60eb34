// Helpers for tests of vector layers: add blocks from literal coordinates and
// read blocks back as vectors of numbers.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "layer/vector_layer.h"

namespace testing_support {

// Appends a block of the given type and coordinates (no extents change).
inline VECTOR_BLOK* AddBlock(VECTOR_LAYER& layer, uint16_t type, const std::vector<int32_t>& coordinates) {
  auto* b = new VECTOR_BLOK;
  b->Type = type;
  std::vector<int32_t> copy(coordinates);
  b->SetCoordinates(copy.data(), static_cast<int32_t>(copy.size()));
  layer.AddBlockAtEnd(b);
  return b;
}

inline std::vector<int32_t> CoordinatesOf(const VECTOR_BLOK* b) {
  if (b == nullptr || b->Size <= 0)
    return {};
  return std::vector<int32_t>(b->Block, b->Block + b->Size);
}

// The coordinates of block `index` of the chain (empty when there is none).
inline std::vector<int32_t> BlockAt(const VECTOR_LAYER& layer, int index) {
  const VECTOR_BLOK* b = layer.FirstBlock;
  for (int i = 0; i < index && b != nullptr; ++i)
    b = b->NextBlock;
  return CoordinatesOf(b);
}

inline std::vector<int32_t> BlockSizes(const VECTOR_LAYER& layer) {
  std::vector<int32_t> sizes;
  for (const VECTOR_BLOK* b = layer.FirstBlock; b != nullptr; b = b->NextBlock)
    sizes.push_back(b->Size);
  return sizes;
}

inline int CountBlocks(const VECTOR_LAYER& layer) {
  int n = 0;
  for (const VECTOR_BLOK* b = layer.FirstBlock; b != nullptr; b = b->NextBlock)
    ++n;
  return n;
}

// Points as x, y, x, y, ...
inline std::vector<int32_t> FlattenPoints(const MMPoint2d<long>* points, int32_t count) {
  std::vector<int32_t> v;
  for (int32_t i = 0; i < count; ++i) {
    v.push_back(points[i].x);
    v.push_back(points[i].y);
  }
  return v;
}

// Extents as "minX minY maxX maxY", for readable failures.
template <class Extents>
std::string ExtentsOf(const Extents& e) {
  return std::to_string(e.MinX) + " " + std::to_string(e.MinY) + " " + std::to_string(e.MaxX) + " " +
         std::to_string(e.MaxY);
}

}  // namespace testing_support
