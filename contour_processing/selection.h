// Helpers of the box selections on contours, shared with the conversion of
// contours to vectors.
#pragma once

#include <cstdint>

#include "layer/contour.h"
#include "layer/contour_layer.h"

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
