// Parameter cells and order parameter tables: validators per unit, spin, unit
// clicks, and the price types a code's exchange accepts.
#include "seam/common.h"
#include "seam/uievents.h"
#include "toolkit/ccodeorderparamtable.h"
#include "toolkit/ccomboboxdelegate.h"
#include "toolkit/cmultiparamstable.h"
#include "toolkit/cparametercell.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

namespace {

TEST(ParameterCell, IntegerUnitAcceptsOnlyIntegersInRange)
{
    WG::CParameterCell cell(5, QStringLiteral(" 下单量"), QStringList{QStringLiteral("张"), QStringLiteral("%")}, nullptr);
    cell.setIntValidator(QStringLiteral("张"), 0, 100, 1);
    cell.setDoubleValidator(QStringLiteral("%"), 0.0, 100.0, 0.001);
    EXPECT_EQ(cell.unit(), QStringLiteral("张"));
    QTest::keyClicks(cell.lineEdit(), QStringLiteral("12.5"));
    EXPECT_EQ(cell.text(), QStringLiteral("125")) << "the point is refused";
    EXPECT_FALSE(cell.hasAcceptableInput()) << "125 is over the maximum";
    cell.setString(QString());
    QTest::keyClicks(cell.lineEdit(), QStringLiteral("42"));
    EXPECT_EQ(cell.toInt(), 42);
    EXPECT_TRUE(cell.hasAcceptableInput());
    cell.setString(QStringLiteral("250"));
    EXPECT_FALSE(cell.hasAcceptableInput());
    cell.setString(QStringLiteral("abc"));
    EXPECT_TRUE(utils::isAbsent(cell.toInt()));
    EXPECT_TRUE(utils::isAbsent(cell.toDouble()));
}

TEST(ParameterCell, DoubleUnitTakesDecimalsOfItsStep)
{
    WG::CParameterCell cell(3, QStringLiteral(" 单笔超价"), QStringLiteral("%"), nullptr);
    cell.setDoubleValidator(QStringLiteral("%"), 0.0, utils::kAbsentDouble, 0.0001);
    cell.setDouble(1.23456);
    EXPECT_EQ(cell.text(), QStringLiteral("1.2346"));
    EXPECT_DOUBLE_EQ(cell.toDouble(), 1.2346);
    cell.setString(QStringLiteral("1.23456"));
    EXPECT_FALSE(cell.hasAcceptableInput()) << "five decimals for a step of 0.0001";
    cell.setString(QStringLiteral("-1"));
    EXPECT_FALSE(cell.hasAcceptableInput());
}

TEST(ParameterCell, SpinStepsPerUnitAndClampsToTheRange)
{
    WG::CParameterCell cell(5, QStringLiteral(" 下单量"), QStringList{QStringLiteral("张"), QStringLiteral("%")}, nullptr);
    cell.setIntValidator(QStringLiteral("张"), 0, 3, 1);
    cell.setSpin(QStringLiteral("张"), qMakePair(true, 1.0));
    cell.setDoubleValidator(QStringLiteral("%"), 0.0, 100.0, 0.001);
    cell.setSpin(QStringLiteral("%"), qMakePair(true, 0.001));
    cell.setInt(2);
    EXPECT_TRUE(cell.stepBy(1));
    EXPECT_EQ(cell.toInt(), 3);
    EXPECT_TRUE(cell.stepBy(1));
    EXPECT_EQ(cell.toInt(), 3) << "clamped at the maximum";
    cell.setUnit(QStringLiteral("%"));
    cell.setDouble(50.0);
    EXPECT_TRUE(cell.stepBy(-1));
    EXPECT_EQ(cell.text(), QStringLiteral("49.999"));
    cell.setUnit(QStringLiteral("手"));  // not a unit of this cell
    EXPECT_EQ(cell.unit(), QStringLiteral("%"));

    WG::CParameterCell still(1, QStringLiteral("可买开"), QStringLiteral("张"), nullptr);
    EXPECT_FALSE(still.stepBy(1)) << "no spin without setSpin";
}

TEST(ParameterCell, UnitClickEmitsTheUnitAndTheOwnerSwitches)
{
    WG::CParameterCell cell(5, QStringLiteral(" 下单量"), QStringList{QStringLiteral("张"), QStringLiteral("%")}, nullptr);
    QSignalSpy spy(&cell, &WG::CParameterCell::sigUnitClicked);
    QToolButton* percent = nullptr;
    for (QToolButton* button : cell.findChildren<QToolButton*>()) {
        if (button->text() == QStringLiteral("%")) {
            percent = button;
        }
    }
    ASSERT_NE(percent, nullptr);
    percent->click();
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).toString(), QStringLiteral("%"));
    EXPECT_EQ(cell.unit(), QStringLiteral("张")) << "the owner decides";
    cell.setUnit(QStringLiteral("%"));
    EXPECT_EQ(cell.unit(), QStringLiteral("%"));
}

