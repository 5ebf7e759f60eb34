// libFuzzer target for the area-coverage convertor. Two kinds of layer:
// - shapes that neither touch nor cross: triangles and rectangles (some with a
//   triangular hole), each strictly inside its own cell of a grid laid over the
//   bitmap, one cell to a band of whole pixel rows (where parts of two shapes
//   begin or end in one row, the renderer bounds its columns by the order of
//   the active parts, not by their extents, and may leave columns out), and
//   one more wholly off the bitmap, at a scale from one unit per pixel to
//   2^26 (the bitmap then spans the whole positive half of the 32-bit grid):
//   the bytes must sum to the exact area within one grey level per pixel;
// - rings anywhere on the 32-bit grid, crossing as they like: nothing may be
//   written outside the bitmap.
// A size that is not positive must leave the bitmap untouched.
#include <cmath>
#include <cstdint>
#include <vector>

#include "bitmap/convertor.h"
#include "fuzz_layers.h"

using namespace fuzz_layers;

namespace {

constexpr int kCells = 4;   // cells per side of the grid of shapes
constexpr int kGuard = 16;  // bytes checked on either side of the bitmap
constexpr unsigned char kDirt = 0xA5;
constexpr int32_t kScales[] = {1, 3, 1000, 1 << 16, 1 << 26};

using Ring = std::vector<MMPoint2d<long>>;

double TwiceArea(const Ring& ring) {
  double sum = 0.0;
  for (size_t i = 0; i < ring.size(); ++i) {
    const MMPoint2d<long>& a = ring[i];
    const MMPoint2d<long>& b = ring[(i + 1) % ring.size()];
    sum += static_cast<double>(a.x) * b.y - static_cast<double>(b.x) * a.y;
  }
  return std::fabs(sum);
}

void AddRing(CONTOUR_LAYER& layer, Ring ring, bool outer, bool reverse) {
  if (reverse)
    std::reverse(ring.begin(), ring.end());
  auto* c = new CONTOUR();
  c->NumPoints = static_cast<int32_t>(ring.size());
  c->Closed = 1;
  c->Outer = outer;
  c->Points = static_cast<MMPoint2d<long>*>(malloc(sizeof(MMPoint2d<long>) * ring.size()));
  std::copy(ring.begin(), ring.end(), c->Points);
  layer.AddContourAtEnd(c);
}

// A point strictly inside [x0, x1] x [y0, y1] (at least one unit from its sides).
MMPoint2d<long> PointIn(FuzzInput& in, int64_t x0, int64_t y0, int64_t x1, int64_t y1) {
  const int64_t w = x1 - x0 - 1, h = y1 - y0 - 1;
  return {static_cast<int32_t>(x0 + 1 + in.Word(4) % w), static_cast<int32_t>(y0 + 1 + in.Word(4) % h)};
}

// A shape strictly inside the cell; returns its area in square units.
double AddShape(FuzzInput& in, CONTOUR_LAYER& layer, int64_t x0, int64_t y0, int64_t x1, int64_t y1) {
  const uint8_t kind = in.Byte();
  if (x1 - x0 < 3 || y1 - y0 < 3)
    return 0.0;
  if (kind % 2 == 0) {
    const Ring t = {PointIn(in, x0, y0, x1, y1), PointIn(in, x0, y0, x1, y1), PointIn(in, x0, y0, x1, y1)};
    if (TwiceArea(t) == 0.0)
      return 0.0;  // degenerate: left out
    AddRing(layer, t, true, kind & 4);
    return TwiceArea(t) / 2.0;
  }
  const MMPoint2d<long> a = PointIn(in, x0, y0, x1, y1), b = PointIn(in, x0, y0, x1, y1);
  const int32_t lx = std::min(a.x, b.x), hx = std::max(a.x, b.x), ly = std::min(a.y, b.y),
                hy = std::max(a.y, b.y);
  if (hx - lx < 1 || hy - ly < 1)
    return 0.0;
  const Ring r = {{lx, ly}, {lx, hy}, {hx, hy}, {hx, ly}};
  AddRing(layer, r, true, kind & 4);
  double area = TwiceArea(r) / 2.0;
  if ((kind & 2) != 0 && hx - lx > 2 && hy - ly > 2) {
    const Ring hole = {PointIn(in, lx, ly, hx, hy), PointIn(in, lx, ly, hx, hy), PointIn(in, lx, ly, hx, hy)};
    if (TwiceArea(hole) > 0.0) {
      AddRing(layer, hole, false, kind & 8);
      area -= TwiceArea(hole) / 2.0;
    }
  }
  return area;
}

// Shapes in cells of the bitmap's area, at most one to a band of rows, and
// one off it; the area on the bitmap in square units.
double AddSeparateShapes(FuzzInput& in, CONTOUR_LAYER& layer, int32_t height, int64_t sideX, int64_t scaleY) {
  double area = 0.0;
  const int bands = std::min(kCells, height);
  for (int j = 0; j < bands; ++j) {
    const uint8_t cell = in.Byte();
    if (cell % (kCells + 1) == kCells)
      continue;  // an empty band
    const int64_t i = cell % (kCells + 1);
    const int64_t x0 = i * sideX / kCells, x1 = (i + 1) * sideX / kCells;
    const int64_t y0 = j * height / bands * scaleY, y1 = (j + 1) * height / bands * scaleY;
    area += AddShape(in, layer, x0, y0, x1, y1);
  }
  const int64_t sideY = height * scaleY;
  AddShape(in, layer, -sideX, -sideY, -1, -1);  // wholly off the bitmap
  return area;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzInput in(data, size);
  const uint8_t mode = in.Byte();
  const int32_t width = 1 + in.Byte() % 32, height = 1 + in.Byte() % 32;
  const int64_t scaleX = kScales[in.Byte() % 5], scaleY = kScales[in.Byte() % 5];
  const int64_t sideX = width * scaleX, sideY = height * scaleY;
  const double sign = mode % 8 == 7 ? -1.0 : mode % 8 == 6 ? 0.0 : 1.0;
  CONTOUR_LAYER layer;
  double area = 0.0;
  if (mode % 2 == 0) {
    area = AddSeparateShapes(in, layer, height, sideX, scaleY);
  } else {
    ReadLayer(in, layer);
  }
  std::vector<unsigned char> buffer(2 * kGuard + static_cast<size_t>(width) * height, kDirt);
  unsigned char* bitmap = buffer.data() + kGuard;
  MContours2BitmapConvertor(bitmap, width, height, sign * sideX, sideY, &layer).Operate();
  layer.LEEG_LAAG();
  for (int g = 0; g < kGuard; ++g)
    Check(buffer[g] == kDirt && buffer[buffer.size() - 1 - g] == kDirt);
  if (sign <= 0.0) {
    for (unsigned char b : buffer)
      Check(b == kDirt);
    return 0;
  }
  if (mode % 2 == 0) {
    double sum = 0.0;
    for (int32_t p = 0; p < width * height; ++p)
      sum += bitmap[p];
    const double exact = 255.0 * area / (static_cast<double>(scaleX) * scaleY);
    Check(std::fabs(sum - exact) <= width * height);
  }
  return 0;
}
