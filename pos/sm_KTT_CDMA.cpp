// KTT CDMA module on the text-insertion port. Its packet protocol belongs to the KTT link and is
// not built into this table: the entry reads the module's line and produces no records.
//
//   input   text lines from the module, ended by CR LF (CR ignored)
//   record  none
#include "pos/pos_model.h"
#include "pos/sm_common.h"

// The module's line is taken as text lines at 9600 baud, like the other serial text sources.
constexpr struct termios TermSet_KTT_CDMA = PosTermSet(IGNCR, ICANON, 0x0A);
constexpr char POSName_KTT_CDMA[] = "KTT, CDMA MODULE";

// The module's packets are consumed and dropped; they never become text-insertion records.
uint32_t ProcCmd_KTT_CDMA(char*, const char*, int) { return 0; }

// No network service to register: the module is read from the serial port.
uint32_t POSInit_KTT_CDMA() { return 0; }
