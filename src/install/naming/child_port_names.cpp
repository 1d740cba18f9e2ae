#include "install/naming/child_port_names.h"

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "base/decimal.h"
#include "install/devices/class_installer.h"
#include "install/devices/device_tree.h"
#include "install/devices/ports_class.h"
#include "install/naming/dos_device.h"
#include "install/naming/rename_com_port.h"
#include "install/naming/sort_plan.h"

namespace {

constexpr wchar_t kSortedFlag[] = L"ChildPortNameSorted";
// The range of numbers that a port takes while another one gets its own. COM1 and COM2 are usually the
// computer's own ports, whether the database has them as taken or not.
constexpr std::uint32_t kFirstAside = 3;
constexpr std::uint32_t kLastAside = 255;

// A device server's ports, in enumeration order.
class CChildPorts : public CSortSteps {
 public:
  // False when one of the ports is not started or has no name.
  [[nodiscard]] bool Collect(CParentDevice& server) {
    for (const DEVINST child : ChildrenOf(server.Element().DevInst)) {
      if (!Add(server.Set(), child)) return false;
    }
    return true;
  }
  [[nodiscard]] const std::vector<CWideString>& Names() const noexcept { return names_; }

  [[nodiscard]] std::optional<std::int32_t> FreeNumber() override {
    CCOMPortUtil& anyPort = *ports_.front();
    const CComDatabaseScope database(anyPort);
    const std::optional<ComUsage> usage = anyPort.ReadComUsage();
    const auto number = usage ? FirstFreeNumber(*usage, kFirstAside, kLastAside) : std::nullopt;
    return number ? std::optional(static_cast<std::int32_t>(*number)) : std::nullopt;
  }
  [[nodiscard]] bool Rename(std::size_t child, const CWideString& newName) override {
    return RenamePortAsInstaller(*ports_[child], newName) != 0;
  }
  void ReadName(std::size_t child, CWideString& name) override {
    static_cast<void>(ports_[child]->GetRegString(kPortName, name));
  }

 private:
  [[nodiscard]] bool Add(HDEVINFO deviceInfoSet, DEVINST child) {
    CWideString id;
    if (!GetInstanceId(child, id)) return false;
    ULONG status = 0;
    ULONG problem = 0;
    if (CM_Get_DevNode_Status(&status, &problem, child, 0) != CR_SUCCESS) return false;
    if ((status & DN_STARTED) == 0) return false;
    SP_DEVINFO_DATA element;
    if (!OpenDeviceInfo(deviceInfoSet, id.Text(), element, 0)) return false;
    auto port = std::make_unique<CCOMPortUtil>(deviceInfoSet, element);
    CWideString name;
    if (!port->GetRegString(kPortName, name)) return false;
    names_.push_back(name);
    ports_.push_back(std::move(port));
    return true;
  }

  std::vector<CWideString> names_;
  std::vector<std::unique_ptr<CCOMPortUtil>> ports_;
};

bool IsSorted(CParentDevice& server) {
  std::uint32_t flag = 0;
  return ReadDevRegDword(server.Set(), server.Element(), kSortedFlag, flag) && flag == 1;
}

void MarkSorted(CParentDevice& server) {
  WriteDevRegDword(server.Set(), server.Element(), kSortedFlag, 1);
}

void SortPortsOfServerOf(const SP_DEVINFO_DATA& port) {
  CParentDevice server;
  if (!server.Open(port) || IsSorted(server)) return;
  CChildPorts ports;
  if (!ports.Collect(server)) return;
  if (!NeedsSorting(ports.Names())) return MarkSorted(server);
  // After a rename that failed, the server is neither marked nor restarted.
  if (!SortNames(ports.Names(), ports)) return;
  MarkSorted(server);
  // Read back and not acted on: a server whose flag could not be written has renamed ports all the same, and
  // they need the restart.
  static_cast<void>(IsSorted(server));
  DisableDevice(server.Set(), server.Element());
  EnableDevice(server.Set(), server.Element());
}

}  // namespace

int SortChildPortNames(HDEVINFO /*deviceInfoSet*/, const SP_DEVINFO_DATA& port) {
  SortPortsOfServerOf(port);
  return 1;
}

bool ReleasePortName(CCOMPortUtil& port) {
  CWideString name;
  if (!port.GetRegString(kPortName, name)) return false;
  CWideString kernelPath;
  if (!ReadDosDevice(name, kernelPath) || !RemoveDosDevice(name, kernelPath)) return true;
  const CComDatabaseScope database(port);
  port.ReleaseComNumber(static_cast<DWORD>(ComNumberOf(name.View())));
  return true;
}
