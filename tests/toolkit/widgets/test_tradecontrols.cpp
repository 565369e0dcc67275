// The trade controls against a small fake exchange and user store: code entry
// looks codes up and delivers 1032, the price list shows five levels a side in
// rise and fall colours, the graph keeps a point per minute, the account combo
// lists what serves the trade type.
#include "support/testsupport.h"
#include "widgettestsupport.h"

#include "seam/cexchangeclient.h"
#include "seam/cpricedata.h"
#include "seam/stockcolor.h"
#include "seam/uievents.h"
#include "seam/user.h"
#include "toolkit/widgets.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QSignalSpy>
#include <QTest>

#include <map>

using widgettest::EventRecorder;

namespace {

class FakeExchange : public TC::CExchangeClient {
public:
    FakeExchange()
    {
        add("SH", "10004567", "50ETF购12月2800", nqservice::IK_STOCK_OPTION, 0.0001);
        add("SH", "510050", "50ETF", nqservice::IK_FUND, 0.001);
        add("DCE", "m2601-C-3000", "豆粕购3000", nqservice::IK_FUTURE_OPTION, 0.5);
    }
    std::shared_ptr<nqservice::CInstrumentDetail> getCodeInfo(const QString& key) const override
    {
        auto it = m_details.find(key);
        return it == m_details.end() ? nullptr : it->second;
    }
    bool isCall(const std::shared_ptr<nqservice::CInstrumentDetail>& detail) override { return detail && detail->call; }
    QString getExercisePrice(const std::shared_ptr<nqservice::CInstrumentDetail>&) override { return QString(); }
    void getStockOptionMap(QMap<QString, QMap<QString, QStringList>>&) const override {}
    void getFutureOptionMap(QMap<QString, QMap<QString, QStringList>>&) const override {}
    int getRemainDays(QString) override { return 0; }
    int getRemainSecond() override { return 0; }
    QStringList getAllCodes() const override
    {
        QStringList keys;
        for (const auto& entry : m_details) {
            keys << entry.first;
        }
        return keys;
    }
    std::string getTradingDate() const override { return "20261120"; }

private:
    void add(const char* market, const char* code, const char* name, nqservice::EInstrumentKind kind, double tick)
    {
        auto detail = std::make_shared<nqservice::CInstrumentDetail>();
        detail->market = market;
        detail->code = code;
        detail->name = name;
        detail->kind = kind;
        detail->priceTick = tick;
        m_details[QString::fromStdString(utils::vqStockKey(market, code))] = detail;
    }
    std::map<QString, std::shared_ptr<nqservice::CInstrumentDetail>> m_details;
};

class TradeControlsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        WG::CUiResource::get()->setTheme(QStringLiteral("dark"));
        utils::CManualSingletonT<TC::CExchangeClient>::install(new FakeExchange());
        recorder = new EventRecorder();
        recorder->show();
    }
    void TearDown() override
    {
        delete recorder;
        utils::CManualSingletonT<TC::CExchangeClient>::destroy();
    }

    EventRecorder* recorder = nullptr;
};

boost::shared_ptr<TC::CPriceData> makeQuote(const char* code, double preClose)
{
    auto quote = boost::shared_ptr<TC::CPriceData>(new TC::CPriceData());
    quote->market = "SH";
    quote->code = code;
    quote->preClose = preClose;
    return quote;
}

TEST_F(TradeControlsTest, AddInstrumentDeliversTheKeyOfAKnownCode)
{
    auto* entry = new TC::CQuotesAddInstrumentWidget(77, recorder);
    entry->setTradeType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    entry->resize(140, 22);
    entry->show();
    QSignalSpy spy(entry, &TC::CQuotesAddInstrumentWidget::sigInstrumentAdded);
    entry->lineEdit()->setFocus();
    QTest::keyClicks(entry->lineEdit(), QStringLiteral("10004567"));
    QTest::keyClick(entry->lineEdit(), Qt::Key_Return);
    ASSERT_EQ(recorder->events.size(), 1) << "the field's own typing stays inside the widget";
    EXPECT_EQ(recorder->events[0].code, 1032);
    EXPECT_EQ(recorder->events[0].code, WG::UE_ADD_INSTRUMENT);
    EXPECT_EQ(recorder->events[0].id, 77);
    EXPECT_EQ(recorder->events[0].text, QStringLiteral("10004567.SH"));
    EXPECT_EQ(spy.count(), 1);
    EXPECT_FALSE(entry->lineEdit()->isInvalid());

    EXPECT_EQ(entry->addInstrument(QStringLiteral("510050.sh")), QStringLiteral("510050.SH")) << "a full key, any case";
    EXPECT_EQ(recorder->events.size(), 2);
}

