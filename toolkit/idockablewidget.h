// A widget that a dock frame can hold: parameter string, pairing, activation,
// shortcut and title behaviour. A simple host leaves most of these at their defaults.
#pragma once

#include "toolkit/cbasewidget.h"

#include <QString>

class QKeyEvent;

namespace WG {

class IDockableWidget : public CBaseWidget {
    Q_OBJECT
public:
    IDockableWidget(const QString& name, bool paintsBackground, QWidget* parent);
    ~IDockableWidget() override;

    virtual void setWindowFocusWidget(bool) {}
    // The panel's whole persistent state: sections joined by "|", lists by ";".
    virtual void setParam(const QString&) {}
    virtual QString param() { return QString(); }
    virtual void acquire() {}
    virtual void release() {}
    virtual IDockableWidget* getCopy(int) { return nullptr; }
    virtual void setTableShowSort(bool) {}
    virtual void setWidgetActive(bool active) { setActive(active, true); }
    virtual bool isSimpleHeaderTitle() { return false; }
    virtual bool hasFloatTitle() { return true; }
    virtual void handleReserveBtnActive(int) {}
    virtual void handleQuoteBtnActive() {}
    virtual void handleShortcut(int, QKeyEvent*) {}
    virtual void setUiLock(bool locked) { m_uiLocked = locked; }
    virtual int getPairID() const { return m_pairID; }
    virtual void setPairID(int pairID) { m_pairID = pairID; }
    virtual void handlePairEvent(int, QString) {}
    virtual int getActiveWidgetID() const { return m_activeWidgetID; }
    virtual void setActiveWidgetID() { m_activeWidgetID = widgetID(); }
    virtual bool getActivable() const { return m_activable; }
    virtual void setActivable(bool activable) { m_activable = activable; }
    virtual bool isCloseEnable() const { return true; }
    virtual bool IsLastActive() { return isActive(); }
    virtual bool isClosed() { return !isVisible(); }
    virtual int widgetID() const { return 0; }
    virtual int getTradeType() const { return 0; }
    virtual bool getOptActivable() const { return m_optActivable; }
    virtual void setOptActivable(bool activable) { m_optActivable = activable; }
    virtual bool getQuoteTypeable() const { return m_quoteTypeable; }
    virtual void setQuoteTypeable(bool typeable) { m_quoteTypeable = typeable; }
    virtual bool isShowTitleMenu() { return true; }
    virtual void setBtnToolVisible() {}
    virtual bool hasControlShowToolBtn() { return false; }
    virtual QString getShortCut() { return m_shortCut; }
    virtual void setShortCut(const QString& shortCut) { m_shortCut = shortCut; }

    bool isUiLocked() const { return m_uiLocked; }

private:
    QString m_shortCut;
    int m_pairID = 0;
    int m_activeWidgetID = 0;
    bool m_activable = true;
    bool m_optActivable = true;
    bool m_quoteTypeable = false;
    bool m_uiLocked = false;
};

}  // namespace WG
