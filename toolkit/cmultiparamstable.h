// A column of parameter rows (captions with editors) that an order form is built
// of; rows are addressed by their position.
#pragma once

#include "toolkit/ceventwidgett.h"

#include <QList>

class QVBoxLayout;

namespace WG {

class CMultiParamsTableItem;

class CMultiParamsTable : public CEventWidgetT<QWidget> {
    Q_OBJECT
public:
    explicit CMultiParamsTable(QWidget* parent = nullptr);
    ~CMultiParamsTable() override;

    // The table takes the item; returns its index.
    int addItem(CMultiParamsTableItem* item);
    CMultiParamsTableItem* getItem(int index) const;
    int itemCount() const { return m_items.size(); }
    void clear();

private:
    QVBoxLayout* m_layout;
    QList<CMultiParamsTableItem*> m_items;
};

}  // namespace WG