TEST_F(TradeControlsTest, AddInstrumentDeliversNothingForAnUnknownCode)
{
    auto* entry = new TC::CQuotesAddInstrumentWidget(78, recorder);
    entry->setTradeType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    entry->show();
    entry->lineEdit()->setFocus();
    QTest::keyClicks(entry->lineEdit(), QStringLiteral("99999999"));
    QTest::keyClick(entry->lineEdit(), Qt::Key_Return);
    EXPECT_TRUE(recorder->events.isEmpty());
    EXPECT_TRUE(entry->lineEdit()->isInvalid()) << "the field shows that the code is unknown";
    QTest::keyClick(entry->lineEdit(), Qt::Key_Backspace);
    EXPECT_FALSE(entry->lineEdit()->isInvalid()) << "typing clears the mark";

    // A code of the other trade type is not taken either.
    EXPECT_TRUE(entry->addInstrument(QStringLiteral("m2601-C-3000")).isEmpty());
    entry->setTradeType(nqservice::VQ_TRADER_TYPE_FUTURE_OPTION);
    EXPECT_EQ(entry->addInstrument(QStringLiteral("m2601-C-3000")), QStringLiteral("m2601-C-3000.DCE"));
    EXPECT_TRUE(entry->addInstrument(QStringLiteral("10004567")).isEmpty());
    ASSERT_EQ(recorder->events.size(), 1);
    EXPECT_EQ(recorder->events[0].text, QStringLiteral("m2601-C-3000.DCE"));
}

TEST_F(TradeControlsTest, AddInstrumentWithoutAnExchangeFindsNothing)
{
    utils::CManualSingletonT<TC::CExchangeClient>::destroy();
    auto* entry = new TC::CQuotesAddInstrumentWidget(79, recorder);
    EXPECT_TRUE(entry->addInstrument(QStringLiteral("10004567")).isEmpty());
    EXPECT_TRUE(recorder->events.isEmpty());
}

TEST_F(TradeControlsTest, PricesListShowsFiveLevelsInRiseAndFallColours)
{
    auto* list = new TC::CQuotesPricesList(TC::OPWID_QUICK_ORDER, recorder);
    list->resize(200, list->sizeHint().height());
    list->show();
    list->setStockCode(QStringLiteral("10004567.SH"));
    EXPECT_EQ(list->getStockCode(), QStringLiteral("10004567.SH"));
    EXPECT_EQ(list->decimals(), 4) << "from the price tick 0.0001";
    EXPECT_EQ(list->getSelectCodeWidget()->codeText(), QStringLiteral("10004567"));

    auto quote = makeQuote("10004567", 0.1000);
    quote->lastPrice = 0.1010;
    const double asks[5] = {0.1010, 0.1020, 0.1000, 0.1040, 0.1050};
    const double bids[5] = {0.0990, 0.0980, 0.0970, 0.0960, 0.0950};
    for (int level = 1; level <= 5; ++level) {
        quote->setAsk(level, asks[level - 1], level * 10);
        quote->setBid(level, bids[level - 1], level * 100);
    }
    list->parsePrice(quote);

    EXPECT_EQ(list->levelLabel(0), QStringLiteral("卖五"));
    EXPECT_EQ(list->levelLabel(4), QStringLiteral("卖一"));
    EXPECT_EQ(list->levelLabel(5), QStringLiteral("买一"));
    EXPECT_EQ(list->levelLabel(9), QStringLiteral("买五"));
    EXPECT_EQ(list->levelPriceText(4), QStringLiteral("0.1010"));
    EXPECT_EQ(list->levelVolume(4), 10);
    EXPECT_EQ(list->levelPriceText(0), QStringLiteral("0.1050"));
    EXPECT_EQ(list->levelPriceText(5), QStringLiteral("0.0990"));
    EXPECT_EQ(list->levelVolume(9), 500);
    EXPECT_EQ(list->levelColorKey(4), QStringLiteral("tc_clr_priceT_rise"));
    EXPECT_EQ(list->levelColorKey(2), QStringLiteral("tc_clr_priceT_equal")) << "ask 3 equals the previous close";
    EXPECT_EQ(list->levelColorKey(5), QStringLiteral("tc_clr_priceT_fall"));

    QApplication::processEvents();
    const QImage picture = list->grab().toImage();
    const QColor rise = widgettest::themeColor("tc_clr_priceT_rise");
    const QColor fall = widgettest::themeColor("tc_clr_priceT_fall");
    EXPECT_TRUE(widgettest::areaHasColor(picture, list->levelRect(4), rise)) << "ask 1 is painted red";
    EXPECT_FALSE(widgettest::areaHasColor(picture, list->levelRect(4), fall));
    EXPECT_TRUE(widgettest::areaHasColor(picture, list->levelRect(5), fall)) << "bid 1 is painted green";
    EXPECT_FALSE(widgettest::areaHasColor(picture, list->levelRect(5), rise));
    EXPECT_FALSE(widgettest::areaHasColor(picture, list->levelRect(2), rise));
    EXPECT_FALSE(widgettest::areaHasColor(picture, list->levelRect(2), fall));
}

