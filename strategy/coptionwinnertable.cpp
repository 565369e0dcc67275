#include "strategy/coptionwinnertable.h"

#include "seam/stockcolor.h"
#include "seam/tradinghelpers.h"
#include "seam/uievents.h"
#include "strategy/cwinnercandidatebuilder.h"
#include "toolkit/cradiobutton.h"
#include "toolkit/csimpletext.h"

#include <QSignalBlocker>

namespace TC {

namespace {

// Where a set keeps each figure; -1 when the set lacks it.
struct CColumnSet {
    int nameOne, lastOne, bsOne, quantityOne, nameTwo, lastTwo, bsTwo, quantityTwo, net, profit, loss, volumeOne,
        volumeTwo;
};

const CColumnSet kSingle = {COptionWinnerTable::SC_NAME, COptionWinnerTable::SC_LAST, COptionWinnerTable::SC_BS,
                            COptionWinnerTable::SC_QUANTITY, -1, -1, -1, -1, COptionWinnerTable::SC_NET,
                            COptionWinnerTable::SC_PROFIT, COptionWinnerTable::SC_LOSS,
                            COptionWinnerTable::SC_VOLUME, -1};
const CColumnSet kPair = {COptionWinnerTable::PC_NAME_ONE,     COptionWinnerTable::PC_LAST_ONE,
                          COptionWinnerTable::PC_BS_ONE,       COptionWinnerTable::PC_QUANTITY_ONE,
                          COptionWinnerTable::PC_NAME_TWO,     COptionWinnerTable::PC_LAST_TWO,
                          COptionWinnerTable::PC_BS_TWO,       COptionWinnerTable::PC_QUANTITY_TWO,
                          COptionWinnerTable::PC_NET,          COptionWinnerTable::PC_PROFIT,
                          COptionWinnerTable::PC_LOSS,         COptionWinnerTable::PC_VOLUME_ONE,
                          COptionWinnerTable::PC_VOLUME_TWO};

const CColumnSet& columnsOf(int mode) { return mode < 2 ? kSingle : kPair; }

bool isBuy(int operation) { return nqservice::DataHelper::isBuy(static_cast<nqservice::EOperationType>(operation)); }

QString sideText(int operation) { return isBuy(operation) ? QStringLiteral("买") : QStringLiteral("卖"); }

const char* sideColorKey(int operation) { return isBuy(operation) ? "tc_clr_priceT_rise" : "tc_clr_priceT_fall"; }

}  // namespace

COptionWinnerTable::COptionWinnerTable(QWidget* parent) : WG::COddEvenRowTable(3, parent, WG::EBaseTableMenuFlags(511))
{
    setupColumns();
}

COptionWinnerTable::~COptionWinnerTable() = default;

void COptionWinnerTable::setupColumns()
{
    QStringList headers;
    if (mode < 2) {
        headers = QStringList{QStringLiteral("选择"), QStringLiteral("名称"), QStringLiteral("最新价"), QStringLiteral("买卖"),
                   QStringLiteral("数量"), QStringLiteral("权利金净值"), QStringLiteral("最大盈利"),
                   QStringLiteral("最大亏损"), QStringLiteral("成交量")};
        totalColumns = QSet<int>{SC_QUANTITY, SC_VOLUME};
        profitColumn = SC_PROFIT;
        lossColumn = SC_LOSS;
    } else {
        headers = QStringList{QStringLiteral("选择"), QStringLiteral("合约一名称"), QStringLiteral("合约一最新价"),
                   QStringLiteral("合约一买卖"), QStringLiteral("合约一数量"), QStringLiteral("合约二名称"),
                   QStringLiteral("合约二最新价"), QStringLiteral("合约二买卖"), QStringLiteral("合约二数量"),
                   QStringLiteral("权利金净值"), QStringLiteral("最大盈利"),   QStringLiteral("最大亏损"),
                   QStringLiteral("合约一成交量"), QStringLiteral("合约二成交量")};
        totalColumns = QSet<int>{PC_QUANTITY_ONE, PC_QUANTITY_TWO, PC_VOLUME_ONE, PC_VOLUME_TWO};
        profitColumn = PC_PROFIT;
        lossColumn = PC_LOSS;
    }
    clear();
    clearColumns();
    setColumnCount(headers.size());
    for (int column = 0; column < headers.size(); ++column) {
        setColumnHeader(column, headers.at(column));
    }
    setColumnAlignment(0, Qt::AlignHCenter | Qt::AlignVCenter);
    fitColumns();
}

void COptionWinnerTable::setMode(int forecast)
{
    mode = forecast;
    setupColumns();
}

void COptionWinnerTable::clear()
{
    rows.clear();
    rowByKey.clear();
    rowsByCode.clear();
    checked = -1;
    WG::COddEvenRowTable::clear();
}

int COptionWinnerTable::addRecord(const COptionWinnerTableDataPtr& record)
{
    if (!record) {
        return -1;
    }
    int row = rowByKey.value(record->rowKey, -1);
    const bool fresh = row < 0;
    if (fresh) {
        row = appendRow();
        rowByKey.insert(record->rowKey, row);
    }
    rows.insert(row, record);
    if (!record->codeOne.isEmpty()) {
        rowsByCode[record->codeOne].insert(row);
    }
    if (!record->codeTwo.isEmpty()) {
        rowsByCode[record->codeTwo].insert(row);
    }
    if (fresh) {
        auto* radio = new WG::CRadioButton(row, QString(), nullptr);
        radio->setParentDeliverer(this);
        setItemWidget(row, 0, radio, WG::AL_CENTER);  // 132
        if (row == 0) {
            setCheckedRow(0);
        }
    }
    applyColorKeys(row);
    updateRow(row);
    return row;
}

WG::CRadioButton* COptionWinnerTable::radioOf(int row) const
{
    return qobject_cast<WG::CRadioButton*>(itemWidget(row, 0));
}

void COptionWinnerTable::setCheckedRow(int row)
{
    if (WG::CRadioButton* before = checked >= 0 ? radioOf(checked) : nullptr) {
        const QSignalBlocker quiet(before);
        before->setChecked(false);
    }
    checked = rows.contains(row) ? row : -1;
    if (WG::CRadioButton* now = checked >= 0 ? radioOf(checked) : nullptr) {
        const QSignalBlocker quiet(now);
        now->setChecked(true);
    }
}

void COptionWinnerTable::fitColumns()
{
    adjustColumnWidth();
    const int money = WG::CSimpleText::getSize(QStringLiteral("-100,000.0000"), QStringLiteral("fnt_default_normal_fix")).width() + 12;
    const CColumnSet& set = columnsOf(mode);
    for (int column : {set.net, set.profit, set.loss}) {
        if (columnWidth(column) < money) {
            setColumnWidth(column, money);
        }
    }
}

void COptionWinnerTable::applyColorKeys(int row)
{
    const COptionWinnerTableDataPtr data = rows.value(row);
    if (!data) {
        return;
    }
    const CColumnSet& set = columnsOf(mode);
    for (int column : qAsConst(totalColumns)) {
        setItemTextColorKey(row, column, "tc_clr_priceT_total");
    }
    setItemTextColorKey(row, profitColumn, "tc_clr_priceT_rise");
    setItemTextColorKey(row, lossColumn, "tc_clr_priceT_fall");
    setItemTextColorKey(row, set.bsOne, sideColorKey(data->operationOne));
    setItemTextColorKey(row, set.lastOne, getStockColorKey(data->changeOne, 0.0));
    if (set.bsTwo >= 0) {
        setItemTextColorKey(row, set.bsTwo, sideColorKey(data->operationTwo));
        setItemTextColorKey(row, set.lastTwo, getStockColorKey(data->changeTwo, 0.0));
    }
}

void COptionWinnerTable::writeNumber(int row, int column, double value, int decimals, bool known)
{
    if (known) {
        setItemDouble(row, column, value, decimals, CWinnerCandidateBuilder::segmentedFlags());
    } else {
        setItemText(row, column, QString());
    }
}

void COptionWinnerTable::updateRow(int row)
{
    const COptionWinnerTableDataPtr data = rows.value(row);
    if (!data) {
        return;
    }
    const CColumnSet& set = columnsOf(mode);
    const WG::FormatFlags flags = CWinnerCandidateBuilder::segmentedFlags();
    // A leg without a usable last price has not been priced: its numbers stay empty.
    const bool pricedOne = utils::isUsable(data->lastOne);
    setItemText(row, set.nameOne, data->nameOne);
    writeNumber(row, set.lastOne, data->lastOne, 4, pricedOne);
    setItemText(row, set.bsOne, sideText(data->operationOne));
    setItemInt(row, set.quantityOne, data->quantityOne, flags);
    writeNumber(row, set.net, data->netPremium, 2, utils::isUsable(data->netPremium));
    setItemText(row, set.profit, data->maxProfitText);
    setItemText(row, set.loss, data->maxLossText);
    if (pricedOne) {
        setItemInt(row, set.volumeOne, data->volumeOne, flags);
    } else {
        setItemText(row, set.volumeOne, QString());
    }
    setItemTextColorKey(row, set.lastOne, getStockColorKey(data->changeOne, 0.0));
    if (set.nameTwo >= 0) {
        const bool pricedTwo = utils::isUsable(data->lastTwo);
        setItemText(row, set.nameTwo, data->nameTwo);
        writeNumber(row, set.lastTwo, data->lastTwo, 4, pricedTwo);
        setItemText(row, set.bsTwo, sideText(data->operationTwo));
        setItemInt(row, set.quantityTwo, data->quantityTwo, flags);
        if (pricedTwo) {
            setItemInt(row, set.volumeTwo, data->volumeTwo, flags);
        } else {
            setItemText(row, set.volumeTwo, QString());
        }
        setItemTextColorKey(row, set.lastTwo, getStockColorKey(data->changeTwo, 0.0));
    }
}

void COptionWinnerTable::themeChanged()
{
    WG::COddEvenRowTable::themeChanged();
    for (auto it = rows.constBegin(); it != rows.constEnd(); ++it) {
        applyColorKeys(it.key());
    }
}

bool COptionWinnerTable::handleEvent(int code, int id, int arg, QString text, void* data)
{
    if (code == WG::UE_CHECK_CLICKED) {
        // The radio buttons sit in cells of their own, so the table keeps them exclusive.
        setCheckedRow(id);
        deliverEvent(kRowChosenEvent, id, 0, QString(), nullptr);
        return true;
    }
    if (code == WG::UE_CHECK_TOGGLED) {
        return true;
    }
    return WG::COddEvenRowTable::handleEvent(code, id, arg, text, data);
}

}  // namespace TC
