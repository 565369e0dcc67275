// The legs of the current basket, one row a leg: tick, code, name, kind,
// direction, weights, quantity, live price and volume, margin and Greeks, with
// a statistics row that adds them up. Every change a trader makes here is
// written back to the basket at once; ticks and directions are told to the
// panel (events 1259, 1260) so that the payoff curve follows.
//
// Quotes arrive on service threads; they wait in a buffer (newest per key) and
// reach the cells on the GUI thread only.
#pragma once

#include "seam/cinstrumentdetail.h"
#include "seam/cpricedata.h"
#include "seam/cquoterequest.h"
#include "seam/userrecords.h"
#include "strategy/cstrategyquotebuffer.h"
#include "toolkit/coddevenrowtable.h"

#include <QList>
#include <QMap>
#include <QString>

#include <boost/shared_ptr.hpp>

#include <functional>
#include <memory>
#include <string>

class QKeyEvent;

namespace WG {
class CBaseTableColumnCheckBoxDelegate;
class CBaseTableColumnPushButtonDelegate;
}  // namespace WG

namespace TC {

class CStrategyManageTable : public WG::COddEvenRowTable {
    Q_OBJECT
public:
    enum EColumn {
        COL_CHECK = 0,
        COL_CODE = 1,
        COL_NAME = 2,
        COL_KIND = 3,
        COL_DIRECTION = 4,
        COL_WEIGHT = 5,
        COL_ABS_WEIGHT = 6,
        COL_QUANTITY = 7,
        COL_LAST = 8,
        COL_VOLUME = 9,
        COL_MARGIN = 10,
        COL_DELTA = 11,
        COL_GAMMA = 12,
        COL_THETA = 13,
        COL_VEGA = 14,
        COL_RHO = 15,
        COL_COUNT = 16,
    };
    // Events told to the panel, each with id 0 and null data.
    enum EEvent {
        UE_LEGS_CHANGED = 1258,     // legs added or deleted, or a cell edit committed
        UE_LEG_SELECTED = 1259,     // value 2 ticked, 0 unticked or removed; text names the leg
        UE_LEG_BS_CHANGED = 1260,   // value the leg's side, 18 or 19; text names the leg
    };

    // extra: the panel's integer, kept and not read.
    CStrategyManageTable(int extra, QWidget* parent);
    ~CStrategyManageTable() override;

    QString currentBasket() const { return m_currentBasket; }
    void setCurrentBasket(const QString& name) { m_currentBasket = name; }
    const QMap<QString, int>& rowByKey() const { return m_rowByKey; }
    void clearRowByKey() { m_rowByKey.clear(); }
    int extra() const { return m_extra; }

    // Adds the instrument of a stock key to the current basket as a new leg.
    // Unknown keys and keys the basket has are dropped without a word.
    void addKey(const QString& key);
    // Shows the basket `name`; an unknown name leaves the table empty with no current basket.
    void loadBasket(const QString& name);
    void deleteChecked();
    void checkAll();
    void invertChecked();
    // Copies of the ticked legs of the current basket in basket order; the caller owns them.
    void getCheckedLegs(QList<CStrategyStockData*>& out) const;
    // Margin and Greeks of every row afresh, with the user's benchmark (member 77).
    void updateGreek();

    void clear() override;
    bool handleEvent(int code, int id, int arg, QString text, void* data) override;

    // Any thread: keeps the quote for the GUI thread (a dead table ignores it).
    void onQuote(const boost::shared_ptr<CPriceData>& price);
    // The live tables of the process; the lock is recursive and process-wide.
    static bool isLive(const CStrategyManageTable* table);
    static int liveCount();

    WG::CBaseTableColumnCheckBoxDelegate* checkDelegate() const { return m_check; }
    WG::CBaseTableColumnPushButtonDelegate* directionDelegate() const { return m_direction; }
    int quoteRequestCount() const { return m_quoteRequests.size(); }

public slots:
    // Applies what the buffer holds; runs on the GUI thread.
    void applyPendingQuotes();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void createColumns();
    // The basket shown, if the configuration still holds it with legs.
    bool basketHasLegs() const;
    // Fills one row from a leg; `tell` delivers 1259 and 1260 as loading does.
    void fillRow(int row, const CStrategyStockData& leg, bool tell);
    void setDirectionButton(int row, nqservice::EOperationType operation);
    void subscribe(const QString& key);
    void applyQuote(const CPriceData& price, bool updateStatistics);
    // Margin and Greeks of a row; a row whose Greeks can't be had keeps the old ones.
    void updateRowFigures(int row, const std::shared_ptr<nqservice::CInstrumentDetail>& instrument, int benchmark,
                          double optionLastPrice);
    std::shared_ptr<nqservice::CInstrumentDetail> instrumentOfRow(int row) const;
    void updateAbsoluteWeights();
    void updateStatistics();
    // Changes the current basket in a copy of all baskets and writes them back.
    bool modifyBasket(const std::function<void(CStrategySetting&)>& change);
    void tell(int code, int value, const QString& text) { deliverEvent(code, 0, value, text, nullptr); }
    static std::string key(int row) { return std::to_string(row); }

    QString m_currentBasket;
    QMap<QString, int> m_rowByKey;
    QMap<QString, boost::shared_ptr<CQuoteRequest>> m_quoteRequests;
    int m_extra;
    WG::CBaseTableColumnCheckBoxDelegate* m_check = nullptr;
    WG::CBaseTableColumnPushButtonDelegate* m_direction = nullptr;
    CStrategyQuoteBuffer m_pending;
};

}  // namespace TC
