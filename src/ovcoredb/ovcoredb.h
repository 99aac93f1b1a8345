/*
 * The C interface of the core database, as the query executor uses it.
 *
 * Whoever embeds the executor binds a core by providing these symbols; libovcoredb.so is an in-memory one.
 *
 * Conventions
 *  1. Handles (context, index, iterator) are 64-bit numbers, never pointers. 0 names nothing.
 *  2. Every call returns a 32-bit status unless its comment says otherwise: 0 is success, ORV_NO_VALUE says that a
 *     column holds nothing, everything else is a failure and leaves the out parameters unwritten. The statuses that
 *     this core gives are listed below; a caller passes on any that it does not know. So a core may stop a statement:
 *     whatever else it returns from any call (but orv_iterator_free) leaves the executor as db_exception with that
 *     status. It is seen when the executor next calls the core: by a scan at its next row, or when it has skipped
 *     some, but not while rows are sorted, or handed out after they were.
 *  3. Result buffers belong to the core. They stay valid until the next call on the same context (an iterator counts as
 *     its context's); the caller copies or compares at once and never frees.
 *  4. Counted blocks (texts as UCS-2, encoded texts) start with a 32-bit little-endian count, followed directly by that
 *     many units (2 bytes each) or bytes. Blocks are aligned to 4 bytes. Where the status is 0, their pointer is not
 *     null, also for an empty text.
 *  5. Texts passed in as UCS-2 end with a zero unit. Encoded texts are passed as pointer and length.
 *  6. A context and its iterators belong to one thread at a time; different contexts may be used by different threads.
 *     Nothing is written to the database while anybody reads.
 *  7. A bad handle, object, column, key or null pointer is answered with a status, never with a crash. (A key carries
 *     no length: it is read up to its terminator or to the first byte that cannot be right.)
 */
#ifndef OVCOREDB_OVCOREDB_H_
#define OVCOREDB_OVCOREDB_H_

#include <stdint.h>

#if defined(__GNUC__) && !defined(__clang__)
#define ORV_API __attribute__((visibility("default"), noplt)) /* calls are many and small: spare them a jump */
#elif defined(__GNUC__)
#define ORV_API __attribute__((visibility("default")))
#else
#define ORV_API
#endif

/* A call that a core may leave out: its address is then null. */
#if defined(__GNUC__)
#define ORV_OPTIONAL __attribute__((weak))
#else
#define ORV_OPTIONAL
#endif

