#include "layer/number_lists.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

template <class List>
std::vector<long> Values(const List& head) {
  std::vector<long> v;
  for (const List* e = head.Next; e != nullptr; e = e->Next) v.push_back(e->Value);
  return v;
}

std::vector<long> UnionOf(std::vector<int32_t> first, std::vector<int32_t> second) {
  L_LIST a{0, nullptr}, b{0, nullptr}, r{0, nullptr};
  for (int32_t v : first) VOEG_ACHTER_L_LIJST(&a, v);
  for (int32_t v : second) VOEG_ACHTER_L_LIJST(&b, v);
  LIJST_IS_LIJST1_PLUS_LIJST2(&r, &a, &b);
  std::vector<long> out = Values(r);
  EXPECT_EQ(r.Value, static_cast<int32_t>(out.size()));
  LEEG_L_LIJST(&a);
  LEEG_L_LIJST(&b);
  LEEG_L_LIJST(&r);
  return out;
}

}  // namespace

TEST(NumberLists, SortedInsertPutsNewestFirstAmongEquals) {
  L_LIST head{99, nullptr};  // link null: treated as empty whatever the count
  VOEG_IN_GESORTEERDE_L_LIJST(&head, 5);
  EXPECT_EQ(head.Value, 1);
  VOEG_IN_GESORTEERDE_L_LIJST(&head, 3);
  VOEG_IN_GESORTEERDE_L_LIJST(&head, 7);
  VOEG_IN_GESORTEERDE_L_LIJST(&head, -1);
  EXPECT_EQ(Values(head), (std::vector<long>{-1, 3, 5, 7}));
  VOEG_IN_GESORTEERDE_L_LIJST(&head, 5);
  EXPECT_EQ(head.Value, 5);
  VOEG_EEN_MAAL_IN_GESORTEERDE_L_LIJST(&head, 7);
  EXPECT_EQ(head.Value, 5);
  VOEG_EEN_MAAL_IN_GESORTEERDE_L_LIJST(&head, 8);
  EXPECT_EQ(Values(head), (std::vector<long>{-1, 3, 5, 5, 7, 8}));
  LEEG_L_LIJST(&head);
  EXPECT_EQ(head.Value, 0);
  EXPECT_EQ(head.Next, nullptr);
  LEEG_L_LIJST(&head);  // empty head stays empty
}

TEST(NumberLists, PairedListsCarrySecondInReverseInsertionOrder) {
  L_LIST_2 head{0, 0, nullptr};
  VOEG_IN_GESORTEERDE_L_LIJST_2(&head, 5, 1);
  VOEG_IN_GESORTEERDE_L_LIJST_2(&head, 5, 2);
  VOEG_IN_GESORTEERDE_L_LIJST_2(&head, 2, 3);
  ASSERT_EQ(head.Value, 3);
  EXPECT_EQ(head.Next->Second, 3);
  EXPECT_EQ(head.Next->Next->Second, 2);
  EXPECT_EQ(head.Next->Next->Next->Second, 1);
  VOEG_VOOR_L_LIJST_2(&head, 0, 4);
  VOEG_ACHTER_L_LIJST_2(&head, 9, 5);
  EXPECT_EQ(head.Next->Second, 4);
  EXPECT_EQ(Values(head), (std::vector<long>{0, 2, 5, 5, 9}));
  LEEG_L_LIJST_2(&head);
  US_LIST_2 us{0, 0, nullptr};
  VOEG_IN_GESORTEERDE_US_LIJST_2(&us, 65535, 1);
  VOEG_IN_GESORTEERDE_US_LIJST_2(&us, 1, 2);
  VOEG_ACHTER_US_LIJST_2(&us, 70, 3);
  EXPECT_EQ(Values(us), (std::vector<long>{1, 65535, 70}));
  LEEG_US_LIJST_2(&us);
}

TEST(NumberLists, UnsignedListsSortUnsigned) {
  US_LIST head{0, nullptr};
  VOEG_IN_GESORTEERDE_US_LIJST(&head, 65535);
  VOEG_IN_GESORTEERDE_US_LIJST(&head, 1);
  VOEG_EEN_MAAL_IN_GESORTEERDE_US_LIJST(&head, 1);
  EXPECT_EQ(Values(head), (std::vector<long>{1, 65535}));
  LEEG_US_LIJST(&head);
}

