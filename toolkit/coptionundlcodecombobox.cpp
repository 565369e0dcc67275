#include "toolkit/coptionundlcodecombobox.h"

#include "seam/cexchangeclient.h"
#include "seam/formatters.h"
#include "seam/trading.h"

#include <QSignalBlocker>
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
    // A new trading day refills the list: the underlying shown before stays chosen
    // when it is still listed, and the choice is announced once, so the panel
    // takes up the day's months either way.
    const QVariant previous = currentData(Qt::UserRole);
    {
        const QSignalBlocker quiet(this);
        QComboBox::clear();
        CExchangeClient* exchange = utils::CManualSingletonT<CExchangeClient>::instance();
        if (exchange != nullptr) {
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
        setCurrentIndex(-1);
    }
    if (count() == 0) {
        emit currentIndexChanged(-1);  // the emptied list is news as well
        return;
    }
    const int kept = previous.isValid() ? findData(previous, Qt::UserRole) : -1;
    setCurrentIndex(kept >= 0 ? kept : 0);
}

}  // namespace TC