TEST_F(TradeControlsTest, PricesListIgnoresOtherCodesAndShowsEmptyLevels)
{
    auto* list = new TC::CQuotesPricesList(TC::OPWID_QUICK_ORDER, recorder);
    list->setStockCode(QStringLiteral("10004567.SH"));
    auto other = makeQuote("510050", 2.8);
    other->setAsk(1, 2.801, 100);
    list->parsePrice(other);
    EXPECT_EQ(list->levelPriceText(4), QStringLiteral("--"));
    auto thin = makeQuote("10004567", 0.1);
    thin->setBid(1, 0.0999, 3);
    list->parsePrice(thin);
    EXPECT_EQ(list->levelPriceText(5), QStringLiteral("0.0999"));
    EXPECT_EQ(list->levelPriceText(6), QStringLiteral("--"));
    EXPECT_EQ(list->levelPriceText(4), QStringLiteral("--"));
    list->setStockCode(QStringLiteral("510050.SH"));
    EXPECT_EQ(list->levelPriceText(5), QStringLiteral("--")) << "a new code starts empty";
    EXPECT_EQ(list->decimals(), 3);
}

TEST_F(TradeControlsTest, PricesListClickGivesThePriceOfTheLevel)
{
    auto* list = new TC::CQuotesPricesList(TC::OPWID_QUICK_ORDER, recorder);
    list->resize(200, list->sizeHint().height());
    list->show();
    list->setStockCode(QStringLiteral("10004567.SH"));
    auto quote = makeQuote("10004567", 0.1);
    quote->setAsk(1, 0.1012, 5);
    quote->setBid(1, 0.0987, 8);
    list->parsePrice(quote);
    QTest::mouseClick(list, Qt::LeftButton, Qt::NoModifier, list->levelRect(4).center());
    QTest::mouseClick(list, Qt::LeftButton, Qt::NoModifier, list->levelRect(0).center());  // empty ask 5
    QTest::mouseClick(list, Qt::LeftButton, Qt::NoModifier, list->levelRect(5).center());
    const auto prices = recorder->ofCode(WG::UE_SET_LIMIT_PRICE);
    ASSERT_EQ(prices.size(), 2);
    EXPECT_EQ(prices[0].text, QStringLiteral("0.1012"));
    EXPECT_EQ(prices[1].text, QStringLiteral("0.0987"));

    list->setShowCancelOrder(true);
    const QRect row = list->levelRect(5);
    QTest::mouseClick(list, Qt::LeftButton, Qt::NoModifier, QPoint(row.right() - 10, row.center().y()));
    const auto cancels = recorder->ofCode(WG::UE_BUTTON_CLICKED);
    ASSERT_EQ(cancels.size(), 1);
    EXPECT_EQ(cancels[0].id, TC::CQuotesPricesList::kCancelButtonIDBase + 5);
}

