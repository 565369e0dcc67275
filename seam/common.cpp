#include "common.h"

#include <chrono>

namespace utils {

std::string vqStockKey(const std::string& market, const std::string& code)
{
    std::string key;
    key.reserve(code.size() + market.size() + 1);
    key.append(code).append(1, '.').append(market);
    return key;
}

bool splitStockKey(const std::string& key, std::string& market, std::string& code)
{
    const auto dot = key.rfind('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 >= key.size()) {
        return false;
    }
    code = key.substr(0, dot);
    market = key.substr(dot + 1);
    return true;
}

unsigned long long hash(const std::string& text)
{
    unsigned long long value = 14695981039346656037ULL;
    for (unsigned char c : text) {
        value ^= c;
        value *= 1099511628211ULL;
    }
    return value;
}

double clockMSec()
{
    using namespace std::chrono;
    return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}

}  // namespace utils
