// Fuzzes the parse step of the Greeks import: any bytes, as an outside program
// might drop them into the watched directory. Beyond the sanitizers' findings,
// it stops on a broken promise of the parser: a bad text that left records
// behind, a good text the strict check refused, a non-finite Greek, or a code
// that is not valid UTF-8.
#include "board/exgreeksparser.h"

#include <QString>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

void require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "broken promise: %s\n", what);
        std::abort();
    }
}

bool usable(double value) { return std::isfinite(value); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const char* text = reinterpret_cast<const char*>(data);
    TC::OptionExGreeksMap harvest;
    std::string reason;
    const int result = TC::parseOptionExGreeksText(text, size, harvest, &reason);
    require(result == TC::EGPR_GOOD || result == TC::EGPR_BAD, "result is neither good nor bad");
    if (result == TC::EGPR_BAD) {
        require(harvest.isEmpty(), "a bad text left records in the harvest");
        require(!reason.empty(), "a bad text without a reason");
        return 0;
    }
    require(TC::checkExGreeksJson(text, size), "a good text that the strict check refuses");
    for (auto it = harvest.constBegin(); it != harvest.constEnd(); ++it) {
        const auto& record = it.value();
        require(static_cast<bool>(record), "a null record");
        require(QString::fromStdString(record->code) == it.key(), "a record under another code");
        require(QString::fromStdString(record->code).toStdString() == record->code, "a code that is not UTF-8");
        require(usable(record->exSellImpliedVolatility) && usable(record->exBuyImpliedVolatility) &&
                    usable(record->exDelta) && usable(record->exGamma) && usable(record->exVega) &&
                    usable(record->exTheta),
                "a Greek that is not finite");
    }
    return 0;
}
