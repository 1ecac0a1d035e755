// The keypads of the simulated recorder: frames of the two keypad families, built by meaning
// (a recorder key, a joystick deflection, a camera button) or from hexadecimal text, ready to be
// written on the PTZ line the keypad shares with the cameras.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

using KeypadFrame = std::vector<uint8_t>;

// Keypad-1. Key names are the recorder's ("PLAY", "NUM 12", "FUNC 2", ...); an unknown name
// gives an empty frame.
KeypadFrame Keypad1Key(uint8_t id, const std::string& key);
KeypadFrame Keypad1Short(uint8_t id, uint8_t command, uint8_t data);
// A camera button on channel 1..16 with its number (preset, pattern, ON/OFF number).
KeypadFrame Keypad1Button(uint8_t id, uint8_t channel, uint8_t button, uint8_t number = 0);
// The joystick on channel 1..16: pan and tilt -63..63 (negative = left / up, 0 = centre).
KeypadFrame Keypad1Joystick(uint8_t id, uint8_t channel, int pan, int tilt);

// WTX-1200A. Key names as for Keypad-1; the second functions ("NUM 11", "FUNC 1", "STILL", ...)
// are sent with their modifier.
KeypadFrame WtxKey(uint8_t id, const std::string& key);
KeypadFrame WtxFrame(uint8_t id, uint8_t code, uint8_t modifier);
// The joystick: pan and tilt -7..7 (negative = left / up, 0 = centre). Pan centred with tilt -1
// carries modifier 2, which the recorder reads as a second function and ignores.
KeypadFrame WtxJoystick(uint8_t id, int pan, int tilt);

// "AA 01 02 00 AD" (blanks optional); empty when the text is not whole hexadecimal bytes.
KeypadFrame HexFrame(const std::string& text);
