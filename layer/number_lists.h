// Singly linked lists of numbers, sorted by Value, used by the scan tables and
// as plain number lists. A head is a record of the same form whose Value holds
// the count and whose Next points at the first element. Elements are malloc'ed
// and owned by the head; a head may live anywhere.
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"

struct KELVOR2D_API L_LIST {
  int32_t Value;  // in a head: the count; in an element: the number
  L_LIST* Next;   // null at the end
};

struct KELVOR2D_API L_LIST_2 {
  int32_t Value;   // in a head: the count; in an element: the number (sort key)
  int32_t Second;  // carried along with Value; unused in a head
  L_LIST_2* Next;  // null at the end
};

struct KELVOR2D_API US_LIST {
  uint16_t Value;  // in a head: the count (at most 65535); in an element: the number
  US_LIST* Next;   // null at the end
};

struct KELVOR2D_API US_LIST_2 {
  uint16_t Value;   // in a head: the count; in an element: the number (sort key)
  uint16_t Second;  // carried along with Value; unused in a head
  US_LIST_2* Next;  // null at the end
};

// Sorted insert: an equal value goes in front of the elements that hold it.
// The empty test is on the link: a head with a null Next gets count 1.
KELVOR2D_API void VOEG_IN_GESORTEERDE_L_LIJST(L_LIST* head, int32_t value);
KELVOR2D_API void VOEG_IN_GESORTEERDE_L_LIJST_2(L_LIST_2* head, int32_t value, int32_t second);
KELVOR2D_API void VOEG_IN_GESORTEERDE_US_LIJST(US_LIST* head, uint16_t value);
KELVOR2D_API void VOEG_IN_GESORTEERDE_US_LIJST_2(US_LIST_2* head, uint16_t value, uint16_t second);

// The sorted insert of VOEG_IN_GESORTEERDE_L_LIJST, walking from `from` (an
// element of the list whose Value is less than `value`; null: the head);
// returns the new element (null, the list unchanged, when memory runs out). The same list results, without
// the walk from the head, for callers that insert rising values in turn.
L_LIST* InsertSortedFrom(L_LIST* head, L_LIST* from, int32_t value);

// Sorted insert that leaves the list alone when the value is already there.
KELVOR2D_API void VOEG_EEN_MAAL_IN_GESORTEERDE_L_LIJST(L_LIST* head, int32_t value);
KELVOR2D_API void VOEG_EEN_MAAL_IN_GESORTEERDE_US_LIJST(US_LIST* head, uint16_t value);

// Append at the end. The empty test is on the count: a head with count 0 and a
// stale link is taken as empty.
KELVOR2D_API void VOEG_ACHTER_L_LIJST(L_LIST* head, int32_t value);
KELVOR2D_API void VOEG_ACHTER_L_LIJST_2(L_LIST_2* head, int32_t value, int32_t second);
KELVOR2D_API void VOEG_ACHTER_US_LIJST(US_LIST* head, uint16_t value);
KELVOR2D_API void VOEG_ACHTER_US_LIJST_2(US_LIST_2* head, uint16_t value, uint16_t second);

// Prepend.
KELVOR2D_API void VOEG_VOOR_L_LIJST(L_LIST* head, int32_t value);
KELVOR2D_API void VOEG_VOOR_L_LIJST_2(L_LIST_2* head, int32_t value, int32_t second);

// Frees every element; the head stays, empty.
KELVOR2D_API void LEEG_L_LIJST(L_LIST* head);
KELVOR2D_API void LEEG_L_LIJST_2(L_LIST_2* head);
KELVOR2D_API void LEEG_US_LIJST(US_LIST* head);
KELVOR2D_API void LEEG_US_LIJST_2(US_LIST_2* head);

// Copy into a new calloc'ed head, the caller's to free; null for a null
// source. A former *result is not released.
KELVOR2D_API void COPY_L_LIJST(L_LIST** result, L_LIST* source);
KELVOR2D_API void COPY_US_LIJST(US_LIST** result, US_LIST* source);

// Copy into a given head; elements it held before are not released.
KELVOR2D_API void COPIEER_L_LIJST(L_LIST* destination, L_LIST source);
KELVOR2D_API void COPIEER_US_LIJST(US_LIST* destination, US_LIST source);

// Appends to `result` the boundaries of the union of the runs of `first` and
// `second` (boundaries read in pairs: open, close). A null list is empty; on
// equal values `first` goes first, so touching runs stay two.
KELVOR2D_API void LIJST_IS_LIJST1_PLUS_LIJST2(L_LIST* result, L_LIST* first, L_LIST* second);
KELVOR2D_API void LIJST_IS_LIJST1_PLUS_LIJST2(US_LIST* result, US_LIST* first, US_LIST* second);
