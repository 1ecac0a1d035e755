// Decoding of camera protocol frames seen on the PTZ line, for the simulator's display and the
// system tests.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

struct PtzFrameText {
    size_t nLength = 0;       // bytes that form the frame
    uint32_t nAddress = 0;    // camera address as configured on the recorder
    std::string sWords;       // the command in words, e.g. "pan left 63"
    bool bBadCheck = false;   // the check byte does not match the frame
};

// Each decoder returns true when a complete frame of its protocol starts at bytes[0] within n
// bytes, and fills out. A frame whose check byte is wrong is still returned, marked bBadCheck.
bool DecodePelcoD(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodePelcoP(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeExtPelcoP(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeSCC641(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeAutoDome(const uint8_t* bytes, size_t n, PtzFrameText* out);
bool DecodeCanonVCC4(const uint8_t* bytes, size_t n, PtzFrameText* out);