struct PriceTypeCase {
    const char* key;
    nqservice::EVqTraderType trader;
    std::vector<int> types;
};

class AllowedPriceTypes : public ::testing::TestWithParam<PriceTypeCase> {};

TEST_P(AllowedPriceTypes, DependOnTheExchangeOfTheCode)
{
    const PriceTypeCase& c = GetParam();
    std::vector<int> types;
    for (const auto& entry : TC::CCodeOrderParamTable::allowedPriceTypes(QString::fromLatin1(c.key), c.trader)) {
        types.push_back(entry.second);
        EXPECT_FALSE(entry.first.isEmpty());
    }
    EXPECT_EQ(types, c.types) << "key " << c.key << " trader " << c.trader;
}

INSTANTIATE_TEST_SUITE_P(
    Codes, AllowedPriceTypes,
    ::testing::Values(PriceTypeCase{"10004567.SH", nqservice::VQ_TRADER_TYPE_STOCK_OPTION, {11, 26, 27, 28, 29}},
                      PriceTypeCase{"90000123.SZ", nqservice::VQ_TRADER_TYPE_STOCK_OPTION, {11, 26, 27, 28, 14, 13}},
                      PriceTypeCase{"m2401-C-3000.DCE", nqservice::VQ_TRADER_TYPE_FUTURE_OPTION, {11, 12, 14, 5}},
                      PriceTypeCase{"10004567.XX", nqservice::VQ_TRADER_TYPE_STOCK_OPTION, {}},
                      PriceTypeCase{"10004567", nqservice::VQ_TRADER_TYPE_STOCK_OPTION, {}},
                      PriceTypeCase{"", nqservice::VQ_TRADER_TYPE_STOCK_OPTION, {}}));

TEST(CodeOrderParamTable, ItemOneIsAComboOfTheAllowedPriceTypes)
{
    TC::CCodeOrderParamTable table(TC::OPWID_NORMAL_ORDER, nqservice::VQ_BROKER_TYPE_STOCK_OPTION, nullptr, false,
                                   nqservice::VQ_TRADER_TYPE_STOCK_OPTION, true, true, false);
    table.setStockCode(QStringLiteral("10004567.SH"));
    auto* combo = dynamic_cast<WG::CComboBoxDelegate*>(table.getMultiParamsTable()->getItem(1));
    ASSERT_NE(combo, nullptr);
    EXPECT_EQ(combo->getQStringList().size(), 5);
    EXPECT_EQ(combo->getDatas().size(), 5);
    EXPECT_EQ(combo->getQStringList().at(0), QStringLiteral("限价"));
    EXPECT_EQ(combo->getDatas().at(4).toInt(), 29);
    table.clear();
    EXPECT_TRUE(combo->getQStringList().isEmpty());
    EXPECT_EQ(table.getMultiParamsTable()->itemCount(), 4);
    EXPECT_EQ(table.getMultiParamsTable()->getItem(9), nullptr);
}

}  // namespace
