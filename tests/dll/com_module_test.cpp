// The module object by itself: what the DLL, whose class table is empty and whose instance is always known,
// cannot show.
#include "module/com_module.h"

#include <gtest/gtest.h>

// COM interfaces have no virtual destructor: Release is what frees.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

namespace {

constexpr CLSID kFirst = {0x11111111, 0, 0, {0, 0, 0, 0, 0, 0, 0, 1}};
constexpr CLSID kBroken = {0x22222222, 0, 0, {0, 0, 0, 0, 0, 0, 0, 2}};

int factoriesMade = 0;

// A factory that lives as long as the program.
class Factory : public IUnknown {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    if (!IsEqualIID(id, IID_IUnknown)) return E_NOINTERFACE;
    *object = this;
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
};

HRESULT MakeFactory(IUnknown** factory) {
  static Factory only;
  ++factoriesMade;
  *factory = &only;
  return S_OK;
}

HRESULT MakeNothing(IUnknown**) {
  return E_OUTOFMEMORY;
}

class TestModule : public CAtlDllModuleT<TestModule> {
 public:
  [[nodiscard]] bool IsInitialised() const noexcept { return true; }
  [[nodiscard]] std::span<ComClassEntry> Classes() noexcept { return classes_; }

 private:
  std::array<ComClassEntry, 2> classes_ = {
      {{&kFirst, &MakeFactory, nullptr}, {&kBroken, &MakeNothing, nullptr}}};
};

void* const kPoison = reinterpret_cast<void*>(0xDEAD);

TEST(ComModule, MakesAClassFactoryOnceAndAsksItForTheInterface) {
  TestModule module;
  void* object = kPoison;
  factoriesMade = 0;
  EXPECT_EQ(module.DllGetClassObject(kFirst, IID_IDispatch, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(module.DllGetClassObject(kFirst, IID_IUnknown, &object), S_OK);
  EXPECT_NE(object, nullptr);
  EXPECT_EQ(factoriesMade, 1);
}

TEST(ComModule, FactoryThatCannotBeMadeIsThatFailure) {
  TestModule module;
  void* object = kPoison;
  EXPECT_EQ(module.DllGetClassObject(kBroken, IID_IUnknown, &object), E_OUTOFMEMORY);
  EXPECT_EQ(object, nullptr);
}

TEST(ComModule, LocksKeepItLoaded) {
  TestModule module;
  module.Lock();
  module.Lock();
  EXPECT_EQ(module.DllCanUnloadNow(), S_FALSE);
  module.Unlock();
  EXPECT_EQ(module.DllCanUnloadNow(), S_FALSE);
  module.Unlock();
  EXPECT_EQ(module.DllCanUnloadNow(), S_OK);
}

// Outside the DLL nobody has told the module its instance.
TEST(ComModule, WithoutAnInstanceGivesOutNothing) {
  void* object = kPoison;
  EXPECT_EQ(ComModule().DllGetClassObject(kFirst, IID_IUnknown, &object), E_UNEXPECTED);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(ComModule().DllGetClassObject(kFirst, IID_IUnknown, nullptr), E_POINTER);
}

TEST(ComModule, ScriptsGetAnEmptyApplicationIdAndTheModulesFile) {
  std::array<ScriptReplacement, 2> replacements;
  ASSERT_EQ(ComModule().GetScriptReplacements(replacements), S_OK);
  EXPECT_STREQ(replacements[0].name, L"APPID");
  EXPECT_TRUE(replacements[0].text.IsEmpty());
  EXPECT_STREQ(replacements[1].name, L"MODULE");
  wchar_t file[MAX_PATH];
  GetModuleFileNameW(nullptr, file, MAX_PATH);
  EXPECT_STREQ(replacements[1].text.Text(), file);
}

// The test program carries no type library, so that registering fails before the further step.
TEST(ComModule, FurtherRegistrationStepRunsOnlyAfterSuccess) {
  TestModule module;
  static bool ran;
  ran = false;
  module.SetRegistrationStep([](const TestModule&) -> HRESULT {
    ran = true;
    return S_OK;
  });
  const LCID locale = GetThreadLocale();
  EXPECT_EQ(module.DllRegisterServer(), TYPE_E_CANTLOADLIBRARY);
  EXPECT_FALSE(ran);
  EXPECT_EQ(GetThreadLocale(), locale);
}

}  // namespace
