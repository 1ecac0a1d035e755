// Names of mailbox message codes and PTZ command codes, for display and for typed commands.
#pragma once
#include <cstdint>
#include <optional>
#include <string>

std::string MessageName(uint32_t code);              // e.g. "STARTED", "" when unknown
std::optional<uint32_t> MessageCode(const std::string& name);
std::string PtzCommandName(uint32_t code);           // e.g. "Left", "" when the code has no name
std::optional<uint32_t> PtzCommandCode(const std::string& name);   // name (any case) or number
