// The plain records that cross the boundary between a host and the module, in both directions.
//
// Every text is UTF-8 and is counted, not terminated. Each record ends in its own free function:
// whoever receives a record as a result frees it through that field and nowhere else, because the
// two sides need not share an allocator. A record that is passed as an argument stays its
// caller's and is lent for the length of the call: copy what you keep.
#ifndef ORBCEFRECORDS_H
#define ORBCEFRECORDS_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define ORBCEF_STATIC_ASSERT(condition, text) static_assert(condition, text)
extern "C" {
#else
#define ORBCEF_STATIC_ASSERT(condition, text) _Static_assert(condition, text)
#endif

// A text. It may hold zero bytes.
typedef struct orbcefstring_c orbcefstring_c;
struct orbcefstring_c {
  // UTF-8 bytes without a terminator; null if `length` is 0. Owned by the record.
  char* data;
  // Number of bytes at `data`.
  uint64_t length;
  // Frees `data` and the record. A null record does nothing. Call it exactly once.
  // [any]
  void (*free)(orbcefstring_c* record);
};

// Pairs of texts as two parallel arrays, such as HTTP headers. Equal keys may come repeatedly.
typedef struct orbcefstringmap_c orbcefstringmap_c;
struct orbcefstringmap_c {
  // One record for each pair; null if there is none. Owned by the record.
  orbcefstring_c** keys;
  // As long as `keys` and in its order; an element may be null. Owned by the record.
  orbcefstring_c** values;
  // Number of pairs.
  uint64_t _nb_values;
  // Frees all elements through their own free functions, both arrays and the record. A null
  // record does nothing. Call it exactly once.
  // [any]
  void (*free)(orbcefstringmap_c* record);
};

// What an HTTP request brought back.
typedef struct orbcefresponse_c orbcefresponse_c;
struct orbcefresponse_c {
  // HTTP status, for instance 200.
  int32_t status;
  // MIME type of the response, for instance "application/json"; may be null. Owned by the record.
  orbcefstring_c* text;
  // Headers of the response; may be null. Owned by the record.
  orbcefstringmap_c* headers;
  // Frees `text` and `headers` through their own free functions, then the record. A null record
  // does nothing. Call it exactly once.
  // [any]
  void (*free)(orbcefresponse_c* record);
};

// Outcome of one replayed interaction.
typedef struct orbcefreplayresult_c orbcefreplayresult_c;
struct orbcefreplayresult_c {
  // 0 for success, 200 for a failure in the browser process, any other value is the page's code.
  int32_t status;
  // "OK" or the failure in words. Owned by the record.
  orbcefstring_c* message;
  // Frees `message` through its own free function, then the record. Call it exactly once.
  // [any]
  void (*free)(orbcefreplayresult_c* record);
};

// A rectangle in device pixels. Slots take it as `const int32_t rect[4]` in this order.
typedef struct orbcefrect_c orbcefrect_c;
struct orbcefrect_c {
  int32_t x;
  int32_t y;
  int32_t width;
  int32_t height;
};

// Whether the host records what a user does in a page, or replays it. There is no value 1.
typedef enum orbceftypes_recordmode {
  ORBCEF_RECORDMODE_NONE = 0,
  ORBCEF_RECORDMODE_CAPTURE = 2,
  ORBCEF_RECORDMODE_REPLAY = 3
} orbceftypes_recordmode;

ORBCEF_STATIC_ASSERT(sizeof(void*) == 8, "The tables are defined for 64-bit processes only.");
ORBCEF_STATIC_ASSERT(sizeof(orbcefstring_c) == 24, "orbcefstring_c");
ORBCEF_STATIC_ASSERT(offsetof(orbcefstring_c, free) == 16, "orbcefstring_c.free");
ORBCEF_STATIC_ASSERT(sizeof(orbcefstringmap_c) == 32, "orbcefstringmap_c");
ORBCEF_STATIC_ASSERT(offsetof(orbcefstringmap_c, free) == 24, "orbcefstringmap_c.free");
ORBCEF_STATIC_ASSERT(sizeof(orbcefresponse_c) == 32, "orbcefresponse_c");
ORBCEF_STATIC_ASSERT(offsetof(orbcefresponse_c, text) == 8, "orbcefresponse_c.text");
ORBCEF_STATIC_ASSERT(offsetof(orbcefresponse_c, free) == 24, "orbcefresponse_c.free");
ORBCEF_STATIC_ASSERT(sizeof(orbcefreplayresult_c) == 24, "orbcefreplayresult_c");
ORBCEF_STATIC_ASSERT(offsetof(orbcefreplayresult_c, message) == 8, "orbcefreplayresult_c.message");
ORBCEF_STATIC_ASSERT(offsetof(orbcefreplayresult_c, free) == 16, "orbcefreplayresult_c.free");
ORBCEF_STATIC_ASSERT(sizeof(orbcefrect_c) == 16, "orbcefrect_c");
ORBCEF_STATIC_ASSERT(sizeof(orbceftypes_recordmode) == 4, "orbceftypes_recordmode");

#ifdef __cplusplus
}
#endif

#endif  // ORBCEFRECORDS_H
