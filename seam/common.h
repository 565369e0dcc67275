// Shared markers, keys and small utilities that every layer of optdesk uses.
// Absent values and the price tolerance are defined here once; nothing else
// spells DBL_MAX or 1e-5 on its own.
#pragma once

#include <atomic>
#include <cfloat>
#include <climits>
#include <cmath>
#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace utils {

// Absent markers of the service records.
constexpr double kAbsentDouble = DBL_MAX;
constexpr int kAbsentInt = 0x7fffffff;
constexpr long long kAbsentLongLong = 0x7fffffffffffffffLL;
// Two prices are equal, and a double is absent, within this tolerance.
constexpr double kPriceTolerance = 1e-5;

inline bool isAbsent(double value) { return std::fabs(value - DBL_MAX) <= kPriceTolerance; }
inline bool isAbsent(int value) { return value == kAbsentInt; }
inline bool isAbsent(long long value) { return value == kAbsentLongLong; }
// A number a cell may show: finite and not the absent marker.
inline bool isUsable(double value) { return std::isfinite(value) && !isAbsent(value); }
// The bound is inclusive, also when decimal inputs such as 1.00001 and 1.0 land a
// few binary units beyond it: the slack grows with the operands' magnitude.
inline bool isWithinTolerance(double a, double b)
{
    const double slack = 16.0 * DBL_EPSILON * std::fmax(std::fabs(a), std::fabs(b));
    return std::fabs(a - b) <= kPriceTolerance + slack;
}
inline bool isPriceEqual(double a, double b) { return isWithinTolerance(a, b); }

// The unique text key of an instrument, "code.market" (e.g. "510050.SH").
// Callers treat the form as opaque.
std::string vqStockKey(const std::string& market, const std::string& code);
// Splits a key made by vqStockKey; false when the text is not such a key.
bool splitStockKey(const std::string& key, std::string& market, std::string& code);

// The integer key under which account data is filed (64-bit FNV-1a).
unsigned long long hash(const std::string& text);

// Monotonic clock in milliseconds.
double clockMSec();

// A running sum over keys: each key holds one share, replaced on update.
template <typename T>
class TStringMapSum {
public:
    void update(unsigned long long key, T value) { change(key, value); }
    // As update; true when the key's share was new or different, so a caller
    // can tell whether the sum moved.
    bool change(unsigned long long key, T value)
    {
        auto it = m_values.find(key);
        if (it == m_values.end()) {
            m_values.emplace(key, value);
            return true;
        }
        if (it->second == value) {
            return false;
        }
        it->second = value;
        return true;
    }
    void remove(unsigned long long key) { m_values.erase(key); }
    void clear() { m_values.clear(); }
    bool contains(unsigned long long key) const { return m_values.count(key) != 0; }
    std::size_t size() const { return m_values.size(); }
    // Summed anew on each call so that doubles carry no drift from replaced shares.
    T sum() const
    {
        T total{};
        for (const auto& entry : m_values) {
            total += entry.second;
        }
        return total;
    }

private:
    std::map<unsigned long long, T> m_values;
};

// A process-wide service whose life the host decides: the desk creates it at
// start and destroys it at exit, each test creates its own. instance() is null
// while none is installed; readers on service threads see the pointer atomically.
template <typename T>
class CManualSingletonT {
public:
    static T* instance() { return slot().load(std::memory_order_acquire); }

    template <typename Impl = T, typename... Args>
    static Impl* create(Args&&... args)
    {
        auto* object = new Impl(std::forward<Args>(args)...);
        install(object);
        return object;
    }
    // Takes ownership; a previous instance is destroyed.
    static void install(T* object)
    {
        T* old = slot().exchange(object, std::memory_order_acq_rel);
        delete old;
    }
    static void destroy() { install(nullptr); }

private:
    static std::atomic<T*>& slot()
    {
        static std::atomic<T*> s_instance{nullptr};
        return s_instance;
    }
};

// Like CManualSingletonT, but a default-constructible service is made on first
// use (resources, managers that need no host decision). Hosts and tests still
// destroy it to start from a clean state.
template <typename T>
class CSingletonT {
public:
    static T* instance()
    {
        T* object = CManualSingletonT<T>::instance();
        if constexpr (std::is_default_constructible_v<T> && !std::is_abstract_v<T>) {
            if (object == nullptr) {
                object = CManualSingletonT<T>::create();
            }
        }
        return object;
    }
    template <typename Impl = T, typename... Args>
    static Impl* create(Args&&... args)
    {
        return CManualSingletonT<T>::template create<Impl>(std::forward<Args>(args)...);
    }
    static void install(T* object) { CManualSingletonT<T>::install(object); }
    static void destroy() { CManualSingletonT<T>::destroy(); }
};

// Flags over an enumeration, convertible from the enum and from int.
template <typename E>
class CFlags {
public:
    constexpr CFlags() = default;
    constexpr CFlags(E value) : m_value(static_cast<int>(value)) {}  // NOLINT(google-explicit-constructor)
    constexpr CFlags(int value) : m_value(value) {}                  // NOLINT(google-explicit-constructor)
    constexpr bool testFlag(E flag) const
    {
        return static_cast<int>(flag) != 0 && (m_value & static_cast<int>(flag)) == static_cast<int>(flag);
    }
    constexpr int value() const { return m_value; }
    constexpr CFlags operator|(CFlags other) const { return CFlags(m_value | other.m_value); }
    constexpr CFlags operator&(CFlags other) const { return CFlags(m_value & other.m_value); }
    constexpr bool operator==(CFlags other) const { return m_value == other.m_value; }

private:
    int m_value = 0;
};

// Number formatting flags. 0x10000 asks for a ratio shown as a percentage;
// the segmented flag groups digits by thousands.
enum EFormatNumberFlag {
    FNF_NONE = 0,
    FNF_SEGMENTED = 0x1,
    FNF_PERCENT = 0x10000,
};

}  // namespace utils
