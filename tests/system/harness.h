// Fixture for system tests: the simulated recorder with its three serial lines, and the real
// ptz_cntl binary started as its child. Each test case runs in a fresh sandbox.
#pragma once
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/ptz_cntl.h"
#include "tools/sim/ptz_line.h"
#include "tools/sim/recorder.h"
#include "tools/sim/serial_line.h"

class SystemTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Starts ptz_cntl with the given arguments and waits for its start message.
    bool StartAndWait(const std::vector<std::string>& args = {"7"});
    // Sends the stop message and returns the exit status (-1 when it did not end in time).
    int StopAndWait();

    // The line the PTZ cameras hang on (ttyS1 unless the port assignment says ttyS0).
    SerialLine& PtzLine();
    // Exactly the frames want, byte for byte, within ms milliseconds (nothing at all for an empty
    // want): a missing, different or extra byte fails the case with a hex dump of both. Returns
    // the frames received, each with the time and line setting of its last byte.
    std::vector<PtzFrame> ExpectPtz(const std::vector<std::vector<uint8_t>>& want, int ms);
    // For a number of frames not known in advance: the frames seen within ms milliseconds, or
    // until count frames have arrived. A byte that is no frame of a configured camera (or one with
    // a bad check), fewer frames than count or any byte after the count-th frame fails the case
    // with a hex dump of each frame.
    std::vector<PtzFrame> CollectPtz(int ms, size_t count = SIZE_MAX);

    // A camera on a channel: model and address.
    void Camera(uint32_t ch, uint32_t model, uint32_t address);
    // A PTZ command as the main application sends it.
    void Ptz(uint32_t ch, uint32_t cmd, uint32_t p1 = 0, uint32_t p2 = 0, uint32_t p3 = 0);

    std::unique_ptr<Recorder> rec;
    std::unique_ptr<SerialLine> ttyS0, ttyS1, ttyS4;

private:
    // Bytes of the PTZ line with the arrival time and line setting of each.
    struct PtzBytes {
        std::vector<uint8_t> abData;
        std::vector<double> atArrival;
        std::vector<std::string> asSetting;
    };
    // Reads the PTZ line for ms, or until enough() holds and a short quiet time more has passed
    // (for a byte too many to show).
    PtzBytes ReadPtz(int ms, const std::function<bool(const PtzBytes&)>& enough);
    // The frame of bytes [begin, end), decoded by the configured cameras' protocols when one reads
    // it whole.
    PtzFrame FrameOf(const PtzBytes& line, size_t begin, size_t end);
};

std::vector<uint8_t> Bytes(std::initializer_list<int> list);

// While one lives, the programs a test starts run with the UART shim preloaded: their pseudo-
// terminal keeps the parity it is set to, as a UART does, and the simulator reads it back.
class UartShim {
public:
    UartShim();
    ~UartShim();
    UartShim(const UartShim&) = delete;
    UartShim& operator=(const UartShim&) = delete;

private:
    std::string m_sPreload, m_sAsan;
    bool m_bHadPreload, m_bHadAsan;
};

// Runs ptz_cntl to its end outside the recorder's bookkeeping (a second instance, say): returns
// its exit status, its standard error in err. Gives up (and kills it) after timeout_ms.
int RunPtzCntl(const std::vector<std::string>& args, std::string* err, int timeout_ms = 5000);
