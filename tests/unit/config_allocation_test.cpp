// Information sets when memory runs out. This file gives the whole program an operator new that can be told
// to fail.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "config/nbus_parameters.h"

namespace {

// Allocations until one fails; negative: none does.
thread_local int g_allocationsLeft = -1;
thread_local bool g_failed = false;

void* Allocate(std::size_t size) noexcept {
  if (g_allocationsLeft == 0) {
    g_failed = true;
    return nullptr;
  }
  if (g_allocationsLeft > 0) --g_allocationsLeft;
  return std::malloc(size != 0 ? size : 1);
}

// While it lives, the allocations after the first `count` fail.
class FailAfter {
 public:
  explicit FailAfter(int count) {
    g_allocationsLeft = count;
    g_failed = false;
  }
  ~FailAfter() { g_allocationsLeft = -1; }
  FailAfter(const FailAfter&) = delete;
  FailAfter& operator=(const FailAfter&) = delete;
  [[nodiscard]] static bool HasFailed() { return g_failed; }
};

}  // namespace

void* operator new(std::size_t size) {
  void* const memory = Allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
namespace {

TEST(ConfigAllocationTest, DefaultStaysWithTheCallerUntilTheItemExists) {
  const std::wstring longName(100, L'n');  // too long for a string to hold without memory
  std::uint32_t value = 0;
  bool added = false;
  int defaultsKept = 0;
  for (int count = 0; !added; ++count) {
    CSsInformationSet set;
    auto five = std::make_unique<CSsDefaultValue>(5U);
    {
      const FailAfter fail(count);
      added = set.AddItem(0, longName.c_str(), &value, CSsInformationItem::kDword, 0, five);
    }
    EXPECT_EQ(set.Items().size(), added ? 1U : 0U);
    if (five != nullptr) ++defaultsKept;
    ASSERT_LT(count, 20);
  }
  EXPECT_EQ(defaultsKept, 2) << "with the item there, the default goes with it";
}

TEST(ConfigAllocationTest, SetLacksWhatMemoryDidNotSufficeFor) {
  const CKdNBusUserModeInterface whole;
  for (int count = 0;; ++count) {
    std::unique_ptr<CKdNBusUserModeInterface> set;
    bool complete = false;
    {
      void* const place = operator new(sizeof(CKdNBusUserModeInterface));
      const FailAfter fail(count);
      set.reset(new (place) CKdNBusUserModeInterface);
      complete = !FailAfter::HasFailed();
    }
    // Memory that has run out stays out here, so the set is the beginning of the whole one.
    ASSERT_EQ(set->Items().size() == whole.Items().size(), complete) << count;
    for (std::size_t i = 0; i < set->Items().size(); ++i) {
      ASSERT_EQ(set->Items()[i]->name, whole.Items()[i]->name) << count;
    }
    if (complete) break;
  }
}

TEST(ConfigAllocationTest, TextThatCannotBeStoredOrConvertedFailsTheStream) {
  CKdNBusUserModeInterface set;
  set.Model = std::wstring(100, L'm');
  std::vector<std::uint8_t> stream(set.GetSerialisedSize());
  auto remaining = static_cast<std::uint32_t>(stream.size());
  {
    const FailAfter fail(0);
    EXPECT_FALSE(set.Serialise(stream.data(), remaining));
  }
  EXPECT_EQ(set.Model.ErrorState(), CWideString::kFailed);

  remaining = static_cast<std::uint32_t>(stream.size());
  ASSERT_TRUE(set.Serialise(stream.data(), remaining));
  remaining = static_cast<std::uint32_t>(stream.size());
  CKdNBusUserModeInterface read;
  {
    const FailAfter fail(0);
    EXPECT_FALSE(read.Deserialise(stream.data(), remaining));
  }
  EXPECT_EQ(read.Model.ErrorState(), CWideString::kFailed);
  EXPECT_TRUE(read.Model.IsEmpty());
}

}  // namespace
