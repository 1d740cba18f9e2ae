#include "workbench/machine/gate/function_row.h"

#include <array>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>

#include "workbench/machine/tables/tables.h"

namespace workbench {
namespace {

using RowMap = std::unordered_map<std::string_view, const FunctionRow*>;

const RowMap& Rows() {
  static const RowMap rows = [] {
    RowMap map;
    for (const auto& table :
         {DeviceTreeRows(), DeviceSetRows(), DevicePropertyRows(), ComNameRows(), FileRows(), HostRows(),
          ScreenRows(), ModuleRows(), KernelRows(), RegistryRows(), InternetRows(), WindowRows()}) {
      for (const FunctionRow& row : table) {
        if (!map.emplace(row.name, &row).second)
          throw std::logic_error(std::string("two rows for ") + row.name);
      }
    }
    return map;
  }();
  return rows;
}

}  // namespace

const char* NameOf(HandleKind kind) {
  static constexpr std::array kNames = {"none",
                                        "file",
                                        "driver file",
                                        "COM port file",
                                        "registry key",
                                        "device set",
                                        "COM database",
                                        "mutex",
                                        "event",
                                        "process",
                                        "thread",
                                        "internet",
                                        "GDI object",
                                        "cursor",
                                        "window",
                                        "local memory",
                                        "heap",
                                        "module",
                                        "activation context"};
  return kNames.at(static_cast<std::size_t>(kind));
}

const FunctionRow* FindRow(const char* name) {
  const auto found = Rows().find(name);
  return found == Rows().end() ? nullptr : found->second;
}

}  // namespace workbench
