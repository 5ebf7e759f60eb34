#include "layer/contour_layer.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include "layer/chain.h"
#include "layer/contour_chain.h"

using namespace kelvor2d_detail;  // the chain helpers

namespace {

// A fresh contour with the attributes and points of `source`; the array is
// null when the source has no points and `arrayForEmpty` is false. Null
// when memory ran out (a node made without its array is returned through
// `partial`).
CONTOUR* DeepCopy(const CONTOUR& source, bool arrayForEmpty, CONTOUR** partial) {
  CONTOUR* copy = new (std::nothrow) CONTOUR;
  if (copy == nullptr)
    return nullptr;
  copy->Outer = source.Outer;
  copy->RightHanded = source.RightHanded;
  copy->Closed = source.Closed;
  copy->Type = source.Type;
  copy->NumPoints = source.NumPoints;
  if (source.NumPoints < 1 && !arrayForEmpty)
    return copy;
  const size_t n = source.NumPoints > 0 ? static_cast<size_t>(source.NumPoints) : 0;
  copy->Points = static_cast<MMPoint2d<long>*>(malloc(sizeof(MMPoint2d<long>) * n));
  if (copy->Points == nullptr && n > 0) {
    if (partial != nullptr)
      *partial = copy;
    return nullptr;
  }
  if (n > 0)
    memcpy(copy->Points, source.Points, sizeof(MMPoint2d<long>) * n);
  return copy;
}

CONTOUR*& ContourLink(CONTOUR* c) {
  return c->NextContour;
}

void GrowByContour(CONTOUR_LAYER& layer, const CONTOUR& c) {
  for (int32_t i = 0; i < c.NumPoints; ++i)
    GrowExtents(layer, c.Points[i].x, c.Points[i].y);
}

void SetOwner(CONTOUR* chain, CONTOUR_LAYER* owner) {
  for (CONTOUR* c = chain; c != nullptr; c = c->NextContour) {
    if (c->Owner != nullptr)
      c->Owner = owner;
  }
}

}  // namespace

void CONTOUR_LAYER::_SetFirstContour(CONTOUR* c) {
  FirstContour = c;
  if (c == nullptr) {
    LastContour = nullptr;
  } else if (LastContour == nullptr) {
    LastContour = c;
  }
}

void CONTOUR_LAYER::LEEG_LAAG() {
  if (NumContours == 0)
    return;
  NumContours = 0;
  CONTOUR* c = FirstContour;
  while (c != nullptr) {
    CONTOUR* next = c->NextContour;
    ReleaseContour(c);
    c = next;
  }
  FirstContour = nullptr;
  LastContour = nullptr;
  ResetExtents(*this);
}

void CONTOUR_LAYER::SwapWith(CONTOUR_LAYER& other) {
  SwapExtents(*this, other);
  std::swap(NumContours, other.NumContours);
  std::swap(FirstContour, other.FirstContour);
  std::swap(LastContour, other.LastContour);
  SetOwner(FirstContour, this);
  SetOwner(other.FirstContour, &other);
}

void CONTOUR_LAYER::MoveTo(CONTOUR_LAYER& other) {
  LEEG_LAAG();
  SwapWith(other);
}

void CONTOUR_LAYER::AddContourAtFront(CONTOUR* c) {
  c->Owner = this;
  c->NextContour = FirstContour;
  FirstContour = c;
  ++NumContours;
  if (LastContour == nullptr)
    LastContour = c;
}

void CONTOUR_LAYER::AddContourAfter(CONTOUR* c, CONTOUR* after) {
  if (after == nullptr) {
    AddContourAtFront(c);
    return;
  }
  c->Owner = this;
  c->NextContour = after->NextContour;
  after->NextContour = c;
  ++NumContours;
  if (after == LastContour)
    LastContour = c;
}

void CONTOUR_LAYER::AddContourAtEnd(CONTOUR* c) {
  AddContourAfter(c, LastContour);
}

CONTOUR* CONTOUR_LAYER::RemoveContour(CONTOUR*& c, bool destroy) {
  CONTOUR* target = c;
  if (target == nullptr)
    return nullptr;
  target->Owner = nullptr;
  const Unlinked<CONTOUR> unlinked = UnlinkFromChain(FirstContour, target, ContourLink);
  if (!unlinked.found)
    return nullptr;
  if (target == LastContour)
    LastContour = unlinked.previous;
  --NumContours;
  if (destroy) {
    ReleaseContour(target);
    c = nullptr;
  }
  return unlinked.successor;
}

