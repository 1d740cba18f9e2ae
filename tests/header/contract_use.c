/* A stranger's translation unit: includes the contract and nothing before it, and uses all of it. Compiled
 * as C11 and as C++17; a prototype that disagrees with its function type does not compile.
 */
#include "kdui10.h"

#ifdef __cplusplus
#define CONTRACT_ASSERT(condition) static_assert(condition, #condition)
#else
#define CONTRACT_ASSERT(condition) _Static_assert(condition, #condition)
#endif

CONTRACT_ASSERT(sizeof(KdUpdateResult) == 8);
CONTRACT_ASSERT(KD_KEEP_SETTING > KD_DATA_BITS_8 && KD_KEEP_SETTING > KD_PARITY_SPACE);
CONTRACT_ASSERT((KD_KEEP_SETTING & 0xFu) == 0 && KD_KEEP_SETTING != KD_FLOW_CONTROL_NONE);

struct Contract {
  KdChangeComNumberFn changeComNumber;
  KdNPortSettingsUpdateFn settingsUpdate;
  KdNPortNetworkInfoUpdateFn networkInfoUpdate;
  KdUpdateDriverFn updateDriver;
  KdUCoInstallCardFn coInstallCard;
  KdUCoInstallPortFn coInstallPort;
  KdUPortPropPageFn portPropPage;
  KdDllCanUnloadNowFn canUnloadNow;
  KdDllGetClassObjectFn getClassObject;
  KdDllRegisterServerFn registerServer;
  KdDllUnregisterServerFn unregisterServer;
};

void BindContract(struct Contract* contract);
void BindContract(struct Contract* contract) {
  contract->changeComNumber = KdChangeComNumber;
  contract->settingsUpdate = KdNPortSettingsUpdate;
  contract->networkInfoUpdate = KdNPortNetworkInfoUpdate;
  contract->updateDriver = KdUpdateDriver;
  contract->coInstallCard = KdUCoInstallCard;
  contract->coInstallPort = KdUCoInstallPort;
  contract->portPropPage = KdUPortPropPage;
}

BOOL UseContract(const struct Contract* contract, const WCHAR* port);
BOOL UseContract(const struct Contract* contract, const WCHAR* port) {
  return contract->changeComNumber(port, L"COM7") &&
         contract->settingsUpdate(port, NULL, 9600, KD_DATA_BITS_8, KD_PARITY_NONE, KD_STOP_BITS_1,
                                  KD_FLOW_CONTROL_XON_XOFF) == 1;
}
