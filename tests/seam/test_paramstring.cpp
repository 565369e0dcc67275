#include "seam/paramstring.h"

#include "support/testsupport.h"

#include <gtest/gtest.h>

TEST(ParamString, EmptyStringHasNoSections)
{
    EXPECT_TRUE(TC::CParamString::sections(QString()).isEmpty());
    EXPECT_TRUE(TC::CParamString::sections(QStringLiteral("")).isEmpty());
}

TEST(ParamString, EmptyPartsAreKept)
{
    const QStringList parts = TC::CParamString::sections(QStringLiteral("a||c|"));
    ASSERT_EQ(parts.size(), 4);
    EXPECT_EQ(parts[0], QStringLiteral("a"));
    EXPECT_TRUE(parts[1].isEmpty());
    EXPECT_EQ(parts[2], QStringLiteral("c"));
    EXPECT_TRUE(parts[3].isEmpty());
    EXPECT_EQ(TC::CParamString::joinSections(parts), QStringLiteral("a||c|"));
}

TEST(ParamString, ListsWithinASection)
{
    const QStringList items = TC::CParamString::list(QStringLiteral("x;;y"));
    ASSERT_EQ(items.size(), 3);
    EXPECT_TRUE(items[1].isEmpty());
    EXPECT_EQ(TC::CParamString::joinList(items), QStringLiteral("x;;y"));
    EXPECT_TRUE(TC::CParamString::list(QString()).isEmpty());
}

TEST(ParamString, SectionBeyondTheEndIsEmpty)
{
    const QStringList parts = TC::CParamString::sections(QStringLiteral("only"));
    EXPECT_EQ(TC::CParamString::section(parts, 0), QStringLiteral("only"));
    EXPECT_TRUE(TC::CParamString::section(parts, 3).isEmpty());
    EXPECT_TRUE(TC::CParamString::section(parts, -1).isEmpty());
}