bool CONTOUR_LAYER::COPIEER_LAAG(CONTOUR_LAYER& source) {
  MaxX = source.MaxX;
  MaxY = source.MaxY;
  MinX = source.MinX;
  MinY = source.MinY;
  NumContours = source.NumContours;
  FirstContour = nullptr;
  LastContour = nullptr;
  if (NumContours < 1)
    return true;
  const CONTOUR* from = source.FirstContour;
  for (int32_t i = 0; i < source.NumContours && from != nullptr; ++i, from = from->NextContour) {
    CONTOUR* partial = nullptr;
    CONTOUR* copy = DeepCopy(*from, true, &partial);
    if (copy == nullptr)
      copy = partial;
    if (copy == nullptr)
      return false;
    if (LastContour == nullptr) {
      FirstContour = copy;
    } else {
      LastContour->NextContour = copy;
    }
    LastContour = copy;
    if (partial != nullptr)
      return false;
  }
  return true;
}

void CONTOUR_LAYER::COPY_FROM(const CONTOUR_LAYER& source) {
  LEEG_LAAG();
  MaxX = source.MaxX;
  MaxY = source.MaxY;
  MinX = source.MinX;
  MinY = source.MinY;
  NumContours = 0;
  FirstContour = nullptr;
  LastContour = nullptr;
  for (const CONTOUR* from = source.FirstContour; from != nullptr; from = from->NextContour) {
    CONTOUR* copy = DeepCopy(*from, false, nullptr);
    if (copy == nullptr)
      throw std::bad_alloc();
    if (LastContour == nullptr) {
      FirstContour = copy;
    } else {
      LastContour->NextContour = copy;
    }
    LastContour = copy;
    ++NumContours;
  }
}

void CONTOUR_LAYER::COPIEER_CONTOUR_NAAR_LAAG(CONTOUR* c) {
  CONTOUR* copy = DeepCopy(*c, true, nullptr);
  if (copy == nullptr)
    throw std::bad_alloc();
  copy->NextContour = FirstContour;
  FirstContour = copy;
  if (LastContour == nullptr)
    LastContour = copy;
  ++NumContours;
  GrowByContour(*this, *copy);
}

void CONTOUR_LAYER::VOEG_CONTOUR_TOE_AAN_LAAG(CONTOUR* c) {
  c->NextContour = FirstContour;
  FirstContour = c;
  if (LastContour == nullptr)
    LastContour = c;
  ++NumContours;
  GrowByContour(*this, *c);
}

bool CONTOUR_LAYER::VOEG_TOE(CONTOUR_LAYER& other) {
  if (other.FirstContour != nullptr) {
    if (LastContour == nullptr) {
      FirstContour = other.FirstContour;
    } else {
      LastContour->NextContour = other.FirstContour;
    }
    LastContour = other.LastContour;
    if (LastContour == nullptr) {  // a caller-made chain without its last link
      LastContour = FirstContour;
      while (LastContour->NextContour != nullptr)
        LastContour = LastContour->NextContour;
    }
  }
  NumContours += other.NumContours;
  MergeExtents(*this, other);
  other.FirstContour = nullptr;
  other.LastContour = nullptr;
  other.NumContours = 0;
  ResetExtents(other);
  return true;
}

bool CONTOUR_LAYER::COPIEER_VECTORS_TO_CONTOUR(int32_t* coordinates, int32_t count) {
  if (count % 4 != 0 || count <= 0)
    return false;
  CONTOUR* c = new (std::nothrow) CONTOUR;
  if (c == nullptr)
    return false;
  const int32_t vectors = count / 4;
  c->Points = static_cast<MMPoint2d<long>*>(malloc(sizeof(MMPoint2d<long>) * (vectors + 1)));
  if (c->Points == nullptr) {
    delete c;
    return false;
  }
  c->NumPoints = vectors + 1;
  for (int32_t v = 0; v < vectors; ++v)
    c->Points[v] = {coordinates[4 * v], coordinates[4 * v + 1]};
  c->Points[vectors] = {coordinates[count - 2], coordinates[count - 1]};
  GrowByContour(*this, *c);
  c->Closed = c->Points[vectors] == c->Points[0] ? 1 : 0;
  AddContourAtEnd(c);
  return true;
}

void CONTOUR_LAYER::VERANDER_CONTOUR_VOLGORDE() {
  CONTOUR* reversed = nullptr;
  CONTOUR* c = FirstContour;
  while (c != nullptr) {
    CONTOUR* next = c->NextContour;
    c->NextContour = reversed;
    reversed = c;
    c = next;
  }
  LastContour = FirstContour;
  FirstContour = reversed;
}

void CONTOUR_LAYER::BEPAAL_EXTREMA() {
  ResetExtents(*this);
  for (const CONTOUR* c = FirstContour; c != nullptr; c = c->NextContour) {
    if (c->NumPoints >= 1 && c->Type != 103)
      GrowByContour(*this, *c);
  }
}
