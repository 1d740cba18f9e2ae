// The computer that kdport runs on.
#pragma once

#include "kdport/commands/surroundings.h"
#include "kdport/windows/windows_host.h"

namespace KdPort {

class CWindowsSurroundings : public CSurroundings {
 public:
  [[nodiscard]] CHostAccess& Access() override { return host_; }
  [[nodiscard]] bool IsAdministrator() override;
  [[nodiscard]] std::vector<LiveStatus> AskServers(const Host& host, std::span<const std::size_t> ports,
                                                   std::chrono::milliseconds timeout) override;
  [[nodiscard]] Outcome UpdateDriver(const std::string& hardwareId, const std::string& inf,
                                     bool& restartNeeded) override;
  // The device tree is enumerated again, so that what was renamed is found by its new name.
  void EndChanges() override;
  [[nodiscard]] bool ReadFile(const std::string& path, std::string& content) override;
  [[nodiscard]] FileResult WriteFile(const std::string& path, std::string_view content,
                                     bool replace) override;
  void Print(std::string_view text) override;
  void PrintError(std::string_view text) override;
  void ShowProgress(std::size_t over, std::size_t all) override;
  [[nodiscard]] bool IsInterrupted() override;

 private:
  CWindowsHost host_;
};

}  // namespace KdPort
