// Information sets: ordered lists of named parameters, bound to the members of the object that owns them.
// Portable.
//
// A set turns its members into the byte stream that the kernel drivers understand, and stores a stream from a
// driver into them. The stream holds no names: both sides register the same parameters in the same order, so
// that order is the wire format. All integers on the wire are little-endian.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <variant>
#include <vector>

#include "base/wide_string.h"

// The options of a stream: five flags, and the tag of its header.
class CSsSerialisationBase {
 public:
  // Strings carry a terminator: one zero byte after narrow text, two after wide text.
  static constexpr std::uint32_t kTerminator = 0x01;
  // Strings carry a length prefix of 32 bits before the text.
  static constexpr std::uint32_t kLengthPrefix = 0x02;
  // Strings are UTF-16 code units; without it, narrow text.
  static constexpr std::uint32_t kWideStrings = 0x04;
  // Every element is preceded by one byte that says which kind it is (ElementTag).
  static constexpr std::uint32_t kTypeTags = 0x08;
  // The stream begins with the set's tag, 32 bits.
  static constexpr std::uint32_t kHeader = 0x10;

  CSsSerialisationBase(std::uint32_t flags, std::uint32_t tag) noexcept : flags_(flags), tag_(tag) {}

  // Whether a stream can have these flags: none but the five, and at least one of terminator and length
  // prefix, without which a reader could not find the end of a string.
  [[nodiscard]] static constexpr bool IsValid(std::uint32_t flags) noexcept {
    return flags < 0x20 && (flags & (kTerminator | kLengthPrefix)) != 0;
  }

  [[nodiscard]] std::uint32_t Flags() const noexcept { return flags_; }
  void SetFlags(std::uint32_t flags) noexcept { flags_ = flags; }
  [[nodiscard]] std::uint32_t Tag() const noexcept { return tag_; }

 private:
  std::uint32_t flags_;
  std::uint32_t tag_;
};

// The options as a member of a set, which reports them through Options().
class CSsSerialisation : public CSsSerialisationBase {
 public:
  using CSsSerialisationBase::CSsSerialisationBase;
  virtual ~CSsSerialisation() = default;
};

// The default value of a parameter: a number of a DWORD item, a text of a string item.
using CSsDefaultValue = std::variant<std::uint32_t, CWideString>;

// One parameter of a set.
struct CSsInformationItem {
  static constexpr std::uint32_t kDword = 1;   // value points to a std::uint32_t
  static constexpr std::uint32_t kString = 2;  // value points to a CWideString

  std::uint8_t marker = 0;  // the caller's, as is `extra`; neither is in the stream
  CWideString name;         // the parameter's name on the drivers' side; not in the stream
  void* value = nullptr;    // the bound member; never owned
  std::unique_ptr<CSsDefaultValue> defaultValue;  // kept for its readers; no operation of the set applies it
  std::uint32_t type = 0;  // kDword or kString; any other value makes every stream operation fail
  std::uint64_t extra = 0;
};

// An ordered list of parameters and the options of their stream. It owns its items, never the members that
// they are bound to; these must outlive it or be members of an object derived from it. One set must not be
// used by two threads at once.
class CSsInformationSet {
 public:
  // What every set of the system is constructed with: narrow strings with a length prefix and a terminator.
  static constexpr std::uint32_t kDriverFlags =
      CSsSerialisationBase::kTerminator | CSsSerialisationBase::kLengthPrefix;

  explicit CSsInformationSet(std::uint32_t flags = kDriverFlags, std::uint32_t tag = 0) noexcept
      : options_(flags, tag) {}
  // The items point into the owner, so a copy would write into another object's members.
  CSsInformationSet(const CSsInformationSet&) = delete;
  CSsInformationSet& operator=(const CSsInformationSet&) = delete;
  virtual ~CSsInformationSet();

  // Appends a parameter. `value` is the bound member, of the type that `type` says. A null name or value is
  // refused. False also when memory runs out; the set then lacks the parameter.
  //
  // `defaultValue` passes to the item as soon as the item exists, and is empty afterwards; this also holds
  // when the name then cannot be copied and the item is dropped. Otherwise it stays with the caller.
  [[nodiscard]] bool AddItem(std::uint8_t marker, const wchar_t* name, void* value, std::uint32_t type,
                             std::uint64_t extra, std::unique_ptr<CSsDefaultValue>& defaultValue) noexcept;
  // Appends a string parameter whose default is the empty text; `narrowDefault` is not used and may be null.
  // Fails as AddItem does. Kept on purpose: default texts
  [[nodiscard]] bool AddStringItem(const wchar_t* name, CWideString* value, const char* narrowDefault,
                                   std::uint64_t extra) noexcept;
  // Destroys every item with its name and default; the bound members keep their values. May be repeated.
  void RemoveAll() noexcept;

  // The stream operations. `flagsOverride` 0 means the set's own flags. Another value must be valid, or the
  // operation fails with nothing done; it replaces the set's flags during the call. The previous flags are
  // put back afterwards only when they were valid themselves. Kept on purpose: flags put back

  // Size of the stream in bytes; 0 on failure and for an empty set. A header is counted only when an override
  // asks for it. Kept on purpose: uncounted header
  [[nodiscard]] std::uint32_t GetSerialisedSize(std::uint32_t flagsOverride = 0) noexcept;
  // Writes the stream to `buffer`. `remaining` is the number of free bytes there, decreased by every byte
  // written, on failure too. Text that cannot be converted sets the bound string's error state and fails.
  [[nodiscard]] bool Serialise(std::uint8_t* buffer, std::uint32_t& remaining,
                               std::uint32_t flagsOverride = 0) noexcept;
  // Reads the stream at `buffer` into the bound members; nothing outside the `remaining` unread bytes is
  // looked at. `remaining` is decreased by every byte consumed. Bytes behind the last item are left alone.
  // A failure leaves the members that were already read with their new values.
  [[nodiscard]] bool Deserialise(const std::uint8_t* buffer, std::uint32_t& remaining,
                                 std::uint32_t flagsOverride = 0) noexcept;

  // The items in the order of registration; valid until the next change of the list. None is null.
  [[nodiscard]] std::span<const std::unique_ptr<CSsInformationItem>> Items() const noexcept { return items_; }
  [[nodiscard]] const CSsSerialisation& Options() const noexcept { return options_; }

 private:
  std::vector<std::unique_ptr<CSsInformationItem>> items_;
  CSsSerialisation options_;
};
