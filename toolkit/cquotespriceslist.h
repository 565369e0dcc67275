// The five bid and ask levels of one code under a code entry: the price list of
// the quick order. Prices take the rise and fall colours against the previous
// close. A click on a level delivers UE_SET_LIMIT_PRICE with its price as text.
#pragma once

#include "seam/cpricedata.h"
#include "seam/tradingenums.h"
#include "toolkit/ceventwidgett.h"
#include "toolkit/toolkitenums.h"

#include <boost/shared_ptr.hpp>

namespace TC {

class CQuotesAddInstrumentWidget;

class CQuotesPricesList : public WG::CEventWidgetT<QWidget> {
    Q_OBJECT
public:
    // Rows of the list, top to bottom: asks 5 to 1, then bids 1 to 5.
    static constexpr int kLevelRows = 10;
    // A cancel cell of row r delivers UE_BUTTON_CLICKED with this id plus r.
    static constexpr int kCancelButtonIDBase = 9100;

    CQuotesPricesList(EOpParamWidgetID widgetID, QWidget* parent);
    ~CQuotesPricesList() override;

    // The stock key shown; clears the levels until a quote of that key arrives.
    void setStockCode(const QString& key);
    QString getStockCode() const { return m_stockCode; }
    // Takes a quote of the shown code; quotes of other codes are ignored.
    void parsePrice(const boost::shared_ptr<TC::CPriceData>& price);
    void setTradeType(nqservice::EVqTraderType type);
    // Shows a narrow cancel cell at the end of each level.
    void setShowCancelOrder(bool show);
    bool isShowCancelOrder() const { return m_showCancel; }
    CQuotesAddInstrumentWidget* getSelectCodeWidget() const { return m_selectCode; }
    EOpParamWidgetID widgetID() const { return m_widgetID; }

    // What a row shows, for the panels' tests and tool tips.
    QString levelLabel(int row) const;
    double levelPrice(int row) const;
    int levelVolume(int row) const;
    QString levelPriceText(int row) const;
    QString levelColorKey(int row) const;
    QRect levelRect(int row) const;
    int decimals() const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    int rowHeight() const;
    int headerHeight() const;
    int levelsTop() const;
    int rowAt(const QPoint& pos) const;

    EOpParamWidgetID m_widgetID;
    QString m_stockCode;
    QString m_name;
    boost::shared_ptr<TC::CPriceData> m_price;
    nqservice::EVqTraderType m_tradeType = nqservice::VQ_TRADER_TYPE_STOCK_OPTION;
    bool m_showCancel = false;
    int m_hoverRow = -1;
    int m_decimals = 4;
    CQuotesAddInstrumentWidget* m_selectCode;
};

}  // namespace TC