#ifdef __cplusplus
extern "C" {
typedef char16_t ORV_UCS2; /* one UTF-16 code unit */
#else
typedef uint_least16_t ORV_UCS2; /* one UTF-16 code unit */
#endif

/* ---- Statuses ---------------------------------------------------------------------------------------------------- */

enum {
  ORV_OK = 0,
  ORV_NO_VALUE = 4272,           /* the column holds no value */
  ORV_BAD_CONTEXT = 4101,        /* no such context */
  ORV_BAD_INDEX = 4102,          /* no such index */
  ORV_BAD_ITERATOR = 4103,       /* no such iterator, or it was freed */
  ORV_BAD_OBJECT = 4104,         /* no such object */
  ORV_BAD_COLUMN = 4105,         /* no such column, or the reference's tag names no table that the object belongs to */
  ORV_TYPE_MISMATCH = 4106,      /* the column has another type than the getter */
  ORV_BAD_KEY = 4107,            /* a key that is not well formed, or does not fit the index */
  ORV_BAD_ARGUMENT = 4108,       /* a null pointer, an unknown flag, a length that is too large */
  ORV_TOO_MANY_ITERATORS = 4109, /* the context cannot open another iterator */
  ORV_BAD_TEXT = 4110,           /* bytes that are not an encoded text */
  ORV_OUT_OF_MEMORY = 4111
};

/* ---- Data -------------------------------------------------------------------------------------------------------- */

/* A reference as the core hands it out. object_number 0: no object. low_part: the tag of the object's table. */
typedef struct ORV_REFERENCE_VALUE {
  uint64_t object_number;
  uint64_t high_part;
  uint16_t low_part;
} ORV_REFERENCE_VALUE;

/* A reference as callers keep it. second_word is (high_part << 16) | low_part. */
typedef struct OV_OBJ_REF {
  uint64_t object_number;
  uint64_t second_word;
} OV_OBJ_REF;

/* Bytes lent by the core. bytes may be null when length is 0. */
typedef struct ORV_BYTES {
  uint64_t length;
  const uint8_t* bytes;
} ORV_BYTES;

/* ---- Iterators --------------------------------------------------------------------------------------------------- */

/* Flags of orv_context_create_iterator. */
enum {
  ORV_ITERATOR_FIRST_INCLUSIVE = 0x10, /* the first key itself belongs to the range */
  ORV_ITERATOR_LAST_INCLUSIVE = 0x20,  /* the last key itself belongs to the range */
  ORV_ITERATOR_METADATA = 0x40,        /* a lookup by the metadata readers; changes nothing here */
  ORV_ITERATOR_DESCENDING = 0x80000    /* walk in descending index order; the first key is then the high end */
};

/*
 * Opens an ordered range over an index. first_key is where the walk starts, last_key where it ends; a range whose ends
 * cross is empty. Objects with equal keys come in order of their numbers (descending: in reverse). The keys are read
 * before the call returns. *iterator receives the handle; free it with orv_iterator_free.
 *
 * A key holds one component per key column, in key order, and ends with 0xC0. Numbers are big-endian.
 *
 *    0x60                            lowest: no value; below every value of a column
 *    0x28 <8 bytes>                  bool (0 or 1), uint64, object number; int64 as v + 2^63; decimal as its packed
 *                                    form + 2^63: sign * ((q << 7 | h) << 14 | l), where the absolute raw value is
 *                                    q * 1000000 + h * 10000 + l
 *    0x20|min(n,31) <bytes> {<count up to 31> <bytes>} 0x80
 *                                    text and set specifier: the n payload bytes of the encoded text, in chunks
 *    0x20|min(n,30)+1 0x00 <bytes> {<count up to 31> <bytes>} 0x80
 *                                    binary: the n bytes, the first chunk one shorter
 *    0x21 0x01 0x80                  highest binary: above every binary value
 *
 * Every column has its own direction (ascending or descending); the index order is by the columns' directions, and the
 * keys of a range name its ends in that order. A key may stop before the last column: it then stands for all keys that
 * begin with its components.
 */
ORV_API uint32_t orv_context_create_iterator(uint64_t context, uint64_t index, uint32_t flags, const uint8_t* first_key,
                                             const uint8_t* last_key, uint64_t* iterator);

/* The next object of the range; object_number 0 when the range is exhausted (and again on every later call). */
ORV_API uint32_t orv_iterator_next(uint64_t iterator, ORV_REFERENCE_VALUE* reference);

/*
 * Passes over at most count objects, as so many calls of orv_iterator_next would. *skipped receives how many there
 * were; fewer than count: the range is exhausted. A count of all ones passes over the rest of the range.
 *
 * Optional. The executor counts and skips rows by it, and otherwise by orv_iterator_next. It also does the latter where
 * the two calls are not of the same program or library: a host that puts its own orv_iterator_next in front of a core's
 * sees every step, unless it defines this call, too.
 */
ORV_API ORV_OPTIONAL uint32_t orv_iterator_skip(uint64_t iterator, uint64_t count, uint64_t* skipped);

/*
 * Releases the iterator. A handle that was freed before is refused with ORV_BAD_ITERATOR. The executor does not look at
 * the status of a scan's iterator; one over metadata that cannot be freed ends the process.
 */
ORV_API uint32_t orv_iterator_free(uint64_t iterator);

/* ---- Objects ----------------------------------------------------------------------------------------------------- */

/*
 * Typed getters: one column of one object. second_word is the reference's second word; its low 16 bits are the tag of
 * the table that declares the column: the object's own table or one that it derives from. ORV_NO_VALUE when the column
 * holds nothing.
 */
ORV_API uint32_t orv_context_get_ulong(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                                       uint64_t* out); /* uint64 and bool columns */
ORV_API uint32_t orv_context_get_long(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                                      int64_t* out);
ORV_API uint32_t orv_context_get_decimal(uint64_t context, uint64_t object_number, uint64_t second_word,
                                         uint32_t column, int64_t* out); /* in millionths */
ORV_API uint32_t orv_context_get_float(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                                       float* out);
ORV_API uint32_t orv_context_get_double(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                                        double* out);
ORV_API uint32_t orv_context_get_binary(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                                        ORV_BYTES* out); /* binary columns; text columns, encoded */
ORV_API uint32_t orv_context_get_reference(uint64_t context, uint64_t object_number, uint64_t second_word,
                                           uint32_t column, ORV_REFERENCE_VALUE* out);
ORV_API uint32_t orv_context_get_string(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                                        const uint8_t** out); /* text columns: a UCS-2 block */

/*
 * The set specifier of the object's type, as a UCS-2 block. A derived type's specifier begins with its base's. The tag
 * in second_word has to be that of the object's table or of one that it derives from, as for a column.
 */
ORV_API uint32_t orv_context_get_setspec(uint64_t context, uint64_t object_number, uint64_t second_word,
                                         const uint8_t** out);

/* A bool column; *out is 0 or not. Provided by the metadata layer. */
ORV_API uint32_t orv_meta_get_bool(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                                   uint64_t* out);

/* Completes a reference of which only the object number is known: fills the whole second word. */
ORV_API uint32_t orv_context_lookup(uint64_t context, uint64_t object_number, uint64_t* second_word);

/* ---- Text -------------------------------------------------------------------------------------------------------- */

/*
 * Encoded text ("turbotext") is a header and a payload. Each header byte gives 7 bits, most significant group first;
 * the byte with the top bit set is the last of the header. The number so read is the count of unused bits at the end of
 * the payload; they are zero. The order of the payload bits is the order of the texts, and equal texts have equal
 * bytes.
 */

/* Encoded text to UCS-2: *result receives a UCS-2 block. reserved is 0. */
ORV_API uint32_t orv_context_convert_turbotext_to_ucs2(uint64_t context, const uint8_t* text, uint32_t length,
                                                       const uint8_t** result, uint32_t reserved);
/* The same in base form: case is folded (full Unicode folding). */
ORV_API uint32_t orv_context_convert_turbotext_to_base_ucs2(uint64_t context, const uint8_t* text, uint32_t length,
                                                            const uint8_t** result, uint32_t reserved);

/*
 * Without a context. The absolute value of the result is the number of units of the text. When capacity is at least one
 * more, the units and a zero unit are written and the result is not negative; otherwise the result is negative (or 0
 * for the empty text), and what the array then holds is of no use. Bytes that are not an encoded text count as the
 * empty text. INT32_MIN: memory is exhausted, or the text has more units than the result can say. The executor calls
 * twice, to measure and to convert, and looks at both results for INT32_MIN, which it raises as ORV_OUT_OF_MEMORY;
 * units that the second call does not write are zero to it.
 */
ORV_API int32_t orv_convert_turbotext_to_ucs2(const uint8_t* text, uint32_t length, ORV_UCS2* units, uint32_t capacity);
ORV_API int32_t orv_convert_turbotext_to_base_ucs2(const uint8_t* text, uint32_t length, ORV_UCS2* units,
                                                   uint32_t capacity);

/*
 * UCS-2 to encoded text: *result receives a counted block of bytes. upper_limit 0: the text itself. upper_limit 1: a
 * text that sorts above every text that begins with the given one.
 */
ORV_API uint32_t orv_context_convert_ucs2_to_turbotext(uint64_t context, const ORV_UCS2* units, uint8_t upper_limit,
                                                       const uint8_t** result);
/* The same for the text of a set specifier. */
ORV_API uint32_t orv_context_convert_ucs2_to_setspectt(uint64_t context, const ORV_UCS2* units, uint8_t upper_limit,
                                                       const uint8_t** result);

/*
 * Without a context: the result is the number of bytes needed; they are written when capacity is at least that and
 * buffer is not null. 0, which no text needs: units is null, upper_limit is neither 0 nor 1, or the text needs more
 * bytes than the result can say.
 */
ORV_API uint32_t orv_convert_ucs2_to_turbotext(const ORV_UCS2* units, uint8_t upper_limit, uint8_t* buffer,
                                               uint32_t capacity);

#ifdef __cplusplus
}
#endif

#endif /* OVCOREDB_OVCOREDB_H_ */
