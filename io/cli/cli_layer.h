// The content of a Common Layer Interface (CLI) build as this library's
// programs hold it: a header, then one layer at a time, with coordinates
// mapped to internal units and closed polylines in the library's own sense.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kelvor2d.h"

enum class CliEncoding { kAscii, kBinary };

// Polyline directions as the file states them.
constexpr int32_t kCliInner = 0;  // a hole's border
constexpr int32_t kCliOuter = 1;  // an outer border
constexpr int32_t kCliOpen = 2;   // an open line

struct CliLabel {
  int32_t id = 0;    // part id the label names
  std::string text;  // the part's name
};

// The build's bounding box in mm; empty until a point or a layer grows it.
struct CliDimension {
  bool empty = true;
  double minX = 0, minY = 0, minZ = 0, maxX = 0, maxY = 0, maxZ = 0;
  void Grow(double x, double y, double z);
  void Grow(const CliDimension& other);
};

struct CliHeader {
  CliEncoding encoding = CliEncoding::kAscii;
  double unitsMm = 0.001;  // mm per coordinate unit of the file ($$UNITS)
  int32_t version = 200;   // format version times 100
  std::vector<CliLabel> labels;
  CliDimension dimension;  // $$DIMENSION, empty when absent
  int64_t layers = -1;     // $$LAYERS, -1 when absent
};

struct CliPolyline {
  int32_t id = 0;                       // part id
  int32_t direction = kCliOpen;         // kCliInner, kCliOuter or kCliOpen, as in the file
  std::vector<MMPoint2d<long>> points;  // internal units; closed ones without the repeated first point,
                                        // ordered as the library runs them (outer clockwise, y up)
};

struct CliHatches {
  int32_t id = 0;                    // part id
  std::vector<int32_t> coordinates;  // internal units: start x, start y, end x, end y per hatch
};

struct CliLayer {
  int32_t z = 0;  // height in internal units
  std::vector<CliPolyline> polylines;
  std::vector<CliHatches> hatches;
};

// The layer's points (polylines and hatches) and height in mm, for $$DIMENSION.
CliDimension DimensionOf(const CliLayer& layer, double unitsPerMm);
