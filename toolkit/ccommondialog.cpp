#include "toolkit/ccommondialog.h"

#include <QVBoxLayout>

namespace WG {

CCommonDialog::CCommonDialog(QWidget* parent) : CBaseDialog(parent, true) {}

CCommonDialog::~CCommonDialog() = default;

void CCommonDialog::setInnerWidget(QWidget* widget)
{
    if (m_inner == widget) {
        return;
    }
    if (!m_inner.isNull()) {
        contentLayout()->removeWidget(m_inner);
        m_inner->hide();
        m_inner->deleteLater();
    }
    m_inner = widget;
    if (widget != nullptr) {
        widget->setParent(this);
        contentLayout()->addWidget(widget);
        widget->show();
    }
    adjustSize();
}

}  // namespace WG
