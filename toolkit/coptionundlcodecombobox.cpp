#include "toolkit/coptionundlcodecombobox.h"

#include "seam/cexchangeclient.h"
#include "seam/formatters.h"
#include "seam/trading.h"

#include <QVariant>

namespace TC {

COptionUndlCodeComboBox::COptionUndlCodeComboBox(int id, QWidget* parent) : WG::CComboBox(id, parent)
{
    if (CTradeClient* client = utils::CManualSingletonT<CTradeClient>::instance()) {
        connect(client, &CTradeClient::sigInitDataFinish, this, &COptionUndlCodeComboBox::slotInitDataFinish);
    } else if (CExchangeClient* exchange = utils::CManualSingletonT<CExchangeClient>::instance()) {
        // A host without trading services: the instrument tables tell it themselves.
        connect(exchange, &CExchangeClient::sigInitDataFinish, this, &COptionUndlCodeComboBox::slotInitDataFinish);
    }
}

COptionUndlCodeComboBox::~COptionUndlCodeComboBox() = default;

void COptionUndlCodeComboBox::setTradeType(nqservice::EVqTraderType type)
{
    traderType = type;
    slotInitDataFinish();
}

void COptionUndlCodeComboBox::slotInitDataFinish()
{
    QComboBox::clear();
    CExchangeClient* exchange = utils::CManualSingletonT<CExchangeClient>::instance();
    if (exchange == nullptr) {
        return;
    }
    QMap<QString, QMap<QString, QStringList>> options;
    if (traderType == nqservice::VQ_TRADER_TYPE_STOCK_OPTION) {
        exchange->getStockOptionMap(options);
    } else {
        exchange->getFutureOptionMap(options);
    }
    for (auto it = options.constBegin(); it != options.constEnd(); ++it) {
        const std::shared_ptr<nqservice::CInstrumentDetail> detail = exchange->getCodeInfo(it.key());
        const QString text = detail ? WG::sToQs(utils::vqStockKey(detail->market, detail->code)) : it.key();
        addItem(text, QVariant(it.key()));
    }
}

}  // namespace TC
