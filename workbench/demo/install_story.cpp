#include "workbench/demo/install_story.h"

#include <algorithm>

namespace workbench {
namespace {

constexpr unsigned kFirstNumber = 5;

std::wstring Number(std::size_t number) {
  return std::to_wstring(number);
}

std::vector<unsigned> Falling(unsigned first, unsigned count) {
  std::vector<unsigned> numbers;
  for (unsigned at = count; at > 0; --at) numbers.push_back(first + at - 1);
  return numbers;
}

std::vector<unsigned> Rising(unsigned first, unsigned count) {
  std::vector<unsigned> numbers = Falling(first, count);
  std::ranges::reverse(numbers);
  return numbers;
}

}  // namespace

void InstallStory::Step(const std::wstring& heading) {
  print_(L"\n== " + heading + L"\n");
}

void InstallStory::Tell(const std::wstring& text) {
  print_(L"   " + text + L"\n");
}

void InstallStory::Table(const std::wstring& when) {
  const auto& boxes = machine_.Screen().messageBoxes;
  for (; questionsTold_ < boxes.size(); ++questionsTold_) {
    const MessageBoxRecord& box = boxes[questionsTold_];
    Tell(L"Asked: \"" + box.text + L"\"");
    Tell(box.answer == IDYES ? L"Answered: Yes" : L"Answered: No");
  }
  const std::vector<ComPlaces> places = AllComPlaces(machine_);
  print_(L"\n" + when + L":\n" + (places.empty() ? L"(no port is there)\n" : FormatPlaces(places)));
}

void InstallStory::Expect(bool holds, const std::wstring& what) {
  if (holds) return;
  good_ = false;
  print_(L"   WRONG: " + what + L"\n");
}

void InstallStory::ExpectAgreement() {
  for (const ComPlaces& places : AllComPlaces(machine_)) {
    Expect(places.Agree(), L"the places of " + places.instanceId + L" agree");
  }
}

bool InstallStory::End() {
  for (const std::string& violation : machine_.Calls().Violations()) {
    Expect(false, std::wstring(violation.begin(), violation.end()));
  }
  print_(good_ ? L"\nEverything went as expected.\n" : L"\nNot everything went as expected.\n");
  return good_;
}

DeviceServer InstallStory::AddServer(const ServerSpec& wanted) {
  DeviceServer server = AddDeviceServer(machine_, wanted);
  machine_.Devices().ClearEvents();
  return server;
}

void InstallStory::InstallPorts(const std::vector<Device*>& ports) {
  for (Device* port : ports) {
    Expect(installer_.Install(*port) == NO_ERROR, L"the installation of " + port->instanceId + L" succeeds");
  }
}

std::wstring InstallStory::NameOf(const Device& port) {
  return machine_.Registry().Text(ParametersKeyOf(port.instanceId), L"PortName").value_or(L"");
}

void InstallStory::ExpectNames(const std::vector<Device*>& ports, unsigned firstNumber) {
  for (const Device* port : ports) {
    Expect(NameOf(*port) == L"COM" + Number(firstNumber),
           port->instanceId + L" is COM" + Number(firstNumber) + L", not " + NameOf(*port));
    ++firstNumber;
  }
}

bool InstallStory::Install(unsigned ports) {
  Step(L"A new device server with " + Number(ports) + L" ports");
  Tell(L"Its ports came up out of order: the class installer named them in reverse.");
  const DeviceServer server = AddServer({.comNumbers = Falling(kFirstNumber, ports)});
  Table(L"Before the ports' second pass");
  Step(L"Windows installs the ports: pre, class installer, post");
  InstallPorts(server.ports);
  const std::size_t restarts = machine_.Devices().EventsOf(DeviceEvent::Enabled).size();
  Tell(L"The device server was restarted " + Number(restarts) + L" time(s).");
  Table(L"After");
  ExpectNames(server.ports, kFirstNumber);
  Expect(restarts == (ports > 1 ? 1u : 0u), L"one restart, and only for renamed ports");
  ExpectAgreement();
  return End();
}

bool InstallStory::Reinstall(unsigned ports) {
  Step(L"A device server with " + Number(ports) + L" ports in use");
  ServerSpec wanted{.comNumbers = Rising(kFirstNumber, ports)};
  DeviceServer server = AddServer(wanted);
  for (const Device* port : server.ports) {
    machine_.Registry().SetDword(ParametersKeyOf(port->instanceId), L"Baudrate", 115200);
    machine_.Registry().SetText(ParametersKeyOf(port->instanceId) + L"\\UI1", L"Page", port->instanceId);
  }
  Table(L"Before");
  Step(L"Its driver is installed again");
  Expect(installer_.Install(*server.card) == NO_ERROR, L"the installation of the server succeeds");
  const std::wstring serverKey = ParametersKeyOf(server.card->instanceId);
  Tell(Number(machine_.Registry().KeyNames(serverKey).size()) +
       L" ports saved below the server, all removed.");
  Expect(machine_.ComNames().Claimed().empty(), L"the ports' numbers are free");
  Table(L"With the ports gone");
  Step(L"The bus finds the ports again; the class installer gives them other numbers");
  wanted.comNumbers = Falling(kFirstNumber + 20, ports);
  server.ports = EnumeratePorts(machine_, *server.card, wanted);
  Table(L"Before the ports' second pass");
  Step(L"Windows installs the ports");
  InstallPorts(server.ports);
  Table(L"After");
  ExpectNames(server.ports, kFirstNumber);
  for (const Device* port : server.ports) {
    const std::wstring key = ParametersKeyOf(port->instanceId);
    Expect(machine_.Registry().Dword(key, L"Baudrate") == 115200u, port->instanceId + L" has its baud rate");
    Expect(machine_.Registry().Text(key + L"\\UI1", L"Page") == port->instanceId,
           port->instanceId + L" has its pages' values");
  }
  ExpectAgreement();
  return End();
}

bool InstallStory::Rename() {
  Step(L"Two ports and a modem");
  const DeviceServer server = AddServer({.comNumbers = {5, 6}});
  AddForeignPort(machine_, 3);
  const Device& port = *server.ports[0];
  const auto rename = [&](const wchar_t* name) {
    Step(std::wstring(L"KdChangeComNumber: ") + NameOf(port) + L" to " + name);
    Expect(dll_.ChangeComNumber(port.instanceId.c_str(), name) == 1, L"the port is found");
    Table(L"After");
  };
  Table(L"Before");
  rename(L"COM9");
  Expect(NameOf(port) == L"COM9", L"the port is COM9");

  machine_.Screen().Answer(IDNO);
  rename(L"COM3");
  Expect(NameOf(port) == L"COM9", L"a declined name changes nothing");

  server.ports[0]->port->openElsewhere = true;
  machine_.Screen().Answer(IDYES);
  rename(L"COM10");
  server.ports[0]->port->openElsewhere = false;
  Expect(NameOf(port) == L"COM10", L"the open port is COM10");
  Expect(machine_.Screen().messageBoxes.size() == 2, L"two questions were asked");
  Expect(machine_.ComNames().Claimed() == std::vector<DWORD>{3, 6, 10}, L"3, 6 and 10 are taken");
  ExpectAgreement();

  print_(L"\n");
  Tell(L"Now the user insists on a name that another port has, which is what the question warns of.");
  machine_.Screen().Answer(IDYES);
  rename(L"COM6");
  Expect(!PlacesOf(machine_, *server.ports[1]).Agree(), L"the port that had the name is marked");
  return End();
}

bool InstallStory::Remove(unsigned ports) {
  Step(L"A device server with " + Number(ports) + L" ports, and a modem");
  const DeviceServer server = AddServer({.comNumbers = Rising(kFirstNumber, ports)});
  AddForeignPort(machine_, 3);
  machine_.Registry().SetText(ParametersKeyOf(server.card->instanceId), L"UnInstall", L"KdUninst.exe");
  Table(L"Before");
  Step(L"The user removes the ports and then the server");
  for (Device* port : server.ports) installer_.Remove(*port);
  installer_.Remove(*server.card);
  for (const ProcessRecord& process : machine_.System().processes) Tell(L"Started: " + process.application);
  Table(L"After");
  Expect(machine_.ComNames().Claimed() == std::vector<DWORD>{3}, L"only the modem's number is taken");
  Expect(machine_.DosNames().Names() == std::vector<std::wstring>{L"COM3"}, L"only its DOS device is left");
  Expect(machine_.System().processes.size() == 1, L"the uninstall program was started once");
  ExpectAgreement();
  return End();
}

bool InstallStory::Usb() {
  Step(L"A modem on COM4, and a USB port whose model belongs there");
  const Device& modem = AddForeignPort(machine_, 4);
  const UsbDevice usb =
      AddUsbDevice(machine_, {.hardwareId = L"usb\\vid_3a7e&pid_5002&mi_01", .comNumber = 9});
  machine_.Devices().ClearEvents();
  Table(L"Before the port's second pass");
  Step(L"Windows installs the port");
  InstallPorts({usb.port});
  for (const std::wstring& id : machine_.Devices().EventsOf(DeviceEvent::Enabled)) Tell(L"Restarted: " + id);
  Table(L"After");
  Expect(NameOf(*usb.port) == L"COM4", L"the USB port is COM4");
  Expect(NameOf(modem) == L"COM5", L"the modem moved to COM5");
  Expect(machine_.Devices().EventsOf(DeviceEvent::Enabled).size() == 1, L"the USB device was restarted once");
  ExpectAgreement();
  return End();
}

}  // namespace workbench
