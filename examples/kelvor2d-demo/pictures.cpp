#include "pictures.h"

#include <png.h>

#include <cstdio>
#include <fstream>
#include <sstream>

namespace {
constexpr double kPanelWidth = 520.0;  // pixels
constexpr double kMargin = 20.0;
constexpr double kTitleHeight = 22.0;
constexpr double kLegendWidth = 300.0;
}  // namespace

SvgPicture::SvgPicture(double minX, double minY, double maxX, double maxY, int columns)
    : m_MinX(minX), m_MinY(minY), m_MaxX(maxX), m_MaxY(maxY), m_Columns(columns > 0 ? columns : 1) {
  const double width = maxX > minX ? maxX - minX : 1.0;
  const double height = maxY > minY ? maxY - minY : 1.0;
  m_Scale = (kPanelWidth - 2 * kMargin) / width;
  m_PanelWidth = kPanelWidth;
  m_PanelHeight = height * m_Scale + 2 * kMargin + kTitleHeight;
}

void SvgPicture::BeginPanel(const std::string& title) {
  m_OffsetX = (m_Panels % m_Columns) * m_PanelWidth;
  m_OffsetY = (m_Panels / m_Columns) * m_PanelHeight;
  ++m_Panels;
  std::ostringstream out;
  out << "<text x=\"" << m_OffsetX + kMargin << "\" y=\"" << m_OffsetY + kMargin + 4
      << "\" font-family=\"sans-serif\" font-size=\"15\" font-weight=\"bold\">" << title << "</text>\n";
  m_Body += out.str();
}

double SvgPicture::X(double x) const {
  return m_OffsetX + kMargin + (x - m_MinX) * m_Scale;
}
double SvgPicture::Y(double y) const {
  return m_OffsetY + kMargin + kTitleHeight + (m_MaxY - y) * m_Scale;
}

void SvgPicture::AddLegend(const std::string& colour, const std::string& label) {
  for (const auto& entry : m_Legend) {
    if (entry.first == colour && entry.second == label)
      return;
  }
  m_Legend.emplace_back(colour, label);
}

void SvgPicture::AddContours(const CONTOUR_LAYER& layer, const std::string& colour,
                             const std::string& label) {
  std::ostringstream out;
  out.precision(2);
  out << std::fixed;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    if (c->NumPoints < 2)
      continue;
    out << "<path fill=\"none\" stroke=\"" << colour << "\" stroke-width=\"1.2\" d=\"";
    for (int32_t i = 0; i < c->NumPoints; ++i) {
      out << (i == 0 ? "M" : " L") << X(c->Points[i].x) << ' ' << Y(c->Points[i].y);
    }
    out << (c->Closed != 0 ? " Z" : "") << "\"/>\n";
  }
  m_Body += out.str();
  AddLegend(colour, label);
}

void SvgPicture::AddVectors(const VECTOR_LAYER& layer, int firstBlock, const std::string& colour,
                            const std::string& label) {
  std::ostringstream out;
  out.precision(2);
  out << std::fixed << "<path fill=\"none\" stroke=\"" << colour << "\" stroke-width=\"0.6\" d=\"";
  int index = 0;
  for (const VECTOR_BLOK* b = layer.FirstBlock; b != nullptr; b = b->NextBlock, ++index) {
    if (index < firstBlock)
      continue;
    for (int32_t i = 0; i + 3 < b->Size; i += 4) {
      out << "M" << X(b->Block[i]) << ' ' << Y(b->Block[i + 1]) << " L" << X(b->Block[i + 2]) << ' '
          << Y(b->Block[i + 3]) << ' ';
    }
  }
  out << "\"/>\n";
  m_Body += out.str();
  AddLegend(colour, label);
}

bool SvgPicture::Write(const std::string& path) const {
  std::ofstream file(path);
  if (!file)
    return false;
  const int rows = m_Panels > 0 ? (m_Panels + m_Columns - 1) / m_Columns : 1;
  const double width = m_Columns * m_PanelWidth + kLegendWidth;
  const double height = rows * m_PanelHeight;
  const double legendHeight = 2 * kMargin + 22.0 * m_Legend.size();
  file << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
       << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << width << "\" height=\""
       << (height > legendHeight ? height : legendHeight) << "\">\n"
       << "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n"
       << m_Body;
  const double legendX = m_Columns * m_PanelWidth + 10.0;
  for (size_t i = 0; i < m_Legend.size(); ++i) {
    const double y = kMargin + 22.0 * i;
    file << "<rect x=\"" << legendX << "\" y=\"" << y << "\" width=\"16\" height=\"12\" fill=\""
         << m_Legend[i].first << "\"/>\n<text x=\"" << legendX + 24 << "\" y=\"" << y + 11
         << "\" font-family=\"sans-serif\" font-size=\"13\">" << m_Legend[i].second << "</text>\n";
  }
  file << "</svg>\n";
  return static_cast<bool>(file);
}

bool WriteGreyPng(const std::string& path, const unsigned char* pixels, int width, int height) {
  FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr)
    return false;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
  if (png == nullptr || info == nullptr || setjmp(png_jmpbuf(png))) {
    png_destroy_write_struct(&png, &info);
    std::fclose(file);
    return false;
  }
  png_init_io(png, file);
  png_set_IHDR(png, info, width, height, 8, PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  // PNG rows run from the top; the bitmap's from the lowest y.
  for (int row = height - 1; row >= 0; --row) {
    png_write_row(png, const_cast<png_bytep>(pixels + static_cast<size_t>(row) * width));
  }
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  return std::fclose(file) == 0;
}
