// Hostile streams from a driver: reads one into a parameter set and checks what must hold whatever it says.
//
// Input: a byte that chooses the set and the options, then the stream.
#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "config/nbus_parameters.h"
#include "config/vcp_parameters.h"
#include "fuzz_checks.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
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

// Writes the set into a buffer of exactly the computed size.
Bytes Written(CSsInformationSet& set, std::uint32_t flags) {
  Bytes bytes(set.GetSerialisedSize(flags));
  Require(!bytes.empty(), "a set that was read has a size");
  auto remaining = static_cast<std::uint32_t>(bytes.size());
  Require(set.Serialise(bytes.data(), remaining, flags), "a set that was read can be written");
  Require(remaining == 0, "the computed size is the written size");

  const auto shorter = std::make_unique<std::uint8_t[]>(bytes.size() - 1);
  remaining = static_cast<std::uint32_t>(bytes.size() - 1);
  Require(!set.Serialise(shorter.get(), remaining, flags), "one byte too few is noticed");
  return bytes;
}

// The longest text among the string members, in UTF-16 units at least.
std::size_t LongestText(const CSsInformationSet& set) {
  std::size_t longest = 0;
  for (const auto& item : set.Items()) {
    if (item->type != CSsInformationItem::kString) continue;
    longest = std::max(longest, static_cast<const CWideString*>(item->value)->Length());
  }
  return longest;
}

// Whether writing gives the bytes back that were read. Not so for wide text with a length, where reader and
// writer count differently, for text that was cut at a zero inside it, and for lengths that wrap.
bool WritesWhatItRead(std::uint32_t flags, std::size_t longestText) {
  if (longestText >= 0x4000) return false;
  const bool terminated = (flags & Options::kTerminator) != 0;
  const bool counted = (flags & Options::kLengthPrefix) != 0;
  return (flags & Options::kWideStrings) != 0 ? terminated && !counted : terminated;
}

template <class Set>
void Check(std::uint32_t flags, std::span<const std::uint8_t> stream) {
  Set& set = EmptySet<Set>();
  const ReadResult result = Read(set, stream, flags);
  if (flags != 0 && !Options::IsValid(flags)) {
    Require(!result.succeeded && result.consumed == 0, "flags that no stream can have are refused");
  }
  if (!result.succeeded) return;

  const std::uint32_t effective = flags != 0 ? flags : CSsInformationSet::kDriverFlags;
  const Bytes written = Written(set, flags);
  if (WritesWhatItRead(effective, LongestText(set))) {
    const auto consumed = stream.first(result.consumed);
    Require(std::equal(written.begin(), written.end(), consumed.begin(), consumed.end()),
            "what was read is written again");
  }
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
