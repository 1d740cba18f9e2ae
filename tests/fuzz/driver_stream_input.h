// What the inputs of the driver stream's fuzz target look like; shared with the program that writes its
// seeds.
#pragma once

#include <cstdint>

// The first byte chooses; the rest is the stream.
struct DriverStreamChoice {
  std::uint32_t flagsOverride;  // 0 to 31: every combination, the ones that no stream can have included
  bool networkBus;              // the network bus set instead of the COM port set
};

constexpr DriverStreamChoice ChoiceOf(std::uint8_t first) {
  return {.flagsOverride = first & 0x1FU, .networkBus = (first & 0x20U) != 0};
}

constexpr std::uint8_t ChoiceByte(const DriverStreamChoice& choice) {
  return static_cast<std::uint8_t>(choice.flagsOverride | (choice.networkBus ? 0x20U : 0U));
}
