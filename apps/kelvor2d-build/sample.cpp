#include "sample.h"

#include <cmath>
#include <cstdio>

#include "build.h"
#include "io/cli/cli_writer.h"

namespace {

constexpr double kCentreX = 40.0, kCentreY = 30.0;  // mm
constexpr double kHalfWidth = 25.0, kHalfHeight = 15.0, kCornerRadius = 5.0;
constexpr double kTwistDegrees = 45.0;  // over the whole build
constexpr int kCornerSteps = 12, kCircleSteps = 72;

struct Mm {
  double x, y;
};

// Turns (x, y), relative to the centre, by `degrees` and puts it on the grid.
MMPoint2d<long> Place(Mm p, double degrees, double unitsPerMm) {
  const double a = degrees * kPi / 180.0;
  const double x = kCentreX + p.x * std::cos(a) - p.y * std::sin(a);
  const double y = kCentreY + p.x * std::sin(a) + p.y * std::cos(a);
  return {Round(x * unitsPerMm), Round(y * unitsPerMm)};
}

// The rounded rectangle, clockwise (y up): the library's sense of an outer border.
CliPolyline Outline(double twist, double unitsPerMm) {
  CliPolyline p;
  p.id = 1;
  p.direction = kCliOuter;
  const Mm corners[4] = {{kHalfWidth - kCornerRadius, kHalfHeight - kCornerRadius},
                         {kHalfWidth - kCornerRadius, -kHalfHeight + kCornerRadius},
                         {-kHalfWidth + kCornerRadius, -kHalfHeight + kCornerRadius},
                         {-kHalfWidth + kCornerRadius, kHalfHeight - kCornerRadius}};
  for (int c = 0; c < 4; ++c) {
    for (int s = 0; s <= kCornerSteps; ++s) {
      const double a = (90.0 - 90.0 * c - 90.0 * s / kCornerSteps) * kPi / 180.0;
      p.points.push_back(
          Place({corners[c].x + kCornerRadius * std::cos(a), corners[c].y + kCornerRadius * std::sin(a)},
                twist, unitsPerMm));
    }
  }
  return p;
}

// A hole, counter-clockwise (y up).
CliPolyline Hole(Mm centre, double radius, double twist, double unitsPerMm) {
  CliPolyline p;
  p.id = 1;
  p.direction = kCliInner;
  for (int s = 0; s < kCircleSteps; ++s) {
    const double a = 2.0 * kPi * s / kCircleSteps;
    p.points.push_back(
        Place({centre.x + radius * std::cos(a), centre.y + radius * std::sin(a)}, twist, unitsPerMm));
  }
  return p;
}

}  // namespace

CliLayer SampleLayer(int64_t index, int64_t layers, double unitsPerMm) {
  const double t = layers > 1 ? static_cast<double>(index) / (layers - 1) : 0.0;
  const double twist = kTwistDegrees * t;
  CliLayer layer;
  layer.z = Round((index + 1) * kSampleLayerMm * unitsPerMm);
  layer.polylines.push_back(Outline(twist, unitsPerMm));
  // Two holes 12 mm apart that grow from 2 to 8 mm radius: they meet at two thirds of the height.
  const double radius = 2.0 + 6.0 * t;
  layer.polylines.push_back(Hole({-6.0, 0.0}, radius, twist, unitsPerMm));
  layer.polylines.push_back(Hole({6.0, 0.0}, radius, twist, unitsPerMm));
  layer.polylines.push_back(Hole({-19.0, 9.0}, 1.5, twist, unitsPerMm));
  return layer;
}

int RunSample(const BuildOptions& options) {
  const CliEncoding encoding = options.binary ? CliEncoding::kBinary : CliEncoding::kAscii;
  CliWriter writer;
  CliHeader header;
  header.unitsMm = 1.0 / options.unitsPerMm;
  header.labels = {{1, "bracket"}};
  std::string error, encoded;
  bool ok = writer.Open(options.output, encoding, error);
  for (int64_t i = 0; ok && i < options.sampleLayers; ++i) {
    const CliLayer layer = SampleLayer(i, options.sampleLayers, options.unitsPerMm);
    header.dimension.Grow(DimensionOf(layer, options.unitsPerMm));
    encoded.clear();
    EncodeCliLayer(layer, encoding, encoded);
    ok = writer.Append(encoded, 1, error);
  }
  if (!ok || !writer.Commit(header, error)) {
    std::fprintf(stderr, "kelvor2d-build: %s\n", error.c_str());
    return kExitFailed;
  }
  if (!options.quiet)
    std::printf("wrote %s: the sample bracket, %lld layers\n", options.output.c_str(),
                static_cast<long long>(options.sampleLayers));
  return 0;
}
