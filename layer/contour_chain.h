// Releasing contours and taking them out of a layer's chain, shared by the
// layer, the contour selections and cleaning, and the conversions to vectors.
// Internal to the library's sources.
#pragma once

#include <cstdlib>

#include "layer/contour.h"
#include "layer/contour_layer.h"

namespace kelvor2d_detail {

// Releases a contour that no chain holds any more: its points, then the node.
inline void ReleaseContour(CONTOUR* c) {
  free(c->Points);
  delete c;
}

// Unlinks and releases every contour for which doomed(*c) holds, keeping the
// order of the rest; NumContours falls by 1 for each, LastContour becomes the
// last contour kept. The extents are not touched.
template <class Predicate>
void RemoveContoursWhere(CONTOUR_LAYER& layer, Predicate doomed) {
  CONTOUR* previous = nullptr;
  CONTOUR* c = layer.FirstContour;
  while (c != nullptr) {
    CONTOUR* next = c->NextContour;
    if (doomed(*c)) {
      (previous == nullptr ? layer.FirstContour : previous->NextContour) = next;
      ReleaseContour(c);
      --layer.NumContours;
    } else {
      previous = c;
    }
    c = next;
  }
  layer.LastContour = previous;
}

// Rebuilds the chain without the contours for which take(c) is true; take
// disposes of what it takes, and NumContours falls by 1 for each. The kept
// contours end in reverse order, FirstContour and LastContour right. Returns
// whether a contour was taken. The extents are not touched.
template <class Take>
bool TakeContoursReversingRest(CONTOUR_LAYER& layer, Take take) {
  CONTOUR* c = layer.FirstContour;
  layer.FirstContour = nullptr;
  layer.LastContour = nullptr;
  bool taken = false;
  while (c != nullptr) {
    CONTOUR* next = c->NextContour;
    if (take(c)) {
      --layer.NumContours;
      taken = true;
    } else {
      c->NextContour = layer.FirstContour;
      layer.FirstContour = c;
      if (layer.LastContour == nullptr)
        layer.LastContour = c;
    }
    c = next;
  }
  return taken;
}

}  // namespace kelvor2d_detail
