// Writes the seeds of the driver stream's fuzz target: the streams that the system itself writes, under every
// usable combination of options that makes a difference to them.
//
// Usage: driver_stream_seeds DIRECTORY
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "config/nbus_parameters.h"
#include "config/vcp_parameters.h"
#include "driver_stream_input.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

// Writes the set's stream, cut to at most `most` bytes.
bool WriteSeed(const std::string& directory, const std::string& name, const DriverStreamChoice& choice,
               CSsInformationSet& set, std::size_t most = static_cast<std::size_t>(-1)) {
  Bytes stream(set.GetSerialisedSize(choice.flagsOverride));
  auto remaining = static_cast<std::uint32_t>(stream.size());
  if (!set.Serialise(stream.data(), remaining, choice.flagsOverride)) return false;
  stream.resize(std::min(stream.size(), most));
  stream.insert(stream.begin(), ChoiceByte(choice));
  std::ofstream file(directory + "/" + name + "_" + std::to_string(choice.flagsOverride), std::ios::binary);
  file.write(reinterpret_cast<const char*>(stream.data()), static_cast<std::streamsize>(stream.size()));
  return static_cast<bool>(file.flush());
}

bool WriteSeeds(const std::string& directory, std::uint32_t flags) {
  using Options = CSsSerialisationBase;
  // The port's set has no texts, so their options change nothing about it.
  constexpr std::uint32_t kTextOptions =
      Options::kTerminator | Options::kLengthPrefix | Options::kWideStrings;
  CKdUVcpUserModeInterface port;
  port.Baudrate = 9600;
  const bool portDiffers = flags == 0 || (flags & kTextOptions) == CSsInformationSet::kDriverFlags;
  if (portDiffers && !WriteSeed(directory, "port", {.flagsOverride = flags, .networkBus = false}, port)) {
    return false;
  }
  CKdNBusUserModeInterface bus;
  bus.AddressToConnect = 0xC0A80001;
  // With these two the reader accepts empty texts only, of all that the writer writes.
  constexpr std::uint32_t kCountedWide = Options::kLengthPrefix | Options::kWideStrings;
  const bool emptyMatters = (flags & kCountedWide) == kCountedWide;
  if (emptyMatters && !WriteSeed(directory, "bus_empty", {.flagsOverride = flags, .networkBus = true}, bus)) {
    return false;
  }
  bus.InterfaceType = L"TCP";
  bus.Model = L"QX-582";
  // Six numbers come before the first text; streams that end inside it are where bounds matter most.
  constexpr std::size_t kInsideFirstText = 6 * 4 + 7;
  const bool plain = flags != 0 && (flags & ~kTextOptions) == 0;
  if (plain &&
      !WriteSeed(directory, "bus_cut", {.flagsOverride = flags, .networkBus = true}, bus, kInsideFirstText)) {
    return false;
  }
  return WriteSeed(directory, "bus_text", {.flagsOverride = flags, .networkBus = true}, bus);
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "usage: driver_stream_seeds DIRECTORY\n");
    return 2;
  }
  for (std::uint32_t flags = 0; flags < 0x20; ++flags) {
    if (flags != 0 && !CSsSerialisationBase::IsValid(flags)) continue;
    if (!WriteSeeds(arguments[1], flags)) {
      std::fprintf(stderr, "cannot write the seeds for flags %u to %s\n", flags, arguments[1]);
      return 1;
    }
  }
  return 0;
}
