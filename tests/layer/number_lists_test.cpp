#include "layer/number_lists.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Values = std::vector<long>;

template <class List>
Values ValuesOf(const List& head) {
  Values v;
  for (const List* e = head.Next; e != nullptr; e = e->Next)
    v.push_back(e->Value);
  return v;
}

// A list of the values, appended one by one.
L_LIST ListOf(const Values& values) {
  L_LIST head{0, nullptr};
  for (long v : values)
    VOEG_ACHTER_L_LIJST(&head, static_cast<int32_t>(v));
  return head;
}

}  // namespace

TEST(NumberLists, SortedInsertPutsNewestFirstAmongEquals) {
  L_LIST head{99, nullptr};  // link null: treated as empty whatever the count
  VOEG_IN_GESORTEERDE_L_LIJST(&head, 5);
  EXPECT_EQ(head.Value, 1);
  for (int32_t v : {3, 7, -1})
    VOEG_IN_GESORTEERDE_L_LIJST(&head, v);
  EXPECT_EQ(ValuesOf(head), (Values{-1, 3, 5, 7}));
  VOEG_IN_GESORTEERDE_L_LIJST(&head, 5);
  EXPECT_EQ(head.Value, 5);
  VOEG_EEN_MAAL_IN_GESORTEERDE_L_LIJST(&head, 7);
  EXPECT_EQ(head.Value, 5);
  VOEG_EEN_MAAL_IN_GESORTEERDE_L_LIJST(&head, 8);
  EXPECT_EQ(ValuesOf(head), (Values{-1, 3, 5, 5, 7, 8}));
  LEEG_L_LIJST(&head);
  EXPECT_EQ(head.Value, 0);
  EXPECT_EQ(head.Next, nullptr);
  LEEG_L_LIJST(&head);  // empty head stays empty
  US_LIST us{0, nullptr};
  VOEG_IN_GESORTEERDE_US_LIJST(&us, 65535);
  VOEG_IN_GESORTEERDE_US_LIJST(&us, 1);
  VOEG_EEN_MAAL_IN_GESORTEERDE_US_LIJST(&us, 1);
  EXPECT_EQ(ValuesOf(us), (Values{1, 65535}));  // sorted unsigned
  LEEG_US_LIJST(&us);
}

TEST(NumberLists, PairedListsCarrySecondInReverseInsertionOrder) {
  L_LIST_2 head{0, 0, nullptr};
  VOEG_IN_GESORTEERDE_L_LIJST_2(&head, 5, 1);
  VOEG_IN_GESORTEERDE_L_LIJST_2(&head, 5, 2);
  VOEG_IN_GESORTEERDE_L_LIJST_2(&head, 2, 3);
  VOEG_VOOR_L_LIJST_2(&head, 0, 4);
  VOEG_ACHTER_L_LIJST_2(&head, 9, 5);
  EXPECT_EQ(head.Value, 5);
  EXPECT_EQ(ValuesOf(head), (Values{0, 2, 5, 5, 9}));
  Values seconds;
  for (const L_LIST_2* e = head.Next; e != nullptr; e = e->Next)
    seconds.push_back(e->Second);
  EXPECT_EQ(seconds, (Values{4, 3, 2, 1, 5}));
  LEEG_L_LIJST_2(&head);
  US_LIST_2 us{0, 0, nullptr};
  VOEG_IN_GESORTEERDE_US_LIJST_2(&us, 65535, 1);
  VOEG_IN_GESORTEERDE_US_LIJST_2(&us, 1, 2);
  VOEG_ACHTER_US_LIJST_2(&us, 70, 3);
  EXPECT_EQ(ValuesOf(us), (Values{1, 65535, 70}));
  LEEG_US_LIJST_2(&us);
}

