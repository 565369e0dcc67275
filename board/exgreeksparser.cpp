#include "board/exgreeksparser.h"

#include "seam/bson.h"

#include <fmt/format.h>

#include <boost/make_shared.hpp>

#include <cmath>
#include <cstring>
#include <cxxabi.h>
#include <locale.h>
#include <set>
#include <utility>
#include <vector>

namespace TC {

namespace {

const unsigned char kByteOrderMark[] = {0xEF, 0xBB, 0xBF};

bool hasByteOrderMark(const char* data, std::size_t size)
{
    return size >= 3 && std::memcmp(data, kByteOrderMark, 3) == 0;
}

bool isDigit(unsigned char c) { return c >= '0' && c <= '9'; }

int hexValue(unsigned char c)
{
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

// Length of the well-formed UTF-8 sequence at p, 0 when it is not one
// (stray continuation, overlong form, surrogate, beyond U+10FFFF, cut short).
std::size_t utf8SequenceLength(const unsigned char* p, const unsigned char* end)
{
    const unsigned char lead = p[0];
    const auto continuation = [&](std::size_t i) { return end - p > static_cast<std::ptrdiff_t>(i) && (p[i] & 0xC0) == 0x80; };
    if (lead < 0x80) {
        return 1;
    }
    if (lead < 0xC2) {
        return 0;
    }
    if (lead < 0xE0) {
        return continuation(1) ? 2 : 0;
    }
    if (lead < 0xF0) {
        if (!continuation(1) || !continuation(2)) {
            return 0;
        }
        if ((lead == 0xE0 && p[1] < 0xA0) || (lead == 0xED && p[1] >= 0xA0)) {
            return 0;
        }
        return 3;
    }
    if (lead < 0xF5) {
        if (!continuation(1) || !continuation(2) || !continuation(3)) {
            return 0;
        }
        if ((lead == 0xF0 && p[1] < 0x90) || (lead == 0xF4 && p[1] >= 0x90)) {
            return 0;
        }
        return 4;
    }
    return 0;
}

// A digit string (no sign, no leading zero but for "0") within 64 bits.
bool fitsInt64(const unsigned char* digits, std::size_t count, bool negative)
{
    static const char kMax[] = "9223372036854775807";
    static const char kMin[] = "9223372036854775808";
    if (count < 19) {
        return true;
    }
    if (count > 19) {
        return false;
    }
    return std::memcmp(digits, negative ? kMin : kMax, 19) <= 0;
}

// The value of a "\\uDC00".."\\uDFFF" escape at p, -1 when there is none.
int escapedLowSurrogate(const unsigned char* p, const unsigned char* end)
{
    if (end - p < 6 || p[0] != '\\' || p[1] != 'u') {
        return -1;
    }
    int value = 0;
    for (int i = 2; i < 6; ++i) {
        const int digit = hexValue(p[i]);
        if (digit < 0) {
            return -1;
        }
        value = value * 16 + digit;
    }
    return value >= 0xDC00 && value <= 0xDFFF ? value : -1;
}

// The reader writes each escape of a surrogate pair as a character of its own,
// which is not UTF-8; so a checked text's pairs become the UTF-8 of their
// character first. Escapes are walked one by one, so "\\\\uD83D" stays as it is.
std::string joinSurrogatePairs(const std::string& text)
{
    if (text.find("\\uD") == std::string::npos && text.find("\\ud") == std::string::npos) {
        return text;
    }
    std::string out;
    out.reserve(text.size());
    const auto* p = reinterpret_cast<const unsigned char*>(text.data());
    const auto* end = p + text.size();
    while (p < end) {
        if (*p != '\\' || end - p < 2) {
            out.push_back(static_cast<char>(*p++));
            continue;
        }
        if (p[1] != 'u' || end - p < 12) {
            out.append(reinterpret_cast<const char*>(p), 2);
            p += 2;
            continue;
        }
        int high = 0;
        for (int i = 2; i < 6; ++i) {
            const int digit = hexValue(p[i]);
            high = digit < 0 ? -1 : (high < 0 ? -1 : high * 16 + digit);
        }
        const int low = escapedLowSurrogate(p + 6, end);
        if (high < 0xD800 || high > 0xDBFF || low < 0) {
            out.append(reinterpret_cast<const char*>(p), 6);
            p += 6;
            continue;
        }
        const unsigned code = 0x10000u + ((static_cast<unsigned>(high) - 0xD800u) << 10) +
                              (static_cast<unsigned>(low) - 0xDC00u);
        out.push_back(static_cast<char>(0xF0 | (code >> 18)));
        out.push_back(static_cast<char>(0x80 | ((code >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
        p += 12;
    }
    return out;
}

// The strict JSON scan. Iterative, so that no input can deepen the stack.
class CJsonScanner {
public:
    CJsonScanner(const char* data, std::size_t size, std::string* reason)
        : m_begin(reinterpret_cast<const unsigned char*>(data)), m_p(m_begin), m_end(m_begin + size),
          m_reason(reason)
    {
    }

    bool run(int maxDepth)
    {
        enum EExpect { EX_VALUE, EX_VALUE_OR_CLOSE, EX_KEY, EX_KEY_OR_CLOSE, EX_COLON, EX_COMMA_OR_CLOSE, EX_END };
        std::vector<unsigned char> stack;  // '[' or '{' per open container
        EExpect expect = EX_VALUE;
        const auto afterValue = [&] { expect = stack.empty() ? EX_END : EX_COMMA_OR_CLOSE; };
        for (;;) {
            skipWhitespace();
            if (m_p == m_end) {
                return expect == EX_END || fail(m_p == m_begin ? "empty text" : "text ends inside the value");
            }
            const unsigned char c = *m_p;
            switch (expect) {
            case EX_VALUE:
            case EX_VALUE_OR_CLOSE:
                if (c == ']' && expect == EX_VALUE_OR_CLOSE) {
                    ++m_p;
                    stack.pop_back();
                    afterValue();
                } else if (c == '[' || c == '{') {
                    if (static_cast<int>(stack.size()) >= maxDepth) {
                        return fail(fmt::format(FMT_STRING("nesting deeper than {0} levels"), maxDepth));
                    }
                    stack.push_back(c);
                    ++m_p;
                    expect = c == '[' ? EX_VALUE_OR_CLOSE : EX_KEY_OR_CLOSE;
                } else if (c == '"') {
                    bool dollar = false;
                    if (!scanString(dollar, false)) {
                        return false;
                    }
                    afterValue();
                } else if (c == '-' || isDigit(c)) {
                    if (!scanNumber()) {
                        return false;
                    }
                    afterValue();
                } else if (scanLiteral("true") || scanLiteral("false") || scanLiteral("null")) {
                    afterValue();
                } else {
                    return fail("unexpected character where a value belongs");
                }
                break;
            case EX_KEY:
            case EX_KEY_OR_CLOSE:
                if (c == '}' && expect == EX_KEY_OR_CLOSE) {
                    ++m_p;
                    stack.pop_back();
                    afterValue();
                    break;
                }
                if (c != '"') {
                    return fail("a key must be a string in double quotes");
                }
                {
                    const unsigned char* keyStart = m_p;
                    bool dollar = false;
                    if (!scanString(dollar, true)) {
                        return false;
                    }
                    if (dollar) {
                        m_p = keyStart;
                        return fail("a key beginning with '$'");
                    }
                }
                expect = EX_COLON;
                break;
            case EX_COLON:
                if (c != ':') {
                    return fail("':' expected after a key");
                }
                ++m_p;
                expect = EX_VALUE;
                break;
            case EX_COMMA_OR_CLOSE:
                if (c == ',') {
                    ++m_p;
                    expect = stack.back() == '[' ? EX_VALUE : EX_KEY;
                } else if ((c == ']' && stack.back() == '[') || (c == '}' && stack.back() == '{')) {
                    ++m_p;
                    stack.pop_back();
                    afterValue();
                } else {
                    return fail(stack.back() == '[' ? "',' or ']' expected" : "',' or '}' expected");
                }
                break;
            case EX_END:
                return fail("text after the value");
            }
        }
    }

private:
    bool fail(const std::string& what)
    {
        if (m_reason != nullptr) {
            *m_reason = fmt::format(FMT_STRING("{0} at byte {1}"), what, m_p - m_begin);
        }
        return false;
    }

    void skipWhitespace()
    {
        while (m_p != m_end && (*m_p == ' ' || *m_p == '\t' || *m_p == '\n' || *m_p == '\r')) {
            ++m_p;
        }
    }

    bool scanLiteral(const char* word)
    {
        const std::size_t length = std::strlen(word);
        if (static_cast<std::size_t>(m_end - m_p) >= length && std::memcmp(m_p, word, length) == 0) {
            m_p += length;
            return true;
        }
        return false;
    }

    // m_p at the opening quote; leaves it after the closing one. dollar tells
    // whether the first character, written raw or escaped, is '$'. A key cannot
    // hold U+0000: the reader's field names end at it.
    bool scanString(bool& dollar, bool isKey)
    {
        ++m_p;
        bool first = true;
        dollar = false;
        for (;;) {
            if (m_p == m_end) {
                return fail("text ends inside a string");
            }
            const unsigned char c = *m_p;
            if (c == '"') {
                ++m_p;
                return true;
            }
            if (c < 0x20) {
                return fail("control character in a string");
            }
            if (c == '\\') {
                if (m_end - m_p < 2) {
                    return fail("text ends inside an escape");
                }
                const unsigned char e = m_p[1];
                if (e == 'u') {
                    if (m_end - m_p < 6) {
                        return fail("text ends inside an escape");
                    }
                    unsigned value = 0;
                    for (int i = 2; i < 6; ++i) {
                        const int digit = hexValue(m_p[i]);
                        if (digit < 0) {
                            return fail("\\u needs four hexadecimal digits");
                        }
                        value = value * 16 + static_cast<unsigned>(digit);
                    }
                    if (value == 0 && isKey) {
                        return fail("\\u0000 in a key");
                    }
                    if (value >= 0xDC00 && value <= 0xDFFF) {
                        return fail("a low surrogate escape without its high one");
                    }
                    if (value >= 0xD800 && value <= 0xDBFF) {
                        // Only a whole pair names a character; it is joined before the reader sees it.
                        if (lowSurrogateAt(m_p + 6) < 0) {
                            return fail("a high surrogate escape without its low one");
                        }
                        m_p += 6;
                    }
                    dollar = dollar || (first && value == '$');
                    m_p += 6;
                } else if (e == '"' || e == '\\' || e == '/' || e == 'b' || e == 'f' || e == 'n' || e == 'r' ||
                           e == 't') {
                    m_p += 2;
                } else {
                    return fail("unknown escape in a string");
                }
                first = false;
                continue;
            }
            const std::size_t length = utf8SequenceLength(m_p, m_end);
            if (length == 0) {
                return fail("invalid UTF-8");
            }
            dollar = dollar || (first && c == '$');
            first = false;
            m_p += length;
        }
    }

    // The value of a "\\uDC00".."\\uDFFF" escape at p, -1 when there is none.
    int lowSurrogateAt(const unsigned char* p) const { return escapedLowSurrogate(p, m_end); }

    bool scanNumber()
    {
        bool negative = false;
        if (*m_p == '-') {
            negative = true;
            ++m_p;
        }
        if (m_p == m_end || !isDigit(*m_p)) {
            return fail("a digit expected in a number");
        }
        const unsigned char* digits = m_p;
        if (*m_p == '0') {
            ++m_p;
        } else {
            while (m_p != m_end && isDigit(*m_p)) {
                ++m_p;
            }
        }
        const std::size_t digitCount = static_cast<std::size_t>(m_p - digits);
        bool integral = true;
        if (m_p != m_end && *m_p == '.') {
            integral = false;
            ++m_p;
            if (m_p == m_end || !isDigit(*m_p)) {
                return fail("a digit expected after the decimal point");
            }
            while (m_p != m_end && isDigit(*m_p)) {
                ++m_p;
            }
        }
        if (m_p != m_end && (*m_p == 'e' || *m_p == 'E')) {
            integral = false;
            ++m_p;
            if (m_p != m_end && (*m_p == '+' || *m_p == '-')) {
                ++m_p;
            }
            if (m_p == m_end || !isDigit(*m_p)) {
                return fail("a digit expected in the exponent");
            }
            while (m_p != m_end && isDigit(*m_p)) {
                ++m_p;
            }
        }
        if (integral && !fitsInt64(digits, digitCount, negative)) {
            // The reader would change such an integer without a word.
            m_p = digits;
            return fail("integer beyond 64 bits");
        }
        return true;
    }

    const unsigned char* m_begin;
    const unsigned char* m_p;
    const unsigned char* m_end;
    std::string* m_reason;
};

// The reader's number parsing follows the thread's C library locale: this
// pins the decimal point for the parse, on this thread only.
class CNumericLocaleGuard {
public:
    CNumericLocaleGuard()
    {
        static const locale_t cLocale = newlocale(LC_NUMERIC_MASK, "C", static_cast<locale_t>(nullptr));
        if (cLocale != static_cast<locale_t>(nullptr)) {
            m_previous = uselocale(cLocale);
            m_active = true;
        }
    }
    ~CNumericLocaleGuard()
    {
        if (m_active) {
            uselocale(m_previous);
        }
    }
    CNumericLocaleGuard(const CNumericLocaleGuard&) = delete;
    CNumericLocaleGuard& operator=(const CNumericLocaleGuard&) = delete;

private:
    locale_t m_previous = static_cast<locale_t>(nullptr);
    bool m_active = false;
};

bool setReason(std::string* reason, const std::string& text)
{
    if (reason != nullptr) {
        *reason = text;
    }
    return false;
}

// The fields of one record: each once, the record's own of the right kind.
bool checkRecordFields(const bson::BSONObj& object, std::size_t index, std::string* reason)
{
    const nqservice::StructDes* des = nqservice::COptionExGreeksVolatility::staticStructDes();
    std::set<std::string> seen;
    bson::BSONObjIterator fields(object);
    while (fields.more()) {
        const bson::BSONElement element = fields.next();
        const std::string name = element.fieldName();
        if (!seen.insert(name).second) {
            return setReason(reason, fmt::format(FMT_STRING("record {0}: field \"{1}\" given twice"), index, name));
        }
        const nqservice::FieldDes* field = des->findField(name);
        if (field == nullptr) {
            continue;  // the writer's own fields are no concern of ours
        }
        if (field->type == nqservice::FT_STRING) {
            if (element.type() != bson::String) {
                return setReason(reason,
                                 fmt::format(FMT_STRING("record {0}: field \"{1}\" is not a string"), index, name));
            }
        } else if (field->type == nqservice::FT_DOUBLE) {
            if (element.type() == bson::jstNULL) {
                continue;  // left absent
            }
            if (!element.isNumber()) {
                return setReason(reason,
                                 fmt::format(FMT_STRING("record {0}: field \"{1}\" is not a number"), index, name));
            }
            if (!std::isfinite(element.numberDouble())) {
                return setReason(reason,
                                 fmt::format(FMT_STRING("record {0}: field \"{1}\" is not finite"), index, name));
            }
        }
    }
    return true;
}

int parseChecked(const char* data, std::size_t size, OptionExGreeksMap& harvest, std::string* reason)
{
    if (!checkExGreeksJson(data, size, reason)) {
        return EGPR_BAD;
    }
    const std::size_t skip = hasByteOrderMark(data, size) ? 3 : 0;
    const std::string wrapped = wrapExGreeksText(joinSurrogatePairs(std::string(data + skip, size - skip)));
    bson::BSONObj top;
    {
        CNumericLocaleGuard cNumeric;
        top = bson::fromjson(wrapped);
    }
    bson::BSONElement content;
    bson::BSONObjIterator elements(top);
    while (elements.more()) {
        const bson::BSONElement element = elements.next();
        if (std::strcmp(element.fieldName(), "content") == 0) {
            content = element;
            break;
        }
    }
    if (content.eoo() || (content.type() != bson::Array && content.type() != bson::Object)) {
        setReason(reason, "the file holds neither an array nor an object");
        return EGPR_BAD;
    }
    // Records are taken as they are read: those before a failure stay in the
    // harvest, though the file as a whole counts as bad.
    bson::BSONObjIterator items(content.embeddedObject());
    std::size_t index = 0;
    while (items.more()) {
        const bson::BSONElement item = items.next();
        auto record = boost::make_shared<nqservice::COptionExGreeksVolatility>();
        if (item.type() == bson::Object) {
            const bson::BSONObj object = item.embeddedObject();
            if (!checkRecordFields(object, index, reason)) {
                return EGPR_BAD;
            }
            record->bsonValueFromObj(object, true, nullptr);
        }
        // Anything but an object is an empty record, filed under the empty code.
        // The key must give back the code: Qt drops a leading byte order mark,
        // which would file the record under another instrument's code.
        QString key = QString::fromStdString(record->code);
        if (key.toStdString() != record->code) {
            setReason(reason, fmt::format(FMT_STRING("record {0}: code does not read back as the same text"), index));
            return EGPR_BAD;
        }
        harvest[key] = record;
        ++index;
    }
    return EGPR_GOOD;
}

}  // namespace

bool checkExGreeksJson(const char* data, std::size_t size, std::string* reason, int maxDepth, std::size_t maxBytes)
{
    if (size > maxBytes) {
        return setReason(reason, fmt::format(FMT_STRING("{0} bytes, more than {1}"), size, maxBytes));
    }
    if (hasByteOrderMark(data, size)) {
        data += 3;
        size -= 3;
    }
    return CJsonScanner(data, size, reason).run(maxDepth);
}

std::string wrapExGreeksText(const std::string& text)
{
    std::string wrapped;
    wrapped.reserve(text.size() + 20);
    wrapped.append("{ \"content\" : ").append(text).append(" }");
    return wrapped;
}

int parseOptionExGreeksText(const char* data, std::size_t size, OptionExGreeksMap& harvest, std::string* reason)
{
    try {
        return parseChecked(data, size, harvest, reason);
    } catch (abi::__forced_unwind&) {
        throw;  // a thread being cancelled must unwind
    } catch (const std::exception& error) {
        setReason(reason, error.what());
    } catch (...) {
        setReason(reason, "unknown failure of the reader");
    }
    return EGPR_BAD;
}

}  // namespace TC
