// Tests of the sweep status: a treap threaded by a list must keep the order
// it was built in through any mix of insertions and erasures, and a search by
// position must find the node holding the value or the one just below.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "sibling/boolean/sweep_status.h"

using kelvor2d_detail::SweepStatus;

namespace {

// The values in list order, checked against the links back.
std::vector<uint32_t> ValuesInOrder(const SweepStatus& status) {
  std::vector<uint32_t> values;
  int32_t previous = SweepStatus::kNone;
  for (int32_t n = status.Head(); n != SweepStatus::kNone; n = status.Next(n)) {
    EXPECT_EQ(status.Previous(n), previous);
    values.push_back(status.ValueOf(n));
    previous = n;
  }
  return values;
}

TEST(SweepStatus, KeepsOrderThroughRandomInsertionsAndErasures) {
  std::mt19937 random(3);
  SweepStatus status;
  std::vector<int32_t> nodes;    // the model: nodes bottom to top
  std::vector<uint32_t> values;  // their values
  uint32_t nextValue = 0;
  for (int step = 0; step < 4000; ++step) {
    const bool erase = !nodes.empty() && random() % 5 < 2;
    if (erase) {
      const size_t at = random() % nodes.size();
      status.Erase(nodes[at]);
      nodes.erase(nodes.begin() + static_cast<std::ptrdiff_t>(at));
      values.erase(values.begin() + static_cast<std::ptrdiff_t>(at));
    } else {
      const size_t at = random() % (nodes.size() + 1);  // new node goes at this position
      const int32_t below = at == 0 ? SweepStatus::kNone : nodes[at - 1];
      nodes.insert(nodes.begin() + static_cast<std::ptrdiff_t>(at), status.InsertAbove(below, nextValue));
      values.insert(values.begin() + static_cast<std::ptrdiff_t>(at), nextValue++);
    }
    if (step % 97 == 0) {
      ASSERT_EQ(ValuesInOrder(status), values) << "step " << step;
    }
  }
  EXPECT_EQ(ValuesInOrder(status), values);
}

TEST(SweepStatus, LocateFindsTheHoldingNodeOrTheOneBelow) {
  SweepStatus status;
  int32_t last = SweepStatus::kNone;
  for (uint32_t v = 10; v <= 200; v += 10)  // values 10, 20, ..., 200 bottom to top
    last = status.InsertAbove(last, v);
  const auto locate = [&status](double position, bool* on) {
    return status.Locate([position](uint32_t v) { return position > v ? 1 : position < v ? -1 : 0; }, on);
  };
  bool on = false;
  int32_t n = locate(70.0, &on);
  ASSERT_TRUE(on);
  EXPECT_EQ(status.ValueOf(n), 70u);
  n = locate(75.0, &on);
  ASSERT_FALSE(on);
  EXPECT_EQ(status.ValueOf(n), 70u);
  EXPECT_EQ(locate(5.0, &on), SweepStatus::kNone);
  EXPECT_FALSE(on);
  n = locate(1000.0, &on);
  EXPECT_EQ(status.ValueOf(n), 200u);
  // A position whose value is replaced is searched by the new value.
  status.SetValue(n, 205);
  EXPECT_EQ(status.ValueOf(locate(205.0, &on)), 205u);
  EXPECT_TRUE(on);
  EXPECT_EQ(status.ValueOf(locate(200.0, &on)), 190u);
  EXPECT_FALSE(on);
}

}  // namespace
