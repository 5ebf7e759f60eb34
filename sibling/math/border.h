// The border family: a border is an owned list of contours, each contour an
// owned ring of points. It is the polygon model of the offset engine, the
// boolean border functions, the bitmap sweep and the slice contours.
//
// API (T the coordinate parameter, `long` meaning 32-bit; D the per-point data):
//   M3dCoordinateTraits<T>::Type       coordinate type: int32_t for long, else T
//   M3dBorderPointBase<T, D, Point>    public fields x, y, data, next (in that order);
//                                      GetNextPoint(), GetX(), GetY(), GetData()
//   M3dBorderPoint<T, D>               the plain point
//   M3dBorderContourBase<T, D, Point, Contour>   (Contour: the derived contour class)
//     value copy (deep, unlinked), GetNextContour(), GetFirstPoint(), GetLastPoint(),
//     GetNumPoints(), IsEmpty(), InsertAtEnd/InsertAtFront(x, y, data),
//     InsertAfter(point, x, y, data), RemovePointAfter(point), MakeEmpty(),
//     SetFirstPointAt(point), LowestLeftmostPoint(), SurfaceAreaWithSignXY(),
//     Invert(), RemoveDoublePoints(), Get/SetIsOuterContour, Get/SetIsClosed,
//     IsOuterContour(), IsClosed(), Get/SetStatus, Get/SetOrder, begin()/end() over points
//   M3dBorderContour<T, D, Point>      the plain contour
//   M3dBorder<T, D, Contour>           value semantics (copy, move, assignment,
//     destruction release every ring), MakeEmpty(), GetFirstContour(),
//     GetLastContour(), GetNumContours(), IsEmpty(), AddContourAtEnd(),
//     AddContourAtEnd(const Contour&), AddContourAtFront(), RemoveContour(contour),
//     RemoveDoublePoints(), Swap(), begin()/end() over contours
//   M3dBorderLong, M3dBorderContourLong, M3dBorderPointLong: the <long, void *> family
//
// Orientation: SurfaceAreaWithSignXY is positive for a clockwise ring with y
// pointing up, the sense of CONTOUR::RECHTS_DRAAIEND. Every contour is a ring:
// the next of its last point is its first point, open contours included.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "kelvor2d_export.h"
#include "sibling/math/owned_chain.h"

// Coordinate type of a border parameterised by T: `long` stands for a 32-bit
// coordinate whatever the width of the build's long.
template <class T>
struct M3dCoordinateTraits {
  using Type = T;
};
template <>
struct M3dCoordinateTraits<long> {
  using Type = int32_t;
};

// A point of a ring. Derived point classes pass themselves as Point, so that
// next has the derived type; they may add fields behind these.
template <class T, class D, class Point>
class KELVOR2D_API M3dBorderPointBase {
 public:
  using Coordinate = typename M3dCoordinateTraits<T>::Type;

  Coordinate x;           // grid coordinate
  Coordinate y;           // grid coordinate
  D data;                 // the caller's data, carried unchanged
  Point* next = nullptr;  // next point of the ring; the last point's next is the first

  M3dBorderPointBase(Coordinate px, Coordinate py, const D& pdata) : x(px), y(py), data(pdata) {}

  Point* GetNextPoint() { return next; }
  const Point* GetNextPoint() const { return next; }
  Coordinate GetX() const { return x; }
  Coordinate GetY() const { return y; }
  const D& GetData() const { return data; }
};

template <class T, class D>
class KELVOR2D_API M3dBorderPoint : public M3dBorderPointBase<T, D, M3dBorderPoint<T, D>> {
 public:
  using M3dBorderPointBase<T, D, M3dBorderPoint<T, D>>::M3dBorderPointBase;
};

// Iterates the points of a ring once, from its first point.
template <class Point>
class M3dBorderPointIterator {
 public:
  M3dBorderPointIterator(Point* point, uint32_t remaining) : m_point(point), m_remaining(remaining) {}
  Point& operator*() const { return *m_point; }
  Point* operator->() const { return m_point; }
  M3dBorderPointIterator& operator++() {
    m_point = m_point->next;
    --m_remaining;
    return *this;
  }
  bool operator==(const M3dBorderPointIterator& other) const { return m_remaining == other.m_remaining; }
  bool operator!=(const M3dBorderPointIterator& other) const { return m_remaining != other.m_remaining; }

