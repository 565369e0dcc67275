// A widget with the event channel, an active state and painting helpers:
// the base of every panel and of the larger controls.
#pragma once

#include "toolkit/ceventwidgett.h"

#include <QColor>
#include <QRect>
#include <QString>

namespace WG {

class CBaseWidget : public CEventWidgetT<QWidget> {
    Q_OBJECT
public:
    CBaseWidget(const QString& name, bool paintsBackground, QWidget* parent);
    ~CBaseWidget() override;

    virtual bool setActive(bool active, bool notify);
    virtual void onActive();
    virtual QRect getMaskRect();
    virtual void paintBackgroud(const QColor& color);

    bool isActive() const { return m_active; }
    QString name() const { return m_name; }

    bool handleEvent(int code, int id, int arg, QString text, void* data) override;

signals:
    void sigActiveChanged(bool active);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_name;
    bool m_paintsBackground = false;
    bool m_active = false;
};

}  // namespace WG
