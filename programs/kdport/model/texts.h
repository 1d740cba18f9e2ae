// Every text that kdport reports, in one table.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace KdPort {

enum class Text {
  // The command line and what it works on.
  Usage,
  OptionBad,
  NothingNamed,
  NotOnePort,
  HostUnread,
  FileUnreadable,
  FileUnwritable,
  UpdateFailed,
  // Files.
  FileEmpty,
  FileNotUtf8,
  FileNotEnded,
  QuoteNotClosed,
  QuoteMisplaced,
  ColumnUnknown,
  ColumnTwice,
  ColumnMissing,
  RowLength,
  CellBad,
  RowTwice,
  RowAmbiguous,
  MoreFaults,
  // Words that name ports.
  NoSuchPort,
  // Obstacles.
  PortAbsent,
  PortOpen,
  PortNameless,
  NoDosDevice,
  SharedWithForeign,
  NumberHeld,
  NumberGhost,
  NumberWantedTwice,
  NoFreeNumber,
  DatabaseUnread,
  BaudUnsupported,
  ValueNotStorable,
  ValueUnread,
  // Findings.
  NameMissing,
  FriendlyNameDiffers,
  DosDeviceMissing,
  DosDeviceElsewhere,
  SerialMapMissing,
  SerialMapDiffers,
  NumberUnclaimed,
  NameShared,
  Ghost,
  DatabaseClosed,
  // What became of a step.
  UndoNotWritten,
  StepFailed,
  DeviceGone,
  RightsMissing,
  NumberStillHeld,
  Interrupted
};

// A text of the table with what stands in its places.
struct Message {
  Text text{};
  std::vector<std::string> arguments;
};

// The word that JSON documents call the text by: "number-held".
[[nodiscard]] std::string_view WordOf(Text text) noexcept;

// One sentence, without the full stop.
[[nodiscard]] std::string Say(const Message& message);

// What to do about it; empty where nothing is left to say.
[[nodiscard]] std::string Advise(const Message& message);

}  // namespace KdPort
