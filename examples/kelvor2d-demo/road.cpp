#include "road.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <sstream>
#include <vector>

#include "pictures.h"
#include "sample_part.h"

namespace {

// Vector type codes given to each hatch route, so the layers stay apart.
constexpr char kStraightType = 2;
constexpr char kSmartType = 3;
constexpr char kMeanderType = 4;
constexpr char kNoSwitchType = 5;
constexpr char kAngledType = 6;

int64_t VectorCount(const VECTOR_LAYER& layer) {
  int64_t n = 0;
  for (const VECTOR_BLOK* b = layer.FirstBlock; b != nullptr; b = b->NextBlock)
    n += b->Size / 4;
  return n;
}

double VectorLength(const VECTOR_LAYER& layer) {
  double length = 0.0;
  for (const VECTOR_BLOK* b = layer.FirstBlock; b != nullptr; b = b->NextBlock) {
    for (int32_t i = 0; i + 3 < b->Size; i += 4) {
      length += std::hypot(static_cast<double>(b->Block[i + 2]) - b->Block[i],
                           static_cast<double>(b->Block[i + 3]) - b->Block[i + 1]);
    }
  }
  return length;
}

double ContourLength(CONTOUR_LAYER& layer) {
  double length = 0.0;
  for (CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour)
    length += c->BEREKEN_LENGTE();
  return length;
}

int64_t PointCount(const CONTOUR_LAYER& layer) {
  int64_t n = 0;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour)
    n += c->NumPoints;
  return n;
}

// Material area of a classified layer in square units: outer contours count
// positive and holes negative, whatever way each runs.
double MaterialArea(const CONTOUR_LAYER& layer) {
  double area = 0.0;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    double sum = 0.0;
    for (int32_t i = 0; i < c->NumPoints; ++i) {
      const MMPoint2d<long>& a = c->Points[i];
      const MMPoint2d<long>& b = c->Points[(i + 1) % c->NumPoints];
      sum += (static_cast<double>(b.x) - a.x) * (static_cast<double>(b.y) + a.y) * 0.5;
    }
    area += (c->Outer != 0 ? 1.0 : -1.0) * std::fabs(sum);
  }
  return area;
}

// Reads a persisted layer and unifies it into a region (contours that do not
// overlap), which the boolean operations and the hatching take as given.
bool ReadRegion(const std::string& path, CONTOUR_LAYER& layer, std::string& error) {
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) {
    error = "cannot read layer '" + path + "': not a file";
    return false;
  }
  MSaxContourLayer handler(&layer, nullptr);
  MSAXReader reader;
  if (!reader.ReadFile(path, handler)) {
    error = "cannot read layer '" + path + "': " + reader.GetError();
    return false;
  }
  AU::BooleanUnify(layer, 0);
  return true;
}

// Whole square millimetres for the step table, held to the int64_t range.
int64_t WholeMm2(double mm2) {
  constexpr double kLimit = 9.2e18;
  return static_cast<int64_t>(std::max(-kLimit, std::min(kLimit, mm2)));
}

// The grid line at or below `least`: the grid of multiples of `distance` made
// to start at the part, so that a part far from the origin gets no columns in
// between (held above the table's head sentinel).
int32_t GridStartAtOrBelow(int32_t least, int32_t distance) {
  const int64_t k =
      least >= 0 ? least / distance : -((-static_cast<int64_t>(least) + distance - 1) / distance);
  return static_cast<int32_t>(std::max<int64_t>(k * distance, INT32_MIN + 1));
}

int64_t CrossingCount(const TABEL& table, int64_t& columns) {
  int64_t crossings = 0;
  columns = 0;
  for (const TABEL* c = table.Next; c != nullptr && c->Next != nullptr; c = c->Next) {
    ++columns;
    if (c->List != nullptr)
      crossings += c->List->Value;
  }
  return crossings;
}

std::string Describe(std::initializer_list<std::pair<const char*, int64_t>> counts) {
  std::ostringstream out;
  bool first = true;
  for (const auto& count : counts) {
    out << (first ? "" : ", ") << count.second << ' ' << count.first;
    first = false;
  }
  return out.str();
}

// A deep copy of a table, for the hatch routes that consume theirs.
struct TableCopy {
  TABEL table;
  explicit TableCopy(const TABEL& source) { COPIEER_TABEL(&table, source); }
  ~TableCopy() { LEEG_TABEL(&table); }
};

}  // namespace

