#include "library/MadeList.h"

#include "bridge/AppOpt.h"

std::string g_madeList;

// The linker sends the calls of CAppOpt::GetUserList here.
extern "C" int BridgesList(CAppOpt*,
                           CBuffer& list) asm("__wrap__ZN7CAppOpt11GetUserListER7CBuffer");
int BridgesList(CAppOpt*, CBuffer& list) {
    list = CBuffer(g_madeList.size() + 1);
    g_madeList.copy(list.Text(), g_madeList.size());
    *list.LengthPointer() = static_cast<int>(g_madeList.size());
    return 0;
}
