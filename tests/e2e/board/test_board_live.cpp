// The chain board on the desk's own services: the generated universe, the
// seeded market model publishing rounds of quotes, the desk calculator and a
// user store. What a trader sees after a few ticks on 50ETF, in both themes;
// the pictures are written for a look by eye (OPTDESK_SHOT_DIR, else the
// temporary directory).
#include "board/coptionpricetpanel.h"
#include "board/coptionpricettable.h"
#include "toolkit/coptionundlcodecombobox.h"
#include "seam/calculator.h"
#include "seam/cexchangeclient.h"
#include "seam/ctimeservice.h"
#include "seam/user.h"
#include "services/market/csimexchangeclient.h"
#include "services/market/csimmarket.h"
#include "services/market/csimquoteclient.h"
#include "services/pricing/cgreekandoptionscalculator.h"
#include "services/user/cusersettingsstore.h"
#include "toolkit/cpushbutton.h"
#include "toolkit/cpushbuttongroup.h"
#include "toolkit/ctablecellmodel.h"
#include "toolkit/cuiresource.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QTemporaryDir>
#include <QTimeZone>

#include <boost/make_shared.hpp>

namespace {

class CSteppedClock : public TC::CTimeService {
public:
    explicit CSteppedClock(long long ms) : m_ms(ms) {}
    long long currentTime() const override { return m_ms; }
    void advance(long long ms) { m_ms += ms; }

private:
    long long m_ms;
};

class BoardLive : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(configDir.isValid());
        const QDate date(2026, 11, 20);  // a Friday: a trading day
        clock = new CSteppedClock(QDateTime(date, QTime(10, 30), QTimeZone(8 * 3600)).toMSecsSinceEpoch());
        utils::CManualSingletonT<TC::CTimeService>::install(clock);
        exchange = utils::CManualSingletonT<TC::CExchangeClient>::create<market::CSimExchangeClient>(7u, date, clock);
        quotes = utils::CManualSingletonT<TC::CQuoteClient>::create<market::CSimQuoteClient>(clock, false);
        market::CSimMarketConfig config;
        config.seed = 7;
        config.clock = clock;
        quotes->attachFeed(std::make_unique<market::CSimMarket>(exchange->instruments(), quotes, config));
        nqservice::GreekAndOptionsCalculator::setInstance(boost::make_shared<pricing::CGreekAndOptionsCalculator>());
        utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(new TC::CUserSettingsStore(configDir.path()));
        WG::CUiResource::get()->setTheme(QStringLiteral("dark"));
    }
    void TearDown() override
    {
        WG::CUiResource::get()->setTheme(QStringLiteral("dark"));
        utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(nullptr);
        nqservice::GreekAndOptionsCalculator::setInstance(nullptr);
        utils::CManualSingletonT<TC::CQuoteClient>::destroy();
        utils::CManualSingletonT<TC::CExchangeClient>::destroy();
        utils::CManualSingletonT<TC::CTimeService>::destroy();
    }
    void round()
    {
        clock->advance(3000);
        quotes->feed()->publishRound();
    }
    static QString shotDir()
    {
        const QString dir = qEnvironmentVariableIsSet("OPTDESK_SHOT_DIR")
                                ? qEnvironmentVariable("OPTDESK_SHOT_DIR")
                                : QDir::tempPath() + QStringLiteral("/optdesk-board");
        QDir().mkpath(dir);
        return dir;
    }

    QTemporaryDir configDir;
    CSteppedClock* clock = nullptr;
    market::CSimExchangeClient* exchange = nullptr;
    market::CSimQuoteClient* quotes = nullptr;
};

TEST_F(BoardLive, FiftyEtfChainLivesInBothThemes)
{
    round();
    TC::COptionPriceTPanel panel(1, nullptr);
    panel.resize(1900, 760);
    panel.show();
    panel.setTradeType(nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
    const int index = panel.getUndlCombo()->findText(QStringLiteral("510050.SH"));
    ASSERT_GE(index, 0);
    panel.getUndlCombo()->setCurrentIndex(index);
    ASSERT_FALSE(panel.getCurrentDate().isEmpty());
    TC::COptionPriceTTable* chain = panel.getChainTable();
    ASSERT_GT(chain->getRowCodes().size(), 5);
    for (int tick = 0; tick < 5; ++tick) {
        round();
        panel.onTimer(TC::TUF_QUOTE);
        QCoreApplication::processEvents();
    }

    // What a trader sees: Chinese headers, codes and strikes on every row, rising
    // and falling colours, in-the-money shading on both sides, order buttons.
    EXPECT_EQ(chain->columnHeader(16), QStringLiteral("购<行权价>沽"));
    EXPECT_EQ(chain->columnHeader(0), QStringLiteral("预估保证金"));
    int rises = 0;
    int falls = 0;
    int callsInTheMoney = 0;
    int putsInTheMoney = 0;
    for (auto row = chain->getRowCodes().constBegin(); row != chain->getRowCodes().constEnd(); ++row) {
        const int r = row.key();
        EXPECT_FALSE(chain->itemText(r, 16).isEmpty()) << r;
        EXPECT_FALSE(chain->itemText(r, 15).isEmpty()) << r;
        EXPECT_NE(chain->itemWidget(r, 13), nullptr) << r;
        for (int column : {10, 21}) {
            const QString key = chain->model()->cellTextColorKey(r, column);
            rises += key == QStringLiteral("tc_clr_priceT_rise");
            falls += key == QStringLiteral("tc_clr_priceT_fall");
        }
        callsInTheMoney +=
            chain->model()->cellBackgroundKey(r, 0) == QStringLiteral("tc_clr_priceT_actual_value_background");
        putsInTheMoney +=
            chain->model()->cellBackgroundKey(r, 31) == QStringLiteral("tc_clr_priceT_actual_value_background");
    }
    EXPECT_GT(rises + falls, 0);
    EXPECT_GT(callsInTheMoney, 0);
    EXPECT_GT(putsInTheMoney, 0);

    const QString dir = shotDir();
    const QPixmap dark = panel.grab();
    ASSERT_FALSE(dark.isNull());
    EXPECT_TRUE(dark.save(dir + QStringLiteral("/board-dark.png")));
    ASSERT_TRUE(WG::CUiResource::get()->setTheme(QStringLiteral("light")));
    round();
    panel.onTimer(TC::TUF_QUOTE);
    QCoreApplication::processEvents();
    const QPixmap light = panel.grab();
    EXPECT_TRUE(light.save(dir + QStringLiteral("/board-light.png")));
    EXPECT_NE(dark.toImage(), light.toImage());
}

}  // namespace
