// Hostile streams from a driver: reads one into a parameter set and checks what must hold whatever it says.
//
// Input: a byte that chooses the set and the options, then the stream.
#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>

#include "config/nbus_parameters.h"
#include "config/vcp_parameters.h"
#include "fuzz_checks.h"

namespace {

using Options = CSsSerialisationBase;

// Memory of exactly this size, so that the sanitizer sees a step past its end. Never null.
std::unique_ptr<std::uint8_t[]> ExactCopy(std::span<const std::uint8_t> bytes) {
  auto copy = std::make_unique<std::uint8_t[]>(bytes.size());
  std::copy(bytes.begin(), bytes.end(), copy.get());
  return copy;
}

// A set whose members are empty. It is made once and emptied for each input, since registering its parameters
// takes ten times as long as reading a stream.
template <class Set>
Set& EmptySet() {
  static Set set;
  for (const auto& item : set.Items()) {
    if (item->type == CSsInformationItem::kString) {
      *static_cast<CWideString*>(item->value) = CWideString();
    } else {
      *static_cast<std::uint32_t*>(item->value) = 0;
    }
  }
  return set;
}

struct ReadResult {
  bool succeeded;
  std::uint32_t consumed;
};

ReadResult Read(CSsInformationSet& set, std::span<const std::uint8_t> stream, std::uint32_t flags) {
  const auto copy = ExactCopy(stream);
  const auto size = static_cast<std::uint32_t>(stream.size());
  std::uint32_t remaining = size;
  const bool succeeded = set.Deserialise(copy.get(), remaining, flags);
  Require(remaining <= size, "the count of unread bytes never grows");
  Require(set.Options().Flags() == CSsInformationSet::kDriverFlags, "the set's flags are put back");
  return {succeeded, size - remaining};
}

// The computed size is what writing takes.
void CheckWriting(CSsInformationSet& set, std::uint32_t flags) {
  const std::uint32_t size = set.GetSerialisedSize(flags);
  Require(size != 0, "a set that was read has a size");
  const auto buffer = std::make_unique<std::uint8_t[]>(size);
  std::uint32_t remaining = size;
  Require(set.Serialise(buffer.get(), remaining, flags), "a set that was read can be written");
  Require(remaining == 0, "the computed size is the written size");

  const auto shorter = std::make_unique<std::uint8_t[]>(size - 1);
  remaining = size - 1;
  Require(!set.Serialise(shorter.get(), remaining, flags), "one byte too few is noticed");
}

template <class Set>
void Check(std::uint32_t flags, std::span<const std::uint8_t> stream) {
  Set& set = EmptySet<Set>();
  const ReadResult result = Read(set, stream, flags);
  if (flags != 0 && !Options::IsValid(flags)) {
    Require(!result.succeeded && result.consumed == 0, "flags that no stream can have are refused");
  }
  if (!result.succeeded) return;

  CheckWriting(set, flags);
  Require(!Read(EmptySet<Set>(), stream.first(result.consumed - 1), flags).succeeded,
          "a shorter stream fails");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  // 0 to 31: every combination, the ones that no stream can have included.
  const std::uint32_t flagsOverride = data[0] & 0x1FU;
  const std::span<const std::uint8_t> stream(data + 1, size - 1);
  if ((data[0] & 0x20U) != 0) {
    Check<CKdNBusUserModeInterface>(flagsOverride, stream);
  } else {
    Check<CKdUVcpUserModeInterface>(flagsOverride, stream);
  }
  return 0;
}
