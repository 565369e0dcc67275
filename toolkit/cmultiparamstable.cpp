#include "toolkit/cmultiparamstable.h"

#include "toolkit/cmultiparamstableitem.h"

#include <QVBoxLayout>

namespace WG {

CMultiParamsTable::CMultiParamsTable(QWidget* parent) : CEventWidgetT<QWidget>(parent), m_layout(new QVBoxLayout(this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(2);
    m_layout->addStretch(1);
}

CMultiParamsTable::~CMultiParamsTable() = default;

int CMultiParamsTable::addItem(CMultiParamsTableItem* item)
{
    if (item == nullptr) {
        return -1;
    }
    item->setParent(this);
    m_layout->insertWidget(m_items.size(), item);
    m_items << item;
    return m_items.size() - 1;
}

CMultiParamsTableItem* CMultiParamsTable::getItem(int index) const { return m_items.value(index, nullptr); }

void CMultiParamsTable::clear()
{
    for (CMultiParamsTableItem* item : m_items) {
        delete item;
    }
    m_items.clear();
}

}  // namespace WG
