#include "app/cdeskservices.h"

#include "app/cchartpages.h"
#include "app/cdeskmessageservice.h"
#include "app/cmarketstatestore.h"
#include "seam/calculator.h"
#include "seam/common.h"
#include "seam/cexchangeclient.h"
#include "seam/cquoteclient.h"
#include "seam/formatters.h"
#include "seam/marketenums.h"
#include "seam/ctimeservice.h"
#include "seam/logger.h"
#include "seam/trading.h"
#include "seam/user.h"
#include "services/market/cmarkethistory.h"
#include "services/market/csessionclock.h"
#include "services/market/csimclock.h"
#include "services/market/csimexchangeclient.h"
#include "services/market/csimmarket.h"
#include "services/market/csimquoteclient.h"
#include "services/pricing/cgreekandoptionscalculator.h"
#include "services/trading/cdesktradeclient.h"
#include "services/trading/cpaperbroker.h"
#include "services/trading/cpapercommandcenter.h"
#include "services/trading/cpaperloginservice.h"
#include "services/trading/cpapertradercenter.h"
#include "services/user/cusersettingsstore.h"

#include <boost/make_shared.hpp>

#include <fmt/format.h>

#include <QDir>
#include <QSignalBlocker>
#include <QVector>

#include <algorithm>
#include <cmath>
#include <set>
#include <vector>

