// The table of text-insertion models (POS terminals, ATMs, access-control panels): the input line
// setting, record builder, set-up routine, display name and display-and-record layout of each.
#pragma once
#include <termios.h>
#include <cstddef>
#include <cstdint>

// Display-and-record layout of a model, copied verbatim into the shared block (452 bytes,
// little-endian like the target). Field i describes the i-th "|"-separated field of the record.
struct DPRCSetField {
    char sLabel[32];       // column label, NUL-padded
    uint32_t nParam1;      // passed on to the recorder
    uint32_t nParam2;      // field class: 1 code/number, 2 type/short text, 3 time, 4 text, 5 amount
    uint32_t nAlign;       // 1 left, 2 centred, 3 right
    uint32_t nX;           // left edge of the column, pixels
    uint32_t nWidth;       // width of the column, pixels
    uint32_t nFieldBit;    // distinct single-bit mask of the field
};
constexpr int kDPRCSetFields = 8;
struct DPRCSet {
    uint32_t nFieldCount;  // used entries, 1 to 8; the rest are zero
    DPRCSetField atField[kDPRCSetFields];
};
static_assert(sizeof(DPRCSetField) == 56);
static_assert(offsetof(DPRCSetField, nParam1) == 32);
static_assert(offsetof(DPRCSetField, nParam2) == 36);
static_assert(offsetof(DPRCSetField, nAlign) == 40);
static_assert(offsetof(DPRCSetField, nX) == 44);
static_assert(offsetof(DPRCSetField, nWidth) == 48);
static_assert(offsetof(DPRCSetField, nFieldBit) == 52);
static_assert(offsetof(DPRCSet, atField) == 4);
static_assert(sizeof(DPRCSet) == 452);

// (out: 128-byte record, in: received text, NUL-terminated, and the count of bytes read)
// -> record time in seconds since the epoch, 0 = no record.
using PosProcCmdFn = uint32_t (*)(char* psRecord, const char* psText, int nLength);
using PosCheckCmdFn = uint32_t (*)();
using PosInitFn = uint32_t (*)();

struct PosModel {
    const struct termios* TermSet;   // non-null: read from /dev/ttyS0; null: from /tmp/pos_fifo
    PosProcCmdFn ProcCmd;
    PosCheckCmdFn CheckCmd;          // never called by this process
    const void* pReserved;           // always null
    PosInitFn POSInit;               // run each time the model is selected
    const char* POSName;
    const DPRCSet* ptDPRCSet;
};
static_assert(sizeof(PosModel) == 7 * sizeof(void*), "seven pointer-sized members");

constexpr uint32_t kPosModelCount = 12;
extern const PosModel ptPosModelDatabase[kPosModelCount];

// --- The models' fixed names, defined in their sm_<model>.cpp ---------------------------------

extern const struct termios TermSet_AVE_VSIPro;
extern const char POSName_AVE_VSIPro[];
extern const DPRCSet DPRCSet_AVE_VSIPro;
uint32_t ProcCmd_AVE_VSIPro(char* psRecord, const char* psText, int nLength);

extern const struct termios TermSet_AVE_Hydra;
extern const char POSName_AVE_Hydra[];
extern const DPRCSet DPRCSet_AVE_Hydra;
uint32_t ProcCmd_AVE_Hydra(char* psRecord, const char* psText, int nLength);

extern const struct termios TermSet_TVC_2066D;
extern const char POSName_TVC_2066D[];
extern const DPRCSet DPRCSet_TVC_2066D;
uint32_t ProcCmd_TVC_2066D(char* psRecord, const char* psText, int nLength);

extern const struct termios TermSet_ATM_Geniron;
extern const char POSName_ATM_Geniron[];
extern const DPRCSet DPRCSet_ATM_Geniron;
uint32_t ProcCmd_ATM_Geniron(char* psRecord, const char* psText, int nLength);
uint32_t CheckCmd_ATM_Geniron();

extern const struct termios TermSet_AC_Atop;
extern const char POSName_AC_Atop[];
extern const DPRCSet DPRCSet_AC_Atop;
uint32_t ProcCmd_AC_Atop(char* psRecord, const char* psText, int nLength);

extern const char POSName_ATM_FriInfo[];
extern const DPRCSet DPRCSet_ATM_FriInfo;
uint32_t ProcCmd_ATM_FriInfo(char* psRecord, const char* psText, int nLength);
uint32_t POSInit_ATM_FriInfo();

extern const struct termios TermSet_APER_Chomguard;
extern const char POSName_APER_Chomguard[];
extern const DPRCSet DPRCSet_APER_Chomguard;
uint32_t ProcCmd_APER_Chomguard(char* psRecord, const char* psText, int nLength);

extern const struct termios TermSet_WSI_Inspector;
extern const char POSName_WSI_Inspector[];
extern const DPRCSet DPRCSet_WSI_Inspector;
uint32_t ProcCmd_WSI_Inspector(char* psRecord, const char* psText, int nLength);

extern const char POSName_MLV_TCP6001[];
extern const DPRCSet DPRCSet_MLV_TCP6001;
uint32_t ProcCmd_MLV_TCP6001(char* psRecord, const char* psText, int nLength);
uint32_t POSInit_MLV_TCP6001();

extern const char POSName_MLV_UDP6002[];
extern const DPRCSet DPRCSet_MLV_UDP6002;
uint32_t ProcCmd_MLV_UDP6002(char* psRecord, const char* psText, int nLength);
uint32_t POSInit_MLV_UDP6002();

extern const struct termios TermSet_KTT_CDMA;
extern const char POSName_KTT_CDMA[];
uint32_t ProcCmd_KTT_CDMA(char* psRecord, const char* psText, int nLength);
uint32_t POSInit_KTT_CDMA();