 private:
  Point* m_point;        // current point
  uint32_t m_remaining;  // points still to visit, 0 at the end
};

// A contour: an owned ring of points with its outer, closed, status and order
// properties. Contour is the derived class that a border holds (CRTP).
template <class T, class D, class Point, class Contour>
class KELVOR2D_API M3dBorderContourBase {
 public:
  using Coordinate = typename M3dCoordinateTraits<T>::Type;
  using PointType = Point;
  using iterator = M3dBorderPointIterator<Point>;
  using const_iterator = M3dBorderPointIterator<const Point>;

  // An empty, closed, outer contour with status and order 0.
  M3dBorderContourBase() = default;
  // Deep copy of the ring and the properties; the copy is in no border.
  M3dBorderContourBase(const M3dBorderContourBase& other) : M3dBorderContourBase() { CopyFrom(other); }
  // Replaces ring and properties by copies of other's; the place in the border stays.
  M3dBorderContourBase& operator=(const M3dBorderContourBase& other) {
    if (this != &other) {
      MakeEmpty();
      CopyFrom(other);
    }
    return *this;
  }
  ~M3dBorderContourBase() { MakeEmpty(); }

  // Next contour of the border, or null.
  Contour* GetNextContour() { return MOwnedChain<Contour>::Next(Self()); }
  const Contour* GetNextContour() const { return MOwnedChain<Contour>::Next(Self()); }

  // First point of the ring; null for a contour without points.
  Point* GetFirstPoint() { return m_first; }
  const Point* GetFirstPoint() const { return m_first; }
  // Last point of the ring (its next is the first); null without points.
  Point* GetLastPoint() { return m_last; }
  const Point* GetLastPoint() const { return m_last; }
  uint32_t GetNumPoints() const { return m_numPoints; }
  bool IsEmpty() const { return m_numPoints == 0; }

  // Appends a point behind the last one and returns it.
  Point* InsertAtEnd(Coordinate x, Coordinate y, const D& data) {
    Point* point = LinkFirstOrAfter(new Point(x, y, data), m_last);
    m_last = point;
    return point;
  }
  // Puts a point before the first one (it becomes the first) and returns it.
  Point* InsertAtFront(Coordinate x, Coordinate y, const D& data) {
    Point* point = LinkFirstOrAfter(new Point(x, y, data), m_last);
    m_first = point;
    return point;
  }
  // Puts a point directly behind `after` (a point of this ring) and returns it;
  // with after null it goes to the end.
  Point* InsertAfter(Point* after, Coordinate x, Coordinate y, const D& data) {
    if (after == nullptr || after == m_last)
      return InsertAtEnd(x, y, data);
    return LinkFirstOrAfter(new Point(x, y, data), after);
  }
  // Deletes the point that follows `point` (a point of this ring); false when
  // point is null. The ring's first and last follow the removal.
  bool RemovePointAfter(Point* point) {
    if (point == nullptr)
      return false;
    Point* victim = point->next;
    if (victim == point) {
      MakeEmpty();
      return true;
    }
    point->next = victim->next;
    if (victim == m_first)
      m_first = victim->next;
    if (victim == m_last)
      m_last = point;
    --m_numPoints;
    delete victim;
    return true;
  }

  // Deletes every point; the properties stay.
  void MakeEmpty() {
    for (uint32_t i = 0; i < m_numPoints; ++i) {
      Point* next = m_first->next;
      delete m_first;
      m_first = next;
    }
    m_first = nullptr;
    m_last = nullptr;
    m_numPoints = 0;
  }

  // Makes `point` the first of the ring, keeping the cyclic order. A null point
  // or one that is not in this ring changes nothing.
  void SetFirstPointAt(const Point* point) {
    if (point == nullptr || point == m_first)
      return;
    Point* previous = m_first;
    for (uint32_t i = 0; i < m_numPoints; ++i, previous = previous->next) {
      if (previous->next == point) {
        m_last = previous;
        m_first = previous->next;
        return;
      }
    }
  }

