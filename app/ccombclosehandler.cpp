#include "app/ccombclosehandler.h"

#include "positions/ccombreleaseparams.h"
#include "seam/cexchangeclient.h"
#include "seam/cinstrumentdetail.h"
#include "seam/cquoteclient.h"
#include "seam/formatters.h"
#include "seam/logger.h"
#include "seam/trading.h"
#include "seam/tradinghelpers.h"
#include "seam/user.h"
#include "toolkit/cmessagebox.h"

#include <QStringList>
#include <QVector>

#include <boost/make_shared.hpp>

namespace desk {

namespace {

const int kLongDirection = '0';

boost::shared_ptr<nqservice::CCodeOrderParam> closingOrder(const nqservice::CStkOptCombPositionDetail& detail,
                                                           const std::string& code, int direction,
                                                           const std::string& userName)
{
    auto order = boost::make_shared<nqservice::CCodeOrderParam>();
    order->account = detail.account;
    order->hedgeFlag = nqservice::HF_SPECULATION;
    order->operationType = direction == kLongDirection ? nqservice::OT_SELL_CLOSE : nqservice::OT_BUY_CLOSE;
    order->stockInfo.market = detail.market;
    order->stockInfo.code = code;
    const QString key = QString::fromStdString(utils::vqStockKey(detail.market, code));
    if (TC::CExchangeClient* exchange = utils::CManualSingletonT<TC::CExchangeClient>::instance()) {
        if (const auto instrument = exchange->getCodeInfo(key)) {
            order->stockInfo.name = instrument->name;
        }
    }
    order->priceType = nqservice::PT_OPPONENT;
    order->price = 0.0;
    if (TC::CQuoteClient* quotes = utils::CManualSingletonT<TC::CQuoteClient>::instance()) {
        if (const auto quote = quotes->getStockPrice(key)) {
            const double best =
                order->operationType == nqservice::OT_SELL_CLOSE ? quote->bidPrice1 : quote->askPrice1;
            order->price = utils::isUsable(best) ? best : 0.0;
        }
    }
    order->volume = detail.releaseVolume;
    order->userName = userName;
    return order;
}

}  // namespace

std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> CCombCloseHandler::closingOrders(
    const nqservice::CStkOptCombPositionDetail& detail)
{
    std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> orders;
    if (!detail.account || detail.releaseVolume <= 0) {
        return orders;
    }
    TC::CUserConfig* config = TC::getUserConfig();
    const std::string userName =
        config != nullptr ? config->getUserDataString(TC::UM_USER_NAME).toUtf8().toStdString() : std::string();
    if (!detail.legOneCode.empty()) {
        orders.push_back(closingOrder(detail, detail.legOneCode, detail.legOneType, userName));
    }
    if (!detail.legTwoCode.empty()) {
        orders.push_back(closingOrder(detail, detail.legTwoCode, detail.legTwoType, userName));
    }
    return orders;
}

QString CCombCloseHandler::question(const nqservice::CStkOptCombPositionDetail& detail,
                                    const std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>>& orders)
{
    QStringList lines;
    lines << QStringLiteral("是否解除组合 %1 (%2) 并平仓两腿?")
                 .arg(QString::fromStdString(detail.combId), QString::fromStdString(detail.name));
    for (const auto& order : orders) {
        const QString price = order->price > utils::kPriceTolerance
                                  ? WG::formatDoubleNumber(order->price, 4, WG::FormatFlags(), false, QString())
                                  : QStringLiteral("-");
        lines << QStringLiteral("%1 %2 %3 %4张 对手价 %5")
                     .arg(QString::fromStdString(TC::operationToString(order->operationType)),
                          QString::fromStdString(order->stockInfo.code), QString::fromStdString(order->stockInfo.name))
                     .arg(order->volume)
                     .arg(price);
    }
    return lines.join(QLatin1Char('\n'));
}

bool CCombCloseHandler::closeCombination(QWidget* parent,
                                         const boost::shared_ptr<nqservice::CStkOptCombPositionDetail>& detail)
{
    if (!detail) {
        return false;
    }
    const std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> closing = closingOrders(*detail);
    if (closing.empty()) {
        WG::CMessageBox::warning(nullptr, parent, QStringLiteral("提示"),
                                 QStringLiteral("组合 %1 没有可平仓的数量").arg(QString::fromStdString(detail->combId)));
        return false;
    }
    if (WG::CMessageBox::question(nullptr, parent, QStringLiteral("提示"), question(*detail, closing)) !=
        QMessageBox::Yes) {
        return false;
    }
    std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> release;
    QString message;
    QString warning;
    TC::CMsgService* messages = utils::CManualSingletonT<TC::CMsgService>::instance();
    if (!TC::CCombReleaseParams::fill({detail}, release, nqservice::OT_COMB_STRATEGY_RELEASE, message, warning) ||
        release.empty()) {
        if (messages != nullptr && !message.isEmpty()) {
            messages->showQsMsg(message, TC::MTD_OPERATION, nqservice::ML_WARNING, false, false);
        }
        return false;
    }
    TC::COvCommandCenter* center = utils::CManualSingletonT<TC::COvCommandCenter>::instance();
    if (center == nullptr) {
        return false;
    }
    NQ_LOG_INFO("close of combination " + detail->combId + ": release, then both legs");
    center->createCommand(TC::CCombReleaseParams::command(release, warning), TC::COvCommandCenter::CommandCallback(),
                          true, 0);
    center->createCommand(TC::CCombReleaseParams::command(closing, QString()), TC::COvCommandCenter::CommandCallback(),
                          true, 0);
    return true;
}

}  // namespace desk
