#include "base/wide_string.h"

#include <algorithm>
#include <new>
#include <utility>

#include "base/utf16.h"

CWideString::CWideString(const wchar_t* text)
    : CWideString(text != nullptr ? std::wstring_view(text) : std::wstring_view()) {}

CWideString::CWideString(std::wstring_view text) {
  if (!text.empty()) text_ = std::make_shared<std::wstring>(text);
}

std::wstring_view CWideString::View() const noexcept {
  return text_ ? std::wstring_view(*text_) : std::wstring_view();
}

const wchar_t* CWideString::Text() const noexcept {
  return text_ ? text_->c_str() : L"";
}

std::wstring& CWideString::Writable() {
  if (!text_) {
    text_ = std::make_shared<std::wstring>();
  } else if (text_.use_count() > 1) {
    text_ = std::make_shared<std::wstring>(*text_);
  }
  return *text_;
}

bool CWideString::AssignUtf16(std::u16string_view text) noexcept {
  try {
    *this = CWideString(FromUtf16(text));
    return true;
  } catch (const std::bad_alloc&) {
    MarkFailed();
    return false;
  }
}

bool CWideString::AssignNarrow(std::string_view text) noexcept {
  const bool sevenBit =
      std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  try {
    if (sevenBit) {
      *this = CWideString(std::wstring(text.begin(), text.end()));
      return true;
    }
  } catch (const std::bad_alloc&) {
    // Reported below, as a failed conversion is.
  }
  MarkFailed();
  return false;
}

std::optional<std::string> CWideString::ToNarrow(std::size_t count) const {
  const std::wstring_view view = View().substr(0, count);
  std::string narrow;
  narrow.reserve(view.size());
  for (const wchar_t c : view) {
    if (static_cast<std::uint32_t>(c) >= 0x80) return std::nullopt;
    narrow.push_back(static_cast<char>(c));
  }
  return narrow;
}

CWideString& CWideString::operator+=(std::wstring_view more) {
  if (!more.empty()) Writable().append(more);
  return *this;
}

std::size_t CWideString::Find(std::wstring_view what, std::size_t from) const noexcept {
  const std::size_t at = View().find(what, from);
  return at == std::wstring_view::npos ? kNotFound : at;
}

CWideString CWideString::Mid(std::size_t from, std::size_t count) const {
  const std::wstring_view view = View();
  if (from == 0 && count >= view.size()) return *this;
  if (from >= view.size()) return {};
  return CWideString(view.substr(from, count));
}

std::size_t CWideString::Replace(std::wstring_view what, std::wstring_view with) {
  if (what.empty() || Find(what) == kNotFound) return 0;
  const std::wstring_view old = View();
  std::wstring result;
  std::size_t count = 0;
  std::size_t from = 0;
  for (std::size_t at = 0; (at = old.find(what, from)) != std::wstring_view::npos; from = at + what.size()) {
    result.append(old, from, at - from).append(with);
    ++count;
  }
  result.append(old, from);
  text_ = std::make_shared<std::wstring>(std::move(result));
  return count;
}

namespace {

struct Conversion {
  bool zeroes = false;
  std::size_t width = 0;
  wchar_t kind = 0;
};

// Reads what follows a '%'; leaves `at` on the conversion's last character.
Conversion ReadConversion(const wchar_t*& at) {
  Conversion result;
  ++at;
  if (*at == L'0') {
    result.zeroes = true;
    ++at;
  }
  if (*at >= L'1' && *at <= L'9') result.width = static_cast<std::size_t>(*at++ - L'0');
  result.kind = *at;
  return result;
}

std::wstring NumberText(std::int64_t number, wchar_t kind) {
  if (kind == L'd') return std::to_wstring(number);
  const wchar_t* digits = kind == L'X' ? L"0123456789ABCDEF" : L"0123456789abcdef";
  const std::uint64_t base = kind == L'u' ? 10 : 16;
  std::wstring reversed;
  auto rest = static_cast<std::uint64_t>(number);
  do {
    reversed.push_back(digits[rest % base]);
    rest /= base;
  } while (rest != 0);
  return {reversed.rbegin(), reversed.rend()};
}

}  // namespace

CWideString CWideString::FormatList(const wchar_t* format, const FormatArgument* arguments) {
  std::wstring result;
  for (const wchar_t* at = format; *at != 0; ++at) {
    if (*at != L'%') {
      result.push_back(*at);
      continue;
    }
    const Conversion conversion = ReadConversion(at);
    if (conversion.kind == L'%') {
      result.push_back(L'%');
      continue;
    }
    const FormatArgument& argument = *arguments++;
    std::wstring piece;
    if (conversion.kind == L's') {
      piece = argument.text;
    } else if (conversion.kind == L'c') {
      piece.assign(1, static_cast<wchar_t>(argument.number));
    } else {
      piece = NumberText(argument.number, conversion.kind);
    }
    if (piece.size() < conversion.width) {
      piece.insert(0, conversion.width - piece.size(), conversion.zeroes ? L'0' : L' ');
    }
    result += piece;
  }
  return CWideString(result);
}