  // The point of lowest y, and among those of lowest x; the first found from
  // the first point wins at ties. Null without points.
  Point* LowestLeftmostPoint() { return const_cast<Point*>(FindLowestLeftmost()); }
  const Point* LowestLeftmostPoint() const { return FindLowestLeftmost(); }

  // Signed area in the x-y plane, positive for a clockwise ring (y up); exact
  // sum for 32-bit coordinates. 0.0 for fewer than 3 points.
  double SurfaceAreaWithSignXY() const {
    using Accumulator = std::conditional_t<std::is_integral_v<Coordinate>, __int128, double>;
    Accumulator twiceArea = 0;
    const Point* point = m_first;
    for (uint32_t i = 0; i < m_numPoints; ++i, point = point->next) {
      const Point* next = point->next;
      twiceArea +=
          static_cast<Accumulator>(next->x) * point->y - static_cast<Accumulator>(point->x) * next->y;
    }
    return static_cast<double>(twiceArea) / 2.0;
  }

  // Reverses the ring as an array is reversed: the last point becomes the
  // first, and the sign of the area changes.
  void Invert() {
    if (m_numPoints < 2)
      return;
    Point* previous = m_last;
    Point* current = m_first;
    for (uint32_t i = 0; i < m_numPoints; ++i) {
      Point* next = current->next;
      current->next = previous;
      previous = current;
      current = next;
    }
    std::swap(m_first, m_last);
  }

  // Removes each point equal in x and y to the one before it in the ring (the
  // last compared with the first too, open contours included), keeping the
  // earlier one; a ring of equal points keeps one. Returns the number removed.
  uint32_t RemoveDoublePoints() {
    if (m_numPoints < 2)
      return 0;
    uint32_t removed = RemoveRepeatsAlongRing();
    if (m_numPoints > 1 && SamePlace(*m_last, *m_first)) {
      RemovePointAfter(FindPredecessor(m_last));
      ++removed;
    }
    return removed;
  }

  bool GetIsOuterContour() const { return m_outer; }
  void SetIsOuterContour(bool outer) { m_outer = outer; }
  bool IsOuterContour() const { return m_outer; }
  bool GetIsClosed() const { return m_closed; }
  void SetIsClosed(bool closed) { m_closed = closed; }
  bool IsClosed() const { return m_closed; }
  unsigned char GetStatus() const { return m_status; }
  void SetStatus(unsigned char status) { m_status = status; }
  unsigned char GetOrder() const { return m_order; }
  void SetOrder(unsigned char order) { m_order = order; }

  iterator begin() { return iterator(m_first, m_numPoints); }
  iterator end() { return iterator(nullptr, 0); }
  const_iterator begin() const { return const_iterator(m_first, m_numPoints); }
  const_iterator end() const { return const_iterator(nullptr, 0); }

 private:
  friend class MOwnedChain<Contour>;

  Contour* Self() { return static_cast<Contour*>(this); }
  const Contour* Self() const { return static_cast<const Contour*>(this); }

  static bool SamePlace(const Point& a, const Point& b) { return a.x == b.x && a.y == b.y; }

  // Links a new point behind `after` (m_last for the ends), or as the only point.
  Point* LinkFirstOrAfter(Point* point, Point* after) {
    if (m_numPoints == 0) {
      point->next = point;
      m_first = point;
      m_last = point;
    } else {
      point->next = after->next;
      after->next = point;
    }
    ++m_numPoints;
    return point;
  }

  // One pass from the first point to the last, without the closing pair.
  uint32_t RemoveRepeatsAlongRing() {
    uint32_t removed = 0;
    Point* previous = m_first;
    const uint32_t pairs = m_numPoints - 1;
    for (uint32_t i = 0; i < pairs; ++i) {
      if (SamePlace(*previous, *previous->next)) {
        RemovePointAfter(previous);
        ++removed;
      } else {
        previous = previous->next;
      }
    }
    return removed;
  }

  Point* FindPredecessor(const Point* point) {
    Point* previous = m_last;
    while (previous->next != point)
      previous = previous->next;
    return previous;
  }

  const Point* FindLowestLeftmost() const {
    const Point* best = m_first;
    const Point* point = m_first;
    for (uint32_t i = 0; i < m_numPoints; ++i, point = point->next) {
      if (point->y < best->y || (point->y == best->y && point->x < best->x))
        best = point;
    }
    return best;
  }

