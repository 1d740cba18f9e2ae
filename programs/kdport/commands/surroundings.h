// What the commands need besides a host: its device servers, files, a terminal. On Windows they are real;
// tests have their own.
#pragma once

#include <chrono>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kdport/model/host.h"
#include "kdport/model/live.h"
#include "kdport/run/host_access.h"

namespace KdPort {

enum class FileResult { Done, Exists, Failed };

// All text and all file names are UTF-8.
class CSurroundings {
 public:
  virtual ~CSurroundings() = default;

  [[nodiscard]] virtual CHostAccess& Access() = 0;
  [[nodiscard]] virtual bool IsAdministrator() = 0;
  // Asks the device servers of these ports, several at once; one that does not answer in time counts as
  // offline for all its ports. One status for each port.
  [[nodiscard]] virtual std::vector<LiveStatus> AskServers(const Host& host,
                                                           std::span<const std::size_t> ports,
                                                           std::chrono::milliseconds timeout) = 0;
  // Installs a driver without a question; `restartNeeded` is written when that was done.
  [[nodiscard]] virtual Outcome UpdateDriver(const std::string& hardwareId, const std::string& inf,
                                             bool& restartNeeded) = 0;
  // After the last step of a run that changed something.
  virtual void EndChanges() = 0;

  [[nodiscard]] virtual bool ReadFile(const std::string& path, std::string& content) = 0;
  // On the disk when it returns. Without `replace` an existing file stays.
  [[nodiscard]] virtual FileResult WriteFile(const std::string& path, std::string_view content,
                                             bool replace) = 0;

  virtual void Print(std::string_view text) = 0;
  virtual void PrintError(std::string_view text) = 0;
  // Shown on a terminal only.
  virtual void ShowProgress(std::size_t over, std::size_t all) = 0;
  // Between two steps: whether somebody pressed Ctrl+C since the first question.
  [[nodiscard]] virtual bool IsInterrupted() = 0;
};

}  // namespace KdPort
