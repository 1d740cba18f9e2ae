#include "parameter_sets.h"

#include "parameter_layout.h"

static const struct {
  const struct kd_parameter* parameters;
  size_t count;
} sets[KD_SET_COUNT] = {
    {kd_port_layout, sizeof kd_port_layout / sizeof *kd_port_layout},
    {kd_bus_layout, sizeof kd_bus_layout / sizeof *kd_bus_layout},
};

uint32_t kd_number_at(const uint8_t* bytes) {
  return bytes[0] | (uint32_t)bytes[1] << 8 | (uint32_t)bytes[2] << 16 | (uint32_t)bytes[3] << 24;
}

void kd_put_number(uint8_t* bytes, uint32_t number) {
  for (int i = 0; i < 4; ++i) bytes[i] = (uint8_t)(number >> (8 * i));
}

static void append_text(struct kd_set* set, const char* text) {
  const uint32_t start = set->length;
  set->length += 4;
  for (; *text != 0; ++text) set->bytes[set->length++] = (uint8_t)*text;
  kd_put_number(set->bytes + start, set->length - start - 4);
  set->bytes[set->length++] = 0;
}

void kd_initial_set(uint32_t selector, struct kd_set* set) {
  set->length = 0;
  for (size_t i = 0; i < sets[selector].count; ++i) {
    const struct kd_parameter* parameter = &sets[selector].parameters[i];
    if (parameter->text != 0) {
      append_text(set, parameter->text);
    } else {
      kd_put_number(set->bytes + set->length, parameter->number);
      set->length += 4;
    }
  }
}

/* The length of the text at the front of the bytes with everything that belongs to it; 0 when it is none. */
static size_t text_length(const uint8_t* bytes, size_t left) {
  if (left < 5) return 0;
  const uint32_t length = kd_number_at(bytes);
  if (length > left - 5 || bytes[4 + length] != 0) return 0;
  for (uint32_t i = 0; i < length; ++i) {
    if (bytes[4 + i] == 0 || bytes[4 + i] >= 0x80) return 0;
  }
  return (size_t)length + 5;
}

bool kd_is_whole_set(uint32_t selector, const uint8_t* bytes, size_t length) {
  size_t at = 0;
  if (selector >= KD_SET_COUNT || length > KD_SET_BYTES) return false;
  for (size_t i = 0; i < sets[selector].count; ++i) {
    const bool is_text = sets[selector].parameters[i].text != 0;
    const size_t taken = is_text ? text_length(bytes + at, length - at) : 4;
    if (taken == 0 || taken > length - at) return false;
    at += taken;
  }
  return at == length;
}
