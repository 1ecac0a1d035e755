// The recorder maker's general text protocol, on TCP port 6001 or UDP port 6002 (copied into the
// FIFO by the internet super-server). Both ports share the line; only the tag differs.
//
//   field  content                  record column
//   0      identifier, decimal      ID (2 digits at least)
//   1..4   texts                    TEXT1, TEXT2, NUM1, NUM2
//   separators: "|"; a newline after field 4 ends the line
//   record MGT|sec.hh|id|f1|f2|f3|f4|#  (TCP)   MGU|... (UDP)
#include "pos/pos_model.h"
#include "pos/sm_common.h"
#include "lib/proc/processpipe.h"

constexpr char POSName_MLV_TCP6001[] = "MALVOREN, GENERAL TCP 6001";
constexpr char POSName_MLV_UDP6002[] = "MALVOREN, GENERAL UDP 6002";
constexpr DPRCSet DPRCSet_MLV_TCP6001 = {6, {
    {"TIME", 128, 3, 2, 0, 85, 1},
    {"ID", 32, 1, 2, 87, 35, 2},
    {"TEXT1", 64, 2, 1, 124, 65, 32},
    {"TEXT2", 134, 4, 1, 191, 160, 4},
    {"NUM1", 134, 5, 3, 353, 65, 8},
    {"NUM2", 134, 5, 3, 420, 104, 16},
}};
constexpr DPRCSet DPRCSet_MLV_UDP6002 = DPRCSet_MLV_TCP6001;

namespace {
constexpr int kFields = 5;

uint32_t BuildGeneral(char* psRecord, const char* psText, int nLength, const char* format) {
    char sLine[kPosLineMax + 1];
    PosCopyLine(sLine, psText, nLength, kPosLineMax);
    // Only the first line of a read counts; cutting it at its newline first also keeps a line short
    // of separators from carrying a line break into the record (its missing fields stay empty).
    PosCutAtNewline(sLine);
    char* apField[kFields];
    PosSplit(sLine, '|', apField, kFields);
    const WallTime t = GetWallTime();
    return PosRecordPrintf(psRecord, t.dwTime, format, PosSeconds(t), PosHundredths(t),
                           PosDecimal(apField[0]), apField[1], apField[2], apField[3], apField[4]);
}
}  // namespace

uint32_t ProcCmd_MLV_TCP6001(char* psRecord, const char* psText, int nLength) {
    return BuildGeneral(psRecord, psText, nLength, "MGT|%d.%02d|%02d|%s|%s|%s|%s|#\n");
}

uint32_t ProcCmd_MLV_UDP6002(char* psRecord, const char* psText, int nLength) {
    return BuildGeneral(psRecord, psText, nLength, "MGU|%d.%02d|%02d|%s|%s|%s|%s|#\n");
}

uint32_t POSInit_MLV_TCP6001() {
    system_printf("%s/add_inetd 6001 tcp /usr/bin/tee \"tee /tmp/pos_fifo\"", "/opt/app");
    return 0;
}

uint32_t POSInit_MLV_UDP6002() {
    system_printf("%s/add_inetd 6002 udp /usr/bin/tee \"tee /tmp/pos_fifo\"", "/opt/app");
    return 0;
}
