// The controller-link frame shared by the Ikegami i-LAN, Toa, Toshiba SC1000 and PT2000 drivers:
// these models sit behind a system controller that takes the Pelco-D command set in a framed,
// length-counted packet.
//
//   byte | 0   | 1       | 2      | 3 .. 2+LEN | 3+LEN | 4+LEN
//        | STX | address | LEN    | payload    | ETX   | check
//        | 02  | A       | 04     | c1 c2 d1 d2| 03    | XOR of bytes 1 .. 3+LEN (the ETX included)
//
//   address  low 8 bits of the configured address, unchanged
//   payload  Pelco-D's command 1, command 2, data 1 (pan speed), data 2 (tilt speed or number)
//
// Source: our choice; nothing public was found for these links. The frame is their packet shape,
// the codes are Pelco-D's, which the cameras behind such controllers speak. Stop at address 1:
// 02 01 04 00 00 00 00 03 06.
#pragma once
#include "ptz/drivers/pm_engine.h"

// The family's driver, and the same for a link that takes no proportional moves (no joystick
// row: the code sends nothing and is remembered).
extern const PTZDriver kLinkDriver;
extern const PTZDriver kLinkDriverNoJoystick;
