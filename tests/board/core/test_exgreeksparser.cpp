// The parse step of the Greeks import: what it takes, and every kind of text it
// must turn away without a crash and without touching what was taken before.
#include "board/exgreeksparser.h"
#include "board/core/exgreekstestdata.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <boost/make_shared.hpp>

#include <clocale>
#include <cstdlib>
#include <locale.h>
#include <string>

using namespace TC;
using exgreekstest::nestedArrays;
using exgreekstest::nestedObjects;
using exgreekstest::recordText;
using exgreekstest::validFileText;

namespace {

int parse(const std::string& text, OptionExGreeksMap& harvest, std::string* reason = nullptr)
{
    return parseOptionExGreeksText(text.data(), text.size(), harvest, reason);
}

// A harvest holding one record from an earlier file, to see that a bad text leaves it alone.
OptionExGreeksMap earlierHarvest()
{
    OptionExGreeksMap harvest;
    auto record = boost::make_shared<nqservice::COptionExGreeksVolatility>();
    record->code = "10009999";
    record->exDelta = 0.125;
    harvest.insert(QStringLiteral("10009999"), record);
    return harvest;
}

void expectUntouched(const OptionExGreeksMap& harvest, const std::string& text)
{
    ASSERT_EQ(1, harvest.size()) << "text: " << text.substr(0, 200);
    const auto record = harvest.value(QStringLiteral("10009999"));
    ASSERT_TRUE(record);
    EXPECT_EQ(0.125, record->exDelta);
}

}  // namespace

TEST(ExGreeksParser, ReadsEveryFieldOfEveryRecord)
{
    OptionExGreeksMap harvest;
    std::string reason;
    ASSERT_EQ(EGPR_GOOD, parse(validFileText(), harvest, &reason)) << reason;
    ASSERT_EQ(2, harvest.size());
    const auto call = harvest.value(QStringLiteral("10004001"));
    ASSERT_TRUE(call);
    EXPECT_EQ("10004001", call->code);
    EXPECT_DOUBLE_EQ(0.2312, call->exSellImpliedVolatility);
    EXPECT_DOUBLE_EQ(0.2298, call->exBuyImpliedVolatility);
    EXPECT_DOUBLE_EQ(0.5321, call->exDelta);
    EXPECT_DOUBLE_EQ(2.1456, call->exGamma);
    EXPECT_DOUBLE_EQ(0.0052, call->exVega);
    EXPECT_DOUBLE_EQ(-0.0011, call->exTheta);
    const auto put = harvest.value(QStringLiteral("10004002"));
    ASSERT_TRUE(put);
    EXPECT_DOUBLE_EQ(-0.4702, put->exDelta);
    EXPECT_DOUBLE_EQ(-0.0009, put->exTheta);
}

TEST(ExGreeksParser, EmptyArrayIsAGoodTextWithoutRecords)
{
    OptionExGreeksMap harvest;
    EXPECT_EQ(EGPR_GOOD, parse("[]", harvest));
    EXPECT_TRUE(harvest.isEmpty());
    EXPECT_EQ(EGPR_GOOD, parse(" \n[ ]\r\n", harvest));
    EXPECT_TRUE(harvest.isEmpty());
}

TEST(ExGreeksParser, TopLevelObjectHasItsMembersWalkedAsRecords)
{
    OptionExGreeksMap harvest;
    const std::string text =
        "{\"first\": " + recordText("10004001", "0.51") + ", \"second\": " + recordText("10004002", "-0.49") + "}";
    std::string reason;
    ASSERT_EQ(EGPR_GOOD, parse(text, harvest, &reason)) << reason;
    ASSERT_EQ(2, harvest.size());
    EXPECT_DOUBLE_EQ(0.51, harvest.value(QStringLiteral("10004001"))->exDelta);
    EXPECT_DOUBLE_EQ(-0.49, harvest.value(QStringLiteral("10004002"))->exDelta);
}

