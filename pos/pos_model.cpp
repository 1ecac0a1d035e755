// The table of text-insertion models, one row per model index.
#include "pos/pos_model.h"

#include <iterator>

constexpr PosModel ptPosModelDatabase[] = {
    // 0 NONE: read from the FIFO and dropped
    {nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr},
    // 1 AVE, VSI-Pro
    {&TermSet_AVE_VSIPro, ProcCmd_AVE_VSIPro, nullptr, nullptr, nullptr, POSName_AVE_VSIPro,
     &DPRCSet_AVE_VSIPro},
    // 2 AVE, Hydra
    {&TermSet_AVE_Hydra, ProcCmd_AVE_Hydra, nullptr, nullptr, nullptr, POSName_AVE_Hydra,
     &DPRCSet_AVE_Hydra},
    // 3 TVC, TVC2066D
    {&TermSet_TVC_2066D, ProcCmd_TVC_2066D, nullptr, nullptr, nullptr, POSName_TVC_2066D,
     &DPRCSet_TVC_2066D},
    // 4 ATM, Geniron
    {&TermSet_ATM_Geniron, ProcCmd_ATM_Geniron, CheckCmd_ATM_Geniron, nullptr, nullptr,
     POSName_ATM_Geniron, &DPRCSet_ATM_Geniron},
    // 5 Access Ctrl, Atop
    {&TermSet_AC_Atop, ProcCmd_AC_Atop, nullptr, nullptr, nullptr, POSName_AC_Atop, &DPRCSet_AC_Atop},
    // 6 Friendly Info., ATM (TCP 5001)
    {nullptr, ProcCmd_ATM_FriInfo, nullptr, nullptr, POSInit_ATM_FriInfo, POSName_ATM_FriInfo,
     &DPRCSet_ATM_FriInfo},
    // 7 APER, Chomguard
    {&TermSet_APER_Chomguard, ProcCmd_APER_Chomguard, nullptr, nullptr, nullptr,
     POSName_APER_Chomguard, &DPRCSet_APER_Chomguard},
    // 8 AJIN, INSPECTOR V1
    {&TermSet_WSI_Inspector, ProcCmd_WSI_Inspector, nullptr, nullptr, nullptr, POSName_WSI_Inspector,
     &DPRCSet_WSI_Inspector},
    // 9 MALVOREN, GENERAL TCP 6001
    {nullptr, ProcCmd_MLV_TCP6001, nullptr, nullptr, POSInit_MLV_TCP6001, POSName_MLV_TCP6001,
     &DPRCSet_MLV_TCP6001},
    // 10 MALVOREN, GENERAL UDP 6002
    {nullptr, ProcCmd_MLV_UDP6002, nullptr, nullptr, POSInit_MLV_UDP6002, POSName_MLV_UDP6002,
     &DPRCSet_MLV_UDP6002},
    // 11 KTT, CDMA MODULE (no layout)
    {&TermSet_KTT_CDMA, ProcCmd_KTT_CDMA, nullptr, nullptr, POSInit_KTT_CDMA, POSName_KTT_CDMA,
     nullptr},
};
static_assert(std::size(ptPosModelDatabase) == kPosModelCount);
