#include "order/ccolorkeybutton.h"

namespace TC {

CColorKeyButton::CColorKeyButton(int id, const QString& text, QWidget* parent)
    : WG::CSmallNormalButton(id, false, WG::NBT_PRIMARY, text, parent)
{
}

CColorKeyButton::~CColorKeyButton() = default;

void CColorKeyButton::setColorKey(const QString& key)
{
    m_key = key;
    update();
}

QString CColorKeyButton::currentBackgroundKey() const
{
    return isEnabled() && !m_key.isEmpty() ? m_key : WG::CSmallNormalButton::currentBackgroundKey();
}

}  // namespace TC
