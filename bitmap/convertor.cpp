#include "bitmap/convertor.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <queue>

#include "bridges/border_conversion.h"
#include "sibling/boolean/border_functions.h"
#include "sibling/units/internal_units.h"

namespace {

// Grey value of a full pixel, the start of the subtracting safe sum.
constexpr double kFullPixel = kBitmapFullPixel;
// Added before truncation: to the nearest grey level.
constexpr double kRoundingHalf = 0.5;

// A size or unit that scales the contours onto the bitmap: positive and
// finite (a negative one would mirror shapes off the bitmap onto it).
bool IsUsableScale(double v) {
  return std::isfinite(v) && v > 0.0;
}

}  // namespace

MContours2BitmapConvertor::MContours2BitmapConvertor(unsigned char* pixels, int32_t pixelsInRow, int32_t rows,
                                                     double sizeInX, double sizeInY,
                                                     CONTOUR_LAYER const* layer)
    : bitmap(pixels),
      width(pixelsInRow),
      height(rows),
      sizeX(sizeInX),
      sizeY(sizeInY),
      contours(layer != nullptr ? layer->FirstContour : nullptr),
      numContours(layer != nullptr ? layer->NumContours : 0) {
  if (layer != nullptr)
    M3dBorder2LayerConvertor::_Convert(*layer, border);
}

MContours2BitmapConvertor::MContours2BitmapConvertor(unsigned char* pixels, int32_t pixelsInRow, int32_t rows,
                                                     double sizeInX, double sizeInY, Border& source)
    : bitmap(pixels),
      width(pixelsInRow),
      height(rows),
      sizeX(sizeInX),
      sizeY(sizeInY),
      contours(nullptr),
      numContours(0),
      border(source) {}

bool MContours2BitmapConvertor::_CanRender() const {
  return bitmap != nullptr && width >= 1 && height >= 1 && IsUsableScale(sizeX) && IsUsableScale(sizeY) &&
         IsUsableScale(Kelvor::Common::MInternalUnits::Get());
}

void MContours2BitmapConvertor::Operate() {
  if (!_CanRender())
    return;
  EraseBitmap();
  border.RemoveDoublePoints();
  AU::BooleanRemoveSelfIntersections(border);
  AU::OrientBorder2D(border, nullptr);
  _OperateWithSweep();
}

void MContours2BitmapConvertor::EraseBitmap() {
  if (bitmap == nullptr || width < 1 || height < 1)
    return;
  std::memset(bitmap, 0, static_cast<size_t>(width) * static_cast<size_t>(height));
}

void MContours2BitmapConvertor::_StructureContourPointsForSweep() {
  sweep.Initialise(width, height, sizeX, sizeY, border);
}

bool MContours2BitmapConvertor::_OperateWithSweep() {
  _StructureContourPointsForSweep();
  if (_Empty())
    return false;
  _ResetCachedData();
  _ZeroWorkingYLevel();
  for (int32_t pass = 0; pass < height; ++pass) {
    _ProcessIntersections();
    _IncrementY();
  }
  return true;
}

MContours2BitmapConvertor::ActivePosition MContours2BitmapConvertor::_EndOfRange(int32_t x) {
  ActivePosition position = sweep.begin();
  while (position != sweep.end() && !((*position)->Left() > x + 1))
    ++position;
  return position;
}

void MContours2BitmapConvertor::_ProcessIntersections() {
  if (sweep.empty())
    return;
  const int32_t row = sweep.YPosition();
  // The sweep waits at the contours' lowest row, which may lie above the bitmap.
  if (row < 0 || row >= height)
    return;
  const MContourYSplittedPart* first = *sweep.begin();
  const MContourYSplittedPart* last = *sweep.rbegin();
  const int32_t start = std::min(std::max(first->Left(), 0), width - 1);
  const int32_t end = std::min(std::max(last->Right(), 0), width - 1);
  if (start > end)
    return;
  unsigned char* pixels = bitmap + static_cast<int64_t>(row) * width;
  // Each pixel sums the areas of the active parts from the first one up to the
  // end of its range, in list order. Two things carry over from one pixel to
  // the next without changing a bit of that sum: the end of the range only
  // moves right, and the leading parts that lie wholly left of the pixel give
  // a constant area for the rest of the row, so their running sum is kept.
  ActivePosition leftEnd = sweep.begin();
  double leftSum = 0.0;
  ActivePosition rangeEnd = sweep.begin();
  for (int32_t x = start; x <= end; ++x) {
    while (rangeEnd != sweep.end() && !((*rangeEnd)->Left() > x + 1))
      ++rangeEnd;
    while (leftEnd != rangeEnd && (*leftEnd)->Right() < x) {
      leftSum += (*leftEnd)->GetRightArea(x);
      ++leftEnd;
    }
    double sum = leftSum;
    for (ActivePosition position = leftEnd; position != rangeEnd; ++position)
      sum += (*position)->GetRightArea(x);
    pixels[x] = static_cast<unsigned char>(static_cast<int64_t>(sum + kRoundingHalf));
  }
}

double MContours2BitmapConvertor::_ProcessIntersections(int32_t x) {
  if (sweep.empty())
    return 0.0;
  return _CalculateArea(x, sweep.begin(), _EndOfRange(x));
}

double MContours2BitmapConvertor::_CalculateArea(int32_t x, ActivePosition begin, ActivePosition end) {
  double sum = 0.0;
  for (ActivePosition position = begin; position != end; ++position)
    sum += (*position)->GetRightArea(x);
  return sum;
}

double MContours2BitmapConvertor::_SafeCalculateArea(int32_t x, ActivePosition begin, ActivePosition end,
                                                     bool add) {
  std::priority_queue<double> heap;
  for (ActivePosition position = begin; position != end; ++position)
    heap.push((*position)->GetRightArea(x));
  double total = add ? 0.0 : kFullPixel;
  while (!heap.empty()) {
    total = add ? total + heap.top() : total - heap.top();
    heap.pop();
    add = !add;
  }
  return total;
}