Road::Road(const DemoOptions& options) : m_Options(options) {
  const int32_t distance = Units(options.hatchDistanceMm);
  m_Parameters.XHatchDistance = distance;
  m_Parameters.YHatchDistance = distance;
  m_Parameters.MeanderConnectDistance = 3 * distance;
  m_Parameters.SupportConnectDistance = 2 * distance;
}

Road::~Road() {
  m_Part.Clear();
  m_Offset.Clear();
  m_Bar.Clear();
  m_Boolean.Clear();
  LEEG_TABEL(&m_XTable);
  LEEG_TABEL(&m_YTable);
  LEEG_L_LIJST(&m_ExtraX);
  for (VECTOR_LAYER* v : {&m_Straight, &m_Smart, &m_Support, &m_Meander, &m_NoSwitch, &m_Angled})
    v->Clear();
}

template <class Body>
void Road::Timed(const std::string& name, Body body) {
  ++m_StepNumber;
  std::printf("[%2d] %s ...\n", m_StepNumber, name.c_str());
  std::fflush(stdout);
  const auto start = std::chrono::steady_clock::now();
  StepRecord record{name, "", 0.0, 0.0};
  body(record);
  record.ms = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
  m_Steps.push_back(record);
}

bool Road::LoadLayer(std::string& error) {
  bool ok = true;
  Timed(m_Options.input.empty() ? "build the sample part" : "read " + m_Options.input, [&](StepRecord& r) {
    if (m_Options.input.empty()) {
      BuildSamplePart(m_Part, m_Options.unitsPerMm);
    } else if (!ReadRegion(m_Options.input, m_Part, error)) {
      ok = false;
      return;
    }
    m_Part.BEPAAL_EXTREMA();
    r.counts = Describe({{"contours", m_Part.NumContours}, {"points", PointCount(m_Part)}});
    r.lengthMm = Mm(ContourLength(m_Part));
  });
  if (ok && m_Part.NumContours == 0) {
    error = "the layer '" + m_Options.input + "' holds no contours";
    ok = false;
  }
  return ok;
}

void Road::CleanAndClassify() {
  Timed("clean and compress", [&](StepRecord& r) {
    const int64_t before = PointCount(m_Part);
    m_Part.VERWIJDER_DUBBELE_PUNTEN(3);
    m_Part.COMPRES_LAAG(0, 180);
    m_Part.BEPAAL_EXTREMA();
    r.counts = Describe({{"points before", before}, {"after", PointCount(m_Part)}});
    r.lengthMm = Mm(ContourLength(m_Part));
  });
  Timed("classify nesting and direction", [&](StepRecord& r) {
    m_Part.SORTEER_CONTOUREN_NIEUW();
    m_Part.CONTROLEER_RECHTS_DRAAIEND();
    int64_t outer = 0, clockwise = 0;
    for (const CONTOUR* c = m_Part.FirstContour; c != nullptr; c = c->NextContour) {
      outer += c->Outer == 1;
      clockwise += c->RightHanded == 1;
    }
    r.counts = Describe({{"outer", outer}, {"holes", m_Part.NumContours - outer}, {"clockwise", clockwise}});
  });
}

void Road::OffsetAndBoolean() {
  Timed("offset by 0.3 mm", [&](StepRecord& r) {
    m_Offset.OFFSET_LAAG(m_Part, Units(0.3));
    r.counts = Describe({{"contours", m_Offset.NumContours}, {"points", PointCount(m_Offset)}});
    r.lengthMm = Mm(ContourLength(m_Offset));
  });
  Timed("subtract a bar", [&](StepRecord& r) {
    BuildSecondShape(m_Bar, m_Options.unitsPerMm);
    AU::BooleanSubtract(m_Part, m_Bar, m_Boolean, nullptr);
    const double mm2 = 1.0 / (m_Options.unitsPerMm * m_Options.unitsPerMm);
    r.counts = Describe({{"contours", m_Boolean.NumContours},
                         {"mm2 before", WholeMm2(MaterialArea(m_Part) * mm2)},
                         {"mm2 after", WholeMm2(MaterialArea(m_Boolean) * mm2)}});
    r.lengthMm = Mm(ContourLength(m_Boolean));
  });
}

