#include "preview.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#ifdef KELVOR2D_BUILD_HAVE_PNG
#include <png.h>
#endif

namespace {

struct Colour {
  unsigned char r, g, b;
};
constexpr Colour kInk{30, 30, 30}, kGrid{220, 220, 220}, kContour{20, 40, 120}, kHatch{230, 90, 40},
    kLengthSeries{31, 119, 180}, kCountSeries{255, 127, 14};
constexpr int kLayerPicture = 800;   // pixels per side of the whole layer
constexpr int kDetailPicture = 400;  // pixels per side of the detail beside it
constexpr double kDetailZoom = 6.0;  // the detail shows a sixth of the layer's side
constexpr int kPlotWidth = 1000, kPlotHeight = 420, kPlotMargin = 40;

// Glyphs 3 wide and 5 high for the plot's numbers, one row per 3 bits.
constexpr unsigned char kDigits[10][5] = {{7, 5, 5, 5, 7}, {2, 6, 2, 2, 7}, {7, 1, 7, 4, 7}, {7, 1, 7, 1, 7},
                                          {5, 5, 7, 1, 1}, {7, 4, 7, 1, 7}, {7, 4, 7, 5, 7}, {7, 1, 1, 1, 1},
                                          {7, 5, 7, 5, 7}, {7, 5, 7, 1, 7}};

class Canvas {
 public:
  Canvas(int width, int height)
      : m_Width(width), m_Height(height), m_Clip{0, 0, width, height}, m_Pixels(3 * width * height, 255) {}
  // Pixels outside [x0, x1) x [y0, y1) are left alone from now on.
  void Clip(int x0, int y0, int x1, int y1) {
    m_Clip[0] = x0, m_Clip[1] = y0, m_Clip[2] = x1, m_Clip[3] = y1;
  }
  void Set(int x, int y, Colour c) {
    if (x < m_Clip[0] || y < m_Clip[1] || x >= m_Clip[2] || y >= m_Clip[3])
      return;
    unsigned char* p = &m_Pixels[3 * (static_cast<size_t>(y) * m_Width + x)];
    p[0] = c.r, p[1] = c.g, p[2] = c.b;
  }
  // Bresenham; y grows downward.
  void Line(double x0, double y0, double x1, double y1, Colour c) {
    int ax = static_cast<int>(std::lround(x0)), ay = static_cast<int>(std::lround(y0));
    const int bx = static_cast<int>(std::lround(x1)), by = static_cast<int>(std::lround(y1));
    const int dx = std::abs(bx - ax), dy = -std::abs(by - ay), sx = ax < bx ? 1 : -1, sy = ay < by ? 1 : -1;
    int err = dx + dy;
    while (true) {
      Set(ax, ay, c);
      if (ax == bx && ay == by)
        break;
      const int e2 = 2 * err;
      if (e2 >= dy)
        err += dy, ax += sx;
      if (e2 <= dx)
        err += dx, ay += sy;
    }
  }
  // A whole number in the 3 x 5 digits, scaled by 2, left edge at x, top at y.
  void Number(int x, int y, int64_t value, Colour c) {
    const std::string text = std::to_string(value);
    for (char ch : text) {
      for (int row = 0; row < 5; ++row)
        for (int col = 0; col < 3; ++col)
          if ((kDigits[ch - '0'][row] >> (2 - col)) & 1)
            for (int k = 0; k < 4; ++k)
              Set(x + 2 * col + k % 2, y + 2 * row + k / 2, c);
      x += 8;
    }
  }
  bool Write(const std::string& path, std::string& error) const;

