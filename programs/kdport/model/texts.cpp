#include "kdport/model/texts.h"

#include <iterator>

namespace KdPort {

namespace {

struct Row {
  Text text;
  std::string_view word;
  std::string_view sentence;  // {0} to {9} stand for the arguments
  std::string_view advice;
};
constexpr std::string_view kRepair = "kdport repair mends it";
constexpr std::string_view kSaveUtf8 = "save it as CSV in UTF-8";
constexpr Row kRows[] = {
    {Text::Usage, "usage", "{0}", "kdport {1}--help shows what can be given"},
    {Text::OptionBad, "option-bad", "{0}: \"{1}\" is not {2}", ""},
    {Text::NothingNamed, "nothing-named", "nothing is to be changed", "name at least one of {0}"},
    {Text::NotOnePort, "not-one-port", "{0} is {1} ports", "name one by its instance id or as SERVER/INDEX"},
    {Text::HostUnread, "host-unread", "the ports of this host cannot be read: {0}", ""},
    {Text::FileUnreadable, "file-unreadable", "{0} cannot be read", ""},
    {Text::FileUnwritable, "file-unwritable", "{0} cannot be written", ""},
    {Text::UpdateFailed, "update-failed", "no driver of {1} was installed for {0}: {2}", ""},

    {Text::FileEmpty, "file-empty", "the file is empty", "its first row has to name the columns"},
    {Text::FileNotUtf8, "file-not-utf8", "row {0}: not UTF-8", kSaveUtf8},
    {Text::FileNotEnded, "file-not-ended", "row {0}: the file ends within it",
     "the file is not complete: write it again, or end its last row with a line end"},
    {Text::QuoteNotClosed, "quote-not-closed", "row {0}, column {1}: the quotation mark is not closed", ""},
    {Text::QuoteMisplaced, "quote-misplaced", "row {0}, column {1}: a quotation mark within a cell",
     "put the whole cell in quotation marks and write each of its own twice"},
    {Text::ColumnUnknown, "column-unknown", "row 1, column {0}: no column is called \"{1}\"",
     "columns are server, index, name, baud, data, parity, stop, flow, address, data-port, config-port and "
     "web-port"},
    {Text::ColumnTwice, "column-twice", "row 1, column {0}: \"{1}\" is there twice", ""},
    {Text::ColumnMissing, "column-missing", "row 1: the column \"{0}\" is missing", ""},
    {Text::RowLength, "row-length", "row {0}: {1} cells, but there are {2} columns", ""},
    {Text::CellBad, "cell-bad", "row {0}, column {1}: \"{2}\" is not {3}", ""},
    {Text::RowTwice, "row-twice", "row {0}: {1} is in row {2} already", ""},
    {Text::RowAmbiguous, "row-ambiguous", "row {0}: {1} is more than one port of this host", ""},
    {Text::MoreFaults, "more-faults", "and {0} more", ""},
    {Text::NoSuchPort, "no-such-port", "no such port: {0}", "kdport list shows the ports of this host"},

    {Text::PortAbsent, "port-absent", "{0} is not present", "connect it, or leave it out"},
    {Text::PortOpen, "port-open", "a program has {0} open", "close the program, or use --force"},
    {Text::PortNameless, "port-nameless", "{0} has no COM name that it could give up",
     "let the installer name it: update its driver"},
    {Text::NoDosDevice, "no-dos-device", "{0} has no DOS device that it could take along",
     "see whether the device is started"},
    {Text::SharedWithForeign, "shared-with-foreign", "{0} shares its name with {1}, which would lose it",
     "rename that device in Device Manager"},
    {Text::NumberHeld, "number-held", "{0} cannot become {1}: {2} has it", "choose another number"},
    {Text::NumberGhost, "number-ghost", "{0} cannot become {1}: it is claimed by nobody that is present{2}",
     "kdport repair --release-ghosts releases it"},
    {Text::NumberWantedTwice, "number-wanted-twice", "{0} cannot become {1}: {2} is to become that too", ""},
    {Text::NoFreeNumber, "no-free-number",
     "{0} cannot become {1}: ports have to change places, and no number is free meanwhile",
     "free one COM number"},
    {Text::DatabaseUnread, "database-unread", "{0} cannot become {1}: the COM name database cannot be read",
     ""},
    {Text::BaudUnsupported, "baud-unsupported", "{0} cannot have {1} baud: it supports {2} to {3}", ""},
    {Text::ValueNotStorable, "value-not-storable", "{0} cannot be given {1} {2}", ""},
    {Text::ValueUnread, "value-unread", "{0}: its driver does not report {1}",
     "see whether the device is started"},

    {Text::NameMissing, "name-missing", "{0}: PortName is \"{1}\", which is no COM name",
     "let the installer name it: update its driver"},
    {Text::FriendlyNameDiffers, "friendly-name-differs", "{0}: the friendly name is \"{1}\"", kRepair},
    {Text::DosDeviceMissing, "dos-device-missing", "{0}: {1} is no DOS device",
     "kdport repair mends it where the serial map names the port; else restart the device"},
    {Text::DosDeviceElsewhere, "dos-device-elsewhere", "{0}: the DOS device {1} points at {2}, not at {3}",
     kRepair},
    {Text::SerialMapMissing, "serial-map-missing", "{0}: {1} is not in the serial map", kRepair},
    {Text::SerialMapDiffers, "serial-map-differs", "{0}: the serial map calls {1} {2}", kRepair},
    {Text::NumberUnclaimed, "number-unclaimed", "{0}: the COM name database has {1} free", kRepair},
    {Text::NameShared, "name-shared", "{0}: {1} has {2} too", "rename one of them: kdport rename {3} COMn"},
    {Text::Ghost, "ghost", "{0} is claimed by nobody that is present{1}",
     "kdport repair --release-ghosts releases it, unless another maker's absent device has it"},
    {Text::DatabaseClosed, "database-closed", "the COM name database cannot be read", ""},

    {Text::UndoNotWritten, "undo-not-written", "the undo file cannot be written: nothing was changed",
     "name another file with --undo"},
    {Text::StepFailed, "step-failed", "{0}: {1}", ""},
    {Text::DeviceGone, "device-gone", "{0} has gone", "connect it and run the command again"},
    {Text::RightsMissing, "rights-missing", "administrator rights are missing",
     "run the command as an administrator"},
    {Text::NumberStillHeld, "number-still-held", "{0} did not become {1}: {2} still has it", ""},
    {Text::Interrupted, "interrupted", "interrupted before this step", ""},
};

// The table is in the order of the enumeration, so that a text is found by its place.
constexpr bool IsInOrder() {
  for (std::size_t i = 0; i < std::size(kRows); ++i) {
    if (kRows[i].text != static_cast<Text>(i)) return false;
  }
  return true;
}
static_assert(IsInOrder() && std::size(kRows) == static_cast<std::size_t>(Text::Interrupted) + 1);

const Row& RowOf(Text text) {
  return kRows[static_cast<std::size_t>(text)];
}

std::string Filled(std::string_view pattern, const std::vector<std::string>& arguments) {
  std::string filled;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] != '{') {
      filled += pattern[i];
      continue;
    }
    const auto place = static_cast<std::size_t>(pattern[i + 1] - '0');
    if (place < arguments.size()) filled += arguments[place];
    i += 2;
  }
  return filled;
}

}  // namespace

std::string_view WordOf(Text text) noexcept {
  return RowOf(text).word;
}

std::string Say(const Message& message) {
  return Filled(RowOf(message.text).sentence, message.arguments);
}

std::string Advise(const Message& message) {
  return Filled(RowOf(message.text).advice, message.arguments);
}

}  // namespace KdPort