TEST(NumberLists, AppendAndPrependTestTheCountNotTheLink) {
  L_LIST stale{0, reinterpret_cast<L_LIST*>(0x1)};  // never dereferenced
  VOEG_ACHTER_L_LIJST(&stale, 4);
  EXPECT_EQ(Values(stale), (std::vector<long>{4}));
  LEEG_L_LIJST(&stale);
  L_LIST stale2{0, reinterpret_cast<L_LIST*>(0x1)};
  VOEG_VOOR_L_LIJST(&stale2, 6);
  VOEG_VOOR_L_LIJST(&stale2, 5);
  EXPECT_EQ(Values(stale2), (std::vector<long>{5, 6}));
  LEEG_L_LIJST(&stale2);
}

TEST(NumberLists, CopiesIntoNewAndGivenHeads) {
  L_LIST* copy = reinterpret_cast<L_LIST*>(0x1);
  COPY_L_LIJST(&copy, nullptr);
  EXPECT_EQ(copy, nullptr);
  L_LIST source{0, nullptr};
  COPY_L_LIJST(&copy, &source);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->Value, 0);
  EXPECT_EQ(copy->Next, nullptr);
  free(copy);
  VOEG_ACHTER_L_LIJST(&source, 1);
  VOEG_ACHTER_L_LIJST(&source, 2);
  COPY_L_LIJST(&copy, &source);
  EXPECT_EQ(Values(*copy), (std::vector<long>{1, 2}));
  EXPECT_NE(copy->Next, source.Next);
  LEEG_L_LIJST(copy);
  free(copy);
  L_LIST given{0, nullptr};
  COPIEER_L_LIJST(&given, source);
  EXPECT_EQ(given.Value, 2);
  EXPECT_EQ(Values(given), (std::vector<long>{1, 2}));
  L_LIST held = given;  // what `given` held is not released by the next copy
  COPIEER_L_LIJST(&given, L_LIST{0, nullptr});
  EXPECT_EQ(given.Value, 0);
  EXPECT_EQ(given.Next, nullptr);
  LEEG_L_LIJST(&held);
  LEEG_L_LIJST(&source);
  US_LIST us{0, nullptr};
  VOEG_ACHTER_US_LIJST(&us, 3);
  US_LIST* usCopy = nullptr;
  COPY_US_LIJST(&usCopy, &us);
  EXPECT_EQ(Values(*usCopy), (std::vector<long>{3}));
  LEEG_US_LIJST(usCopy);
  free(usCopy);
  US_LIST usGiven{0, nullptr};
  COPIEER_US_LIJST(&usGiven, us);
  EXPECT_EQ(usGiven.Value, 1);
  LEEG_US_LIJST(&usGiven);
  LEEG_US_LIJST(&us);
}

TEST(NumberLists, UnionOfRuns) {
  EXPECT_EQ(UnionOf({0, 10}, {5, 15}), (std::vector<long>{0, 15}));
  EXPECT_EQ(UnionOf({0, 10}, {20, 30}), (std::vector<long>{0, 10, 20, 30}));
  EXPECT_EQ(UnionOf({0, 10}, {10, 20}), (std::vector<long>{0, 10, 10, 20}));
  EXPECT_EQ(UnionOf({0, 30}, {10, 20}), (std::vector<long>{0, 30}));
  L_LIST second{0, nullptr}, result{0, nullptr};
  VOEG_ACHTER_L_LIJST(&second, 1);
  VOEG_ACHTER_L_LIJST(&second, 2);
  LIJST_IS_LIJST1_PLUS_LIJST2(&result, nullptr, &second);
  EXPECT_EQ(Values(result), (std::vector<long>{1, 2}));
  LEEG_L_LIJST(&result);
  LEEG_L_LIJST(&second);
  US_LIST ua{0, nullptr}, ub{0, nullptr}, ur{0, nullptr};
  VOEG_ACHTER_US_LIJST(&ua, 0);
  VOEG_ACHTER_US_LIJST(&ua, 10);
  VOEG_ACHTER_US_LIJST(&ub, 5);
  VOEG_ACHTER_US_LIJST(&ub, 15);
  LIJST_IS_LIJST1_PLUS_LIJST2(&ur, &ua, &ub);
  EXPECT_EQ(Values(ur), (std::vector<long>{0, 15}));
  LEEG_US_LIJST(&ua);
  LEEG_US_LIJST(&ub);
  LEEG_US_LIJST(&ur);
}
