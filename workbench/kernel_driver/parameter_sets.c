#include "parameter_sets.h"

/* A parameter of a set: a text where there is one, otherwise the number. */
struct parameter {
  uint32_t number;
  const char* text;
};

/* Like the tables that user mode has, in the order of the streams; kept apart from them on purpose. */
static const struct parameter port_set[] = {
    {0, 0},   {921600, 0}, {75, 0}, {0, 0},  {9600, 0},       {3, 0},      {0, 0},   {0, 0},   {0, 0},
    {0, 0},   {75, 0},     {10, 0}, {85, 0}, {0x1007FFFF, 0}, {0x1F00, 0}, {0xF, 0}, {0x7, 0}, {0xF, 0},
    {0x3, 0}, {0, 0},      {0, 0},  {0, 0},  {0, 0},          {0, 0},      {0, 0},   {0, 0},   {0, 0},
    {1, 0},   {1, 0},      {1, 0},  {1, 0},  {1, 0},          {1, 0},
};
static const struct parameter bus_set[] = {
    {512, 0}, {512, 0},  {921600, 0}, {60, 0},   {0, 0}, {0, 0},  {0, "TCP"}, {0, 0},        {0, 0},
    {2, 0},   {0, 0},    {0, 0},      {1, 0},    {0, 0}, {0, 0},  {9000, 0},  {80, 0},       {1, 0},
    {1, 0},   {1, 0},    {1, 0},      {1, 0},    {1, 0}, {0, 0},  {0, 0},     {0, 0},        {1, 0},
    {1, 0},   {4096, 0}, {500, 0},    {5000, 0}, {1, 0}, {16, 0}, {0, 0},     {0, "QX-582"},
};

static const struct {
  const struct parameter* parameters;
  size_t count;
} sets[KD_SET_COUNT] = {
    {port_set, sizeof port_set / sizeof *port_set},
    {bus_set, sizeof bus_set / sizeof *bus_set},
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
    const struct parameter* parameter = &sets[selector].parameters[i];
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
