// The system's text type. Portable, except for LoadFromTable.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

// Which kind of value a conversion of CWideString::Format takes; for the check at compile time only.
enum class FormatKind { Signed, Unsigned, Text, Character };

// A format whose conversions are checked against the argument types while compiling. It holds the literal's
// address and is made where CWideString::Format is called.
//
// Conversions: %d (signed integer), %u and %x and %X (unsigned integer, with an optional 0 flag and a
// width of one digit: %02X), %c (wchar_t), %s (text) and %%. Anything else does not compile. A signed integer
// for %x or %u does not compile either, so that no negative number is shown as a large one by accident.
template <class... Args>
class CFormatText {
 public:
  // NOLINTNEXTLINE(google-explicit-constructor): a literal is written where a format is expected.
  consteval CFormatText(const wchar_t* format) : format_(format) {
    constexpr FormatKind kinds[] = {KindOf<Args>()..., FormatKind::Signed};
    std::size_t next = 0;
    for (const wchar_t* at = format; *at != 0; ++at) {
      if (*at != L'%') continue;
      ++at;
      if (*at == L'%') continue;
      if (*at == L'0') ++at;
      if (*at >= L'1' && *at <= L'9') ++at;
      if (next == sizeof...(Args)) throw "more conversions than arguments";
      if (kinds[next] != KindOfConversion(*at)) throw "argument does not fit its conversion";
      ++next;
    }
    if (next != sizeof...(Args)) throw "more arguments than conversions";
  }

  // The literal, zero-terminated.
  [[nodiscard]] const wchar_t* Get() const { return format_; }

 private:
  template <class T>
  static consteval FormatKind KindOf() {
    using Plain = std::remove_cvref_t<T>;
    if constexpr (std::is_same_v<Plain, wchar_t>) {
      return FormatKind::Character;
    } else if constexpr (std::is_integral_v<Plain> && std::is_signed_v<Plain>) {
      return FormatKind::Signed;
    } else if constexpr (std::is_integral_v<Plain>) {
      return FormatKind::Unsigned;
    } else {
      return FormatKind::Text;
    }
  }
  static consteval FormatKind KindOfConversion(wchar_t conversion) {
    if (conversion == L'd') return FormatKind::Signed;
    if (conversion == L'u' || conversion == L'x' || conversion == L'X') return FormatKind::Unsigned;
    if (conversion == L's') return FormatKind::Text;
    if (conversion == L'c') return FormatKind::Character;
    throw "unknown conversion";
  }

  const wchar_t* format_;
};

// Wide text, shared by reference counting and copied on write, with an error state beside it.
//
// Lengths and positions count wchar_t elements (UTF-16 code units on Windows), terminators excluded.
// Operations throw std::bad_alloc when memory runs out, except the Assign* conversions, which set the error
// state instead: the stream code reads it after every assignment. Copies are cheap. One object must not be
// used by two threads at once; copies may be.
class CWideString {
 public:
  static constexpr int kGood = 0;
  static constexpr int kFailed = -1;
  static constexpr std::size_t kNotFound = static_cast<std::size_t>(-1);

  CWideString() noexcept = default;
  // A null pointer gives the empty text.
  CWideString(const wchar_t* text);     // NOLINT(google-explicit-constructor): text is text
  CWideString(std::wstring_view text);  // NOLINT(google-explicit-constructor): text is text
  CWideString(const std::wstring& text) : CWideString(std::wstring_view(text)) {}  // NOLINT: as above

  // The text without its terminator; valid until the object is changed or destroyed.
  [[nodiscard]] std::wstring_view View() const noexcept;
  // Zero-terminated and never null; valid until the object is changed or destroyed.
  [[nodiscard]] const wchar_t* Text() const noexcept;
  [[nodiscard]] std::size_t Length() const noexcept { return View().size(); }
  [[nodiscard]] bool IsEmpty() const noexcept { return View().empty(); }

  // kGood, or kFailed after a conversion or allocation that failed; copied with the text. The text itself
  // stays usable. A successful Assign* clears it.
  [[nodiscard]] int ErrorState() const noexcept { return error_; }
  void MarkFailed() noexcept { error_ = kFailed; }

  // Takes over UTF-16 code units. On failure the old text stays, the error state is set and false returned.
  bool AssignUtf16(std::u16string_view text) noexcept;
  // Takes over narrow text of 7-bit characters; a byte above 127 is a failed conversion. The process's locale
  // has no influence: the host's setlocale must not change what a driver receives.
  bool AssignNarrow(std::string_view text) noexcept;
  // The first `count` UTF-16 units as narrow text; nothing when one of them is not 7-bit. count must not
  // exceed the length in units.
  [[nodiscard]] std::optional<std::string> ToNarrow(std::size_t count) const;

  // Appends; `more` may be a view into this object.
  CWideString& operator+=(std::wstring_view more);
  // First position of `what` at or after `from`, or kNotFound.
  [[nodiscard]] std::size_t Find(std::wstring_view what, std::size_t from = 0) const noexcept;
  // The text from `from`, at most `count` elements; positions past the end give the empty text.
  [[nodiscard]] CWideString Mid(std::size_t from, std::size_t count = kNotFound) const;
  [[nodiscard]] CWideString Left(std::size_t count) const { return Mid(0, count); }
  // Replaces every occurrence of `what`, from the front and without looking at replaced text again; returns
  // how many there were. An empty `what` replaces nothing.
  std::size_t Replace(std::wstring_view what, std::wstring_view with);
  void MakeLower();  // as CharLowerW folds
  void MakeUpper();  // as CharUpperW folds

  // Takes the string with this id from the module's string table; a missing one gives the empty text and
  // false. Windows only.
  bool LoadFromTable(std::uint32_t id);

  // Builds a text from a format (see CFormatText). Text arguments are CWideString, wide views and pointers to
  // zero-terminated text, which must not be null.
  template <class... Args>
  [[nodiscard]] static CWideString Format(CFormatText<std::type_identity_t<Args>...> format,
                                          const Args&... args) {
    const FormatArgument list[] = {FormatArgument(args)..., FormatArgument(0)};
    return FormatList(format.Get(), list);
  }

  friend CWideString operator+(CWideString left, std::wstring_view right) { return left += right; }
  friend bool operator==(const CWideString& left, const CWideString& right) noexcept {
    return left.View() == right.View();
  }
  friend bool operator==(const CWideString& left, const wchar_t* right) { return left.View() == right; }

 private:
  struct FormatArgument {
    template <std::integral T>
    explicit FormatArgument(T value) : number(static_cast<std::int64_t>(value)) {}
    explicit FormatArgument(const CWideString& value) : text(value.View()) {}
    explicit FormatArgument(std::wstring_view value) : text(value) {}
    explicit FormatArgument(const wchar_t* value) : text(value) {}
    std::int64_t number = 0;
    std::wstring_view text;
  };
  [[nodiscard]] static CWideString FormatList(const wchar_t* format, const FormatArgument* arguments);
  std::wstring& Writable();

  std::shared_ptr<std::wstring> text_;  // null for the empty text
  int error_ = kGood;
};
