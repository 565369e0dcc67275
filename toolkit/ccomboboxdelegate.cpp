#include "toolkit/ccomboboxdelegate.h"

#include <QComboBox>

namespace WG {

CComboBoxDelegate::CComboBoxDelegate(const QString& name, QWidget* parent)
    : CMultiParamsTableItem(name, nullptr, parent), m_combo(new QComboBox)
{
    setEditor(m_combo);
    connect(m_combo, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &CComboBoxDelegate::sigCurrentIndexChanged);
}

CComboBoxDelegate::~CComboBoxDelegate() = default;

void CComboBoxDelegate::setItems(const QStringList& texts, const QVector<QVariant>& datas)
{
    m_texts = texts;
    m_datas = datas;
    m_combo->blockSignals(true);
    m_combo->clear();
    for (int i = 0; i < texts.size(); ++i) {
        m_combo->addItem(texts.at(i), i < datas.size() ? datas.at(i) : QVariant());
    }
    m_combo->blockSignals(false);
}

void CComboBoxDelegate::clearItems() { setItems(QStringList(), QVector<QVariant>()); }

int CComboBoxDelegate::currentIndex() const { return m_combo->currentIndex(); }

void CComboBoxDelegate::setCurrentIndex(int index) { m_combo->setCurrentIndex(index); }

QVariant CComboBoxDelegate::currentData() const { return m_combo->currentData(); }

QString CComboBoxDelegate::valueText() const { return m_combo->currentText(); }

}  // namespace WG
