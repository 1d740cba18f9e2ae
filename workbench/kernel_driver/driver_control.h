/* The back door of the kernel driver, for tests: what its ports were asked, and answers to give in place of
   theirs. It is a device of its own, so that the ports accept nothing that a port does not. */
#ifndef KD_DRIVER_CONTROL_H
#define KD_DRIVER_CONTROL_H

#include <stdint.h>

#define KD_CONTROL_PATH L"\\\\.\\KdWorkbenchControl"

/* Control codes of the back door: device type 0x8002, METHOD_BUFFERED, any access. */
#define KD_CONTROL_RESET 0x80022000u   /* no scripted answers, no records, ports as they began */
#define KD_CONTROL_SCRIPT 0x80022004u  /* input: struct kd_scripted_answer */
#define KD_CONTROL_RECORDS 0x80022008u /* output: struct kd_records, since the reset */

enum { KD_KEPT_INPUT = 256, KD_MOST_RECORDS = 24, KD_MOST_ANSWER = 512 };

/* From now on every request of this code is answered so; a second one for the same code replaces it. */
struct kd_scripted_answer {
  uint32_t code;
  int32_t status;  /* NTSTATUS; a failure gives no bytes */
  uint32_t length; /* of the bytes; as many as fit into the client's buffer are given */
  uint8_t bytes[KD_MOST_ANSWER];
};

/* One request to a port as it came and was answered. */
struct kd_record {
  uint32_t code; /* 0: opening */
  uint32_t input_length;
  uint32_t output_length;
  int32_t status; /* NTSTATUS */
  uint32_t returned;
  uint8_t input[KD_KEPT_INPUT]; /* the first bytes */
};

struct kd_records {
  uint32_t count; /* how many came; the first KD_MOST_RECORDS are kept */
  struct kd_record records[KD_MOST_RECORDS];
};

#endif