 private:
  int m_Width, m_Height;
  int m_Clip[4];
  std::vector<unsigned char> m_Pixels;
};

#ifdef KELVOR2D_BUILD_HAVE_PNG
// Writes RGB rows top down; nothing here may need a destructor, as libpng
// reports errors by longjmp.
bool WriteRgbPng(std::FILE* file, const unsigned char* pixels, int width, int height) {
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
  if (info == nullptr || setjmp(png_jmpbuf(png))) {
    png_destroy_write_struct(&png, &info);
    return false;
  }
  png_init_io(png, file);
  png_set_IHDR(png, info, width, height, 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  for (int row = 0; row < height; ++row)
    png_write_row(png, const_cast<png_bytep>(pixels + 3 * static_cast<size_t>(row) * width));
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  return true;
}
#endif

bool Canvas::Write(const std::string& path, std::string& error) const {
#ifdef KELVOR2D_BUILD_HAVE_PNG
  std::FILE* file = std::fopen(path.c_str(), "wb");
  bool ok = file != nullptr && WriteRgbPng(file, m_Pixels.data(), m_Width, m_Height);
  if (file != nullptr)
    ok = std::fclose(file) == 0 && ok;
  if (!ok)
    error = "cannot write " + path;
  return ok;
#else
  error = "cannot write " + path + ": built without libpng";
  return false;
#endif
}

// The square [minX, minX + side] x [minY, minY + side] of the layer (internal
// units) drawn into the panel of `pixels` at (left, top).
struct View {
  double minX, minY, side;
  int left, top, pixels;
};

void DrawLayer(Canvas& canvas, const CliLayer& layer, const View& v) {
  canvas.Clip(v.left, v.top, v.left + v.pixels, v.top + v.pixels);
  const double scale = v.pixels / v.side;
  auto px = [&](double x) { return v.left + (x - v.minX) * scale; };
  auto py = [&](double y) { return v.top + v.pixels - (y - v.minY) * scale; };
  for (const CliHatches& h : layer.hatches)
    for (size_t i = 0; i + 3 < h.coordinates.size(); i += 4)
      canvas.Line(px(h.coordinates[i]), py(h.coordinates[i + 1]), px(h.coordinates[i + 2]),
                  py(h.coordinates[i + 3]), kHatch);
  for (const CliPolyline& p : layer.polylines) {
    const size_t n = p.points.size(), edges = p.direction == kCliOpen ? (n > 0 ? n - 1 : 0) : n;
    for (size_t i = 0; i < edges; ++i) {
      const MMPoint2d<long>& a = p.points[i];
      const MMPoint2d<long>& b = p.points[(i + 1) % n];
      canvas.Line(px(a.x), py(a.y), px(b.x), py(b.y), kContour);
    }
  }
  canvas.Clip(0, 0, kLayerPicture + kDetailPicture, kLayerPicture);
}

}  // namespace

bool PreviewAvailable() {
#ifdef KELVOR2D_BUILD_HAVE_PNG
  return true;
#else
  return false;
#endif
}

bool WriteLayerPicture(const std::string& path, const CliLayer& layer, std::string& error) {
  const CliDimension d = DimensionOf(layer, 1.0);
  Canvas canvas(kLayerPicture + kDetailPicture, kLayerPicture);
  if (d.empty)
    return canvas.Write(path, error);
  const double side = std::max({d.maxX - d.minX, d.maxY - d.minY, 1.0});
  const double margin = side * kPlotMargin / (kLayerPicture - 2.0 * kPlotMargin);
  DrawLayer(canvas, layer, {d.minX - margin, d.minY - margin, side + 2 * margin, 0, 0, kLayerPicture});
  // The detail: a square a sixth of the layer's side, on its left, halfway up.
  const double detail = side / kDetailZoom;
  const View zoom{d.minX + detail * 0.25,          (d.minY + d.maxY - detail) / 2,       detail,
                  kLayerPicture - kPlotMargin / 2, (kLayerPicture - kDetailPicture) / 2, kDetailPicture};
  DrawLayer(canvas, layer, zoom);
  for (int k = 0; k <= kDetailPicture; k += kDetailPicture) {
    canvas.Line(zoom.left, zoom.top + k, zoom.left + kDetailPicture, zoom.top + k, kInk);
    canvas.Line(zoom.left + k, zoom.top, zoom.left + k, zoom.top + kDetailPicture, kInk);
  }
  return canvas.Write(path, error);
}

bool WriteBuildPlot(const std::string& path, const std::vector<PlotPoint>& points, std::string& error) {
  Canvas canvas(kPlotWidth, kPlotHeight);
  const int left = kPlotMargin + 40, right = kPlotWidth - kPlotMargin - 40, top = kPlotMargin,
            bottom = kPlotHeight - kPlotMargin;
  for (int k = 0; k <= 4; ++k) {
    const double y = bottom - (bottom - top) * k / 4.0;
    canvas.Line(left, y, right, y, k == 0 ? kInk : kGrid);
  }
  canvas.Line(left, top, left, bottom, kInk);
  canvas.Line(right, top, right, bottom, kInk);
  double maxLength = 0;
  int64_t maxCount = 0;
  for (const PlotPoint& p : points)
    maxLength = std::max(maxLength, p.scanLengthM), maxCount = std::max(maxCount, p.vectors);
  // Axis ends: layers along x, scan length in m on the left, vectors on the right.
  canvas.Number(left - 4, bottom + 8, 0, kInk);
  canvas.Number(right - 20, bottom + 8, static_cast<int64_t>(points.size()), kInk);
  canvas.Number(4, top - 4, static_cast<int64_t>(std::ceil(maxLength)), kLengthSeries);
  canvas.Number(right + 6, top - 4, maxCount, kCountSeries);
  const double n = points.size() > 1 ? points.size() - 1.0 : 1.0;
  for (size_t i = 1; i < points.size(); ++i) {
    const double x0 = left + (right - left) * (i - 1) / n, x1 = left + (right - left) * i / n;
    auto yLength = [&](size_t j) {
      return bottom - (bottom - top) * points[j].scanLengthM / std::max(maxLength, 1e-9);
    };
    auto yCount = [&](size_t j) {
      return bottom - (bottom - top) * points[j].vectors / std::max<double>(maxCount, 1);
    };
    canvas.Line(x0, yLength(i - 1), x1, yLength(i), kLengthSeries);
    canvas.Line(x0, yCount(i - 1), x1, yCount(i), kCountSeries);
  }
  return canvas.Write(path, error);
}