TEST(ExGreeksParser, LaterRecordOfACodeWinsWithinAFileAndOverAnEarlierHarvest)
{
    OptionExGreeksMap harvest;
    ASSERT_EQ(EGPR_GOOD, parse("[" + recordText("10004001", "0.1") + "]", harvest));
    ASSERT_EQ(EGPR_GOOD,
              parse("[" + recordText("10004001", "0.2") + "," + recordText("10004001", "0.3") + "]", harvest));
    ASSERT_EQ(1, harvest.size());
    EXPECT_DOUBLE_EQ(0.3, harvest.value(QStringLiteral("10004001"))->exDelta);
}

TEST(ExGreeksParser, MissingAndNullGreeksStayAbsentAndForeignFieldsAreIgnored)
{
    OptionExGreeksMap harvest;
    const std::string text = "[{\"code\": \"10004001\", \"exDelta\": 1, \"exGamma\": null, \"model\": \"自家模型\","
                             " \"meta\": {\"at\": [1, 2, {\"x\": true}]}}]";
    std::string reason;
    ASSERT_EQ(EGPR_GOOD, parse(text, harvest, &reason)) << reason;
    const auto record = harvest.value(QStringLiteral("10004001"));
    ASSERT_TRUE(record);
    EXPECT_DOUBLE_EQ(1.0, record->exDelta);  // an integer is a number too
    EXPECT_TRUE(utils::isAbsent(record->exGamma));
    EXPECT_TRUE(utils::isAbsent(record->exVega));
    EXPECT_TRUE(utils::isAbsent(record->exTheta));
    EXPECT_TRUE(utils::isAbsent(record->exSellImpliedVolatility));
    EXPECT_TRUE(utils::isAbsent(record->exBuyImpliedVolatility));
}

TEST(ExGreeksParser, ByteOrderMarkAndWindowsLineEndsAreAccepted)
{
    OptionExGreeksMap harvest;
    std::string text = "\xEF\xBB\xBF[\r\n" + recordText("10004001", "0.5") + "\r\n]\r\n";
    std::string reason;
    ASSERT_EQ(EGPR_GOOD, parse(text, harvest, &reason)) << reason;
    EXPECT_EQ(1, harvest.size());
}

TEST(ExGreeksParser, NumbersAtTheEdgesOfTheirRanges)
{
    OptionExGreeksMap harvest;
    std::string reason;
    ASSERT_EQ(EGPR_GOOD, parse("[{\"code\": \"a\", \"exDelta\": 9223372036854775807, \"exGamma\": "
                               "-9223372036854775808, \"exVega\": 1.5E-3, \"exTheta\": -0e0}]",
                               harvest, &reason))
        << reason;
    const auto record = harvest.value(QStringLiteral("a"));
    ASSERT_TRUE(record);
    EXPECT_DOUBLE_EQ(9223372036854775807.0, record->exDelta);
    EXPECT_DOUBLE_EQ(-9223372036854775808.0, record->exGamma);
    EXPECT_DOUBLE_EQ(0.0015, record->exVega);
    EXPECT_EQ(0.0, record->exTheta);
}

TEST(ExGreeksParser, UnicodeInCodesAndEscapesWithinTheBasicPlane)
{
    OptionExGreeksMap harvest;
    std::string reason;
    ASSERT_EQ(EGPR_GOOD, parse("[{\"code\": \"50ETF\\u8d2d12\xe6\x9c\x88\\\"\\/\\n\"}]", harvest, &reason)) << reason;
    EXPECT_TRUE(harvest.contains(QString::fromUtf8("50ETF购12月\"/\n")));
}

TEST(ExGreeksParser, BracketsInsideStringsDoNotCountAsNesting)
{
    OptionExGreeksMap harvest;
    const std::string deepText = std::string(5000, '[') + "\\\"" + std::string(5000, '{');
    std::string reason;
    ASSERT_EQ(EGPR_GOOD, parse("[{\"code\": \"x\", \"note\": \"" + deepText + "\"}]", harvest, &reason)) << reason;
    EXPECT_TRUE(harvest.contains(QStringLiteral("x")));
}

