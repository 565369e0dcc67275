#include "app/deskoptions.h"
#include "support/testsupport.h"

#include <gtest/gtest.h>

namespace {
desk::DeskOptions parse(const QStringList& args) { return desk::parseDeskOptions(QStringList{QStringLiteral("optdesk")} + args); }
}  // namespace

TEST(DeskOptions, DefaultsNeedNoArguments)
{
    const desk::DeskOptions o = parse({});
    EXPECT_TRUE(o.ok) << o.error.toStdString();
    EXPECT_EQ(o.configDir, desk::defaultConfigDir());
    EXPECT_TRUE(o.configDir.endsWith(QStringLiteral("optdesk")));
    EXPECT_LT(o.quitAfterSeconds, 0.0);
    EXPECT_DOUBLE_EQ(o.quoteRate, 2.0);
    EXPECT_DOUBLE_EQ(o.clockSpeed, 1.0);
    EXPECT_FALSE(o.seedGiven) << "the directory's market may choose the seed";
}

TEST(DeskOptions, AllOptionsTogether)
{
    const desk::DeskOptions o =
        parse({"--config-dir", "/tmp/a", "--seed", "7", "--screenshot", "/tmp/a/s.png", "--quit-after", "2.5", "--quote-rate",
               "10", "--tick-ms", "100", "--greeks-dir", "/tmp/g", "--theme", "light", "--clock-speed", "600"});
    ASSERT_TRUE(o.ok) << o.error.toStdString();
    EXPECT_EQ(o.configDir, QStringLiteral("/tmp/a"));
    EXPECT_EQ(o.seed, 7u);
    EXPECT_TRUE(o.seedGiven);
    EXPECT_DOUBLE_EQ(o.clockSpeed, 600.0);
    EXPECT_EQ(o.screenshotFile, QStringLiteral("/tmp/a/s.png"));
    EXPECT_DOUBLE_EQ(o.quitAfterSeconds, 2.5);
    EXPECT_DOUBLE_EQ(o.quoteRate, 10.0);
    EXPECT_EQ(o.tickMs, 100);
    EXPECT_EQ(o.greeksImportDir, QStringLiteral("/tmp/g"));
    EXPECT_EQ(o.theme, QStringLiteral("light"));
}

class BadDeskOptions : public testing::TestWithParam<std::vector<const char*>> {};

TEST_P(BadDeskOptions, AreRefusedWithAReason)
{
    QStringList args;
    for (const char* a : GetParam()) {
        args << QString::fromUtf8(a);
    }
    const desk::DeskOptions o = parse(args);
    EXPECT_FALSE(o.ok) << args.join(QLatin1Char(' ')).toStdString();
    EXPECT_FALSE(o.error.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Cases, BadDeskOptions,
                         testing::Values(std::vector<const char*>{"--bogus"},
                                         std::vector<const char*>{"--seed", "abc"},
                                         std::vector<const char*>{"--seed", "-3"},
                                         std::vector<const char*>{"--screenshot", "/tmp/s.png"},
                                         std::vector<const char*>{"--quit-after", "soon"},
                                         std::vector<const char*>{"--quit-after", "-1"},
                                         std::vector<const char*>{"--quote-rate", "0"},
                                         std::vector<const char*>{"--tick-ms", "5"},
                                         std::vector<const char*>{"--clock-speed", "0"},
                                         std::vector<const char*>{"--clock-speed", "fast"},
                                         std::vector<const char*>{"--seed", "4294967296"},
                                         std::vector<const char*>{"--theme", "neon"},
                                         std::vector<const char*>{"--config-dir"},
                                         std::vector<const char*>{"stray"}));

TEST(DeskOptions, HelpTextNamesTheOptions)
{
    const QString usage = desk::deskUsage();
    for (const char* option : {"--config-dir", "--seed", "--screenshot", "--quit-after", "--quote-rate", "--clock-speed", "--greeks-dir"}) {
        EXPECT_TRUE(usage.contains(QString::fromLatin1(option))) << option;
    }
    EXPECT_TRUE(parse({"--help"}).showHelp);
}

TEST(DeskOptions, ShowNamesAPanelToBringToTheFront)
{
    EXPECT_EQ(parse({}).showPanel, QString());
    const desk::DeskOptions options = parse({QStringLiteral("--show"), QStringLiteral("pricet_future")});
    ASSERT_TRUE(options.ok) << options.error.toStdString();
    EXPECT_EQ(options.showPanel, QStringLiteral("pricet_future"));
    EXPECT_TRUE(desk::deskUsage().contains(QStringLiteral("--show")));
}