TEST(NumberLists, AppendAndPrependTestTheCountNotTheLink) {
  L_LIST stale{0, reinterpret_cast<L_LIST*>(0x1)};  // never dereferenced
  VOEG_ACHTER_L_LIJST(&stale, 4);
  EXPECT_EQ(ValuesOf(stale), (Values{4}));
  LEEG_L_LIJST(&stale);
  L_LIST stale2{0, reinterpret_cast<L_LIST*>(0x1)};
  VOEG_VOOR_L_LIJST(&stale2, 6);
  VOEG_VOOR_L_LIJST(&stale2, 5);
  EXPECT_EQ(ValuesOf(stale2), (Values{5, 6}));
  LEEG_L_LIJST(&stale2);
}

TEST(NumberLists, CopiesIntoNewAndGivenHeads) {
  L_LIST* copy = reinterpret_cast<L_LIST*>(0x1);
  COPY_L_LIJST(&copy, nullptr);
  EXPECT_EQ(copy, nullptr);
  L_LIST empty{0, nullptr}, source = ListOf({1, 2});
  COPY_L_LIJST(&copy, &empty);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->Value, 0);
  EXPECT_EQ(copy->Next, nullptr);
  free(copy);
  COPY_L_LIJST(&copy, &source);
  EXPECT_EQ(ValuesOf(*copy), (Values{1, 2}));
  EXPECT_NE(copy->Next, source.Next);
  LEEG_L_LIJST(copy);
  free(copy);
  L_LIST given{0, nullptr};
  COPIEER_L_LIJST(&given, source);
  EXPECT_EQ(given.Value, 2);
  EXPECT_EQ(ValuesOf(given), (Values{1, 2}));
  L_LIST held = given;  // what `given` held is not released by the next copy
  COPIEER_L_LIJST(&given, L_LIST{0, nullptr});
  EXPECT_EQ(given.Value, 0);
  EXPECT_EQ(given.Next, nullptr);
  LEEG_L_LIJST(&held);
  LEEG_L_LIJST(&source);
  US_LIST us{0, nullptr}, usGiven{0, nullptr};
  VOEG_ACHTER_US_LIJST(&us, 3);
  US_LIST* usCopy = nullptr;
  COPY_US_LIJST(&usCopy, &us);
  EXPECT_EQ(ValuesOf(*usCopy), (Values{3}));
  LEEG_US_LIJST(usCopy);
  free(usCopy);
  COPIEER_US_LIJST(&usGiven, us);
  EXPECT_EQ(usGiven.Value, 1);
  LEEG_US_LIJST(&usGiven);
  LEEG_US_LIJST(&us);
}

TEST(NumberLists, UnionOfRuns) {
  const struct {
    Values first, second, expected;
  } cases[] = {
      {{0, 10}, {5, 15}, {0, 15}},
      {{0, 10}, {20, 30}, {0, 10, 20, 30}},
      {{0, 10}, {10, 20}, {0, 10, 10, 20}},  // touching runs stay two
      {{0, 30}, {10, 20}, {0, 30}},
  };
  for (const auto& c : cases) {
    L_LIST a = ListOf(c.first), b = ListOf(c.second), r{0, nullptr}, alone{0, nullptr};
    LIJST_IS_LIJST1_PLUS_LIJST2(&r, &a, &b);
    EXPECT_EQ(ValuesOf(r), c.expected)
        << ::testing::PrintToString(c.first) << " + " << ::testing::PrintToString(c.second);
    EXPECT_EQ(r.Value, static_cast<int32_t>(c.expected.size()));
    LIJST_IS_LIJST1_PLUS_LIJST2(&alone, nullptr, &b);  // no first list: the second's runs
    EXPECT_EQ(ValuesOf(alone), c.second);
    for (L_LIST* l : {&a, &b, &r, &alone})
      LEEG_L_LIJST(l);
  }
  US_LIST ua{0, nullptr}, ub{0, nullptr}, ur{0, nullptr};
  for (uint16_t v : {0, 10})
    VOEG_ACHTER_US_LIJST(&ua, v);
  for (uint16_t v : {5, 15})
    VOEG_ACHTER_US_LIJST(&ub, v);
  LIJST_IS_LIJST1_PLUS_LIJST2(&ur, &ua, &ub);
  EXPECT_EQ(ValuesOf(ur), (Values{0, 15}));
  for (US_LIST* l : {&ua, &ub, &ur})
    LEEG_US_LIJST(l);
}