TEST(ExGreeksParser, NestingUpToTheLimitIsTakenOneMoreIsNot)
{
    std::string reason;
    EXPECT_TRUE(checkExGreeksJson(nestedArrays(kMaxExGreeksDepth, true).data(), kMaxExGreeksDepth * 2, &reason))
        << reason;
    const std::string tooDeep = nestedArrays(kMaxExGreeksDepth + 1, true);
    EXPECT_FALSE(checkExGreeksJson(tooDeep.data(), tooDeep.size(), &reason));
    EXPECT_NE(std::string::npos, reason.find("nesting")) << reason;

    // A record whose own field nests to the limit still parses.
    OptionExGreeksMap harvest;
    const std::string field = nestedArrays(kMaxExGreeksDepth - 2, true);
    ASSERT_EQ(EGPR_GOOD, parse("[{\"code\": \"deep\", \"extra\": " + field + "}]", harvest, &reason)) << reason;
    EXPECT_TRUE(harvest.contains(QStringLiteral("deep")));
}

TEST(ExGreeksParser, ValidJsonTheReaderCanTakeIsTaken)
{
    OptionExGreeksMap harvest;
    std::string reason;
    // An escaped surrogate pair is one character, stored as its UTF-8.
    ASSERT_EQ(EGPR_GOOD, parse("[{\"code\": \"x\\ud83d\\ude00y\", \"exDelta\": 0.5}]", harvest, &reason)) << reason;
    const QString smiley = QString::fromUtf8("x\xF0\x9F\x98\x80y");
    ASSERT_TRUE(harvest.contains(smiley));
    EXPECT_EQ(harvest.value(smiley)->code, std::string("x\xF0\x9F\x98\x80y"));
    // An escaped backslash before "u" is no escape: the text stays as written.
    ASSERT_EQ(EGPR_GOOD, parse("[{\"code\": \"a\\\\ud83d\"}]", harvest, &reason)) << reason;
    EXPECT_TRUE(harvest.contains(QStringLiteral("a\\ud83d")));
    // U+0000 inside a string value is a character like any other.
    ASSERT_EQ(EGPR_GOOD, parse("[{\"code\": \"a\\u0000b\"}]", harvest, &reason)) << reason;
    EXPECT_TRUE(harvest.contains(QString::fromUtf16(u"a\u0000b", 3)));
}

TEST(ExGreeksParser, ElementsThatAreNoObjectsAreEmptyRecordsUnderTheEmptyCode)
{
    for (const std::string text : {"[1]", "[\"10004001\"]", "[null]", "[[{\"code\": \"x\"}]]", "{\"a\": 1}"}) {
        OptionExGreeksMap harvest;
        std::string reason;
        ASSERT_EQ(EGPR_GOOD, parse(text, harvest, &reason)) << text << ": " << reason;
        ASSERT_EQ(harvest.keys(), QStringList{QString()}) << text;
        EXPECT_TRUE(utils::isAbsent(harvest.value(QString())->exDelta)) << text;
    }
    OptionExGreeksMap harvest;
    ASSERT_EQ(EGPR_GOOD, parse("[" + recordText("10004001", "0.5") + ", 7]", harvest));
    EXPECT_EQ(harvest.size(), 2);
    EXPECT_EQ(harvest.value(QStringLiteral("10004001"))->exDelta, 0.5);
}

TEST(ExGreeksParser, RecordsBeforeAFailedRecordStayInTheHarvest)
{
    OptionExGreeksMap harvest;
    std::string reason;
    const std::string text = "[" + recordText("10004001", "0.5") + ", " + recordText("10004002", "0.6") +
                             ", {\"code\": \"10004003\", \"exDelta\": \"bad\"}, " + recordText("10004004", "0.8") + "]";
    EXPECT_EQ(EGPR_BAD, parse(text, harvest, &reason));
    EXPECT_NE(reason.find("record 2"), std::string::npos) << reason;
    EXPECT_TRUE(harvest.contains(QStringLiteral("10004001")));
    EXPECT_TRUE(harvest.contains(QStringLiteral("10004002")));
    EXPECT_FALSE(harvest.contains(QStringLiteral("10004003")));
    EXPECT_FALSE(harvest.contains(QStringLiteral("10004004"))) << "the walk ends at the failure";
}

