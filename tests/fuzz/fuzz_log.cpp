// Fuzz target: the event-log writer and reader. Records of random type and arguments are written
// through LogWrite and the two file writers (the flash series rotates), files are cut short or
// overwritten with random bytes, daily logs are deleted up to a random date, and the reader
// collects the flash series and the daily logs. Every record it returns must carry the magic code
// and lie inside its file.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>


#include "lib/log/log.h"
#include "lib/log/log_reader.h"
#include "tests/fuzz/fuzz_input.h"

namespace {
// One of the files a reader looks at: the two flash series with their copies, or a daily log.
void PickFile(FuzzInput& in, char* path, size_t size) {
    const uint8_t b = in.Byte();
    const char* base = (b & 1) ? kLogKeyFile : kLogDocFile;
    if (b < 0x40)
        std::snprintf(path, size, "%s", base);
    else if (b < 0xC0)
        std::snprintf(path, size, "%s.%d", base, (b >> 1) % 11);
    else
        std::snprintf(path, size, "%s/2024%02d%02d.log", kLogDiskDir, 1 + (b & 1), 1 + (b >> 1) % 4);
}

void CheckRead(const LogSearchList& list) {
    for (uint32_t i = 0; i < list.nCount; ++i) {
        const LogSearchItem& item = list.ptItem[i];
        FUZZ_CHECK(item.tData.nMagic == kLogMagic);
        FUZZ_CHECK(std::memchr(item.sFile, '\0', sizeof item.sFile) != nullptr);
        char path[400];
        std::snprintf(path, sizeof path, "%s/%s", item.sFile[0] >= '0' && item.sFile[0] <= '9' ? kLogDiskDir : kLogDocDir,
                      item.sFile);
        struct stat st;
        if (stat(path, &st) == 0) FUZZ_CHECK((item.nIndex + 1) * static_cast<off_t>(kLogRecordSize) <= st.st_size);
    }
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pyData, size_t nSize) {
    FuzzQueue();
    FuzzRemoveFiles(kLogDiskDir);
    FuzzRemoveFiles(kLogDocDir);
    FuzzInput in(pyData, nSize);
    while (!in.Empty()) {
        const uint8_t op = in.Byte();
        char path[300];
        if (op < 0x60) {
            // An event as a caller writes it: text types get a string where the table has one.
            char sText[48] = {};
            const uint32_t type = op < 0x50 ? in.Byte() : in.Value();
            const uint32_t a1 = in.Value(), a2 = in.Value(), a3 = in.Value(), a4 = in.Value(), a5 = in.Value();
            in.Bytes(reinterpret_cast<uint8_t*>(sText), in.Byte() % (sizeof sText - 1));
            switch (LogRuleOf(type).eFields) {
            case LogFields::EventTimeText:
            case LogFields::SkipText: LogWrite(type, a1, sText); break;
            case LogFields::Text: LogWrite(type, sText); break;
            default: LogWrite(type, a1, a2, a3, a4, a5); break;
            }
        } else if (op < 0x80) {
            uint8_t bytes[kLogRecordSize] = {};
            in.Bytes(bytes, sizeof bytes);
            LogRecord record;
            LogRecordFromBytes(bytes, &record);
            if (op & 1) LoggerToDOC(&record);
            else LoggerToHDD(&record);
        } else if (op < 0xA0) {
            // Damage: cut a file anywhere, or write random bytes into it.
            PickFile(in, path, sizeof path);
            const int fd = open(path, O_WRONLY | O_CREAT, 0644);
            if (fd >= 0) {
                const off_t at = in.Value() % 7000;
                if (op & 1) {
                    FUZZ_CHECK(ftruncate(fd, at) == 0);
                } else {
                    uint8_t bytes[64];
                    const size_t n = in.Bytes(bytes, in.Byte() % sizeof bytes);
                    FUZZ_CHECK(pwrite(fd, bytes, n, at) == static_cast<ssize_t>(n));
                }
                close(fd);
            }
        } else if (op < 0xB0) {
            const int year = static_cast<int>(in.Value()), month = in.Byte(), day = in.Byte();
            DeleteLOGFile(year, month, day);
        } else {
            LogSearchList list{};
            if (op & 1) {
                LogReadSeries(kLogDocFile, op & 2, &list);
                LogReadSeries(kLogKeyFile, op & 2, &list);
            } else {
                LogReadDaily(kLogDiskDir, op & 2, &list);
            }
            CheckRead(list);
            LogReadAck(&list);
        }
    }
    return 0;
}
