#include "recipe.h"

#include <chrono>
#include <cmath>

#include "io/cli/cli_contours.h"

namespace {

double Since(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

// Removes repeated points, unites overlapping contours into one region and
// classifies nesting and direction.
void CleanAndClassify(CONTOUR_LAYER& part) {
  part.VERWIJDER_DUBBELE_PUNTEN(3);
  if (part.NumContours == 0)
    return;
  AU::BooleanUnify(part, 0);
  part.SORTEER_CONTOUREN_NIEUW();
  part.CONTROLEER_RECHTS_DRAAIEND();
  part.BEPAAL_EXTREMA();
}

double PolylineLength(const CliPolyline& p) {
  double length = 0.0;
  const size_t n = p.points.size();
  const size_t edges = p.direction == kCliOpen ? (n > 0 ? n - 1 : 0) : n;
  for (size_t i = 0; i < edges; ++i) {
    const MMPoint2d<long>& a = p.points[i];
    const MMPoint2d<long>& b = p.points[(i + 1) % n];
    length += std::hypot(static_cast<double>(b.x) - a.x, static_cast<double>(b.y) - a.y);
  }
  return length;
}

// Writes the contour passes into `out`; `innermost` gets the last one (or the
// part itself without passes).
void OffsetPasses(const Recipe& recipe, CONTOUR_LAYER& part, CONTOUR_LAYER& innermost, CliLayer& out) {
  innermost.COPY_FROM(part);
  for (int pass = 1; pass <= recipe.contours; ++pass) {
    innermost.Clear();
    innermost.OFFSET_LAAG(part, -recipe.contourOffset * pass);
    AddContourPolylines(innermost, pass, out);
  }
  innermost.BEPAAL_EXTREMA();
}

void Hatch(const Recipe& recipe, int64_t index, CONTOUR_LAYER& region, CliLayer& out) {
  if (region.NumContours == 0)
    return;
  MHatcher hatcher;
  hatcher.GetHatchLayer().SetAngle(HatchAngle(recipe, index));
  hatcher.HatchWithAutoShift(region, recipe.hatchDistance);
  VECTOR_LAYER vectors;
  AddHatchLayerToVectorLayer(hatcher.GetHatchLayer(), vectors, 1);
  AddHatchVectors(vectors, HatchId(recipe), out);
  vectors.Clear();
}

void Count(const CliLayer& out, LayerStats& stats) {
  for (const CliPolyline& p : out.polylines) {
    stats.contours += p.direction != kCliOpen;
    stats.contourLength += PolylineLength(p);
  }
  for (const CliHatches& h : out.hatches) {
    for (size_t i = 0; i + 3 < h.coordinates.size(); i += 4) {
      ++stats.vectors;
      stats.hatchLength += std::hypot(static_cast<double>(h.coordinates[i + 2]) - h.coordinates[i],
                                      static_cast<double>(h.coordinates[i + 3]) - h.coordinates[i + 1]);
    }
  }
  stats.hatched = stats.vectors > 0;
}

}  // namespace

std::vector<CliLabel> RecipeLabels(const Recipe& recipe) {
  std::vector<CliLabel> labels;
  for (int pass = 1; pass <= recipe.contours; ++pass)
    labels.push_back({pass, "contour " + std::to_string(pass)});
  labels.push_back({HatchId(recipe), "hatch"});
  labels.push_back({OpenLineId(recipe), "open line"});
  return labels;
}

double HatchAngle(const Recipe& recipe, int64_t index) {
  const double angle =
      std::fmod(recipe.angleDegrees + recipe.rotateDegrees * static_cast<double>(index), 360.0);
  return angle < 0 ? angle + 360.0 : angle;
}

void RunRecipe(const Recipe& recipe, int64_t index, const CliLayer& in, CliLayer& out, LayerStats& stats) {
  out = CliLayer();
  out.z = in.z;
  stats = LayerStats();
  stats.index = index;
  auto start = std::chrono::steady_clock::now();
  CONTOUR_LAYER part, innermost;
  AddClosedPolylines(in, part);
  CleanAndClassify(part);
  OffsetPasses(recipe, part, innermost, out);
  stats.offsetMs = Since(start);
  start = std::chrono::steady_clock::now();
  Hatch(recipe, index, innermost, out);
  stats.hatchMs = Since(start);
  for (const CliPolyline& p : in.polylines) {
    if (p.direction == kCliOpen) {
      out.polylines.push_back(p);
      out.polylines.back().id = OpenLineId(recipe);
    }
  }
  part.Clear();
  innermost.Clear();
  Count(out, stats);
}
