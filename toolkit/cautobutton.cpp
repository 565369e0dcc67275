#include "toolkit/cautobutton.h"

#include <QTimer>

namespace TC {

CAutoButton::CAutoButton(int id, bool checkable, WG::ENormalButtonType type, QWidget* parent, int milliseconds)
    : WG::CSmallNormalButton(id, checkable, type, QString(), parent), m_milliseconds(milliseconds), m_rest(new QTimer(this))
{
    m_rest->setSingleShot(true);
    connect(m_rest, &QTimer::timeout, this, [this]() { setEnabled(true); });
}

CAutoButton::~CAutoButton() = default;

bool CAutoButton::isResting() const { return m_rest->isActive(); }

void CAutoButton::onClicked(bool checked) { slotClicked(checked); }

void CAutoButton::slotClicked(bool checked)
{
    if (isResting()) {
        return;
    }
    WG::CSmallNormalButton::onClicked(checked);
    if (m_milliseconds > 0) {
        // Disabled while resting, so the trader sees that the click was taken.
        setEnabled(false);
        m_rest->start(m_milliseconds);
    }
}

}  // namespace TC
