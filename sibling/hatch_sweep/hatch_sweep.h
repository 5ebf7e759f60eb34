// The hatch line sweep: edges of contours, given in the frame of a hatch
// direction, are cut by parallel hatch lines x = shift + k * distance; each
// line's crossings pair into hatch vectors (line x, start y, end y).
#pragma once

#include <cstdint>
#include <vector>

#include "kelvor2d_export.h"

// A rotation by an angle in degrees. The hatch frame is the layer frame turned
// by the angle counter-clockwise (y up): at 0 degrees the frames coincide and
// hatch lines are the layer's lines x = constant.
class KELVOR2D_API MHatchDirection {
 public:
  explicit MHatchDirection(double angleDegrees = 0.0);
  void SetAngle(double angleDegrees);
  double GetAngle() const { return m_AngleDegrees; }
  // Hatch frame to layer frame, rounded to the grid; a point that turns
  // beyond the 32-bit range is clamped to it.
  void Transform(int32_t& x, int32_t& y) const;
  // Hatch frame to layer frame, in floating point.
  void Transform(float& x, float& y) const;
  // Layer frame to hatch frame, rounded and clamped as Transform.
  void InverseTransform(int32_t& x, int32_t& y) const;

 private:
  double m_AngleDegrees = 0.0;
  double m_Cos = 1.0;
  double m_Sin = 0.0;
};

// One hatch vector in the hatch frame: on the line x = Position, from Start to End in y.
struct KELVOR2D_API MHatchVector {
  int32_t Position;  // x of the hatch line
  int32_t Start;     // y where the vector starts
  int32_t End;       // y where the vector ends
};

// Element of a singly linked list.
template <class T>
struct MSListElement {
  T Data;
  MSListElement* Next = nullptr;
};

// The result of a sweep: hatch vectors in the order they were added, with the
// direction, the grid and the extents of what was swept.
class KELVOR2D_API MHatchLayer : public MHatchDirection {
 public:
  int32_t HatchDistance = 0;  // distance between hatch lines
  int32_t HatchShift = 0;     // x of the grid line through the origin, modulo distance
  int32_t VectorCount = 0;    // number of vectors in the list
  MSListElement<MHatchVector>* FirstVector = nullptr;  // head of the list, null when empty

  explicit MHatchLayer(double angleDegrees = 0.0) : MHatchDirection(angleDegrees) {}
  ~MHatchLayer();
  MHatchLayer(const MHatchLayer&) = delete;
  MHatchLayer& operator=(const MHatchLayer&) = delete;

  // Removes all vectors.
  void Clear();
  // Appends a copy of v behind `after`, or at the end when `after` is null.
  void AddVector(MHatchVector& v, MSListElement<MHatchVector>* after);
  // Least x, greatest x, least y, greatest y of the swept edges, hatch frame.
  void SetExtremes(int32_t minX, int32_t maxX, int32_t minY, int32_t maxY);
  void GetExtremes(int32_t& minX, int32_t& maxX, int32_t& minY, int32_t& maxY) const;

 private:
  MSListElement<MHatchVector>* m_LastVector = nullptr;
  int32_t m_MinX = 0, m_MaxX = 0, m_MinY = 0, m_MaxY = 0;
};

// An edge of the sweep, in the hatch frame, as it was given (start to end).
struct KELVOR2D_API M2dTempElement {
  int32_t X0, Y0, X1, Y1;
  int8_t Direction;          // +1 when x rises along the edge, -1 when it falls
  int8_t PreviousDirection;  // direction of the last edge before it not parallel to the lines; 0 unknown
};

// Element of the sweep list: a doubly linked list sorted by Key.
template <class T>
struct MTempListElement {
  T Data;
  int32_t Key = 0;                     // least x of the edge
  MTempListElement* Lower = nullptr;   // towards lower keys
  MTempListElement* Higher = nullptr;  // towards higher keys
};

// The sweep list: count, both ends and the cursor (the element last inserted).
struct MTempList {
  int32_t Count = 0;
  MTempListElement<M2dTempElement>* Low = nullptr;
  MTempListElement<M2dTempElement>* High = nullptr;
  MTempListElement<M2dTempElement>* Cursor = nullptr;
};

// Base of hatchers: owns a hatch layer and the sweep list.
class KELVOR2D_API MHatcherBase {
 public:
  MHatcherBase();
  virtual ~MHatcherBase();
  MHatcherBase(const MHatcherBase&) = delete;
  MHatcherBase& operator=(const MHatcherBase&) = delete;

  MHatchLayer& GetHatchLayer() { return *m_HatchLayer; }
  int32_t GetShift() const { return m_Shift; }
  void SetShift(int32_t shift) { m_Shift = shift; }

  // Empties the extents so that every point added changes them.
  void ResetExtremes();
  // An element for the edge (x0, y0)-(x1, y1) of the contour in progress;
  // null for an edge parallel to the hatch lines (it crosses none).
  MTempListElement<M2dTempElement>* NEW_TEMP_ELEMENT(int32_t x0, int32_t y0, int32_t x1, int32_t y1);
  // Marks the start of a new closed chain of edges (a contour).
  void _BeginChain();
  // Cuts the listed edges with the lines x = shift + k * distance, pairs each
  // line's crossings in rising order and appends the runs to the hatch layer,
  // then empties the list. A distance of 0 or less only empties the list.
  void _DoLineSweep(int32_t distance);
  // The least multiple of distance not below `least` (distance > 0), clamped
  // to INT32_MAX where that multiple lies beyond it.
  static int32_t _GetFirstHatchPosition(int32_t distance, int32_t least);

 protected:
  MHatchLayer* m_HatchLayer;
  int32_t m_Shift = 0;
  int32_t m_MinX, m_MinY, m_MaxX, m_MaxY;  // extents of what was added, hatch frame
  MTempList m_SweepList;

 private:
  void _CloseChain();
  void _EmptySweepList();
  int8_t m_ChainDirection = 0;                                 // last known direction in the chain
  MTempListElement<M2dTempElement>* m_ChainPending = nullptr;  // first non-parallel edge of the chain
};
