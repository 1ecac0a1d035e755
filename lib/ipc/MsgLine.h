// The recorder's message lines on standard error, one line each:
//   "Err (" + module tag padded to 10 + "/" + source file + ":" + line + ") " + text
//   "Info(" + module tag padded to 10 + ") " + text
// The recorder reads these lines, so their layout is fixed; a caller names only its source, the
// line number and the text (without the line end).
#pragma once

// Module tags of the recorder's processes and libraries.
constexpr char kTagPtzCntl[] = "ptz_cntl";
constexpr char kTagPos[] = "pos";
constexpr char kTagMsgq[] = "libmsgq";
constexpr char kTagShmem[] = "libshmem";
constexpr char kTagSem[] = "libsem";
constexpr char kTagProc[] = "libproc";
constexpr char kTagLog[] = "liblog";

// Where a line comes from: the module and the source file name the error lines show.
struct MsgSource {
    const char* sModule;
    const char* sFile;
};

void ErrLine(const MsgSource& source, int nLine, const char* format, ...) __attribute__((format(printf, 3, 4)));
void InfoLine(const MsgSource& source, const char* format, ...) __attribute__((format(printf, 2, 3)));
