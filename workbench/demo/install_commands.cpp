#include "workbench/demo/install_commands.h"

#include "workbench/demo/install_story.h"
#include "workbench/demo/text_table.h"

namespace workbench {
namespace {

struct StoryRow {
  const char* name;
  const char* summary;
  bool takesPorts;
  bool (*tell)(InstallStory& story, unsigned ports);
};
constexpr StoryRow kStories[] = {
    {"install", "Installs a new device server whose ports come up out of order", true,
     [](InstallStory& story, unsigned ports) { return story.Install(ports); }},
    {"reinstall", "Installs a device server's driver again: settings and names come back", true,
     [](InstallStory& story, unsigned ports) { return story.Reinstall(ports); }},
    {"rename", "Renames a port: to a free name, to a taken one, and while it is open", false,
     [](InstallStory& story, unsigned) { return story.Rename(); }},
    {"remove", "Removes a device server: its COM numbers come back", true,
     [](InstallStory& story, unsigned ports) { return story.Remove(ports); }},
    {"usb", "Installs a USB port whose model always has the same COM number", false,
     [](InstallStory& story, unsigned) { return story.Usb(); }},
};

class StoryCommand : public Command {
 public:
  explicit StoryCommand(const StoryRow& row) : row_(row) {}
  [[nodiscard]] const char* Name() const override { return row_.name; }
  [[nodiscard]] const char* Summary() const override { return row_.summary; }
  void Describe(CLI::App& app) override {
    if (!row_.takesPorts) return;
    app.add_option("--ports", ports_, "How many ports the device server has")
        ->check(CLI::Range(1u, 200u))
        ->capture_default_str();
  }
  [[nodiscard]] int Run() override {
    InstallStory story(&Print);
    return row_.tell(story, ports_) ? 0 : 1;
  }

 private:
  const StoryRow& row_;
  unsigned ports_ = 8;
};

}  // namespace

void AddInstallCommands(std::vector<std::unique_ptr<Command>>& commands) {
  for (const StoryRow& row : kStories) commands.push_back(std::make_unique<StoryCommand>(row));
}

}  // namespace workbench
