#include "footprint.h"

#include <windows.h>

#include <malloc.h>
#include <winternl.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace {

// Wine 8 answers GetGuiResources and GetProcessHandleCount with 0, always. What they would count is taken
// from where Wine has it; on Windows the functions are asked.

constexpr int kHandleInformation = 64;                     // SystemExtendedHandleInformation
constexpr LONG kTooShort = static_cast<LONG>(0xC0000004);  // STATUS_INFO_LENGTH_MISMATCH

struct HandleEntry {
  void* object;
  ULONG_PTR processId;
  ULONG_PTR rest[3];
};
static_assert(sizeof(HandleEntry) == 40);

std::size_t CountKernelHandles() {
  DWORD told = 0;
  if (GetProcessHandleCount(GetCurrentProcess(), &told) && told != 0) return told;
  // Looked up, because its declaration does not know this number.
  const FARPROC query = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation");
  auto* const ask =
      reinterpret_cast<LONG(WINAPI*)(int, void*, ULONG, ULONG*)>(reinterpret_cast<void*>(query));
  // Of all programs, and so of any length.
  std::vector<ULONG_PTR> buffer(1u << 17);
  const auto bytes = [&] { return static_cast<ULONG>(buffer.size() * sizeof(ULONG_PTR)); };
  while (ask(kHandleInformation, buffer.data(), bytes(), nullptr) == kTooShort)
    buffer.resize(2 * buffer.size());
  // Their number, a word that is not used, and the entries.
  const auto* const first = reinterpret_cast<const HandleEntry*>(buffer.data() + 2);
  return static_cast<std::size_t>(std::count_if(first, first + buffer[0], [](const HandleEntry& entry) {
    return entry.processId == GetCurrentProcessId();
  }));
}

// An entry of the table that the process environment block points at.
struct GdiEntry {
  std::uint64_t object;
  ULONG owner;
  USHORT unique;
  UCHAR type;  // 0: free
  UCHAR flags;
  std::uint64_t user;
};
constexpr std::size_t kGdiTable = 0xF8;  // offset in the block
constexpr std::size_t kGdiEntries = 65536;

std::size_t CountGdiObjects() {
  if (const DWORD told = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS)) return told;
  const auto* const block = reinterpret_cast<const char*>(NtCurrentTeb()->ProcessEnvironmentBlock);
  const GdiEntry* const first = *reinterpret_cast<const GdiEntry* const*>(block + kGdiTable);
  if (first == nullptr) return 0;
  return static_cast<std::size_t>(
      std::count_if(first, first + kGdiEntries, [](const GdiEntry& entry) { return entry.type != 0; }));
}

// Windows have one numbering for all programs, menus have not.
bool IsOwnWindow(HWND window) {
  DWORD process = 0;
  return GetWindowThreadProcessId(window, &process) != 0 && process == GetCurrentProcessId();
}

// The lower word of a handle is enough to name its object, and lower words are given out in order.
std::size_t CountUserObjects() {
  if (const DWORD told = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS)) return told;
  constexpr ULONG_PTR kFirst = 0x20;
  constexpr ULONG_PTR kBehindLast = 0x4000;
  std::size_t count = 0;
  for (ULONG_PTR word = kFirst; word < kBehindLast; word += 2) {
    if (IsOwnWindow(reinterpret_cast<HWND>(word)) || IsMenu(reinterpret_cast<HMENU>(word))) ++count;
  }
  return count;
}

std::size_t CountBytesOf(HANDLE heap) {
  std::size_t bytes = 0;
  PROCESS_HEAP_ENTRY entry{};
  HeapLock(heap);
  while (HeapWalk(heap, &entry)) {
    if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) bytes += entry.cbData;
  }
  HeapUnlock(heap);
  return bytes;
}

std::size_t CountBytesOfAllHeaps() {
  HANDLE heaps[64];
  const DWORD count = GetProcessHeaps(ARRAYSIZE(heaps), heaps);
  std::size_t bytes = 0;
  for (DWORD i = 0; i < count && i < ARRAYSIZE(heaps); ++i) bytes += CountBytesOf(heaps[i]);
  return bytes;
}

}  // namespace

Footprint Footprint::Take() {
  return {.kernelHandles = CountKernelHandles(),
          .gdiObjects = CountGdiObjects(),
          .userObjects = CountUserObjects(),
          .heapBytes = CountBytesOf(reinterpret_cast<HANDLE>(_get_heap_handle())),
          .allHeapBytes = CountBytesOfAllHeaps()};
}
