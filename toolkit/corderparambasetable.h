// The standard order parameter table: code, price type, price and volume rows
// in a CMultiParamsTable. Item 1 is always the price type choice.
#pragma once

#include "toolkit/ceventwidgett.h"

namespace WG {
class CComboBoxDelegate;
class CMultiParamsTable;
class CParameterCell;
}  // namespace WG

namespace TC {

class COrderParamBaseTable : public WG::CEventWidgetT<QWidget> {
    Q_OBJECT
public:
    enum EItem { ITEM_CODE = 0, ITEM_PRICE_TYPE = 1, ITEM_PRICE = 2, ITEM_VOLUME = 3 };

    explicit COrderParamBaseTable(QWidget* parent = nullptr);
    ~COrderParamBaseTable() override;

    WG::CMultiParamsTable* getMultiParamsTable() const { return m_table; }
    // Empties the values and the price type choices; the rows stay.
    virtual void clear();

    WG::CParameterCell* codeCell() const { return m_code; }
    WG::CComboBoxDelegate* priceTypeItem() const { return m_priceType; }
    WG::CParameterCell* priceCell() const { return m_price; }
    WG::CParameterCell* volumeCell() const { return m_volume; }

private:
    WG::CMultiParamsTable* m_table;
    WG::CParameterCell* m_code;
    WG::CComboBoxDelegate* m_priceType;
    WG::CParameterCell* m_price;
    WG::CParameterCell* m_volume;
};

}  // namespace TC
