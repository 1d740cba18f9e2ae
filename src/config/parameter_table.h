// The parameters of an information set as a table. Portable.
//
// The constructor of a parameter class registers its rows once; the order of the rows is the wire format.
#pragma once

#include <cstdint>
#include <memory>
#include <new>
#include <span>
#include <variant>

#include "config/information_set.h"

// One row: a parameter's name on the drivers' side, the member of Owner that it is bound to, and its default.
// Exactly one of `number` and `text` is set. Names and default texts are literals.
template <class Owner>
struct ParameterRow {
  using Number = std::uint32_t Owner::*;
  using Text = CWideString Owner::*;

  constexpr ParameterRow(const wchar_t* rowName, Number member, std::uint32_t rowDefault)
      : name(rowName), number(member), numberDefault(rowDefault) {}
  constexpr ParameterRow(const wchar_t* rowName, Text member, const char* rowDefault)
      : name(rowName), text(member), textDefault(rowDefault) {}

  const wchar_t* name;
  Number number = nullptr;  // set for a DWORD parameter
  Text text = nullptr;      // set for a string parameter
  std::uint32_t numberDefault = 0;
  const char* textDefault = nullptr;
};

// Registers one row of `owner`, which must live as long as `set`; usually both are the same object. False
// when memory runs out.
template <class Owner>
[[nodiscard]] bool RegisterParameter(CSsInformationSet& set, Owner& owner,
                                     const ParameterRow<Owner>& row) noexcept {
  if (row.text != nullptr) return set.AddStringItem(row.name, &(owner.*row.text), row.textDefault, 0);
  std::unique_ptr<CSsDefaultValue> value(new (std::nothrow) CSsDefaultValue(row.numberDefault));
  if (!value) return false;
  return set.AddItem(0, row.name, &(owner.*row.number), CSsInformationItem::kDword, 0, value);
}

// Registers the rows in their order. A row that memory does not suffice for is missing from the set
// afterwards. Kept on purpose: shorter set
template <class Owner>
void RegisterParameters(CSsInformationSet& set, Owner& owner,
                        std::span<const ParameterRow<Owner>> rows) noexcept {
  for (const ParameterRow<Owner>& row : rows) static_cast<void>(RegisterParameter(set, owner, row));
}