  void CopyFrom(const M3dBorderContourBase& other) {
    m_outer = other.m_outer;
    m_closed = other.m_closed;
    m_status = other.m_status;
    m_order = other.m_order;
    const Point* source = other.m_first;
    for (uint32_t i = 0; i < other.m_numPoints; ++i, source = source->next) {
      m_last = LinkFirstOrAfter(new Point(*source), m_last);
    }
  }

  Point* m_first = nullptr;        // first point of the ring, null when empty
  Point* m_last = nullptr;         // last point (m_last->next == m_first), null when empty
  uint32_t m_numPoints = 0;        // points in the ring
  Contour* m_chainNext = nullptr;  // next contour of the owning border, null at the end
  bool m_outer = true;             // outer contour (material inside) or hole
  bool m_closed = true;            // closed polygon or open polyline
  unsigned char m_status = 0;      // caller's status byte (the contour type of a layer)
  unsigned char m_order = 0;       // caller's order byte
};

template <class T, class D, class Point>
class KELVOR2D_API M3dBorderContour
    : public M3dBorderContourBase<T, D, Point, M3dBorderContour<T, D, Point>> {};

// A border: an owned, ordered list of contours, with value semantics.
template <class T, class D, class Contour>
class KELVOR2D_API M3dBorder {
 public:
  using ContourType = Contour;
  using iterator = MChainIterator<Contour>;
  using const_iterator = MChainIterator<const Contour>;

  // Removes all contours.
  void MakeEmpty() { m_contours.MakeEmpty(); }
  // First contour, or null.
  Contour* GetFirstContour() { return m_contours.First(); }
  const Contour* GetFirstContour() const { return m_contours.First(); }
  // Last contour, or null.
  Contour* GetLastContour() { return m_contours.Last(); }
  const Contour* GetLastContour() const { return m_contours.Last(); }
  uint32_t GetNumContours() const { return m_contours.Count(); }
  bool IsEmpty() const { return m_contours.Count() == 0; }

  // Adds an empty contour (closed, outer, status and order 0) and returns it.
  Contour* AddContourAtEnd() { return m_contours.AddAtEnd(new Contour()); }
  // Adds a copy of `contour` at the end and returns the copy.
  Contour* AddContourAtEnd(const Contour& contour) { return m_contours.AddAtEnd(new Contour(contour)); }
  // Adds an empty contour before the first and returns it.
  Contour* AddContourAtFront() { return m_contours.AddAtFront(new Contour()); }
  // Deletes `contour` and returns its successor; null, deleting nothing, when
  // it is null or not in this border.
  Contour* RemoveContour(Contour* contour) { return m_contours.Remove(contour); }

  // Removes repeated consecutive points from every contour; returns how many.
  uint32_t RemoveDoublePoints() {
    uint32_t removed = 0;
    for (Contour& contour : *this)
      removed += contour.RemoveDoublePoints();
    return removed;
  }

  void Swap(M3dBorder& other) noexcept { m_contours.Swap(other.m_contours); }

  iterator begin() { return iterator(m_contours.First()); }
  iterator end() { return iterator(nullptr); }
  const_iterator begin() const { return const_iterator(m_contours.First()); }
  const_iterator end() const { return const_iterator(nullptr); }

 private:
  MOwnedChain<Contour> m_contours;  // the contours, owned
};

// The family instantiated for 32-bit coordinates and untyped point data.
using M3dBorderPointLong = M3dBorderPoint<long, void*>;
using M3dBorderContourLong = M3dBorderContour<long, void*, M3dBorderPointLong>;
using M3dBorderLong = M3dBorder<long, void*, M3dBorderContourLong>;

static_assert(sizeof(M3dBorderPointLong::Coordinate) == 4, "border coordinates are 32-bit");
static_assert(offsetof(M3dBorderPointLong, x) == 0 && offsetof(M3dBorderPointLong, y) == 4,
              "a border point starts with x and y");

extern template class M3dBorderContourBase<long, void*, M3dBorderPointLong, M3dBorderContourLong>;
extern template class M3dBorder<long, void*, M3dBorderContourLong>;