TEST_F(TradeControlsTest, GraphKeepsOnePointPerMinuteOfItsCode)
{
    TC::CQuotesGraphWidget graph(nullptr);
    graph.setStockCode(QStringLiteral("10004567.SH"));
    const long long start = 1763600000000LL;
    const double lasts[4] = {0.1000, 0.1010, 0.1030, 0.1025};
    const long long times[4] = {start, start + 60000, start + 61000, start + 120000};
    for (int i = 0; i < 4; ++i) {
        auto quote = makeQuote("10004567", 0.1000);
        quote->lastPrice = lasts[i];
        quote->time = times[i];
        graph.parsePrice(quote);
    }
    EXPECT_EQ(graph.pointCount(), 3) << "two quotes of one minute make one point";
    EXPECT_DOUBLE_EQ(graph.lastPrice(), 0.1025);
    EXPECT_EQ(graph.lineColorKey(), QStringLiteral("tc_clr_priceT_rise"));
    auto other = makeQuote("510050", 2.8);
    other->lastPrice = 2.7;
    other->time = start + 180000;
    graph.parsePrice(other);
    EXPECT_EQ(graph.pointCount(), 3);
    auto falling = makeQuote("10004567", 0.1000);
    falling->lastPrice = 0.0900;
    falling->time = start + 180000;
    graph.parsePrice(falling);
    EXPECT_EQ(graph.lineColorKey(), QStringLiteral("tc_clr_priceT_fall"));
    graph.resize(220, 120);
    const QImage picture = graph.grab().toImage();
    EXPECT_TRUE(widgettest::areaHasColor(picture, picture.rect(), widgettest::themeColor("tc_clr_priceT_fall")));
    graph.setStockCode(QStringLiteral("510050.SH"));
    EXPECT_EQ(graph.pointCount(), 0);
}

// A user store with accounts and groups; everything else answers empty.
class FakeUserConfig : public TC::CUserConfig {
public:
    int getUserDataInt(TC::EUserMember) const override { return 0; }
    QString getUserDataString(TC::EUserMember) override { return QString(); }
    void* getUserDataAddress(TC::EUserMember member) override
    {
        return const_cast<void*>(static_cast<const FakeUserConfig*>(this)->getUserDataAddress(member));
    }
    const void* getUserDataAddress(TC::EUserMember member) const override
    {
        if (member == TC::UM_ACCOUNT_LIST) {
            return &accounts;
        }
        if (member == TC::UM_ACCOUNT_GROUPS) {
            return &groups;
        }
        return nullptr;
    }
    void setModifyFlag() override {}
    utils::EFormatNumberFlag getSegmentedFormatFlag() override { return utils::FNF_NONE; }
    boost::shared_ptr<TC::CAccount> getAccountData(const QString&) override { return {}; }
    bool isAccountFilter(const QString& key) override { return filtered.contains(key); }
    const TC::CAccountGroup* getAccountGroupConst(nqservice::EVQBrokerType, QString) const override { return nullptr; }
    QVector<boost::shared_ptr<TC::CAccount>> getGroupAccounts(nqservice::EVQBrokerType, QString) override { return {}; }
    QString getStockUnitText(QString unit) override { return unit; }
    boost::shared_ptr<nqservice::CGlobalFeaturePermissionInfo> getPermissionInfoPtr() override { return {}; }
    bool isKelvanClientMode() const override { return false; }
    bool isKelvanQuoteMode() override { return false; }
    bool hasUpStopPrice() override { return false; }
    void getHistoryRate(double&, QString, QString) override {}
    boost::shared_ptr<nqservice::COptionExGreeksVolatility> getOptionExGreeks(QString) override { return {}; }
    void replaceOptionExGreeks(const TC::OptionExGreeksMap&) override {}
    void getWinnerSetting(const QString&, TC::EWinnerPredictDirection, TC::CWinnerSetting&) override {}
    void setWinnerSetting(const QString&, TC::EWinnerPredictDirection, const TC::CWinnerSetting&) override {}

    void addAccount(const char* key, const char* name, int brokerType)
    {
        auto account = boost::shared_ptr<TC::CAccount>(new TC::CAccount());
        account->accountId = QString::fromLatin1(key);
        account->displayName = QString::fromUtf8(name);
        account->accountType = brokerType;
        accounts << account;
    }

