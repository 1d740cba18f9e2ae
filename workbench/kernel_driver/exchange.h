/* The exchange that reads and writes a port's parameter sets: what is asked, what is answered, what is
   refused. Knows nothing of the I/O manager. */
#ifndef KD_EXCHANGE_H
#define KD_EXCHANGE_H

#include "parameter_sets.h"

/* Control codes: device type 0x8001, METHOD_BUFFERED, read and write access. */
#define KD_GET_CURRENT_SIZE 0x8001E000u
#define KD_GET_CURRENT 0x8001E004u
#define KD_SET_CURRENT 0x8001E008u
#define KD_GET_DEFAULT_SIZE 0x8001E010u
#define KD_GET_DEFAULT 0x8001E014u

/* The drivers of one port. One client at a time has it open. */
struct kd_port {
  struct kd_set current[KD_SET_COUNT];
  struct kd_set defaults[KD_SET_COUNT];
  /* What the client was told by its last request for a size: the request that may follow, code 0 for none. */
  uint32_t announced_code;
  uint32_t announced_selector;
  uint32_t announced_size;
};

/* One request, in the one buffer that the I/O manager has for input and output. */
struct kd_request {
  uint32_t code;
  uint8_t* buffer;
  size_t input_length;
  size_t output_length;
};

void kd_initial_port(struct kd_port* port);
/* A client has opened the port: it has been told nothing yet. */
void kd_begin_session(struct kd_port* port);

/* Answers a request. False: it is refused, and nothing has changed. Otherwise `returned` is the number of
   bytes in the buffer that are the answer. A size has to be asked for before each read, for the same set, and
   the buffer of the read is exactly that long. */
bool kd_answer(struct kd_port* port, const struct kd_request* request, uint32_t* returned);

#endif
