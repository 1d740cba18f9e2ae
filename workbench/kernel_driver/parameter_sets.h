/* The two parameter sets of a port as the kernel driver keeps them: their streams, as user mode reads and
   writes them. Numbers are 4 bytes, little-endian; a text is its length in 4 bytes, its characters (7 bits,
   none zero) and a zero byte. */
#ifndef KD_PARAMETER_SETS_H
#define KD_PARAMETER_SETS_H

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

enum {
  KD_PORT_SET = 0, /* virtual COM port: 33 numbers */
  KD_BUS_SET = 1,  /* network bus: 33 numbers and two texts */
  KD_SET_COUNT = 2,
  KD_SET_BYTES = 512 /* the longest stream that is kept */
};

struct kd_set {
  uint32_t length;
  uint8_t bytes[KD_SET_BYTES];
};

uint32_t kd_number_at(const uint8_t* bytes);
void kd_put_number(uint8_t* bytes, uint32_t number);

/* The set as it is before anybody has written it. */
void kd_initial_set(uint32_t selector, struct kd_set* set);

/* Whether the bytes are one set from its first parameter to its last, with nothing behind it. */
bool kd_is_whole_set(uint32_t selector, const uint8_t* bytes, size_t length);

#endif
