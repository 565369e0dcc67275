// A small intraday picture of one code: the last price per minute as a line
// around the previous close, coloured by where the price stands against it.
#pragma once

#include "seam/cpricedata.h"
#include "toolkit/ceventwidgett.h"

#include <boost/shared_ptr.hpp>

#include <QMap>

namespace TC {

class CQuotesGraphWidget : public WG::CEventWidgetT<QWidget> {
    Q_OBJECT
public:
    explicit CQuotesGraphWidget(QWidget* parent);
    ~CQuotesGraphWidget() override;

    // Starts a new picture for the key.
    void setStockCode(QString key);
    QString stockCode() const { return m_stockCode; }
    // Takes a quote of the shown code: its last price becomes the point of its minute.
    void parsePrice(const boost::shared_ptr<TC::CPriceData>& price);

    int pointCount() const { return m_points.size(); }
    double lastPrice() const;
    double preClose() const { return m_preClose; }
    // The colour key of the line now.
    QString lineColorKey() const;

    QSize sizeHint() const override { return QSize(220, 120); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_stockCode;
    QMap<long long, double> m_points;  // minute since the epoch -> last price
    double m_preClose;
};

}  // namespace TC
