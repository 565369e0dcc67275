#include "toolkit/ccombobox.h"

#include "seam/uievents.h"
#include "toolkit/cstylesheetcenter.h"

#include <QAbstractItemView>

namespace WG {

CComboBox::CComboBox(int id, QWidget* parent) : CEventWidgetT<QComboBox>(parent), m_id(id)
{
    setFocusPolicy(Qt::StrongFocus);
    view()->setTextElideMode(Qt::ElideRight);
    applyStyle();
    connect(this, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this](int index) { deliverEvent(UE_COMBO_CHANGED, m_id, index, currentText(), nullptr); });
}

CComboBox::~CComboBox() = default;

void CComboBox::setFontKey(const QString& key)
{
    m_fontKey = key;
    applyStyle();
}

void CComboBox::themeChanged() { applyStyle(); }

void CComboBox::applyStyle()
{
    CStyleSheetOption option;
    option.fontKey = m_fontKey;
    setStyleSheet(CStyleSheetCenter::getStyle(SS_COMBOBOX, &option));
}

}  // namespace WG
