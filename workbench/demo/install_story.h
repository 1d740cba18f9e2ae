// Stories of installation, told step by step on a machine of their own.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "workbench/rig/device_installer.h"

namespace workbench {

// A host with the DLL and a device installer, and what the story has seen go wrong.
class InstallStory {
 public:
  explicit InstallStory(std::function<void(const std::wstring&)> print) : print_(std::move(print)) {}

  // The stories. Each returns whether everything ended as it should; a reason is printed where not.
  bool Install(unsigned ports);    // a new device server whose ports come up in reverse order
  bool Reinstall(unsigned ports);  // settings and names survive, on other numbers in between
  bool Rename();                   // to a free name, declined, while open, and forced
  bool Remove(unsigned ports);     // a server goes: its numbers come back, its uninstall program runs
  bool Usb();                      // a USB model takes its number from another device

 private:
  // A step's heading, what it does, and the table of places behind it.
  void Step(const std::wstring& heading);
  void Tell(const std::wstring& text);
  void Table(const std::wstring& when);
  // Prints what is not so.
  void Expect(bool holds, const std::wstring& what);
  // Every place of every port says the same.
  void ExpectAgreement();
  // Nothing was misused, and all that was expected held.
  [[nodiscard]] bool End();
  [[nodiscard]] DeviceServer AddServer(const ServerSpec& wanted);
  void InstallPorts(const std::vector<Device*>& ports);
  [[nodiscard]] std::wstring NameOf(const Device& port);
  void ExpectNames(const std::vector<Device*>& ports, unsigned firstNumber);

  std::function<void(const std::wstring&)> print_;
  Machine machine_;
  Dll dll_{machine_};
  DeviceInstaller installer_{machine_, dll_};
  bool good_ = true;
  std::size_t questionsTold_ = 0;
};

}  // namespace workbench
