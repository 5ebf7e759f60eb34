#include "layer/number_lists.h"

#include <cstdlib>

namespace {

// The four list forms differ only in the value width and in carrying Second;
// these helpers set the payload of a fresh element for either.
template <class List>
void SetPayload(List* e, decltype(List::Value) value, decltype(List::Value)) {
  e->Value = value;
}
void SetPayload(L_LIST_2* e, int32_t value, int32_t second) {
  e->Value = value;
  e->Second = second;
}
void SetPayload(US_LIST_2* e, uint16_t value, uint16_t second) {
  e->Value = value;
  e->Second = second;
}

template <class List>
List* NewElement(decltype(List::Value) value, decltype(List::Value) second) {
  List* e = static_cast<List*>(malloc(sizeof(List)));
  if (e == nullptr)
    return nullptr;
  SetPayload(e, value, second);
  e->Next = nullptr;
  return e;
}

// Sorted insert, walking from `before` (the head, or an element whose Value is
// less than `value`): the new element goes in front of the first element that
// is not less. With `once`, an element equal to it leaves the list alone and
// null is returned; otherwise the new element, or null with the list unchanged
// when memory runs out.
template <class List>
List* LinkSorted(List* head, List* before, decltype(List::Value) value, decltype(List::Value) second,
                 bool once) {
  const bool wasEmpty = head->Next == nullptr;  // the test is on the link, not on the count
  List* at = before->Next;
  while (at != nullptr && value > at->Value) {
    before = at;
    at = at->Next;
  }
  if (once && at != nullptr && at->Value == value)
    return nullptr;
  List* e = NewElement<List>(value, second);
  if (e == nullptr)
    return nullptr;
  e->Next = at;
  before->Next = e;
  head->Value = wasEmpty ? 1 : static_cast<decltype(List::Value)>(head->Value + 1);
  return e;
}

template <class List>
void InsertSorted(List* head, decltype(List::Value) value, decltype(List::Value) second, bool once) {
  LinkSorted(head, head, value, second, once);
}

template <class List>
void Append(List* head, decltype(List::Value) value, decltype(List::Value) second) {
  if (head->Value == 0)
    head->Next = nullptr;
  head->Value = static_cast<decltype(List::Value)>(head->Value + 1);
  List* last = head;
  while (last->Next != nullptr)
    last = last->Next;
  last->Next = NewElement<List>(value, second);
}

template <class List>
void Prepend(List* head, decltype(List::Value) value, decltype(List::Value) second) {
  if (head->Value == 0)
    head->Next = nullptr;
  head->Value = static_cast<decltype(List::Value)>(head->Value + 1);
  List* e = NewElement<List>(value, second);
  e->Next = head->Next;
  head->Next = e;
}

template <class List>
void Empty(List* head) {
  List* e = head->Next;
  while (e != nullptr) {
    List* next = e->Next;
    free(e);
    e = next;
  }
  head->Next = nullptr;
  head->Value = 0;
}

template <class List>
void CopyToNewHead(List** result, List* source) {
  if (source == nullptr) {
    *result = nullptr;
    return;
  }
  List* head = static_cast<List*>(calloc(1, sizeof(List)));
  head->Value = source->Value;
  List* last = head;
  for (List* from = source->Next; from != nullptr; from = from->Next) {
    List* e = static_cast<List*>(calloc(1, sizeof(List)));
    e->Value = from->Value;
    last->Next = e;
    last = e;
  }
  *result = head;
}

template <class List>
void CopyToGivenHead(List* destination, const List& source) {
  if (source.Next == nullptr || source.Value == 0) {
    destination->Value = 0;
    destination->Next = nullptr;
    return;
  }
  destination->Value = source.Value;
  List* last = destination;
  for (List* from = source.Next; from != nullptr; from = from->Next) {
    last->Next = NewElement<List>(from->Value, 0);
    last = last->Next;
  }
}

template <class List>
void UnionOfRuns(List* result, List* first, List* second) {
  bool inFirst = false;
  bool inSecond = false;
  bool inEither = false;
  List* a = first != nullptr ? first->Next : nullptr;
  List* b = second != nullptr ? second->Next : nullptr;
  while (a != nullptr && b != nullptr) {
    decltype(List::Value) taken;
    if (!(b->Value < a->Value)) {
      taken = a->Value;
      a = a->Next;
      inFirst = !inFirst;
    } else {
      taken = b->Value;
      b = b->Next;
      inSecond = !inSecond;
    }
    const bool nowInEither = inFirst || inSecond;
    if (nowInEither != inEither)
      Append(result, taken, taken);
    inEither = nowInEither;
  }
  for (; a != nullptr; a = a->Next)
    Append(result, a->Value, a->Value);
  for (; b != nullptr; b = b->Next)
    Append(result, b->Value, b->Value);
}

}  // namespace

