// The components of a slice: contour layers (borders of typed contours) and
// vector layers (chains of typed blocks of vectors).
#pragma once

#include <cstdint>
#include <vector>

#include "kelvor2d_export.h"
#include "sibling/math/border.h"
#include "sibling/math/owned_chain.h"
#include "sibling/slice/slice_vector_types.h"

// A point of a slice contour: x, y (32-bit), data, next, as every border point.
class KELVOR2D_API M2DSliceContourPoint : public M3dBorderPointBase<long, void*, M2DSliceContourPoint> {
 public:
  using M3dBorderPointBase<long, void*, M2DSliceContourPoint>::M3dBorderPointBase;
};

// A slice contour: a border contour that carries its type.
class KELVOR2D_API M2DSliceContour
    : public M3dBorderContourBase<long, void*, M2DSliceContourPoint, M2DSliceContour> {
 public:
  // The type holder of the contour; code 0 on a new contour.
  M2DSliceVectorTypeInfoHolder& GetTypeInfoHolder() { return m_typeInfo; }
  const M2DSliceVectorTypeInfoHolder& GetTypeInfoHolder() const { return m_typeInfo; }

 private:
  M2DSliceVectorTypeInfoHolder m_typeInfo;  // type of the contour
};

// The contours of a slice (its border or its areas).
using M2DSliceContourLayer = M3dBorder<long, void*, M2DSliceContour>;

extern template class M3dBorderContourBase<long, void*, M2DSliceContourPoint, M2DSliceContour>;
extern template class M3dBorder<long, void*, M2DSliceContour>;

// One vector of a slice, in the field order start x, end x, start y, end y.
struct KELVOR2D_API M2DSliceVector {
  int32_t StartX;  // grid units
  int32_t EndX;    // grid units
  int32_t StartY;  // grid units
  int32_t EndY;    // grid units
};

static_assert(sizeof(M2DSliceVector) == 16, "a slice vector is four 32-bit values");

// A block of vectors of one type.
class KELVOR2D_API M2DSliceVectorBlock {
 public:
  std::vector<M2DSliceVector> Vectors;  // the vectors, in order

  M2DSliceVectorBlock() = default;
  // Copies vectors and type; the copy is in no layer.
  M2DSliceVectorBlock(const M2DSliceVectorBlock& other)
      : Vectors(other.Vectors), m_typeInfo(other.m_typeInfo) {}
  // Replaces vectors and type; the place in the layer stays.
  M2DSliceVectorBlock& operator=(const M2DSliceVectorBlock& other) {
    Vectors = other.Vectors;
    m_typeInfo = other.m_typeInfo;
    return *this;
  }

  // Next block of the layer, or null.
  M2DSliceVectorBlock* GetNextBlock() { return m_chainNext; }
  const M2DSliceVectorBlock* GetNextBlock() const { return m_chainNext; }
  // The type holder of the block; code 0 on a new block.
  M2DSliceVectorTypeInfoHolder& GetTypeInfoHolder() { return m_typeInfo; }
  const M2DSliceVectorTypeInfoHolder& GetTypeInfoHolder() const { return m_typeInfo; }

 private:
  friend class MOwnedChain<M2DSliceVectorBlock>;

  M2DSliceVectorTypeInfoHolder m_typeInfo;     // type of every vector of the block
  M2DSliceVectorBlock* m_chainNext = nullptr;  // next block of the layer, null at the end
};

// The vectors of a slice: an owned, ordered chain of blocks, with value semantics.
class KELVOR2D_API M2DSliceVectorLayer {
 public:
  using iterator = MChainIterator<M2DSliceVectorBlock>;
  using const_iterator = MChainIterator<const M2DSliceVectorBlock>;

  // Removes all blocks.
  void MakeEmpty() { m_blocks.MakeEmpty(); }
  // Adds an empty block of type 0 at the end and returns it.
  M2DSliceVectorBlock* AddVectorBlockAtEnd() { return m_blocks.AddAtEnd(new M2DSliceVectorBlock()); }
  // Deletes block and returns its successor; null, deleting nothing, when it
  // is null or not in this layer.
  M2DSliceVectorBlock* RemoveVectorBlock(M2DSliceVectorBlock* block) { return m_blocks.Remove(block); }
  // First block, or null.
  M2DSliceVectorBlock* GetFirstBlock() { return m_blocks.First(); }
  const M2DSliceVectorBlock* GetFirstBlock() const { return m_blocks.First(); }
  uint32_t GetNumBlocks() const { return m_blocks.Count(); }
  // Number of vectors over all blocks.
  uint32_t GetNumVectors() const;

  iterator begin() { return iterator(m_blocks.First()); }
  iterator end() { return iterator(nullptr); }
  const_iterator begin() const { return const_iterator(m_blocks.First()); }
  const_iterator end() const { return const_iterator(nullptr); }

 private:
  MOwnedChain<M2DSliceVectorBlock> m_blocks;  // the blocks, owned
};
