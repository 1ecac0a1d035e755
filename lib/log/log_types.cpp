// The event-log type rules: for each type code, what its record holds and where it is stored.
// The writer builds and routes records by this table, the reader shows their fields by it.
#include <iterator>

#include "lib/log/log.h"

namespace {
using F = LogFields;
constexpr uint8_t kDoc = kLogStoreDoc;
constexpr uint8_t kKey = kLogStoreKey;
constexpr uint8_t kDisk = kLogStoreDisk;
constexpr uint8_t kBoth = kLogStoreDoc | kLogStoreDisk;

struct TypeRange {
    uint32_t nFirst;
    uint32_t nLast;
    LogTypeRule tRule;
};

// Every code not listed here: no parameters, flash and disk.
constexpr LogTypeRule kDefault = {F::None, 0, kBoth};

// clang-format off
constexpr TypeRange kRules[] = {
    {0,   0,   {F::Text,          0, kBoth}},
    {1,   1,   {F::EventTime,     0, kBoth}},
    {3,   3,   {F::EventTime,     0, kBoth}},
    {5,   5,   {F::EventTime,     0, kBoth}},
    {6,   7,   {F::BitMasks,      0, kBoth}},
    {8,   8,   {F::EventTimeText, 0, kBoth}},
    {9,   9,   {F::Numbers,       2, kKey}},
    {10,  10,  {F::Numbers,       1, kBoth}},
    {12,  12,  {F::SkipText,      0, kBoth}},
    {14,  14,  {F::Numbers,       1, kBoth}},
    {16,  16,  {F::SkipText,      0, kBoth}},
    {18,  18,  {F::Numbers,       1, kBoth}},
    {24,  27,  {F::Numbers,       1, kBoth}},
    {30,  30,  {F::Numbers,       4, kDisk}},
    {31,  31,  {F::Text,          0, kDisk}},
    {32,  37,  {F::Numbers,       4, kDisk}},
    {38,  38,  {F::Numbers,       5, kDisk}},
    {39,  39,  {F::Numbers,       4, kBoth}},
    {40,  42,  {F::BitNumbers,    0, kDisk}},
    {44,  44,  {F::Channel,       0, kDisk}},
    {50,  50,  {F::Numbers,       2, kBoth}},
    {51,  51,  {F::Numbers,       1, kBoth}},
    {60,  60,  {F::Numbers,       1, kBoth}},
    {64,  64,  {F::Text,          0, kBoth}},
    {70,  70,  {F::Numbers,       1, kBoth}},
    {72,  72,  {F::Numbers,       1, kBoth}},
    {84,  84,  {F::Numbers,       1, kDoc}},
    {86,  86,  {F::Numbers,       1, kDoc}},
    {88,  88,  {F::Numbers,       1, kDoc}},
    {90,  90,  {F::Numbers,       1, kBoth}},
    {100, 100, {F::Numbers,       2, kDisk}},
    {101, 101, {F::Numbers,       3, kDisk}},
    {102, 102, {F::Text,          0, kBoth}},
};
// clang-format on

constexpr bool Ordered() {
    for (size_t i = 1; i < std::size(kRules); ++i)
        if (kRules[i].nFirst <= kRules[i - 1].nLast || kRules[i].nFirst > kRules[i].nLast) return false;
    return true;
}
static_assert(Ordered(), "type ranges ascend and do not overlap");
}  // namespace

LogTypeRule LogRuleOf(uint32_t type) {
    for (const TypeRange& r : kRules) {
        if (type < r.nFirst) break;
        if (type <= r.nLast) return r.tRule;
    }
    return kDefault;
}
