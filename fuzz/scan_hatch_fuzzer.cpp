// libFuzzer target for scan conversion and the table hatching: a layer of a
// few closed rings anywhere on the 32-bit grid (self-crossing and degenerate
// rings included) is turned into X and Y tables, with the extra grid lines of
// narrow runs, and hatched straight, smart and as a meander. Every table
// column must hold an even count of crossings inside the layer's extent, and
// every vector must lie inside that extent.
#include <cstdint>

#include "fuzz_layers.h"
#include "scan/scan_conversion.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"

using namespace fuzz_layers;

namespace {

void CheckTable(const TABEL& table, int32_t least, int32_t greatest) {
  if (table.Next == nullptr)
    return;
  int32_t before = INT32_MIN;
  for (const TABEL* c = table.Next; c->Next != nullptr; c = c->Next) {
    Check(c->Position >= before);
    before = c->Position;
    int32_t count = 0;
    for (const L_LIST* e = c->List->Next; e != nullptr; e = e->Next, ++count)
      Check(e->Value >= least && e->Value <= greatest);
    Check(count == c->List->Value && count % 2 == 0);
  }
}

// A grid of about 1 to 64 lines over [least, greatest], starting a little
// below it at a phase from the input.
void ReadGrid(FuzzInput& in, int32_t least, int32_t greatest, int32_t& distance, int32_t& shift) {
  distance = DistanceFor(static_cast<int64_t>(greatest) - least, 1 + in.Byte() % 64);
  const int64_t start = static_cast<int64_t>(least) - in.Word(4) % (2 * static_cast<int64_t>(distance));
  shift = static_cast<int32_t>(std::max<int64_t>(start, INT32_MIN + 1));
}

// Drops the extra lines that fall on a grid line: a run one unit wide has its
// middle there, and two columns at one position share the crossings of a
// vertex on them unevenly, as scan conversion is laid down.
void DropExtrasOnTheGrid(L_LIST& extra, int32_t shift, int32_t distance) {
  for (L_LIST* before = &extra; before->Next != nullptr;) {
    L_LIST* e = before->Next;
    if (e->Value >= shift && (static_cast<int64_t>(e->Value) - shift) % distance == 0) {
      before->Next = e->Next;
      free(e);
      --extra.Value;
    } else {
      before = e;
    }
  }
}

struct Tables {
  TABEL x, y;
  L_LIST extra = {0, nullptr};
  ~Tables() {
    LEEG_TABEL(&x);
    LEEG_TABEL(&y);
    LEEG_L_LIJST(&extra);
  }
};

void Hatch(CONTOUR_LAYER& layer, MSliceFileParameters& p, Tables& t) {
  VECTOR_LAYER vectors;
  vectors.ADD_X_ARCERING_LINKS(t.x, p, 2);
  TABEL x, y;
  COPIEER_TABEL(&x, t.x);
  COPIEER_TABEL(&y, t.y);
  vectors.ADD_HATCHINGS(p, x, y, 3);
  LEEG_TABEL(&x);
  LEEG_TABEL(&y);
  COPIEER_TABEL(&x, t.x);
  vectors.BEWAAR_X_TABEL_MEANDER(&x, p, 0, 4);
  LEEG_TABEL(&x);
  CheckVectorsInside(vectors, layer);
  vectors.Clear();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzInput in(data, size);
  CONTOUR_LAYER layer;
  ReadLayer(in, layer);
  MSliceFileParameters p;
  ReadGrid(in, layer.MinX, layer.MaxX, p.XHatchDistance, p.XHatchShift);
  ReadGrid(in, layer.MinY, layer.MaxY, p.YHatchDistance, p.YHatchShift);
  p.MeanderConnectDistance = static_cast<int32_t>(in.Word(4));
  p.HatchShortening = static_cast<int32_t>(in.Word(2));
  // A factor below 2 lets a shortening pass the vector's other end, as laid down.
  p.HatchShorteningFactor = 2 + in.Byte() % 4;
  p.ShortenSmartHatch = in.Byte() % 2;
  Tables t;
  layer.Y_ARCEER_LAAG(&t.y, p, nullptr);
  CheckTable(t.y, layer.MinX, layer.MaxX);
  EXTRA_GRID_LIJNEN(&t.extra, t.y, p.XHatchShift, p.XHatchDistance);
  DropExtrasOnTheGrid(t.extra, p.XHatchShift, p.XHatchDistance);
  layer.X_ARCEER_LAAG(&t.x, p, &t.extra);
  CheckTable(t.x, layer.MinY, layer.MaxY);
  FILTER_EXTRA_LIJST(&t.extra, t.x);
  Hatch(layer, p, t);
  layer.LEEG_LAAG();
  return 0;
}
