#include "tools/sim/names.h"

#include <strings.h>

#include <cstdlib>

#include "core/ptz_cntl.h"
#include "keypad/keypad_data.h"
#include "ktt/ktt_data.h"

namespace {
struct Named {
    uint32_t nCode;
    const char* sName;
};

constexpr Named kMessages[] = {
    {kMsgStop, "STOP"},                {kMsgAlive, "ALIVE?"},
    {kMsgPtzCommand, "PTZ"},          {kMsgKeypadId, "KEYPAD-ID"},
    {kMsgKeypadModel, "KEYPAD-MODEL"}, {kMsgPosModel, "TEXT-MODEL"},
    {kMsgKtt, "KTT"},          {kMsgKttDrained, "POWER-OFF-OK"},
    {kMsgStarted, "STARTED"},       {kMsgEnded, "ENDED"},
    {kMsgAliveAnswer, "ALIVE"},         {kMsgKeyEvent, "KEY"},
    {0x2001B, "OUTPUT"},        {0x2002D, "LAYOUT"},
    {0x2002E, "KEY-MSG-2E"},    {0x20046, "KEY-MSG-46"},
    {0x2005D, "ATM-ALERT"},     {0x40024, "MB4-24"},
};

constexpr Named kPtzCommands[] = {
    {0, "AutoPan"},       {32, "AutoPanOff"},   {1, "Ext1"},          {33, "Ext1Stop"},
    {2, "Ext2"},          {34, "Ext2Stop"},     {3, "FocusNear"},     {35, "FocusNearStop"},
    {4, "Ext4"},          {36, "Ext4Stop"},     {5, "FocusFar"},      {37, "FocusFarStop"},
    {6, "Ext6"},          {38, "Ext6Stop"},     {8, "Ext8"},          {40, "Ext8Stop"},
    {9, "ZoomWide"},      {41, "ZoomWideStop"}, {10, "Ext10"},        {42, "Ext10Stop"},
    {11, "ZoomTele"},     {43, "ZoomTeleStop"}, {12, "UpLeft"},       {44, "UpLeftStop"},
    {13, "Up"},           {45, "UpStop"},       {14, "UpRight"},      {46, "UpRightStop"},
    {15, "Left"},         {47, "LeftStop"},     {16, "CameraOn"},     {48, "CameraOff"},
    {17, "Right"},        {49, "RightStop"},    {18, "DownLeft"},     {50, "DownLeftStop"},
    {19, "Down"},         {51, "DownStop"},     {20, "DownRight"},    {52, "DownRightStop"},
    {21, "PresetSet"},    {53, "PresetClear"},  {22, "PresetTour"},   {54, "PresetTourStop"},
    {27, "IrisOpen"},     {59, "IrisOpenStop"}, {28, "IrisClose"},    {60, "IrisCloseStop"},
    {29, "IrisAuto"},     {61, "IrisAutoOff"},  {64, "FocusAuto"},    {96, "FocusAutoOff"},
    {65, "AuxOn1"},       {97, "AuxOff1"},      {66, "AuxOn2"},       {98, "AuxOff2"},
    {67, "AuxOn3"},       {99, "AuxOff3"},      {68, "AuxOn4"},       {100, "AuxOff4"},
    {69, "AuxOn5"},       {101, "AuxOff5"},     {70, "AuxOn6"},       {102, "AuxOff6"},
    {72, "MenuOn"},       {104, "MenuOff"},     {73, "MenuEnter"},    {74, "RunPattern"},
    {80, "PresetGo"},     {81, "Joystick"},     {113, "JoystickStop"}, {90, "ExtRun"},
};

template <size_t N>
std::string NameOf(const Named (&table)[N], uint32_t code) {
    for (const auto& e : table)
        if (e.nCode == code) return e.sName;
    return "";
}

template <size_t N>
std::optional<uint32_t> CodeOf(const Named (&table)[N], const std::string& name) {
    for (const auto& e : table)
        if (strcasecmp(e.sName, name.c_str()) == 0) return e.nCode;
    char* end = nullptr;
    const unsigned long v = std::strtoul(name.c_str(), &end, 0);
    if (!name.empty() && end && *end == '\0') return static_cast<uint32_t>(v);
    return std::nullopt;
}
}  // namespace

std::string MessageName(uint32_t code) { return NameOf(kMessages, code); }
std::optional<uint32_t> MessageCode(const std::string& name) { return CodeOf(kMessages, name); }
std::string PtzCommandName(uint32_t code) { return NameOf(kPtzCommands, code); }
std::optional<uint32_t> PtzCommandCode(const std::string& name) { return CodeOf(kPtzCommands, name); }
