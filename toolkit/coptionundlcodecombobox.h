// The underlying selector of the boards and the price quote panel: every
// underlying that has options for one trader type, shown by its instrument key,
// with the option map's key as item data. Empty until the instrument tables are
// complete; refilled when they are complete again (a new trading day), keeping
// the underlying shown before while it is still listed. A trade control of TC,
// kept with the toolkit so that every panel folder may use it.
#pragma once

#include "seam/tradingenums.h"
#include "toolkit/ccombobox.h"

namespace TC {

class COptionUndlCodeComboBox : public WG::CComboBox {
    Q_OBJECT
public:
    COptionUndlCodeComboBox(int id, QWidget* parent);
    ~COptionUndlCodeComboBox() override;

    // Stores the type and lists its underlyings at once.
    void setTradeType(nqservice::EVqTraderType type);
    nqservice::EVqTraderType getTradeType() const { return traderType; }

private slots:
    void slotInitDataFinish();

private:
    nqservice::EVqTraderType traderType = nqservice::VQ_TRADER_TYPE_STOCK_OPTION;
};

}  // namespace TC
