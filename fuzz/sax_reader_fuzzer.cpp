// libFuzzer target for the layer reader: any input must end in a layer whose
// chain, count and points are consistent, with an error text on failure, and
// without a crash, a hang or a leak. A stream whose exception mask is set
// reads as the buffer does. A layer that was read writes and reads back to
// the same contours.
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "persistence/sax_contour_layer.h"

namespace {

constexpr size_t kMaxElementBytes = size_t{1} << 20;

void Check(bool condition) {
  if (!condition) {
    abort();
  }
}

// Walks the chain, touching every point; the number of contours.
int32_t CheckChain(const CONTOUR_LAYER& layer) {
  int32_t count = 0;
  int64_t sum = 0;
  const CONTOUR* last = nullptr;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    Check(c->NumPoints >= 0 && (c->NumPoints == 0 || c->Points != nullptr));
    for (int32_t i = 0; i < c->NumPoints; ++i) {
      sum += c->Points[i].x ^ c->Points[i].y;
    }
    last = c;
    ++count;
  }
  Check(count == layer.NumContours && last == layer.LastContour && sum != INT64_MIN);
  return count;
}

// The reader's error, empty when the document was read.
std::string ReadLayer(const char* data, size_t size, CONTOUR_LAYER& layer, bool fromStream = false) {
  MSaxContourLayer handler(&layer, nullptr);
  MSAXReader reader;
  reader.SetMaxElementBytes(kMaxElementBytes);
  std::istringstream in(std::string(data, size));
  in.exceptions(std::ios::badbit | std::ios::failbit | std::ios::eofbit);
  const bool ok = fromStream ? reader.Read(in, handler) : reader.ReadBuffer(data, size, handler);
  Check(handler.currentContour == nullptr && ok == reader.GetError().empty());
  return reader.GetError();
}

// Writes the layer and reads it back: same number of contours, points equal in reverse order.
void CheckRoundTrip(CONTOUR_LAYER& layer) {
  std::ostringstream out;
  MSAXWriter writer(out);
  Check(writer.WriteDocument(MSaxContourLayer(&layer, "fuzz")));
  const std::string document = out.str();
  CONTOUR_LAYER back;
  Check(ReadLayer(document.data(), document.size(), back).empty());
  Check(CheckChain(back) == layer.NumContours);
  back.VERANDER_CONTOUR_VOLGORDE();
  for (const CONTOUR *a = layer.FirstContour, *b = back.FirstContour; a != nullptr;
       a = a->NextContour, b = b->NextContour) {
    Check(a->NumPoints == b->NumPoints && a->Type == b->Type);
    for (int32_t i = 0; i < a->NumPoints; ++i) {
      Check(a->Points[i] == b->Points[i]);
    }
  }
  back.LEEG_LAAG();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  CONTOUR_LAYER layer, streamed;
  const std::string error = ReadLayer(reinterpret_cast<const char*>(data), size, layer);
  Check(ReadLayer(reinterpret_cast<const char*>(data), size, streamed, true) == error);
  Check(CheckChain(layer) == CheckChain(streamed));
  if (error.empty()) {
    CheckRoundTrip(layer);
  }
  layer.LEEG_LAAG();
  streamed.LEEG_LAAG();
  return 0;
}
