/* push_settings: gives a port new line settings.
 *
 *   push_settings INSTANCE-ID BAUD [DATA-BITS [PARITY [STOP-BITS [FLOW-CONTROL]]]]
 *
 * Shows how a program finds KdUUI10.DLL at run time, through the function types of kdui10.h, so that it also
 * starts where the product is not installed. Written in C11. Exit status: 0 done, 1 failed, 2 wrong usage.
 */
#include <kdui10.h>
#include <stdio.h>
#include <stdlib.h>
#include <wchar.h>

struct Word {
  const wchar_t* text;
  UINT32 code;
};

/* A "-" keeps the setting as it is. */
static const struct Word kDataBits[] = {
    {L"5", KD_DATA_BITS_5}, {L"6", KD_DATA_BITS_6},  {L"7", KD_DATA_BITS_7},
    {L"8", KD_DATA_BITS_8}, {L"-", KD_KEEP_SETTING}, {NULL, 0},
};
static const struct Word kParity[] = {
    {L"none", KD_PARITY_NONE},
    {L"odd", KD_PARITY_ODD},
    {L"even", KD_PARITY_EVEN},
    {L"mark", KD_PARITY_MARK},
    {L"space", KD_PARITY_SPACE},
    {L"-", KD_KEEP_SETTING},
    {NULL, 0},
};
static const struct Word kStopBits[] = {
    {L"1", KD_STOP_BITS_1},
    {L"1.5", KD_STOP_BITS_1_5},
    {L"2", KD_STOP_BITS_2},
    {L"-", KD_KEEP_SETTING},
    {NULL, 0},
};
static const struct Word kFlowControl[] = {
    {L"none", KD_FLOW_CONTROL_NONE},
    {L"cts/rts", KD_FLOW_CONTROL_CTS_RTS},
    {L"dtr/dsr", KD_FLOW_CONTROL_DTR_DSR},
    {L"xon/xoff", KD_FLOW_CONTROL_XON_XOFF},
    {L"-", KD_KEEP_SETTING},
    {NULL, 0},
};

struct Settings {
  UINT32 baudRate, dataBits, parity, stopBits, flowControl;
};

static int Usage(void) {
  fputws(
      L"usage: push_settings INSTANCE-ID BAUD [DATA-BITS [PARITY [STOP-BITS [FLOW-CONTROL]]]]\n"
      L"  INSTANCE-ID   the port, as in Device Manager under \"Device instance path\"\n"
      L"  BAUD          bits per second\n"
      L"  DATA-BITS     5 6 7 8\n"
      L"  PARITY        none odd even mark space\n"
      L"  STOP-BITS     1 1.5 2\n"
      L"  FLOW-CONTROL  none cts/rts dtr/dsr xon/xoff\n"
      L"What is left out, or \"-\", stays as it is.\n",
      stderr);
  return 2;
}

/* Reads argument `index`, if there is one, with a list of words. */
static BOOL ReadWord(int argc, wchar_t** argv, int index, const struct Word* words, UINT32* code) {
  *code = KD_KEEP_SETTING;
  if (index >= argc) return TRUE;
  for (; words->text != NULL; ++words) {
    if (wcscmp(words->text, argv[index]) == 0) {
      *code = words->code;
      return TRUE;
    }
  }
  fwprintf(stderr, L"push_settings: \"%ls\" is not understood\n", argv[index]);
  return FALSE;
}

static BOOL ReadBaudRate(const wchar_t* text, UINT32* baudRate) {
  wchar_t* end = NULL;
  const unsigned long long value = wcstoull(text, &end, 10);
  *baudRate = (UINT32)value;
  if (*text >= L'0' && *text <= L'9' && *end == 0 && value > 0 && value <= 0xFFFFFFFFu) return TRUE;
  fwprintf(stderr, L"push_settings: \"%ls\" is not a baud rate\n", text);
  return FALSE;
}

static BOOL ReadSettings(int argc, wchar_t** argv, struct Settings* settings) {
  return ReadBaudRate(argv[2], &settings->baudRate) &&
         ReadWord(argc, argv, 3, kDataBits, &settings->dataBits) &&
         ReadWord(argc, argv, 4, kParity, &settings->parity) &&
         ReadWord(argc, argv, 5, kStopBits, &settings->stopBits) &&
         ReadWord(argc, argv, 6, kFlowControl, &settings->flowControl);
}

/* By its full path in the system directory, so that no file of the same name elsewhere is run with an
 * administrator's rights.
 */
static HMODULE LoadProduct(void) {
  wchar_t directory[MAX_PATH];
  wchar_t path[MAX_PATH + 16];
  const UINT length = GetSystemDirectoryW(directory, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return NULL;
  swprintf(path, sizeof(path) / sizeof(path[0]), L"%ls\\%ls", directory, KDUI10_MODULE_NAME);
  return LoadLibraryW(path);
}

/* The function is good for as long as the DLL is loaded. */
static KdNPortSettingsUpdateFn FindSettingsUpdate(HMODULE* module) {
  *module = LoadProduct();
  if (*module == NULL) {
    fwprintf(stderr, L"push_settings: the product is not installed (error %lu)\n", GetLastError());
    return NULL;
  }
  /* By way of a pointer to any function: the type that GetProcAddress returns fits none. */
  const KdNPortSettingsUpdateFn update =
      (KdNPortSettingsUpdateFn)(void (*)(void))GetProcAddress(*module, "KdNPortSettingsUpdate");
  if (update == NULL) fputws(L"push_settings: the installed KdUUI10.DLL is too old\n", stderr);
  return update;
}

static BOOL PushSettings(const wchar_t* port, const struct Settings* settings) {
  HMODULE module = NULL;
  const KdNPortSettingsUpdateFn update = FindSettingsUpdate(&module);
  BOOL done = FALSE;
  if (update != NULL) {
    done = update(port, NULL, settings->baudRate, settings->dataBits, settings->parity, settings->stopBits,
                  settings->flowControl) == 1;
    if (!done) {
      fwprintf(stderr,
               L"push_settings: %ls did not take the settings: no such port, driver not running, or\n"
               L"not started as administrator\n",
               port);
    }
  }
  if (module != NULL) FreeLibrary(module);
  return done;
}

int wmain(int argc, wchar_t** argv) {
  struct Settings settings;
  if (argc < 3 || argc > 7 || !ReadSettings(argc, argv, &settings)) return Usage();
  if (!PushSettings(argv[1], &settings)) return 1;
  wprintf(L"%ls has its new settings\n", argv[1]);
  return 0;
}
