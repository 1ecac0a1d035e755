// Refusal to touch the host: test programs and the simulator run only inside tools/sandbox.sh.
#pragma once

// True inside the sandbox: its private /dev carries a marker, and no serial device path there is a
// real UART.
bool InSandbox();
// Prints why and exits with status 2 when not inside the sandbox.
void RequireSandbox(const char* program);