namespace desk {

QDateTime CDeskServices::liveMarketStart(const QDateTime& exchangeNow)
{
    const QDate today = exchangeNow.date();
    const QTime now = exchangeNow.time();
    const bool morning = now >= QTime(9, 30) && now < QTime(11, 30);
    const bool afternoon = now >= QTime(13, 0) && now < QTime(14, 57);
    const bool trading = market::CSessionClock::isTradingDay(today);
    if (trading && (morning || afternoon)) {
        return exchangeNow;
    }
    const QDate day = (trading && now < QTime(9, 30)) ? today : market::CSessionClock::nextTradingDay(today);
    return QDateTime(day, QTime(10, 0), exchangeNow.timeSpec());
}

void CDeskServices::installChartPages(const QString& configDir)
{
    if (configDir.isEmpty()) {
        return;
    }
    // The panels find their pages at getConfigDir() + "/../charts/...": the
    // configuration directory of the panels is <config-dir>/config, and the
    // pages go to <config-dir>/charts.
    const QString panelDir = QDir(configDir).filePath(QStringLiteral("config"));
    QDir().mkpath(panelDir);
    utils::CSingletonT<TC::CConfig>::instance()->setConfigDir(panelDir);
    QString error;
    if (!CChartPages::install(CChartPages::sourceDir(), configDir, &error)) {
        NQ_LOG_ERROR("the payoff chart page is not installed: " + error.toStdString());
    }
}

CDeskServices::CDeskServices(const DeskServicesConfig& config)
{
    QDateTime start = config.marketStart.isValid()
                          ? config.marketStart
                          : liveMarketStart(TC::exchangeDateTime(TC::CSystemTimeService().currentTime()));
    // The market of this directory never goes back: a start before the date it has
    // reached continues on that date.
    if (config.reachedDate.isValid() && start.date() < config.reachedDate) {
        start = QDateTime(config.reachedDate, QTime(10, 0), start.timeSpec());
    }
    m_tradingDate = start.date();
    m_configDir = config.configDir;
    m_seed = config.seed;
    m_quoteRate = config.quoteRate;
    m_feedThreads = config.feedThreads;

    // First in, last out: every service may have something to tell the trader.
    utils::CManualSingletonT<TC::CMsgService>::install(new CDeskMessageService);

    m_clock = new market::CSimClock(start, config.clockSpeed);
    utils::CManualSingletonT<TC::CTimeService>::install(m_clock);

    auto* settings = new TC::CUserSettingsStore(config.configDir);
    utils::CSingletonT<TC::CUserManager>::instance()->setUserConfig(settings);
    installChartPages(config.configDir);

    m_exchange = new market::CSimExchangeClient(config.seed, m_tradingDate, m_clock);
    utils::CManualSingletonT<TC::CExchangeClient>::install(m_exchange);

    auto* tradeClient = new trading::CDeskTradeClient;
    m_tradeClient = tradeClient;
    utils::CManualSingletonT<TC::CTradeClient>::install(tradeClient);
    // Panels listen to the trade client for instrument tables being complete.
    QObject::connect(m_exchange, &TC::CExchangeClient::sigInitDataFinish, tradeClient, &TC::CTradeClient::sigInitDataFinish);

    m_quotes = new market::CSimQuoteClient(m_clock, true);
    utils::CManualSingletonT<TC::CQuoteClient>::install(m_quotes);

    nqservice::GreekAndOptionsCalculator::setInstance(boost::make_shared<pricing::CGreekAndOptionsCalculator>());

    startFeed();

    {
        const auto fifty = m_exchange->getCodeInfo(QStringLiteral("510050.SH"));
        seedDemoWinnerSettings(settings, m_exchange->closePrices().value(
                                             QStringLiteral("510050.SH"),
                                             fifty ? fifty->preClosePrice : utils::kAbsentDouble),
                               m_tradingDate);
    }

    startBroker(config, settings);

    if (settings->startedFresh() && settings->strategySettings().isEmpty()) {
        seedExampleBasket(settings);
    }

    if (!config.greeksImportDir.isEmpty()) {
        TC::CTradeSetting trade = settings->tradeSetting();
        trade.autoImportExGreeks = true;
        trade.autoImportExGreeksDir = config.greeksImportDir;
        settings->setTradeSetting(trade);
    }

    saveState();
    NQ_LOG_INFO(fmt::format(FMT_STRING("simulated market: {0} instruments, trading date {1}, seed {2}, {3} quotes/s per contract, clock x{4}"),
                            m_exchange->instruments().size(), m_tradingDate.toString(Qt::ISODate).toStdString(),
                            config.seed, config.quoteRate, config.clockSpeed));
}

void CDeskServices::startFeed()
{
    market::CSimMarketConfig feedConfig;
    feedConfig.seed = m_seed;
    feedConfig.snapshotsPerSecond = m_quoteRate;
    feedConfig.threads = m_feedThreads;
    feedConfig.clock = m_clock;
    feedConfig.tradingDate = m_tradingDate;
    feedConfig.closes = m_exchange->closePrices();
    auto feed = std::make_unique<market::CSimMarket>(m_exchange->instruments(), m_quotes, feedConfig);
    // One round before the panels come: a board selecting its underlying finds
    // prices at once (in-the-money shading, figures) instead of after the first tick.
    feed->publishRound();
    feed->start();
    m_quotes->attachFeed(std::move(feed));
}

void CDeskServices::stopFeed()
{
    if (market::CSimMarket* feed = m_quotes->feed()) {
        feed->stop();
    }
}

void CDeskServices::saveState()
{
    if (m_configDir.isEmpty()) {
        return;
    }
    QString error;
    if (!CMarketStateStore(m_configDir).save(MarketState{m_seed, m_tradingDate}, &error)) {
        NQ_LOG_ERROR("cannot save the market's state: " + error.toStdString());
    }
}

void CDeskServices::seedExampleBasket(TC::CUserSettingsStore* settings)
{
    // A bull call spread on 50ETF in the nearest month: buy the call at the money,
    // sell the next strike up, so that a new user finds a filled workbench.
    QMap<QString, QMap<QString, QStringList>> chains;
    m_exchange->getStockOptionMap(chains);
    const QString etfKey = QString::fromStdString(utils::vqStockKey(nqservice::kMarketSSE, "510050"));
    const auto etf = m_exchange->getCodeInfo(etfKey);
    const QMap<QString, QStringList> months = chains.value(etfKey);
    if (!etf || months.isEmpty() || utils::isAbsent(etf->preClosePrice)) {
        return;
    }
    std::vector<std::shared_ptr<nqservice::CInstrumentDetail>> calls;
    for (const QString& key : months.first()) {
        const auto detail = m_exchange->getCodeInfo(key);
        if (detail && detail->call && !detail->adjusted) {
            calls.push_back(detail);
        }
    }
    std::sort(calls.begin(), calls.end(),
              [](const auto& a, const auto& b) { return a->exercisePrice < b->exercisePrice; });
    std::size_t atm = 0;
    for (std::size_t i = 0; i < calls.size(); ++i) {
        if (std::fabs(calls[i]->exercisePrice - etf->preClosePrice) <
            std::fabs(calls[atm]->exercisePrice - etf->preClosePrice)) {
            atm = i;
        }
    }
    if (atm + 1 >= calls.size()) {
        return;
    }
    TC::CStrategySetting basket;
    basket.name = QStringLiteral("50ETF牛市价差");
    const auto addLeg = [&basket](const nqservice::CInstrumentDetail& detail, nqservice::EOperationType operation) {
        TC::CStrategyStockData leg;
        leg.code = QString::fromStdString(detail.code);
        leg.name = QString::fromStdString(detail.name);
        leg.market = QString::fromStdString(detail.market);
        leg.weight = 1.0;
        leg.quantity = 1;
        leg.operation = operation;
        leg.checked = true;
        basket.addLeg(leg);
    };
    addLeg(*calls[atm], nqservice::OT_BUY);
    addLeg(*calls[atm + 1], nqservice::OT_SELL);
    QMap<QString, TC::CStrategySetting> baskets;
    baskets.insert(basket.name, basket);
    settings->setStrategySettings(baskets);
}

bool CDeskServices::seedDemoWinnerSettings(TC::CUserConfig* settings, double close, const QDate& tradingDate)
{
    const QString underlying = QStringLiteral("510050.SH");
    auto* stored = settings != nullptr
                       ? static_cast<QMap<QString, TC::CWinnerSetting>*>(settings->getUserDataAddress(TC::UM_WINNER_SETTINGS))
                       : nullptr;
    if (stored == nullptr || !utils::isUsable(close) || close <= 0.0 || !tradingDate.isValid()) {
        return false;
    }
    for (auto it = stored->constBegin(); it != stored->constEnd(); ++it) {
        if (it.key().startsWith(underlying + QLatin1Char('|'))) {
            return false;
        }
    }
    // Levels on the 0.05 grid of the strikes: a rise buys calls below 2 % up, a
    // fall puts from 2 % down, a breakout the wings 3 % out, a range sells 5 % out.
    const auto level = [close](double factor) { return qRound(close * factor * 20.0) / 20.0; };
    const std::pair<double, double> levels[] = {
        {level(1.02), 0.0}, {0.0, level(0.98)}, {level(1.03), level(0.97)}, {level(0.95), level(1.05)}};
    TC::CWinnerSetting setting;
    setting.startTime = static_cast<unsigned>(QDateTime(tradingDate.addDays(-1), QTime(0, 0)).toSecsSinceEpoch());
    setting.endTime = static_cast<unsigned>(QDateTime(tradingDate.addDays(100), QTime(0, 0)).toSecsSinceEpoch());
    for (int direction = 0; direction < 4; ++direction) {
        setting.levelOne = levels[direction].first;
        setting.levelTwo = levels[direction].second;
        stored->insert(underlying + QLatin1Char('|') + QString::number(direction), setting);
    }
    settings->setModifyFlag();
    return true;
}

double CDeskServices::openingCash(int brokerType)
{
    return brokerType == nqservice::VQ_BROKER_TYPE_FUTURE_OPTION ? 500000.0 : 1000000.0;
}

void CDeskServices::startBroker(const DeskServicesConfig& config, TC::CUserConfig* settings)
{
    trading::PaperBrokerConfig brokerConfig;
    brokerConfig.ledgerPath =
        config.ledgerPath.isEmpty() ? QDir(config.configDir).filePath(QStringLiteral("paper.sqlite")) : config.ledgerPath;
    brokerConfig.exchange = m_exchange;
    brokerConfig.quotes = m_quotes;
    brokerConfig.clock = m_clock;
    const auto* accounts =
        static_cast<const QVector<boost::shared_ptr<TC::CAccount>>*>(settings->getUserDataAddress(TC::UM_ACCOUNT_LIST));
    std::set<std::string> brokerAnswered;
    if (accounts != nullptr) {
        for (const auto& account : *accounts) {
            if (!account) {
                continue;
            }
            trading::PaperAccountTerms terms;
            terms.info = account->toInfo();
            terms.cash = openingCash(account->accountType);
            if (account->accountType == nqservice::VQ_BROKER_TYPE_STOCK_OPTION) {
                // ETF shares for covered calls: 100,000 of 50ETF and of 300ETF.
                terms.holdings = {{utils::vqStockKey("SH", "510050"), 100000}, {utils::vqStockKey("SH", "510300"), 100000}};
                // The first stock-option account's gateway answers volume requests itself.
                if (brokerAnswered.empty()) {
                    brokerAnswered.insert(account->key().toStdString());
                }
            }
            brokerConfig.accounts.push_back(terms);
        }
    }
    // A close the desk was not running for settles at that day's prices, which
    // the market's history knows.
    brokerConfig.settlements = [seed = m_seed](int tradingDay) {
        const market::CMarketDay day =
            market::CMarketHistory(seed).day(QDate(tradingDay / 10000, tradingDay / 100 % 100, tradingDay % 100));
        std::map<std::string, double> prices;
        for (auto it = day.settlements.begin(); it != day.settlements.end(); ++it) {
            prices[it.key().toStdString()] = it.value();
        }
        return prices;
    };
    m_broker = std::make_unique<trading::CPaperBroker>(brokerConfig);
    m_broker->setRefusalHandler([](const std::string&, const std::string& text) {
        // Called on the broker's thread: the message service hops to the GUI thread itself.
        if (TC::CMsgService* messages = utils::CManualSingletonT<TC::CMsgService>::instance()) {
            messages->showQsMsg(QString::fromStdString(text), TC::MTD_ORDER,
                                nqservice::ML_WARNING, false, false);
        }
    });
    QString report;
    if (!m_broker->start(&report)) {
        m_notices << report;
        m_broker.reset();
        return;
    }
    if (!report.isEmpty()) {
        m_notices << report;
    }
    auto center = boost::make_shared<trading::CPaperTraderCenter>(m_broker.get(), brokerAnswered);
    nqservice::TraderCenter::install(center);
    utils::CManualSingletonT<TC::COvCommandCenter>::install(new trading::CPaperCommandCenter(m_broker.get()));
    utils::CSingletonT<TC::SingletonManager>::instance()->setTradeLogicInterface(
        new trading::CPaperLoginService(m_broker.get()));
    m_tradeClient->setBroker(m_broker.get());
    // The paper accounts log in at once, each reported as a gateway reports it.
    for (const trading::PaperAccountTerms& terms : brokerConfig.accounts) {
        m_broker->setLoggedIn(terms.info->getKey(), true);
        m_tradeClient->reportLogin(terms.info, nqservice::BLS_READY);
    }
    m_broker->flush();
}

void CDeskServices::setTradingHalted(bool halted)
{
    if (m_broker) {
        m_broker->setHalted(halted);
    }
}

void CDeskServices::checkTradingDate()
{
    const QDateTime now = m_clock->currentDateTime();
    const bool pastClose = now.date() > m_tradingDate || (now.date() == m_tradingDate && now.time() >= rollOverTime());
    if (!pastClose) {
        return;
    }
    QDate next = market::CSessionClock::nextTradingDay(m_tradingDate);
    if (now.date() > next) {
        // The clock ran past a whole day (a long pause): the market goes to its day.
        next = market::CSessionClock::isTradingDay(now.date()) ? now.date()
                                                                : market::CSessionClock::nextTradingDay(now.date());
    }
    settleBroker();
    rollTo(next, preOpenTime());
}

void CDeskServices::settleBroker()
{
    if (!m_broker || !m_exchange) {
        return;
    }
    // The paper books close at the day's settlement prices before the market moves on.
    trading::PaperSettlement day;
    day.tradingDay = m_tradingDate.year() * 10000 + m_tradingDate.month() * 100 + m_tradingDate.day();
    const QHash<QString, double> prices = m_exchange->settlementPrices();
    for (auto it = prices.begin(); it != prices.end(); ++it) {
        day.prices[it.key().toStdString()] = it.value();
    }
    m_broker->settle(day);
    m_broker->flush();
}

void CDeskServices::closeAndAdvance()
{
    const QDateTime close(m_tradingDate, QTime(15, 0));
    if (m_clock->currentTime() < TC::exchangeEpochMs(close)) {
        m_clock->setDateTime(close);
    }
    // The closing snapshots of the day, published before the market moves on.
    stopFeed();
    if (market::CSimMarket* feed = m_quotes->feed()) {
        feed->publishRound();
    }
    settleBroker();
    rollTo(market::CSessionClock::nextTradingDay(m_tradingDate), openTime());
}

void CDeskServices::rollTo(const QDate& date, const QTime& startsAt)
{
    stopFeed();
    const QDateTime begins(date, startsAt);
    if (m_clock->currentTime() < TC::exchangeEpochMs(begins)) {
        m_clock->setDateTime(begins);
    }
    const QDate previous = m_tradingDate;
    m_tradingDate = date;
    saveState();
    // The new day's instruments and the first round of its feed come before the
    // panels hear of the day, so that a board refilled for it finds prices at once.
    {
        const QSignalBlocker quiet(m_exchange);
        m_exchange->setTradingDate(date);
    }
    startFeed();
    if (m_broker) {
        m_broker->subscribeQuotes();  // the new month's contracts trade on paper too
    }
    emit m_exchange->sigNewTradingDate(m_exchange->getTradingDate());
    emit m_exchange->sigInitDataFinish();
    NQ_LOG_INFO(fmt::format(FMT_STRING("trading day {0} closed, the market moves on to {1}"),
                            previous.toString(Qt::ISODate).toStdString(), date.toString(Qt::ISODate).toStdString()));
}

QString CDeskServices::phaseName(int phase)
{
    switch (phase) {
    case TC::TP_BEFORE_OPEN:
        return QStringLiteral("开盘前");
    case TC::TP_NOT_TRADING:
        return QStringLiteral("非交易时段");
    case TC::TP_CONTINUOUS:
        return QStringLiteral("连续竞价");
    case TC::TP_OPEN_CALL_AUCTION:
        return QStringLiteral("开盘集合竞价");
    case TC::TP_AUCTION_MATCHED:
        return QStringLiteral("集合竞价撮合");
    case TC::TP_CLOSE_CALL_AUCTION:
        return QStringLiteral("收盘集合竞价");
    case TC::TP_CLOSED:
        return QStringLiteral("已收盘");
    case TC::TP_AFTER_HOURS:
        return QStringLiteral("盘后定价");
    default:
        return QStringLiteral("-");
    }
}

QString CDeskServices::statusText() const
{
    const QDateTime now = TC::exchangeDateTime(m_clock->currentTime());
    const std::string market = "SH";
    const std::string code = "510050";
    QString text = QStringLiteral("模拟行情  %1  %2")
                       .arg(now.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")),
                            phaseName(m_quotes->getTradingPhase(market, code)));
    const auto quote = m_quotes->getStockPrice(QString::fromStdString(utils::vqStockKey(market, code)));
    if (quote && utils::isUsable(quote->lastPrice)) {
        text += QStringLiteral("  |  50ETF %1 %2")
                    .arg(WG::formatDoubleNumber(quote->lastPrice, 3, WG::FormatFlags(), false, QStringLiteral("-")),
                         WG::formatDoubleNumber(quote->changeRatio, 2, utils::FNF_PERCENT, false, QStringLiteral("-")));
    }
    return text;
}

CDeskServices::~CDeskServices()
{
    // The feed's threads end before anything they publish into goes away.
    stopFeed();
    nqservice::GreekAndOptionsCalculator::setInstance(nullptr);
    // The broker's thread and quote subscriptions end before the services it reads.
    utils::CSingletonT<TC::SingletonManager>::instance()->setTradeLogicInterface(nullptr);
    utils::CManualSingletonT<TC::COvCommandCenter>::destroy();
    nqservice::TraderCenter::destroy();
    if (m_tradeClient != nullptr) {
        m_tradeClient->setBroker(nullptr);
    }
    m_broker.reset();
    utils::CManualSingletonT<TC::CQuoteClient>::destroy();
    utils::CManualSingletonT<TC::CTradeClient>::destroy();
    utils::CManualSingletonT<TC::CExchangeClient>::destroy();
    if (TC::CUserConfig* settings = TC::getUserConfig()) {
        if (auto* store = dynamic_cast<TC::CUserSettingsStore*>(settings)) {
            store->save();
        }
    }
    utils::CSingletonT<TC::CUserManager>::destroy();
    utils::CSingletonT<TC::CConfig>::destroy();
    utils::CManualSingletonT<TC::CTimeService>::destroy();
    utils::CManualSingletonT<TC::CMsgService>::destroy();
}

}  // namespace desk
