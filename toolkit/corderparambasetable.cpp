#include "toolkit/corderparambasetable.h"

#include "seam/common.h"
#include "toolkit/ccomboboxdelegate.h"
#include "toolkit/cmultiparamstable.h"
#include "toolkit/cmultiparamstableitem.h"
#include "toolkit/cparametercell.h"

#include <QLineEdit>
#include <QVBoxLayout>

namespace TC {

COrderParamBaseTable::COrderParamBaseTable(QWidget* parent)
    : WG::CEventWidgetT<QWidget>(parent),
      m_table(new WG::CMultiParamsTable(this)),
      m_code(new WG::CParameterCell(0, QString(), QString(), nullptr)),
      m_priceType(new WG::CComboBoxDelegate(QStringLiteral("报价方式"))),
      m_price(new WG::CParameterCell(2, QString(), QString(), nullptr)),
      m_volume(new WG::CParameterCell(3, QString(), QStringLiteral("张"), nullptr))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_table);
    m_code->lineEdit()->setReadOnly(true);
    m_price->setDoubleValidator(QString(), 0.0, utils::kAbsentDouble, 0.0001);
    m_price->setSpin(QString(), qMakePair(true, 0.0001));
    m_volume->setIntValidator(QStringLiteral("张"), 0, utils::kAbsentInt, 1);
    m_volume->setSpin(QStringLiteral("张"), qMakePair(true, 1.0));
    m_table->addItem(new WG::CMultiParamsTableItem(QStringLiteral("代码"), m_code));
    m_table->addItem(m_priceType);
    m_table->addItem(new WG::CMultiParamsTableItem(QStringLiteral("价格"), m_price));
    m_table->addItem(new WG::CMultiParamsTableItem(QStringLiteral("数量"), m_volume));
}

COrderParamBaseTable::~COrderParamBaseTable() = default;

void COrderParamBaseTable::clear()
{
    m_code->setString(QString());
    m_priceType->clearItems();
    m_price->setString(QString());
    m_volume->setString(QString());
}

}  // namespace TC
