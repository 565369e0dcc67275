// The order parameter table of one code: given a code it offers the price types
// that the code's exchange accepts for its kind of trader, in item 1. It sends
// nothing; order dialogs read its choices.
#pragma once

#include "seam/tradingenums.h"
#include "toolkit/corderparambasetable.h"
#include "toolkit/toolkitenums.h"

#include <QPair>
#include <QString>
#include <QVector>

namespace TC {

class CCodeOrderParamTable : public COrderParamBaseTable {
    Q_OBJECT
public:
    CCodeOrderParamTable(TC::EOpParamWidgetID widgetId, nqservice::EVQBrokerType brokerType, QWidget* parent,
                         bool showCode, nqservice::EVqTraderType traderType, bool showPrice, bool showVolume,
                         bool showPriceType);
    ~CCodeOrderParamTable() override;

    // A stock key ("10004567.SH") or a bare code; "" empties the choices.
    void setStockCode(QString code);
    QString stockCode() const { return m_code; }
    void clear() override;

    // The price types allowed for a key, with their labels; empty when the
    // exchange is unknown. Usable without a widget.
    static QVector<QPair<QString, int>> allowedPriceTypes(const QString& stockKey, nqservice::EVqTraderType traderType);

private:
    TC::EOpParamWidgetID m_widgetId;
    nqservice::EVQBrokerType m_brokerType;
    nqservice::EVqTraderType m_traderType;
    QString m_code;
};

}  // namespace TC
