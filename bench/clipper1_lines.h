// Clipper 1 clipping of hatch lines as open paths against a layer's rings:
// what open slicers do to make infill, the comparison for the hatch benchmarks.
#pragma once

#include "clipper.hpp"
#include "workloads.h"

namespace clipper1_lines {

// The rings of a workload as Clipper paths.
inline ClipperLib::Paths ToPaths(const workloads::Rings& rings) {
  ClipperLib::Paths paths;
  for (const auto& ring : rings) {
    ClipperLib::Path path;
    for (const auto& p : ring)
      path.push_back(ClipperLib::IntPoint(p.x, p.y));
    paths.push_back(path);
  }
  return paths;
}

// The runs of the open `lines` inside the closed `rings` (even-odd), as open
// two-point paths in no particular order.
inline ClipperLib::Paths ClipLines(const ClipperLib::Paths& lines, const ClipperLib::Paths& rings) {
  ClipperLib::Clipper clipper;
  clipper.AddPaths(lines, ClipperLib::ptSubject, false);
  clipper.AddPaths(rings, ClipperLib::ptClip, true);
  ClipperLib::PolyTree tree;
  clipper.Execute(ClipperLib::ctIntersection, tree, ClipperLib::pftEvenOdd, ClipperLib::pftEvenOdd);
  ClipperLib::Paths runs;
  ClipperLib::OpenPathsFromPolyTree(tree, runs);
  return runs;
}

}  // namespace clipper1_lines