    QVector<boost::shared_ptr<TC::CAccount>> accounts;
    QVector<TC::CAccountGroup> groups;
    QStringList filtered;
};

class AccountsComboTest : public TradeControlsTest {
protected:
    void SetUp() override
    {
        TradeControlsTest::SetUp();
        config = new FakeUserConfig();
        config->addAccount("A1", "期权一号", nqservice::VQ_BROKER_TYPE_STOCK_OPTION);
        config->addAccount("A2", "期权二号", nqservice::VQ_BROKER_TYPE_STOCK_OPTION);
        config->addAccount("H1", "隐藏账户", nqservice::VQ_BROKER_TYPE_STOCK_OPTION);
        config->addAccount("F1", "商品期权", nqservice::VQ_BROKER_TYPE_FUTURE_OPTION);
        config->filtered << QStringLiteral("H1");
        TC::CAccountGroup stockGroup;
        stockGroup.name = QStringLiteral("套利组");
        stockGroup.brokerType = nqservice::VQ_BROKER_TYPE_STOCK_OPTION;
        stockGroup.weights[QStringLiteral("A1")] = 1;
        stockGroup.weights[QStringLiteral("A2")] = 2;
        TC::CAccountGroup futureGroup;
        futureGroup.name = QStringLiteral("商品组");
        futureGroup.brokerType = nqservice::VQ_BROKER_TYPE_FUTURE_OPTION;
        config->groups << stockGroup << futureGroup;
        utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(config);
    }
    void TearDown() override
    {
        TradeControlsTest::TearDown();
        utils::CSingletonT<TC::CUserManager>::destroy();
    }

    FakeUserConfig* config = nullptr;
};

TEST_F(AccountsComboTest, ListsAccountsAndGroupsOfTheTradeType)
{
    auto* combo = new TC::CAccountsComboBox(0, recorder);
    combo->setTraderType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION, true);
    // A1, A2, a separator, the stock option group; H1 is filtered, F1 and the future group serve 1024.
    ASSERT_EQ(combo->count(), 4);
    EXPECT_EQ(combo->getSelection(), qMakePair(TC::SAT_ACCOUNT, QStringLiteral("A1")));
    recorder->events.clear();
    combo->setCurrentIndex(3);
    EXPECT_EQ(combo->getSelection(), qMakePair(TC::SAT_GROUP, QStringLiteral("套利组")));
    ASSERT_EQ(recorder->events.size(), 1);
    EXPECT_EQ(recorder->events[0].code, WG::UE_ACCOUNT_SELECTED);
    EXPECT_EQ(recorder->events[0].id, 0);
    EXPECT_EQ(recorder->events[0].arg, int(TC::SAT_GROUP));
    EXPECT_EQ(recorder->events[0].text, QStringLiteral("套利组"));
    EXPECT_TRUE(recorder->ofCode(WG::UE_COMBO_CHANGED).isEmpty());

    combo->setTraderType(nqservice::VQ_TRADER_TYPE_FUTURE_OPTION, false);
    ASSERT_EQ(combo->count(), 1);
    EXPECT_EQ(combo->getSelection(), qMakePair(TC::SAT_ACCOUNT, QStringLiteral("F1")));
    EXPECT_EQ(recorder->events.last().text, QStringLiteral("F1")) << "a changed choice is reported";
}

TEST_F(AccountsComboTest, ReloadKeepsTheChoice)
{
    auto* combo = new TC::CAccountsComboBox(7, recorder);
    combo->setTraderType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION, false);
    ASSERT_TRUE(combo->setSelection(TC::SAT_ACCOUNT, QStringLiteral("A2")));
    recorder->events.clear();
    config->addAccount("A3", "期权三号", nqservice::VQ_BROKER_TYPE_STOCK_OPTION);
    combo->reload();
    EXPECT_EQ(combo->count(), 3);
    EXPECT_EQ(combo->getSelection().second, QStringLiteral("A2"));
    EXPECT_TRUE(recorder->events.isEmpty()) << "an unchanged choice is not reported again";
}

TEST(AccountsComboWithoutStore, IsEmpty)
{
    TC::CAccountsComboBox combo(1, nullptr);
    EXPECT_EQ(combo.count(), 0);
    EXPECT_TRUE(combo.getSelection().second.isEmpty());
}

}  // namespace
