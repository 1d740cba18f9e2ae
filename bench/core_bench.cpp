// core_bench: the portable core against a plain memory copy and against two well-known libraries, on the same
// data. Native, with the core compiled as it ships.
#include <cereal/archives/binary.hpp>
#include <cereal/types/string.hpp>
#include <pugixml.hpp>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <vector>

#include "config/nbus_parameters.h"
#include "config/vcp_parameters.h"
#include "measure.h"
#include "status/port_status.h"
#include "workbench/device_server/port_state.h"

namespace {

void Check(bool holds, const char* what) {
  if (!holds) throw std::runtime_error(what);
}

// ---- both parameter sets, read from and written to the drivers' streams

constexpr std::size_t kNumbers = 33;  // of each set
constexpr std::uint32_t kRoom = 512;  // bytes, enough for either stream

struct ProductSets {
  CKdUVcpUserModeInterface port;
  CKdNBusUserModeInterface bus;

  ProductSets() {
    bus.InterfaceType = CWideString(L"TCP");
    bus.Model = CWideString(L"QX-582");
  }
};

using Stream = std::vector<std::uint8_t>;

Stream StreamOf(CSsInformationSet& set) {
  Stream stream(set.GetSerialisedSize());
  auto room = static_cast<std::uint32_t>(stream.size());
  Check(set.Serialise(stream.data(), room) && room == 0, "a set cannot be written");
  return stream;
}

void ReadAndWrite(CSsInformationSet& set, const Stream& stream, std::array<std::uint8_t, kRoom>& buffer) {
  auto unread = static_cast<std::uint32_t>(stream.size());
  std::uint32_t room = kRoom;
  if (!set.Deserialise(stream.data(), unread) || !set.Serialise(buffer.data(), room)) {
    throw std::runtime_error("a set cannot be read or written");
  }
  bench::Keep(buffer);
}

// The same fields as the other library takes them.
struct PortFields {
  std::array<std::uint32_t, kNumbers> numbers{};
};
struct BusFields {
  std::array<std::uint32_t, kNumbers> numbers{};
  std::string interfaceType = "TCP";
  std::string model = "QX-582";
};

// Field by field, as a program that gives each parameter a member of its own does; as one array they would be
// one copy.
template <class Archive>
void serialize(Archive& archive, PortFields& fields) {
  for (std::uint32_t& number : fields.numbers) archive(number);
}
template <class Archive>
void serialize(Archive& archive, BusFields& fields) {
  constexpr std::size_t kInterfaceTypeAt = 6;
  for (std::size_t i = 0; i < kNumbers; ++i) {
    if (i == kInterfaceTypeAt) archive(fields.interfaceType);
    archive(fields.numbers[i]);
  }
  archive(fields.model);
}

// Its archives want a stream: this one lies over an array, so that no memory is allocated for it.
class FixedBuffer : public std::streambuf {
 public:
  FixedBuffer(char* bytes, std::size_t count) {
    setg(bytes, bytes, bytes + count);
    setp(bytes, bytes + count);
  }
  [[nodiscard]] std::size_t Written() const { return static_cast<std::size_t>(pptr() - pbase()); }
};

template <class Fields>
std::string ArchiveOf(Fields fields) {
  std::array<char, kRoom> bytes{};
  FixedBuffer buffer(bytes.data(), bytes.size());
  std::ostream stream(&buffer);
  cereal::BinaryOutputArchive archive(stream);
  archive(fields);
  return std::string(bytes.data(), buffer.Written());
}

template <class Fields>
void ReadAndWriteArchive(Fields& fields, std::string& stored, std::array<char, kRoom>& bytes) {
  FixedBuffer in(stored.data(), stored.size());
  std::istream input(&in);
  cereal::BinaryInputArchive reader(input);
  reader(fields);
  FixedBuffer out(bytes.data(), bytes.size());
  std::ostream output(&out);
  cereal::BinaryOutputArchive writer(output);
  writer(fields);
  bench::Keep(bytes);
}

void CopyInAndOut(const Stream& stream, std::array<std::uint8_t, kRoom>& members,
                  std::array<std::uint8_t, kRoom>& buffer) {
  std::memcpy(members.data(), stream.data(), stream.size());
  bench::Keep(members);
  std::memcpy(buffer.data(), members.data(), stream.size());
  bench::Keep(buffer);
}

void CompareStreams() {
  ProductSets sets;
  const Stream port = StreamOf(sets.port);
  const Stream bus = StreamOf(sets.bus);
  std::array<std::uint8_t, kRoom> buffer{}, members{};
  const auto product = [&] {
    ReadAndWrite(sets.port, port, buffer);
    ReadAndWrite(sets.bus, bus, buffer);
  };
  const auto copy = [&] {
    CopyInAndOut(port, members, buffer);
    CopyInAndOut(bus, members, buffer);
  };
  PortFields portFields;
  BusFields busFields;
  std::string portArchive = ArchiveOf(portFields), busArchive = ArchiveOf(busFields);
  std::array<char, kRoom> bytes{};
  const auto library = [&] {
    ReadAndWriteArchive(portFields, portArchive, bytes);
    ReadAndWriteArchive(busFields, busArchive, bytes);
  };
  bench::PrintRow("Streams: both parameter sets read and written", "memory copy of the same bytes",
                  bench::Compare({product}, {copy}));
  bench::PrintRow("Streams: both parameter sets read and written", "cereal, the same fields, binary archive",
                  bench::Compare({product}, {library}));
}

// ---- the status document, from its bytes to texts

constexpr std::array kTags = {"baud",   "datasize", "parity",   "stopbits", "flowcontrol",
                              "duplex", "state",    "portmode", "ctsline",  "dsrline"};

void CompareDocuments() {
  const std::string document = workbench::StatusDocument({.baudRate = 115200, .state = 1});
  ProductSets sets;
  const auto product = [&] {
    // As the download does: bytes to wide text, folded to lower case.
    CWideString text{std::wstring_view(std::wstring(document.begin(), document.end()))};
    text.MakeLower();
    PortStatus status = ApplyStatusDocument(text, sets.port, sets.bus);
    if (status.state != L"Connected") throw std::runtime_error("the document is not understood");
    bench::Keep(status);
  };
  const auto library = [&] {
    pugi::xml_document parsed;
    if (!parsed.load_buffer(document.data(), document.size())) throw std::runtime_error("no document");
    const pugi::xml_node port = parsed.child("port");
    std::array<std::wstring, kTags.size()> texts;
    for (std::size_t i = 0; i < kTags.size(); ++i) texts[i] = pugi::as_wide(port.child_value(kTags[i]));
    if (texts[0] != L"115200") throw std::runtime_error("the document is not understood");
    bench::Keep(texts);
  };
  bench::PrintRow("Status document: bytes to texts and adopted settings",
                  "pugixml, the same document to its ten texts", bench::Compare({product}, {library}));
}

}  // namespace

int main() {
  try {
    CompareStreams();
    CompareDocuments();
    return bench::ExitStatus();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "core_bench: %s\n", error.what());
    return 1;
  }
}
