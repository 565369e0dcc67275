// What the order forms of the chain and the strategy pages share: the accounts
// an order may go to, the price types of a stock option, the instrument and
// account data of a key, the limit on one order with its questions, the split
// of one leg and the command that sends the legs. GUI thread only.
#pragma once

#include "seam/tradingenums.h"
#include "seam/tradingrecords.h"

#include <QString>
#include <QVector>

#include <boost/shared_ptr.hpp>

#include <map>
#include <memory>
#include <string>
#include <vector>

class QWidget;

namespace WG {
class CComboBox;
class CParameterCell;
class CSimpleTextWidget;
}  // namespace WG

namespace nqservice {
class CAccountData;
class CInstrumentDetail;
}  // namespace nqservice

namespace TC {

class CColorKeyButton;

struct CAccountChoice {
    QString name;  // display name
    QString key;
};

class COrderFormHelper {
public:
    // The user's accounts (member 91) that are logged in, serve the trader type,
    // have a display name and are not filtered away; in the user's order.
    static QVector<CAccountChoice> readyAccounts(nqservice::EVqTraderType traderType);
    // The price types of a stock option as the order parameter table offers them
    // for its exchange, else the fixed list with the limit price (11) selected.
    static void fillStockOptionPriceTypes(WG::CComboBox* combo, const QString& code);
    static std::shared_ptr<nqservice::CInstrumentDetail> instrumentOf(const QString& code);
    static boost::shared_ptr<nqservice::CAccountData> accountDataOf(const QString& key);
    // The instrument's market, code, text field 2 and name.
    static nqservice::CStockInfo stockInfoOf(const nqservice::CInstrumentDetail& detail);
    // The user's account record as the trading services know it; null when unknown.
    static boost::shared_ptr<nqservice::CAccountInfo> accountInfoOf(const QString& key);
    // The volume one account gets of a wanted volume, as the trade client splits it; 0 when it can't.
    static long long splitOne(long long volume, double price, nqservice::EPriceType priceType,
                              const boost::shared_ptr<nqservice::CAccountInfo>& account,
                              const nqservice::CStockInfo& stock, nqservice::EOperationType operation);
    // The limit on one order: above it a warning (no split allowed) or the
    // question whether to split. False when the order must not go; error tells why.
    static bool checkOrderLimit(const nqservice::CInstrumentDetail& detail, long long volume,
                                nqservice::EPriceType priceType, QString& error);
    // The user's login name for the order parameters.
    static std::string userName();
    // Role check, the log line and one command of stock options with all the
    // legs; false when the role may not send or no command centre is there.
    static bool sendStockOptionCommand(std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>>& params,
                                       const std::map<std::string, double>& weights, const QString& remark,
                                       const void* object, const char* function);
    // The available volume of an opening or closing of one account, from the
    // trading services' calculator (hedge 49, offset and cover 48); fallback without one.
    static long long calcAvailableVolume(const boost::shared_ptr<nqservice::CAccountData>& account,
                                         const nqservice::CInstrumentDetail& detail, int operationType, double price,
                                         long long fallback);
    // The volume cell of an order form, 220 by 24: contracts and per cent with
    // their validators and spin steps.
    static WG::CParameterCell* makeVolumeCell(int id, const QString& contracts, const QString& percent,
                                              QWidget* parent);
    // What the volume cell holds, in contracts and as a share of what is
    // available; in per cent the count shows beside the cell.
    static void countVolume(WG::CParameterCell* volumeCell, WG::CSimpleTextWidget* percentText,
                            const QString& contracts, long long available, int& orderCount, double& ratio);
    // A click on a unit of the volume cell: the count or the share moves over.
    static void switchVolumeUnit(const QString& unit, WG::CParameterCell* volumeCell, WG::CSimpleTextWidget* percentText,
                                 const QString& contracts, const QString& percent, long long available,
                                 int& orderCount, double& ratio);
    // The available cell shows the number; the volume cell takes 0 to it in the unit.
    static void showAvailable(WG::CParameterCell* availableCell, WG::CParameterCell* volumeCell, const QString& unit,
                              long long available);
    // The row under a strategy order form: "取消" and "下单", 80 by 40 in the
    // rise colour, right-aligned, 60 high.
    static QWidget* makeButtonRow(QWidget* parent, int cancelId, int orderId, CColorKeyButton*& cancel,
                                  CColorKeyButton*& order);
    // A caption of an order form's row, 48 by 24.
    static QWidget* caption(const QString& text, QWidget* parent);
    // The message of a refused order in the client's message area.
    static void showMessage(const QString& text);
};

}  // namespace TC
