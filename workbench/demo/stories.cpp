// Installations and the like, shown step by step on a machine of their own.
#include <algorithm>
#include <numeric>

#include "workbench/demo/commands.h"
#include "workbench/demo/report.h"

namespace workbench {
namespace {

constexpr unsigned kFirstNumber = 5;

std::wstring Number(std::size_t number) {
  return std::to_wstring(number);
}

std::vector<unsigned> Rising(unsigned first, unsigned count) {
  std::vector<unsigned> numbers(count);
  std::iota(numbers.begin(), numbers.end(), first);
  return numbers;
}

std::vector<unsigned> Falling(unsigned first, unsigned count) {
  const std::vector<unsigned> rising = Rising(first, count);
  return {rising.rbegin(), rising.rend()};
}

void Step(const std::wstring& heading) {
  Print(L"\n== " + heading + L"\n");
}

void Tell(const std::wstring& text) {
  Print(L"   " + text + L"\n");
}

// A computer for a story, and the places of its ports' names.
class StoryRig : public Rig {
 public:
  StoryRig() : Rig({.comNumbers = {}, .web = false}) {}

  // What was asked since the last table, and the places of every name.
  void Table(const std::wstring& when) {
    for (; questionsTold_ < Boxes().size(); ++questionsTold_) {
      Tell(L"Asked: \"" + Boxes()[questionsTold_].text + L"\"");
      Tell(Boxes()[questionsTold_].answer == IDYES ? L"Answered: Yes" : L"Answered: No");
    }
    const std::vector<ComPlaces> places = AllComPlaces(machine);
    Print(L"\n" + when + L":\n" + (places.empty() ? L"(no port is there)\n" : FormatPlaces(places)));
  }
  void InstallPorts() {
    for (Device* port : server.ports) Installer().Install(*port);
  }
  // Every place of every port has to say the same now.
  void ExpectAgreement() { good_ = good_ && std::ranges::all_of(AllComPlaces(machine), &ComPlaces::Agree); }
  [[nodiscard]] int EndInAgreement() {
    Table(L"After");
    ExpectAgreement();
    return End();
  }
  [[nodiscard]] int End() {
    good_ = EndsWell(*this) && good_;
    Print(good_ ? L"\nEverything went as expected.\n" : L"\nNot everything went as expected.\n");
    return good_ ? 0 : 1;
  }

 private:
  bool good_ = true;
  std::size_t questionsTold_ = 0;
};

int Install(unsigned ports) {
  StoryRig rig;
  Step(L"A new device server with " + Number(ports) + L" ports");
  Tell(L"Its ports came up out of order: the class installer named them in reverse.");
  rig.AddServer(Falling(kFirstNumber, ports));
  rig.Table(L"Before the ports' second pass");
  Step(L"Windows installs the ports: pre, class installer, post");
  rig.InstallPorts();
  Tell(L"The device server was restarted " +
       Number(rig.machine.Devices().EventsOf(DeviceEvent::Enabled).size()) + L" time(s).");
  return rig.EndInAgreement();
}

int Reinstall(unsigned ports) {
  StoryRig rig;
  Step(L"A device server with " + Number(ports) + L" ports in use");
  rig.AddServer(Rising(kFirstNumber, ports));
  for (const Device* port : rig.server.ports) {
    rig.machine.Registry().SetDword(ParametersKeyOf(port->instanceId), L"Baudrate", 115200);
    rig.machine.Registry().SetText(ParametersKeyOf(port->instanceId) + L"\\UI1", L"Page", port->instanceId);
  }
  rig.Table(L"Before");
  Step(L"Its driver is installed again");
  rig.Installer().Install(*rig.server.card);
  const std::wstring serverKey = ParametersKeyOf(rig.server.card->instanceId);
  Tell(Number(rig.machine.Registry().KeyNames(serverKey).size()) +
       L" ports saved below the server, all removed.");
  rig.Table(L"With the ports gone");
  Step(L"The bus finds the ports again; the class installer gives them other numbers");
  rig.wanted.comNumbers = Falling(kFirstNumber + 20, ports);
  FindPortsAgain(rig.machine, rig.server, rig.wanted);
  rig.Table(L"Before the ports' second pass");
  Step(L"Windows installs the ports");
  rig.InstallPorts();
  return rig.EndInAgreement();
}

int Rename(unsigned) {
  StoryRig rig;
  Step(L"Two ports and a modem");
  rig.AddServer({5, 6});
  AddForeignPort(rig.machine, 3);
  const auto rename = [&](const wchar_t* name) {
    Step(L"KdChangeComNumber: " + rig.NameOf(rig.Port()) + L" to " + name);
    rig.dll->ChangeComNumber(rig.Port().instanceId.c_str(), name);
    rig.Table(L"After");
  };
  rig.Table(L"Before");
  rename(L"COM9");

  rig.machine.Screen().Answer(IDNO);
  rename(L"COM3");

  rig.Port().port->openElsewhere = true;
  rig.machine.Screen().Answer(IDYES);
  rename(L"COM10");
  rig.Port().port->openElsewhere = false;
  rig.ExpectAgreement();

  Print(L"\n");
  Tell(L"Now the user insists on a name that another port has, which is what the question warns of.");
  rig.machine.Screen().Answer(IDYES);
  rename(L"COM6");
  return rig.End();
}

int Remove(unsigned ports) {
  StoryRig rig;
  Step(L"A device server with " + Number(ports) + L" ports, and a modem");
  rig.AddServer(Rising(kFirstNumber, ports));
  AddForeignPort(rig.machine, 3);
  const std::wstring serverKey = ParametersKeyOf(rig.server.card->instanceId);
  rig.machine.Registry().SetText(serverKey, L"UnInstall", L"KdUninst.exe");
  rig.Table(L"Before");
  Step(L"The user removes the ports and then the server");
  for (Device* port : rig.server.ports) rig.Installer().Remove(*port);
  rig.Installer().Remove(*rig.server.card);
  for (const std::wstring& program : rig.machine.System().processes) Tell(L"Started: " + program);
  return rig.EndInAgreement();
}

int Usb(unsigned) {
  StoryRig rig;
  Step(L"A modem on COM4, and a USB port whose model belongs there");
  AddForeignPort(rig.machine, 4);
  const UsbDevice usb =
      AddUsbDevice(rig.machine, {.hardwareId = L"usb\\vid_3a7e&pid_5002&mi_01", .comNumber = 9});
  rig.Table(L"Before the port's second pass");
  Step(L"Windows installs the port");
  rig.Installer().Install(*usb.port);
  for (const std::wstring& id : rig.machine.Devices().EventsOf(DeviceEvent::Enabled))
    Tell(L"Restarted: " + id);
  return rig.EndInAgreement();
}

constexpr Story kStories[] = {
    {"install", "Installs a new device server whose ports come up out of order", true, Install},
    {"reinstall", "Installs a device server's driver again: settings and names come back", true, Reinstall},
    {"rename", "Renames a port: to a free name, to a taken one, and while it is open", false, Rename},
    {"remove", "Removes a device server: its COM numbers come back", true, Remove},
    {"usb", "Installs a USB port whose model always has the same COM number", false, Usb}};

}  // namespace

std::span<const Story> Stories() {
  return kStories;
}

}  // namespace workbench
