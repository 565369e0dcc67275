// Texts of Greeks files shared by the parser and import thread tests.
#pragma once

#include <cstddef>
#include <string>

namespace exgreekstest {

// Two records of a valid file, as an outside model would write them.
inline std::string validFileText()
{
    return "[\n"
           "  {\"code\": \"10004001\", \"exSellImpliedVolatility\": 0.2312, \"exBuyImpliedVolatility\": 0.2298,\n"
           "   \"exDelta\": 0.5321, \"exGamma\": 2.1456, \"exVega\": 0.0052, \"exTheta\": -0.0011},\n"
           "  {\"code\": \"10004002\", \"exSellImpliedVolatility\": 0.2411, \"exBuyImpliedVolatility\": 0.2387,\n"
           "   \"exDelta\": -0.4702, \"exGamma\": 2.0978, \"exVega\": 0.0051, \"exTheta\": -0.0009}\n"
           "]\n";
}

// One record with the given code and delta, the other Greeks fixed.
inline std::string recordText(const std::string& code, const std::string& delta)
{
    return "{\"code\": \"" + code + "\", \"exSellImpliedVolatility\": 0.25, \"exBuyImpliedVolatility\": 0.24, "
           "\"exDelta\": " + delta + ", \"exGamma\": 1.5, \"exVega\": 0.004, \"exTheta\": -0.002}";
}

// Arrays nested levels deep: "[[[...]]]", or only the opening half.
inline std::string nestedArrays(std::size_t levels, bool closed)
{
    std::string text(levels, '[');
    if (closed) {
        text.append(levels, ']');
    }
    return text;
}

// Objects nested levels deep: {"a":{"a":...1...}}, or only the opening half.
inline std::string nestedObjects(std::size_t levels, bool closed)
{
    std::string text;
    text.reserve(levels * 7 + 1);
    for (std::size_t i = 0; i < levels; ++i) {
        text += "{\"a\":";
    }
    text += "1";
    if (closed) {
        text.append(levels, '}');
    }
    return text;
}

}  // namespace exgreekstest
