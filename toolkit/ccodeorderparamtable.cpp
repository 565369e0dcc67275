#include "toolkit/ccodeorderparamtable.h"

#include "seam/common.h"
#include "toolkit/ccomboboxdelegate.h"
#include "toolkit/cmultiparamstable.h"
#include "toolkit/cmultiparamstableitem.h"
#include "toolkit/cparametercell.h"

namespace TC {

CCodeOrderParamTable::CCodeOrderParamTable(TC::EOpParamWidgetID widgetId, nqservice::EVQBrokerType brokerType,
                                           QWidget* parent, bool showCode, nqservice::EVqTraderType traderType,
                                           bool showPrice, bool showVolume, bool showPriceType)
    : COrderParamBaseTable(parent), m_widgetId(widgetId), m_brokerType(brokerType), m_traderType(traderType)
{
    WG::CMultiParamsTable* table = getMultiParamsTable();
    table->getItem(ITEM_CODE)->setVisible(showCode);
    table->getItem(ITEM_PRICE_TYPE)->setVisible(showPriceType);
    table->getItem(ITEM_PRICE)->setVisible(showPrice);
    table->getItem(ITEM_VOLUME)->setVisible(showVolume);
}

CCodeOrderParamTable::~CCodeOrderParamTable() = default;

QVector<QPair<QString, int>> CCodeOrderParamTable::allowedPriceTypes(const QString& stockKey,
                                                                     nqservice::EVqTraderType traderType)
{
    std::string market;
    std::string code;
    if (!utils::splitStockKey(stockKey.toStdString(), market, code) || code.empty()) {
        return {};
    }
    using P = QPair<QString, int>;
    if (traderType == nqservice::VQ_TRADER_TYPE_FUTURE_OPTION) {
        // Commodity exchanges take limit orders and their market order.
        if (market == "SH" || market == "SZ") {
            return {};
        }
        return {P(QStringLiteral("限价"), nqservice::PT_FIX), P(QStringLiteral("涨跌停价"), nqservice::PT_LIMIT_UP_DOWN),
                P(QStringLiteral("对手价"), nqservice::PT_OPPONENT), P(QStringLiteral("最新价"), nqservice::PT_LAST)};
    }
    if (market == "SH") {
        return {P(QStringLiteral("限价"), nqservice::PT_FIX), P(QStringLiteral("限价即全成否则撤"), nqservice::PT_FIX_FOK),
                P(QStringLiteral("市价即成剩撤"), nqservice::PT_MARKET_FAK),
                P(QStringLiteral("市价即全成否则撤"), nqservice::PT_MARKET_FOK),
                P(QStringLiteral("市价剩转限价"), nqservice::PT_MARKET_TO_LIMIT)};
    }
    if (market == "SZ") {
        return {P(QStringLiteral("限价"), nqservice::PT_FIX), P(QStringLiteral("限价即全成否则撤"), nqservice::PT_FIX_FOK),
                P(QStringLiteral("市价即成剩撤"), nqservice::PT_MARKET_FAK),
                P(QStringLiteral("市价即全成否则撤"), nqservice::PT_MARKET_FOK),
                P(QStringLiteral("对手价"), nqservice::PT_OPPONENT), P(QStringLiteral("本方最优"), nqservice::PT_QUEUE)};
    }
    return {};
}

void CCodeOrderParamTable::setStockCode(QString code)
{
    m_code = code;
    codeCell()->setString(code);
    QStringList texts;
    QVector<QVariant> datas;
    for (const auto& entry : allowedPriceTypes(code, m_traderType)) {
        texts << entry.first;
        datas << entry.second;
    }
    priceTypeItem()->setItems(texts, datas);
}

void CCodeOrderParamTable::clear()
{
    m_code.clear();
    COrderParamBaseTable::clear();
}

}  // namespace TC
