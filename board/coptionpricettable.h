// The T of the chain board: one row per strike, the call's columns left of the
// strike and the put's right of it, in one of five column sets. Rows are paired
// by strike when codes are set; quotes reach a row through updateTableByPrice.
// A press on a row's "开" or "平" opens the option order dialog at the mouse;
// its answer becomes one command to the command centre.
#pragma once

#include "board/cpricettableschema.h"
#include "board/cpricetrowbuilder.h"
#include "order/coptionorderdialog.h"
#include "order/ordervalue.h"
#include "seam/common.h"
#include "seam/cpricedata.h"
#include "seam/tradingenums.h"
#include "toolkit/coddevenrowtable.h"

#include <QHash>
#include <QMap>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QStringList>

#include <boost/shared_ptr.hpp>

#include <memory>
#include <vector>

namespace nqservice {
class CCodeOrderParam;
class CInstrumentDetail;
}

namespace WG {
class CWidgetList;
}

namespace TC {

class COptionPriceTTable : public WG::COddEvenRowTable {
    Q_OBJECT
public:
    explicit COptionPriceTTable(QWidget* parent);
    ~COptionPriceTTable() override;

    // Pairs the codes by strike into rows (new rows are appended).
    void setInstrument(QStringList codes);
    void setTableType(TC::EPriceTTableType type);
    TC::EPriceTTableType getTableType() const { return tableType; }
    void setTradeType(nqservice::EVqTraderType type);
    nqservice::EVqTraderType getTradeType() const { return traderType; }
    // Builds the columns of the present set. The panel calls it on a mode change too.
    void resetTable();
    // Drops the rows; the net positions stay.
    void doClear();
    // The option of a row on the side of the column.
    QString getSelectStockCode(int row, int column);
    // One cell's pair of order buttons "开" (id) and "平" (id + 1); null for a negative id.
    WG::CWidgetList* createButton(int id, TC::ButtonColor color, QWidget* parent);

    void updateTableByPrice(boost::shared_ptr<TC::CPriceData> data);
    void updateAllTable();
    void updateQuoteTable(int row, boost::shared_ptr<TC::CPriceData> data);
    void updateInfoTable(int row, boost::shared_ptr<TC::CPriceData> data);
    void updatePriceTable(int row, boost::shared_ptr<TC::CPriceData> data);
    void updateRiskTable(int row, boost::shared_ptr<TC::CPriceData> data);
    void updateTargetTable(int row, boost::shared_ptr<TC::CPriceData> data);

    // The imported Greeks changed: the risk rows are drawn again.
    void updateExGreeksData();
    // The import was switched on: the risk set shows the imported columns. Only
    // ever shows; switching off hides them at the next reset.
    void updateExGreeksVisible();

    const QMap<int, QStringList>& getRowCodes() const { return rowCodes; }
    // The row holding a code, -1 when none does.
    int rowOfCode(const QString& code) const { return codeRows.value(code, -1); }
    int getStrikeColumn() const { return strikeColumn; }
    const QSet<int>& getBoldColumns() const { return boldColumns; }
    const QSet<int>& getFlashColumns() const { return flashColumns; }
    const QSet<int>& getNumberColumns() const { return numberColumns; }
    const QSet<int>& getTotalColumns() const { return totalColumns; }
    // Order button lists made since construction; reused lists are not counted.
    int buttonListsMade() const { return buttonListsMadeCount; }
    // The id of the last order button pressed, -1 before any.
    int getLastOrderButtonId() const { return lastOrderButtonId; }

    bool handleEvent(int code, int id, int arg, QString text, void* data) override;

    // The net positions of the "仓差" columns, by the option's stock key and the record's key.
    void updateRowCode2NetMap(const QString& code, const std::string& recordKey, int net);
    void clearRowCode2NetMap() { rowCode2Net.clear(); }
    // A share changed: the map, then that one cell.
    void updatePositionStatics(const QString& code, const std::string& recordKey, int net);
    int netOf(const QString& code) const { return rowCode2Net.value(code).sum(); }

    // The order flow: the dialog's answer, the default account, a changed account list.
    void updateOrderAccounts();
    void doOperation();
    bool fillStockParams(std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>>& params, const orderValue& value,
                         QString& error, QString& remark);
    COptionOrderDialog* getOrderDialog() const { return orderDialog; }
    const orderValue& getOrderValue() const { return order; }
    QString getDefaultAccount() const { return defaultAccount; }

public slots:
    void slotDoOperation();
    void slotSetDefaultAccount(QString accountKey);
    void themeChanged() override;
    void loadConfigStr(QString config) override;
    // Also fits the widths to the first quotes after a refresh, while no saved layout rules them.
    void updateTable() override;
    // Scrolls the strike column to the middle of the view, unless the trader
    // scrolled since the last reset of the set.
    void centreStrikeColumn();
    bool isStrikeCentred() const { return strikeCentred; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void resetBackgroundColor(int row, const std::shared_ptr<nqservice::CInstrumentDetail>& detail);
    void resetFrontgroundColor(int row);

private:
    double calcForecastMargin(const std::shared_ptr<nqservice::CInstrumentDetail>& option);
    // Opens the order dialog for button id (row * 100 + operationIndex) at the mouse.
    void openOrderDialog(int id);
    // Replays a row function's writes into the row.
    void applyWrites(int row, const TPriceTCellWrites& writes);
    using RowBuilder = bool (*)(int, const boost::shared_ptr<CPriceData>&, int, TPriceTCellWrites&);
    void updateRow(int row, const boost::shared_ptr<TC::CPriceData>& data, TC::EPriceTTableType set, RowBuilder build);
    // Puts the pair of buttons into a cell; a cell that shows this pair already keeps it.
    void placeButtons(int row, int column, int id, TC::ButtonColor color);
    void rebuildCodeRows();
    void applyTraderTypeHiding();
    void fitButtonColumns();
    int strikeCompare(int leftRow, int rightRow, int column) const;

    TC::EPriceTTableType tableType = PTT_QUOTE;
    QMap<int, QStringList> rowCodes;
    QSet<int> boldColumns;
    QSet<int> flashColumns;
    QSet<int> numberColumns;
    QSet<int> totalColumns;
    int strikeColumn = -1;
    // Guarded: a dialog closed by any way at all leaves no dangling pointer.
    QPointer<TC::COptionOrderDialog> orderDialog;
    nqservice::EVqTraderType traderType = nqservice::VQ_TRADER_TYPE_STOCK_OPTION;
    QString defaultAccount;
    // The order under way, as the dialog answered it.
    orderValue order;
    QMap<QString, utils::TStringMapSum<int>> rowCode2Net;

    // The row of each code, so that a quote finds its row without walking all rows.
    QHash<QString, int> codeRows;
    // One buffer of writes, reused by every row update.
    TPriceTCellWrites writes;
    int buttonListsMadeCount = 0;
    int lastOrderButtonId = -1;
    // A saved layout was given for the present set: its widths stand.
    bool layoutLoaded = false;
    // Ticks after a full refresh whose quotes may still widen the columns.
    int contentFitsLeft = 0;
    bool rowsWritten = false;
    // The view keeps the strike in its middle until the trader scrolls.
    bool strikeCentred = true;
};

}  // namespace TC
