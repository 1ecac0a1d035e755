// Decoding of camera protocol frames seen on the PTZ line: one decoder per protocol, shared by the
// simulator's display, the wire decoder ptzdecode and the tests. A decoder reports a frame in the
// terms of the command meanings the drivers build from (PTZMeaning), so that what was meant and
// what was read can be compared; the words are made from that in one place.
#pragma once
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "ptz/drivers/pm_common.h"

struct PtzFrameText {
    size_t nLength = 0;       // bytes that form the frame
    uint32_t nAddress = 0;    // camera address as configured on the recorder
    bool bBadCheck = false;   // the check byte does not match the frame
    PTZMeaning tWhat;         // what the frame asks; None: a setting or a query with no action
    PTZMeaning tAlso;         // what it means by a convention of the camera (set preset 95 opens
                              // the menu), or None
    int32_t nPanSpeed = -1;   // speeds and number the frame carries, -1 where it carries none
    int32_t nTiltSpeed = -1;
    int32_t nZoomSpeed = -1;
    int32_t nNumber = -1;     // preset, pattern or tour number
    std::string sNote;        // what the meaning leaves out ("pan speed 800", "fast")
    std::string sWords;       // all of it in words, made by PtzWords
};

// The frame in words: "pan left 63", "move up left 24", "go to preset 5", "set preset 95 (menu
// on)", "stop", "iris level 0x3A", ...
std::string PtzWords(const PtzFrameText& t);

// A decoder returns true when a complete frame of its protocol starts at bytes[0] within n bytes,
// and fills out all but sWords. A frame whose check byte is wrong is still returned, marked
// bBadCheck. Bytes that cannot start a frame of the protocol return false.
using PtzDecodeFn = bool (*)(const uint8_t* bytes, size_t n, PtzFrameText* out);

struct PtzProtocol {
    const char* sName;        // "Pelco-D"
    PtzDecodeFn Decode;
    bool bChecked;            // its frames carry a check byte
};

// Every protocol a decoder knows, and the one a model number speaks (null for "NONE").
std::span<const PtzProtocol> PtzProtocols();
const PtzProtocol* ProtocolOfModel(uint32_t model);
const PtzProtocol* ProtocolNamed(const std::string& sName);

// Decodes with one protocol and puts the frame in words.
bool PtzDecode(const PtzProtocol& tProtocol, const uint8_t* bytes, size_t n, PtzFrameText* out);

bool DecodePelcoD(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodePelcoP(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeExtPelcoP(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeSCC641(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeAutoDome(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeCanonVCC4(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeHSDN251NP(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeBBV(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeRvtEZ(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeLGDome(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeADDeltaDome(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeMLPIH7x00(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeGC655NP(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeVCL(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeNEC_NC21(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeSK2107(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeHunt(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodePTC400C(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodePSonicCS85x(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeCNB(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeLPTA100L(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeSmartDome(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeControllerLink(const uint8_t* bytes, size_t n, PtzFrameText* out);