void Road::BuildTables() {
  Timed("X and Y tables with extra grid lines", [&](StepRecord& r) {
    m_Parameters.XHatchShift = GridStartAtOrBelow(m_Part.MinX, m_Parameters.XHatchDistance);
    m_Parameters.YHatchShift = GridStartAtOrBelow(m_Part.MinY, m_Parameters.YHatchDistance);
    m_Part.Y_ARCEER_LAAG(&m_YTable, m_Parameters, nullptr);
    EXTRA_GRID_LIJNEN(&m_ExtraX, m_YTable, m_Parameters.XHatchShift, m_Parameters.XHatchDistance);
    m_Part.X_ARCEER_LAAG(&m_XTable, m_Parameters, &m_ExtraX);
    FILTER_EXTRA_LIJST(&m_ExtraX, m_XTable);
    int64_t xColumns = 0, yColumns = 0;
    const int64_t crossings = CrossingCount(m_XTable, xColumns) + CrossingCount(m_YTable, yColumns);
    r.counts = Describe({{"X columns", xColumns},
                         {"Y columns", yColumns},
                         {"crossings", crossings},
                         {"extra X lines", m_ExtraX.Value}});
  });
}

void Road::HatchFromTables() {
  Timed("straight hatching", [&](StepRecord& r) {
    m_Straight.ADD_X_ARCERING_LINKS(m_XTable, m_Parameters, kStraightType);
    r.counts = Describe({{"vectors", VectorCount(m_Straight)}});
    r.lengthMm = Mm(VectorLength(m_Straight));
  });
  Timed("smart hatching (X and Y)", [&](StepRecord& r) {
    TableCopy x(m_XTable), y(m_YTable);
    m_Smart.ADD_HATCHINGS(m_Parameters, x.table, y.table, kSmartType);
    r.counts = Describe({{"vectors", VectorCount(m_Smart)}, {"blocks", m_Smart.NumBlocks}});
    r.lengthMm = Mm(VectorLength(m_Smart));
  });
  Timed("perforated support", [&](StepRecord& r) {
    TableCopy x(m_XTable), y(m_YTable);
    const int32_t tooth = Units(1.0), gap = Units(0.5), period = Units(2.5);
    PERFOREER_TABEL(&x.table, tooth, gap, 0, period);
    PERFOREER_TABEL(&y.table, tooth, gap, 0, period);
    m_Support.ADD_SUPPORT(m_Parameters, x.table, y.table, kVectorTypeSupportDefault);
    r.counts = Describe({{"vectors", VectorCount(m_Support)}, {"blocks", m_Support.NumBlocks}});
    r.lengthMm = Mm(VectorLength(m_Support));
  });
  Timed("meander", [&](StepRecord& r) {
    TableCopy x(m_XTable);
    m_Meander.BEWAAR_X_TABEL_MEANDER(&x.table, m_Parameters, 0, kMeanderType);
    r.counts = Describe({{"vectors", VectorCount(m_Meander)}, {"paths", m_Meander.NumBlocks}});
    r.lengthMm = Mm(VectorLength(m_Meander));
  });
  Timed("no-switch meander, checked against Y", [&](StepRecord& r) {
    m_NoSwitch.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED_TYK(&m_XTable, &m_YTable, m_Parameters,
                                                               kNoSwitchType);
    r.counts = Describe({{"vectors", VectorCount(m_NoSwitch)}, {"paths", m_NoSwitch.NumBlocks}});
    r.lengthMm = Mm(VectorLength(m_NoSwitch));
  });
}

void Road::HatchAtAngle() {
  std::ostringstream name;
  name << "hatching at " << m_Options.angleDegrees << " degrees";
  Timed(name.str(), [&](StepRecord& r) {
    MHatcher hatcher;
    hatcher.GetHatchLayer().SetAngle(m_Options.angleDegrees);
    hatcher.HatchWithAutoShift(m_Part, m_Parameters.XHatchDistance);
    AddHatchLayerToVectorLayer(hatcher.GetHatchLayer(), m_Angled, kAngledType);
    r.counts = Describe({{"vectors", VectorCount(m_Angled)}, {"shift", hatcher.GetShift()}});
    r.lengthMm = Mm(VectorLength(m_Angled));
  });
}

