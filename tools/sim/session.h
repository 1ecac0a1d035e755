// One dvrsim session: the simulated recorder, its three serial lines, and the display of what
// crosses them. Each area of the simulator adds its commands as a table (see SimCommand).
#pragma once
#include <memory>
#include <string>
#include <vector>

#include "tools/sim/recorder.h"
#include "tools/sim/serial_line.h"

using SimArgs = std::vector<std::string>;

struct SimSession {
    SimSession();

    Recorder rec;
    std::unique_ptr<SerialLine> lines[3];   // /dev/ttyS0, /dev/ttyS1, /dev/ttyS4
    std::string binary = DefaultPtzCntlBinary();
    double t0;
    size_t nOutputShown = 0;

    // One timestamped line of the display.
    void Print(double t, const std::string& who, const std::string& what);
    void Caption(const std::string& text);
    // Index of the line the PTZ cameras (and keypads) hang on, as the process chooses it.
    int PtzLineIndex();
    SerialLine& PtzLine() { return *lines[PtzLineIndex()]; }
    // Shows everything that happens for about ms milliseconds.
    void Pump(int ms);

private:
    void ShowMail(const Mail& m);
    void ShowSerial(int idx, const SerialChunk& c);
};

struct SimCommand {
    const char* sName;
    const char* sUsage;   // arguments and a short description, for help
    void (*Run)(SimSession& sim, const SimArgs& args);
};

// Command tables of the areas. Each returns a table ending in an entry with a null name.
const SimCommand* CoreSimCommands();     // core_commands.cpp
const SimCommand* KeypadSimCommands();   // keypad_commands.cpp
const SimCommand* PosSimCommands();      // pos_commands.cpp

// Helpers for command handlers.
uint32_t SimNum(const std::string& s);   // decimal, 0x hexadecimal or 0 octal
bool SimNeed(const SimArgs& a, size_t n, const char* usage);
