#include "exchange.h"

enum { HEADER_LENGTH = 8 };
#define HEADER_MARK 0xFFFFFFFFu

static void copy(uint8_t* to, const uint8_t* from, size_t count) {
  for (size_t i = 0; i < count; ++i) to[i] = from[i];
}

void kd_initial_port(struct kd_port* port) {
  for (uint32_t selector = 0; selector < KD_SET_COUNT; ++selector) {
    kd_initial_set(selector, &port->current[selector]);
    kd_initial_set(selector, &port->defaults[selector]);
  }
  kd_begin_session(port);
}

void kd_begin_session(struct kd_port* port) {
  port->announced_code = 0;
}

static bool answer_size(struct kd_port* port, const struct kd_request* request, uint32_t selector,
                        uint32_t* returned) {
  if (request->output_length != 4) return false;
  const bool defaults = request->code == KD_GET_DEFAULT_SIZE;
  port->announced_code = defaults ? KD_GET_DEFAULT : KD_GET_CURRENT;
  port->announced_selector = selector;
  port->announced_size = (defaults ? port->defaults : port->current)[selector].length;
  kd_put_number(request->buffer, port->announced_size);
  *returned = 4;
  return true;
}

static bool answer_read(struct kd_port* port, const struct kd_request* request, uint32_t selector,
                        uint32_t* returned) {
  const bool announced = port->announced_code == request->code && port->announced_selector == selector &&
                         port->announced_size == request->output_length;
  port->announced_code = 0;
  if (!announced) return false;
  const struct kd_set* set = &(request->code == KD_GET_DEFAULT ? port->defaults : port->current)[selector];
  copy(request->buffer, set->bytes, set->length);
  *returned = set->length;
  return true;
}

static bool answer_write(struct kd_port* port, const struct kd_request* request, uint32_t selector) {
  const uint8_t* stream = request->buffer + HEADER_LENGTH;
  const size_t length = request->input_length - HEADER_LENGTH;
  if (request->output_length != 0 || !kd_is_whole_set(selector, stream, length)) return false;
  copy(port->current[selector].bytes, stream, length);
  port->current[selector].length = (uint32_t)length;
  return true;
}

bool kd_answer(struct kd_port* port, const struct kd_request* request, uint32_t* returned) {
  *returned = 0;
  if (request->input_length < HEADER_LENGTH) return false;
  if (request->code != KD_SET_CURRENT && request->input_length != HEADER_LENGTH) return false;
  const uint32_t selector = kd_number_at(request->buffer);
  if (selector >= KD_SET_COUNT || kd_number_at(request->buffer + 4) != HEADER_MARK) return false;
  switch (request->code) {
    case KD_GET_CURRENT_SIZE:
    case KD_GET_DEFAULT_SIZE:
      return answer_size(port, request, selector, returned);
    case KD_GET_CURRENT:
    case KD_GET_DEFAULT:
      return answer_read(port, request, selector, returned);
    case KD_SET_CURRENT:
      return answer_write(port, request, selector);
    default:
      return false;
  }
}
