// Value parsing: the first byte picks a date and time type (and the tokenizer's backslash rule), the rest
// is the text read as a number, as each date and time type, and as the elements of an array.
#include <cstddef>
#include <cstdint>
#include <string>

#include "tests/fuzz/FuzzSupport.h"
#include "vantry/translate/ArrayTokenizer.h"
#include "vantry/values/DateTimeValue.h"
#include "vantry/values/NumberText.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    using namespace QXVantry_920;
    if (size == 0) {
        return 0;
    }
    // Types 0 to 12 are the declared ones; a few beyond them stand for a type the reader did not know.
    auto const type = static_cast<ScoreDictVar::DateTimeType>(data[0] % 16);
    std::string const text(reinterpret_cast<char const*>(data + 1), size - 1);

    numbertext::LeadingInt(text);
    numbertext::TruncateToInt64(numbertext::LeadingDouble(text));
    NumericValue number(text);
    number.GetString();

    DateTimeValue::IsValidDateTime(text, type);
    DateTimeValue when(text, type);
    when.GetString();
    when.GetNumericString();
    when.GetDoubleValue(type);
    when.ExtractYear();
    when.ExtractSecond();
    DateTimeValue fromNumber(number.GetDouble(), type);
    fromNumber.GetString();
    fromNumber.ComputeDurationMonths(when);

    TokenizeArrayText(text, (data[0] & 0x10) != 0, [](std::string const&) {});
    return 0;
}
