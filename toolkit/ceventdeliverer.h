// The event channel of one control: a control reports upward with deliverEvent,
// and the nearest deliverer above it acts in handleEvent or passes the event on.
#pragma once

#include <QString>

class QWidget;

namespace WG {

class CEventDeliverer {
public:
    // parent: the deliverer that receives this control's events; when null, the
    // nearest deliverer up the widget tree receives them.
    explicit CEventDeliverer(CEventDeliverer* parent = nullptr);
    virtual ~CEventDeliverer();
    CEventDeliverer(const CEventDeliverer&) = delete;
    CEventDeliverer& operator=(const CEventDeliverer&) = delete;

    // Acts on the codes an override knows; the base passes every event on to
    // the next deliverer up, unchanged. Returns whether someone handled it.
    virtual bool handleEvent(int code, int id, int arg, QString text, void* data);

    void setParentDeliverer(CEventDeliverer* parent) { m_parent = parent; }
    // The deliverer that receives this one's events, explicit or found in the widget tree.
    CEventDeliverer* parentDeliverer() const;

protected:
    bool deliverEvent(int code, int id, int arg, QString text, void* data);
    // The widget this channel belongs to; lets the channel find its parent in the widget tree.
    virtual QWidget* delivererWidget() const { return nullptr; }

private:
    CEventDeliverer* m_parent = nullptr;
};

// The deliverer of a widget, or null when the widget has no event channel.
CEventDeliverer* castEventDeliverer(QWidget* widget);

}  // namespace WG