void VOEG_IN_GESORTEERDE_L_LIJST(L_LIST* head, int32_t value) {
  InsertSorted(head, value, 0, false);
}
void VOEG_IN_GESORTEERDE_L_LIJST_2(L_LIST_2* head, int32_t value, int32_t second) {
  InsertSorted(head, value, second, false);
}
void VOEG_IN_GESORTEERDE_US_LIJST(US_LIST* head, uint16_t value) {
  InsertSorted(head, value, 0, false);
}
void VOEG_IN_GESORTEERDE_US_LIJST_2(US_LIST_2* head, uint16_t value, uint16_t second) {
  InsertSorted(head, value, second, false);
}

L_LIST* InsertSortedFrom(L_LIST* head, L_LIST* from, int32_t value) {
  return LinkSorted(head, from != nullptr ? from : head, value, 0, false);
}

void VOEG_EEN_MAAL_IN_GESORTEERDE_L_LIJST(L_LIST* head, int32_t value) {
  InsertSorted(head, value, 0, true);
}
void VOEG_EEN_MAAL_IN_GESORTEERDE_US_LIJST(US_LIST* head, uint16_t value) {
  InsertSorted(head, value, 0, true);
}

void VOEG_ACHTER_L_LIJST(L_LIST* head, int32_t value) {
  Append(head, value, 0);
}
void VOEG_ACHTER_L_LIJST_2(L_LIST_2* head, int32_t value, int32_t second) {
  Append(head, value, second);
}
void VOEG_ACHTER_US_LIJST(US_LIST* head, uint16_t value) {
  Append(head, value, 0);
}
void VOEG_ACHTER_US_LIJST_2(US_LIST_2* head, uint16_t value, uint16_t second) {
  Append(head, value, second);
}

void VOEG_VOOR_L_LIJST(L_LIST* head, int32_t value) {
  Prepend(head, value, 0);
}
void VOEG_VOOR_L_LIJST_2(L_LIST_2* head, int32_t value, int32_t second) {
  Prepend(head, value, second);
}

void LEEG_L_LIJST(L_LIST* head) {
  Empty(head);
}
void LEEG_L_LIJST_2(L_LIST_2* head) {
  Empty(head);
}
void LEEG_US_LIJST(US_LIST* head) {
  Empty(head);
}
void LEEG_US_LIJST_2(US_LIST_2* head) {
  Empty(head);
}

void COPY_L_LIJST(L_LIST** result, L_LIST* source) {
  CopyToNewHead(result, source);
}
void COPY_US_LIJST(US_LIST** result, US_LIST* source) {
  CopyToNewHead(result, source);
}

void COPIEER_L_LIJST(L_LIST* destination, L_LIST source) {
  CopyToGivenHead(destination, source);
}
void COPIEER_US_LIJST(US_LIST* destination, US_LIST source) {
  CopyToGivenHead(destination, source);
}

void LIJST_IS_LIJST1_PLUS_LIJST2(L_LIST* result, L_LIST* first, L_LIST* second) {
  UnionOfRuns(result, first, second);
}
void LIJST_IS_LIJST1_PLUS_LIJST2(US_LIST* result, US_LIST* first, US_LIST* second) {
  UnionOfRuns(result, first, second);
}
