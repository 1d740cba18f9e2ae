#include "module/runtime/delay_load.inc"

delay_load msports.dll, FailWithErrorCode, ComDBOpen, ComDBClose
