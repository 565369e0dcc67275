#include "order/cpricetquickordertable.h"

#include "order/cpriceladder.h"
#include "seam/cexchangeclient.h"
#include "seam/common.h"
#include "seam/cinstrumentdetail.h"
#include "seam/formatters.h"
#include "seam/logger.h"
#include "seam/trading.h"
#include "seam/uievents.h"

#include <QScrollBar>
#include <QTableView>

#include <fmt/format.h>

namespace TC {

CPriceTQuickOrderTable::CPriceTQuickOrderTable(QWidget* parent) : WG::COddEvenRowTable(0, parent, WG::BTMF_NONE)
{
    setColumnCount(5);
    const char* headers[] = {"委买量", "买量", "价格", "卖量", "委卖量"};
    for (int column = 0; column < 5; ++column) {
        setColumnHeader(column, QString::fromUtf8(headers[column]));
    }
    tableView()->setEditTriggers(QAbstractItemView::NoEditTriggers);
    // Widths for the ladder's 267 pixels: prices of four decimals and volumes of five digits.
    const int widths[] = {50, 44, 56, 44, 50};
    for (int column = 0; column < 5; ++column) {
        setColumnWidth(column, widths[column]);
    }
    // No sorting, moving or menu on a ladder; the last column takes the width left.
    setFlag((flag() & WG::EBaseTableFlags(0xFFDFFFD6)) | WG::EBaseTableFlags(0x800));
    setFlag(flag() & ~WG::EBaseTableFlags(0x2));
    for (int i = 0; i < kRowCount; ++i) {
        appendRow();
    }
}

CPriceTQuickOrderTable::~CPriceTQuickOrderTable() = default;

void CPriceTQuickOrderTable::updateQuoteTable(const boost::shared_ptr<TC::CPriceData>& price)
{
    const int rows = rowCount();
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < 5; ++column) {
            setItemText(row, column, QString(), true);
            setItemBackgroundColorKey(row, column, "", true);
        }
    }
    priceToRow.clear();
    bestBidRow = -1;
    setBackgroundColorKey("clr_table_background", "clr_table_number_background");
    if (!price) {
        return;
    }
    CExchangeClient* client = utils::CManualSingletonT<CExchangeClient>::instance();
    const std::shared_ptr<nqservice::CInstrumentDetail> detail =
        client != nullptr ? client->getCodeInfo(QString::fromStdString(utils::vqStockKey(price->market, price->code))) : nullptr;
    if (!detail) {
        return;
    }
    int phase = 0;
    if (const auto center = nqservice::TraderCenter::instance()) {
        if (const auto data = center->getDataCenter()) {
            phase = data->getTradingPhase(price->market, price->code);
        }
    }
    const QVector<CLadderRow> ladder = CPriceLadder::rows(*price, detail->priceTick, phase, rows);
    for (int row = 0; row < ladder.size(); ++row) {
        const CLadderRow& entry = ladder.at(row);
        if (entry.priceText.isEmpty()) {
            break;
        }
        setItemText(row, COL_PRICE, entry.priceText, true);
        priceToRow[entry.priceText] = row;
        setItemText(row, COL_BID, WG::formatIntNumber(entry.bidVolume, 0), true);
        setItemText(row, COL_ASK, WG::formatIntNumber(entry.askVolume, 0), true);
        if (entry.bestBid) {
            bestBidRow = row;
            for (int column = 0; column < 5; ++column) {
                setItemBackgroundColorKey(row, column, "clr_table_background_selected", true);
            }
        }
    }
}

bool CPriceTQuickOrderTable::handleEvent(int code, int id, int arg, QString text, void* data)
{
    if ((code == WG::UE_CELL_PRIMARY || code == WG::UE_CELL_SECONDARY) && data == nullptr) {
        int button = code == WG::UE_CELL_PRIMARY ? 1 : 2;
        return WG::COddEvenRowTable::handleEvent(WG::UE_CELL_SECONDARY, id, arg, text, &button);
    }
    return WG::COddEvenRowTable::handleEvent(code, id, arg, text, data);
}

void CPriceTQuickOrderTable::scrollToBestBid()
{
    QScrollBar* bar = tableView()->verticalScrollBar();
    if (bestBidRow < 0 || bar == nullptr) {
        return;
    }
    setSelectedRow(bestBidRow);
    bar->setValue(bar->maximum() * (bestBidRow + 1) / 41);
}

}  // namespace TC
