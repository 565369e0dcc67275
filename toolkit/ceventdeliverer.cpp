#include "toolkit/ceventdeliverer.h"

#include <QWidget>

namespace WG {

CEventDeliverer::CEventDeliverer(CEventDeliverer* parent) : m_parent(parent) {}

CEventDeliverer::~CEventDeliverer() = default;

bool CEventDeliverer::handleEvent(int code, int id, int arg, QString text, void* data)
{
    if (CEventDeliverer* parent = parentDeliverer()) {
        return parent->handleEvent(code, id, arg, text, data);
    }
    return false;
}

CEventDeliverer* CEventDeliverer::parentDeliverer() const
{
    if (m_parent != nullptr) {
        return m_parent;
    }
    const QWidget* widget = delivererWidget();
    for (QWidget* up = widget != nullptr ? widget->parentWidget() : nullptr; up != nullptr; up = up->parentWidget()) {
        if (CEventDeliverer* deliverer = castEventDeliverer(up)) {
            return deliverer;
        }
    }
    return nullptr;
}

bool CEventDeliverer::deliverEvent(int code, int id, int arg, QString text, void* data)
{
    if (CEventDeliverer* parent = parentDeliverer()) {
        return parent->handleEvent(code, id, arg, text, data);
    }
    return false;
}

CEventDeliverer* castEventDeliverer(QWidget* widget)
{
    return dynamic_cast<CEventDeliverer*>(widget);
}

}  // namespace WG
