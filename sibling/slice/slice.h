// One slice of the slice model: its contour border, its contour areas, its
// vectors, its z and the z area that may fix that z.
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"
#include "sibling/slice/slice_layers.h"

// The z range a slice stands for. A default-constructed area is not valid.
class KELVOR2D_API M2DSliceZArea {
 public:
  M2DSliceZArea() = default;
  // A valid area; the bounds may come in either order.
  M2DSliceZArea(int32_t bottom, int32_t top)
      : m_bottom(bottom < top ? bottom : top), m_top(bottom < top ? top : bottom), m_valid(true) {}

  // True when the area gives the slice's z.
  bool IsValid() const { return m_valid; }
  int32_t GetBottom() const { return m_bottom; }
  int32_t GetTop() const { return m_top; }
  // The z of a slice in this area: its top.
  int32_t GetZ() const { return m_top; }

 private:
  int32_t m_bottom = 0;  // lower bound in internal units
  int32_t m_top = 0;     // upper bound in internal units
  bool m_valid = false;  // false: no area, the slice's z is free
};

class M2DSlice;

// Write access to one component of a slice, for the life of the object. Its end
// raises the slice's revision. Made only by the slice's Get...Update.
template <class Component>
class M2DSliceComponentUpdate {
 public:
  M2DSliceComponentUpdate(const M2DSliceComponentUpdate&) = delete;
  M2DSliceComponentUpdate& operator=(const M2DSliceComponentUpdate&) = delete;
  ~M2DSliceComponentUpdate();
  // The component to write in.
  Component& operator*() const { return *m_component; }
  Component* operator->() const { return m_component; }

 private:
  friend class M2DSlice;
  M2DSliceComponentUpdate(M2DSlice& slice, Component& component);

  M2DSlice* m_slice;       // the slice being written
  Component* m_component;  // the component being written
};

// Update of the slice border or of the areas.
using M2DSliceComponentContoursUpdate = M2DSliceComponentUpdate<M2DSliceContourLayer>;
// Update of the vectors.
using M2DSliceComponentVectorsUpdate = M2DSliceComponentUpdate<M2DSliceVectorLayer>;

// A slice with value semantics. Components are read through const pointers and
// written through update objects, one open at a time by convention.
class KELVOR2D_API M2DSlice {
 public:
  int32_t Z = 0;  // height of the slice in internal units

  // Empties border, areas and vectors. Z and the z area stay: they say where
  // the slice lies, not what it holds.
  void Clear();

  // The components; never null.
  const M2DSliceContourLayer* GetSliceBorder() const { return &m_border; }
  const M2DSliceContourLayer* GetAreas() const { return &m_areas; }
  const M2DSliceVectorLayer* GetVectors() const { return &m_vectors; }

  // Write access to one component until the returned object ends.
  M2DSliceComponentContoursUpdate GetSliceBorderUpdate() { return {*this, m_border}; }
  M2DSliceComponentContoursUpdate GetAreasUpdate() { return {*this, m_areas}; }
  M2DSliceComponentVectorsUpdate GetVectorsUpdate() { return {*this, m_vectors}; }

  // Stores z, whatever the z area says.
  void SetZ(int32_t z) { Z = z; }
  const M2DSliceZArea& GetZArea() const { return m_zArea; }
  // Stores the area; a valid area also sets Z to its GetZ().
  void SetZArea(const M2DSliceZArea& area);

  // Number of updates ended so far; starts at 0 and is carried by copies.
  uint32_t GetRevision() const { return m_revision; }
  // Number of update objects alive now on this slice (a copy starts with none).
  uint32_t GetOpenUpdates() const { return m_openUpdates.value; }

 private:
  template <class Component>
  friend class M2DSliceComponentUpdate;
  // A count that copies and assignments do not carry: updates belong to one object.
  struct MUpdateCount {
    uint32_t value = 0;  // updates alive
    MUpdateCount() = default;
    MUpdateCount(const MUpdateCount&) {}
    MUpdateCount& operator=(const MUpdateCount&) { return *this; }
  };

  void _BeginUpdate() { ++m_openUpdates.value; }
  void _EndUpdate() {
    --m_openUpdates.value;
    ++m_revision;
  }

  M2DSliceContourLayer m_border;  // the slice border
  M2DSliceContourLayer m_areas;   // the contour areas
  M2DSliceVectorLayer m_vectors;  // the vectors
  M2DSliceZArea m_zArea;          // not valid until set
  uint32_t m_revision = 0;        // updates ended
  MUpdateCount m_openUpdates;     // updates alive on this object
};

template <class Component>
M2DSliceComponentUpdate<Component>::M2DSliceComponentUpdate(M2DSlice& slice, Component& component)
    : m_slice(&slice), m_component(&component) {
  m_slice->_BeginUpdate();
}

template <class Component>
M2DSliceComponentUpdate<Component>::~M2DSliceComponentUpdate() {
  m_slice->_EndUpdate();
}