struct BadText {
    const char* name;
    std::string text;
};

void PrintTo(const BadText& bad, std::ostream* out) { *out << bad.name; }

class ExGreeksParserRejects : public ::testing::TestWithParam<BadText> {};

TEST_P(ExGreeksParserRejects, LeavesTheHarvestAsItWas)
{
    const BadText& bad = GetParam();
    OptionExGreeksMap harvest = earlierHarvest();
    std::string reason;
    EXPECT_EQ(EGPR_BAD, parse(bad.text, harvest, &reason)) << bad.name << ": " << bad.text.substr(0, 200);
    EXPECT_FALSE(reason.empty()) << bad.name;
    expectUntouched(harvest, bad.text);
}

namespace {

std::string record(const std::string& body) { return "[{\"code\": \"10004001\", " + body + "}]"; }

std::vector<BadText> badTexts()
{
    const std::string good = recordText("10004001", "0.5");
    return {
        {"Empty", ""},
        {"OnlyWhitespace", " \n\t "},
        {"ScalarNumber", "5"},
        {"ScalarString", "\"x\""},
        {"ScalarTrue", "true"},
        {"ScalarNull", "null"},
        {"TrailingWord", "[] x"},
        {"TrailingBracket", "[]]"},
        {"TrailingClosesTheWrapper", "[] }, {\"content\": 1"},
        {"TwoValues", "[][]"},
        {"TrailingRecordAfterArray", "[" + good + "] " + good},
        {"Hex", record("\"exDelta\": 0x10")},
        {"NaN", record("\"exDelta\": NaN")},
        {"Infinity", record("\"exDelta\": Infinity")},
        {"MinusInfinity", record("\"exDelta\": -Infinity")},
        {"PlusSign", record("\"exDelta\": +1")},
        {"LeadingDot", record("\"exDelta\": .5")},
        {"TrailingDot", record("\"exDelta\": 1.")},
        {"LeadingZero", record("\"exDelta\": 01")},
        {"EmptyExponent", record("\"exDelta\": 1e")},
        {"LoneMinus", record("\"exDelta\": -")},
        {"OverflowingDouble", record("\"exDelta\": 1e999")},
        {"OverflowingNegativeDouble", record("\"exDelta\": -1e999")},
        {"IntegerBeyond64Bits", record("\"exDelta\": 9223372036854775808")},
        {"NegativeIntegerBeyond64Bits", record("\"exDelta\": -9223372036854775809")},
        {"TwentyDigitInteger", record("\"exDelta\": 12345678901234567890")},
        {"SingleQuotes", "[{'code': '10004001'}]"},
        {"UnquotedKey", "[{code: \"10004001\"}]"},
        {"Comment", "[// note\n]"},
        {"BlockComment", "[/* note */]"},
        {"TrailingCommaInArray", "[" + good + ",]"},
        {"TrailingCommaInObject", record("\"exDelta\": 0.5,")},
        {"MissingColon", "[{\"code\" \"a\"}]"},
        {"MissingComma", "[{\"code\": \"a\" \"exDelta\": 1}]"},
        {"InvalidByte", "[{\"code\": \"\xff\"}]"},
        {"InvalidByteOutsideString", "[\xff]"},
        {"OverlongSlash", "[{\"code\": \"\xc0\xaf\"}]"},
        {"EncodedSurrogate", "[{\"code\": \"\xed\xa0\x80\"}]"},
        {"CutSequence", "[{\"code\": \"\xe4\xb8\"}]"},
        {"BeyondUnicode", "[{\"code\": \"\xf4\x90\x80\x80\"}]"},
        {"StrayContinuation", "[{\"code\": \"\x80\"}]"},
        {"Latin1Text", "[{\"code\": \"caf\xe9\"}]"},
        {"Utf16Text", std::string("\xff\xfe[\0]\0", 6)},
        {"RawControlCharacter", "[{\"code\": \"a\x01" "b\"}]"},
        {"RawNewlineInString", "[{\"code\": \"a\nb\"}]"},
        {"RawNul", std::string("[{\"code\": \"a\0b\"}]", 18)},
        {"NulAfterValue", std::string("[]\0 }", 5)},
        {"NulEscapeInKey", "[{\"co\\u0000de\": \"a\"}]"},
        {"LoneSurrogateEscape", "[{\"code\": \"\\udc00\"}]"},
        {"UnknownEscape", "[{\"code\": \"\\x41\"}]"},
        {"ShortUnicodeEscape", "[{\"code\": \"\\u12\"}]"},
        {"DollarKey", "[{\"code\": \"a\", \"exDelta\": {\"$numberLong\": \"99999999999999999999\"}}]"},
        {"EscapedDollarKey", "[{\"code\": \"a\", \"x\": {\"\\u0024date\": 5}}]"},
        {"DollarKeyAtTop", "{\"$oid\": \"zz\"}"},
        {"DuplicateCode", "[{\"code\": \"10004001\", \"code\": \"10004002\"}]"},
        {"DuplicateGreek", record("\"exDelta\": 0.5, \"exDelta\": 0.6")},
        {"DuplicateForeignField", record("\"note\": 1, \"note\": 2")},
        {"CodeStartingWithByteOrderMark", "[{\"code\": \"\xEF\xBB\xBF" "10004001\"}]"},
        {"CodeStartingWithEscapedByteOrderMark", "[{\"code\": \"\\ufeff10004001\"}]"},
        {"CodeIsNumber", "[{\"code\": 10004001}]"},
        {"CodeIsNull", "[{\"code\": null}]"},
        {"CodeIsObject", "[{\"code\": {\"v\": \"a\"}}]"},
        {"GreekIsString", record("\"exDelta\": \"0.5\"")},
        {"GreekIsBool", record("\"exDelta\": true")},
        {"GreekIsObject", record("\"exDelta\": {\"v\": 0.5}")},
        {"GreekIsArray", record("\"exDelta\": [0.5]")},
        {"TruncatedRecord", "[" + good.substr(0, good.size() / 2)},
        {"ArraysTooDeep", nestedArrays(kMaxExGreeksDepth + 1, true)},
        {"ObjectsTooDeep", "[" + nestedObjects(kMaxExGreeksDepth, true) + "]"},
        {"ArraysDeeplyNestedClosed", nestedArrays(20000, true)},
        {"ArraysDeeplyNestedOpen", nestedArrays(20000, false)},
        {"ObjectsDeeplyNestedClosed", nestedObjects(20000, true)},
        {"ObjectsDeeplyNestedOpen", nestedObjects(20000, false)},
        {"ArraysMillionClosed", nestedArrays(1000000, true)},
        {"ArraysMillionOpen", nestedArrays(1000000, false)},
        {"ObjectsMillionClosed", nestedObjects(1000000, true)},
        {"ObjectsMillionOpen", nestedObjects(1000000, false)},
        {"DeepInsideARecord", record("\"extra\": " + nestedArrays(1000000, true))},
        {"TooLarge", "[" + std::string(kMaxExGreeksTextBytes, ' ') + "]"},
    };
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(Texts, ExGreeksParserRejects, ::testing::ValuesIn(badTexts()),
                         [](const ::testing::TestParamInfo<BadText>& info) { return std::string(info.param.name); });

TEST(ExGreeksParser, EveryCutOfAValidFileIsRejectedUnlessOnlyWhitespaceWasCut)
{
    const std::string text = validFileText();
    std::size_t lastSignificant = text.find_last_not_of(" \n\r\t");
    for (std::size_t length = 0; length < text.size(); ++length) {
        OptionExGreeksMap harvest = earlierHarvest();
        const int result = parseOptionExGreeksText(text.data(), length, harvest, nullptr);
        if (length > lastSignificant) {
            EXPECT_EQ(EGPR_GOOD, result) << "cut at " << length;
            EXPECT_EQ(3, harvest.size()) << "cut at " << length;
        } else {
            EXPECT_EQ(EGPR_BAD, result) << "cut at " << length << ": " << text.substr(0, length);
            expectUntouched(harvest, text.substr(0, length));
        }
    }
}

TEST(ExGreeksParser, EveryByteOfAValidFileReplacedByAnInvalidOneIsRejected)
{
    const std::string text = validFileText();
    for (std::size_t at = 0; at < text.size(); ++at) {
        for (const char bad : {'\xff', '\x80', '\0'}) {
            std::string changed = text;
            changed[at] = bad;
            OptionExGreeksMap harvest = earlierHarvest();
            EXPECT_EQ(EGPR_BAD, parse(changed, harvest)) << "byte " << at << " set to " << int(bad);
            expectUntouched(harvest, changed);
        }
    }
}

TEST(ExGreeksParser, ALargeValidFileBelowTheLimitIsTaken)
{
    std::string text = "[";
    const int count = 20000;
    for (int i = 0; i < count; ++i) {
        if (i > 0) {
            text += ",\n";
        }
        text += recordText(std::to_string(10000000 + i), "0." + std::to_string(i % 1000));
    }
    text += "]";
    ASSERT_LT(text.size(), kMaxExGreeksTextBytes);
    OptionExGreeksMap harvest;
    std::string reason;
    ASSERT_EQ(EGPR_GOOD, parse(text, harvest, &reason)) << reason;
    EXPECT_EQ(count, harvest.size());
    EXPECT_DOUBLE_EQ(0.999, harvest.value(QStringLiteral("10000999"))->exDelta);
}

// The reader parses numbers by the thread's C library locale; a desk started
// under a locale with a decimal comma must still read "0.5" as one half.
TEST(ExGreeksParser, ReadsNumbersTheSameUnderADecimalCommaLocale)
{
    QTemporaryDir localeDir;
    ASSERT_TRUE(localeDir.isValid());
    const QString target = QDir(localeDir.path()).filePath(QStringLiteral("de_DE.UTF-8"));
    const int built = QProcess::execute(QStringLiteral("localedef"),
                                        {QStringLiteral("-i"), QStringLiteral("de_DE"), QStringLiteral("-f"),
                                         QStringLiteral("UTF-8"), target});
    if (built != 0) {
        GTEST_SKIP() << "localedef could not build de_DE.UTF-8 (" << built << ")";
    }
    const char* oldPath = std::getenv("LOCPATH");
    const std::string savedPath = oldPath != nullptr ? oldPath : "";
    setenv("LOCPATH", localeDir.path().toLocal8Bit().constData(), 1);
    locale_t comma = newlocale(LC_NUMERIC_MASK, "de_DE.UTF-8", static_cast<locale_t>(nullptr));
    if (oldPath != nullptr) {
        setenv("LOCPATH", savedPath.c_str(), 1);
    } else {
        unsetenv("LOCPATH");
    }
    if (comma == static_cast<locale_t>(nullptr)) {
        GTEST_SKIP() << "de_DE.UTF-8 could not be loaded";
    }
    const locale_t previous = uselocale(comma);
    // The locale bites: the C library now reads "0.5" as 0.
    EXPECT_EQ(0.0, std::strtod("0.5", nullptr));
    OptionExGreeksMap harvest;
    std::string reason;
    const int result = parse(record("\"exDelta\": 0.5, \"exGamma\": 1.25e-2"), harvest, &reason);
    // And the parse left the thread's locale as it found it.
    EXPECT_EQ(0.0, std::strtod("0.5", nullptr));
    uselocale(previous);
    freelocale(comma);
    ASSERT_EQ(EGPR_GOOD, result) << reason;
    EXPECT_DOUBLE_EQ(0.5, harvest.value(QStringLiteral("10004001"))->exDelta);
    EXPECT_DOUBLE_EQ(0.0125, harvest.value(QStringLiteral("10004001"))->exGamma);
}
