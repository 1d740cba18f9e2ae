#include "config/information_set.h"

#include <limits>
#include <new>
#include <utility>

#include "config/byte_stream.h"
#include "config/stream_elements.h"

namespace {

// The flags of one stream operation: replaces the set's flags while it lives.
class CFlagsOverride {
 public:
  CFlagsOverride(CSsSerialisationBase& options, std::uint32_t flags) noexcept
      : options_(options), previous_(options.Flags()), usable_(flags == 0 || options.IsValid(flags)) {
    if (flags != 0 && usable_) options_.SetFlags(flags);
  }
  // Invalid flags are not put back: the set keeps the override. Without an override nothing changes.
  ~CFlagsOverride() {
    if (options_.IsValid(previous_)) options_.SetFlags(previous_);
  }
  CFlagsOverride(const CFlagsOverride&) = delete;
  CFlagsOverride& operator=(const CFlagsOverride&) = delete;

  [[nodiscard]] bool IsUsable() const noexcept { return usable_; }
  [[nodiscard]] std::uint32_t Effective() const noexcept { return options_.Flags(); }
  [[nodiscard]] bool HasHeader() const noexcept { return (Effective() & CSsSerialisationBase::kHeader) != 0; }

 private:
  CSsSerialisationBase& options_;
  std::uint32_t previous_;
  bool usable_;
};

}  // namespace

CSsInformationSet::~CSsInformationSet() {
  RemoveAll();
}

bool CSsInformationSet::AddItem(std::uint8_t marker, const wchar_t* name, void* value, std::uint32_t type,
                                std::uint64_t extra,
                                std::unique_ptr<CSsDefaultValue>& defaultValue) noexcept {
  if (name == nullptr || value == nullptr) return false;
  try {
    auto item = std::make_unique<CSsInformationItem>();
    items_.reserve(items_.size() + 1);
    item->marker = marker;
    item->value = value;
    item->type = type;
    item->extra = extra;
    // From here on the default belongs to the item, and goes with it when the name cannot be copied.
    item->defaultValue = std::move(defaultValue);
    item->name = CWideString(name);
    items_.push_back(std::move(item));
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

bool CSsInformationSet::AddStringItem(const wchar_t* name, CWideString* value, const char* /*narrowDefault*/,
                                      std::uint64_t extra) noexcept {
  std::unique_ptr<CSsDefaultValue> empty(new (std::nothrow) CSsDefaultValue(std::in_place_type<CWideString>));
  return empty && AddItem(0, name, value, CSsInformationItem::kString, extra, empty);
}

void CSsInformationSet::RemoveAll() noexcept {
  items_.clear();
}

std::uint32_t CSsInformationSet::GetSerialisedSize(std::uint32_t flagsOverride) noexcept {
  const CFlagsOverride flags(options_, flagsOverride);
  if (!flags.IsUsable()) return 0;
  std::uint64_t size = flagsOverride != 0 && flags.HasHeader() ? HeaderSize(flags.Effective()) : 0;
  for (const auto& item : items_) {
    const auto element = ElementSize(*item, flags.Effective());
    if (!element) return 0;
    size += *element;
  }
  return size <= std::numeric_limits<std::uint32_t>::max() ? static_cast<std::uint32_t>(size) : 0;
}

bool CSsInformationSet::Serialise(std::uint8_t* buffer, std::uint32_t& remaining,
                                  std::uint32_t flagsOverride) noexcept {
  const CFlagsOverride flags(options_, flagsOverride);
  if (!flags.IsUsable()) return false;
  CByteWriter out(buffer, remaining);
  if (flags.HasHeader() && !WriteHeader(out, options_.Tag(), flags.Effective())) return false;
  for (const auto& item : items_) {
    if (!WriteElement(out, *item, flags.Effective())) return false;
  }
  return true;
}

bool CSsInformationSet::Deserialise(const std::uint8_t* buffer, std::uint32_t& remaining,
                                    std::uint32_t flagsOverride) noexcept {
  const CFlagsOverride flags(options_, flagsOverride);
  if (!flags.IsUsable()) return false;
  CByteReader in(buffer, remaining);
  if (flags.HasHeader() && !ReadHeader(in, options_.Tag(), flags.Effective())) return false;
  for (const auto& item : items_) {
    if (!ReadElement(in, *item, flags.Effective())) return false;
  }
  return true;
}