bool Road::RenderCoverage(std::string& error) {
  bool ok = true;
  Timed("coverage bitmap", [&](StepRecord& r) {
    const int size = m_Options.bitmapSize;
    const double sideMm = Mm(std::max(m_Part.MaxX, m_Part.MaxY)) * 1.02;
    std::vector<unsigned char> bitmap(static_cast<size_t>(size) * size);
    MContours2BitmapConvertor convertor(bitmap.data(), size, size, sideMm, sideMm, &m_Part);
    convertor.Operate();
    double covered = 0.0;
    for (unsigned char b : bitmap)
      covered += b;
    const double pixelMm = sideMm / size;
    const double area = covered / 255.0 * pixelMm * pixelMm;
    const double exact = MaterialArea(m_Part) / (m_Options.unitsPerMm * m_Options.unitsPerMm);
    std::ostringstream counts;
    counts << size << "x" << size << " px, " << WholeMm2(area) << " mm2 by pixels, " << WholeMm2(exact)
           << " mm2 exact";
    r.counts = counts.str();
    if (!WriteGreyPng(m_Options.outputDir + "/coverage.png", bitmap.data(), size, size)) {
      error = "cannot write " + m_Options.outputDir + "/coverage.png";
      ok = false;
    }
  });
  return ok;
}

bool Road::SaveAndReread(std::string& error) {
  bool ok = true;
  Timed("save and re-read the layer", [&](StepRecord& r) {
    const std::string path = m_Options.outputDir + "/layer.xml";
    MSaxContourLayer writerHandler(&m_Part, nullptr);
    if (!MSAXWriter(path).WriteDocument(writerHandler)) {
      error = "cannot write " + path;
      ok = false;
      return;
    }
    CONTOUR_LAYER reread;
    MSaxContourLayer readerHandler(&reread, nullptr);
    MSAXReader reader;
    if (!reader.ReadFile(path, readerHandler)) {
      error = "cannot read back " + path + ": " + reader.GetError();
      ok = false;
    }
    r.counts = Describe({{"contours written", m_Part.NumContours},
                         {"read", reread.NumContours},
                         {"points read", PointCount(reread)}});
    reread.Clear();
  });
  return ok;
}

bool Road::WritePicture(std::string& error) {
  struct Drawing {
    const VECTOR_LAYER* vectors;
    const char* colour;
    const char* label;
  };
  struct Panel {
    std::string title;
    std::vector<Drawing> drawings;
  };
  std::ostringstream angled;
  angled << "hatching at " << m_Options.angleDegrees << " degrees";
  const std::vector<Panel> panels = {
      {"straight hatching (X table)", {{&m_Straight, "#1f77b4", "straight, type 2"}}},
      {"smart hatching (X and Y)", {{&m_Smart, "#2ca02c", "smart, type 3"}}},
      {"perforated support", {{&m_Support, "#d62728", "support, types 38 and 41"}}},
      {"meander and no-switch meander",
       {{&m_Meander, "#9467bd", "meander, type 4"}, {&m_NoSwitch, "#ff7f0e", "no-switch meander, type 5"}}},
      {angled.str(), {{&m_Angled, "#17becf", "free angle, type 6"}}}};
  const double margin = Units(1.0);
  SvgPicture svg(m_Part.MinX - margin, m_Part.MinY - margin, m_Part.MaxX + margin, m_Part.MaxY + margin, 3);
  for (const Panel& panel : panels) {
    svg.BeginPanel(panel.title);
    svg.AddContours(m_Part, "#222222", "contours");
    for (const Drawing& d : panel.drawings)
      svg.AddVectors(*d.vectors, 0, d.colour, d.label);
  }
  svg.BeginPanel("offset 0.3 mm, part minus bar");
  svg.AddContours(m_Offset, "#bcbd22", "offset contours");
  svg.AddContours(m_Boolean, "#e377c2", "boolean result");
  if (!svg.Write(m_Options.outputDir + "/hatch.svg")) {
    error = "cannot write " + m_Options.outputDir + "/hatch.svg";
    return false;
  }
  return true;
}

bool Road::Run(std::string& error) {
  if (!LoadLayer(error))
    return false;
  CleanAndClassify();
  OffsetAndBoolean();
  BuildTables();
  HatchFromTables();
  HatchAtAngle();
  if (!RenderCoverage(error))
    return false;
  if (!SaveAndReread(error))
    return false;
  return WritePicture(error);
}
