// The COM server that the DLL is in form: a module object behind the four COM entry points. Windows only.
//
// The bases do what the platform's class framework does for a DLL module, at the size needed here: one cached
// factory for each class, registration of the module's type library, nothing else. Results are HRESULTs;
// GetFilePath, the registration and the script replacements may also throw std::bad_alloc, which the exports
// turn into a failure.
#pragma once

#include <windows.h>

#include <oaidl.h>
#include <unknwn.h>

#include <array>
#include <atomic>
#include <span>

#include "base/wide_string.h"

// One class that a module can create. Rows are the module's own and live as long as it.
struct ComClassEntry {
  const CLSID* classId;
  // Makes the class's factory and hands one reference to the caller.
  HRESULT (*createFactory)(IUnknown** factory);
  // The module's reference to the factory, kept until the DLL goes; null until it is first asked for.
  IUnknown* factory;
};

// One %NAME% of a registration script and the text that replaces it.
struct ScriptReplacement {
  const wchar_t* name = nullptr;  // without the percent signs
  CWideString text;
};

// What every module has: an instance, a count of what keeps it loaded, and where it is registered.
class CAtlModule {
 public:
  constexpr CAtlModule() noexcept = default;
  CAtlModule(const CAtlModule&) = delete;
  CAtlModule& operator=(const CAtlModule&) = delete;

  // Objects and locked servers count; any thread. Both return the new count.
  LONG Lock() noexcept { return ++lockCount_; }
  LONG Unlock() noexcept { return --lockCount_; }
  [[nodiscard]] LONG GetLockCount() const noexcept { return lockCount_; }

  // The module's file with its full path. On failure `path` stays as it was.
  [[nodiscard]] HRESULT GetFilePath(CWideString& path) const;

  // Write or remove the registration of the type library in the module's file, for the machine, which needs
  // administrator rights, or for the user (see IsPerUserRegistration).
  [[nodiscard]] HRESULT RegisterTypeLibrary() const;
  [[nodiscard]] HRESULT UnregisterTypeLibrary() const;

  // True when the environment holds OAPERUSERTLIBREG=1, which is how Windows' own type library
  // registration is switched to the user's part of the registry.
  [[nodiscard]] static bool IsPerUserRegistration() noexcept;

 protected:
  ~CAtlModule() = default;

 private:
  std::atomic<LONG> lockCount_{0};
};

// Searches `classes` for the class and asks its factory for an interface. CLASS_E_CLASSNOTAVAILABLE when the
// class is not there, otherwise the result of the factory. `object` is not null and holds null when this
// fails; on success the caller owns the reference. The lock guards the making of factories, so any thread may
// call.
[[nodiscard]] HRESULT GetClassObjectFrom(std::span<ComClassEntry> classes, SRWLOCK& creation,
                                         REFCLSID classId, REFIID interfaceId, void** object) noexcept;

// Sets the thread's locale to the system's default for one registration, so that what is written does not
// depend on the calling user's language. To be made on the stack.
class CSystemLocaleScope {
 public:
  CSystemLocaleScope() noexcept : locale_(GetThreadLocale()) { SetThreadLocale(LOCALE_SYSTEM_DEFAULT); }
  ~CSystemLocaleScope() { SetThreadLocale(locale_); }
  CSystemLocaleScope(const CSystemLocaleScope&) = delete;
  CSystemLocaleScope& operator=(const CSystemLocaleScope&) = delete;

 private:
  LCID locale_;
};

// The four entry points over a module `Derived`, which supplies IsInitialised(), Classes() - a span of
// ComClassEntry that lives as long as the module - and what CAtlModule has.
template <class Derived>
class CAtlDllModuleT : public CAtlModule {
 public:
  // A further step of registration, run after the type library's; null for none.
  using RegistrationStep = HRESULT (*)(const Derived& module);
  void SetRegistrationStep(RegistrationStep step) noexcept { registrationStep_ = step; }

  // S_OK when nothing of the module is in use, otherwise S_FALSE. Any thread.
  [[nodiscard]] HRESULT DllCanUnloadNow() const noexcept { return GetLockCount() == 0 ? S_OK : S_FALSE; }

  // E_POINTER for a null `object`, E_UNEXPECTED before DllMain has run, otherwise see GetClassObjectFrom.
  [[nodiscard]] HRESULT DllGetClassObject(REFCLSID classId, REFIID interfaceId, void** object) noexcept {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!This().IsInitialised()) return E_UNEXPECTED;
    return GetClassObjectFrom(This().Classes(), factoryCreation_, classId, interfaceId, object);
  }

  // Write and remove the module's registration: the type library's, then the further step. The first failure
  // ends it; what was written before stays.
  [[nodiscard]] HRESULT DllRegisterServer() {
    const CSystemLocaleScope locale;
    const HRESULT result = RegisterTypeLibrary();
    if (FAILED(result) || !registrationStep_) return result;
    return registrationStep_(This());
  }

  [[nodiscard]] HRESULT DllUnregisterServer() {
    const CSystemLocaleScope locale;
    return UnregisterTypeLibrary();
  }

 protected:
  constexpr CAtlDllModuleT() noexcept = default;
  ~CAtlDllModuleT() = default;

 private:
  [[nodiscard]] Derived& This() noexcept { return static_cast<Derived&>(*this); }

  RegistrationStep registrationStep_ = nullptr;
  SRWLOCK factoryCreation_ = SRWLOCK_INIT;
};

// The module of KdUUI10.DLL. Its class table is empty: nothing can be created from it, and registration
// writes the type library only. The classes' own registration is left to the scripts in the resources.
class CKdUUIModule : public CAtlDllModuleT<CKdUUIModule> {
 public:
  // The id of the type library (kduui.idl).
  static constexpr GUID kLibraryId = {
      0xE39B6F12, 0xC847, 0x4E0A, {0x9D, 0x31, 0x6A, 0x2F, 0x8B, 0x05, 0xC7, 0xD4}};

  constexpr CKdUUIModule() noexcept = default;

  // False until DllMain has set the module's instance.
  [[nodiscard]] bool IsInitialised() const noexcept;
  [[nodiscard]] std::span<ComClassEntry> Classes() const noexcept { return {}; }

  // The texts for %APPID% and %MODULE% in the registration scripts. Kept on purpose: two module names
  [[nodiscard]] HRESULT GetScriptReplacements(std::array<ScriptReplacement, 2>& replacements) const;
};

// The one module object of this DLL. It needs no construction at run time and outlives every caller.
[[nodiscard]] CKdUUIModule& ComModule() noexcept;
