#include "board/coptionpricettable.h"

#include "seam/cexchangeclient.h"
#include "seam/cinstrumentdetail.h"
#include "seam/cquoteclient.h"
#include "seam/formatters.h"
#include "seam/stockcolor.h"
#include "seam/uievents.h"
#include "seam/user.h"
#include "order/coptionorderdialog.h"
#include "order/coptionorderrules.h"
#include "order/corderformhelper.h"
#include "seam/logger.h"
#include "seam/trading.h"
#include "toolkit/cmessagebox.h"
#include "toolkit/cpushbutton.h"
#include "toolkit/ctablecellmodel.h"
#include "toolkit/ctablesortproxy.h"
#include "toolkit/cwidgetlist.h"

#include <QApplication>
#include <QCursor>
#include <QHeaderView>
#include <QScreen>
#include <QResizeEvent>
#include <QTableView>
#include <QScrollBar>
#include <QVariant>

#include <algorithm>
#include <iterator>

#include <boost/make_shared.hpp>
#include <fmt/format.h>

namespace TC {

namespace {

const char* const kButtonIdProperty = "optdeskButtonId";
const char* const kButtonColorProperty = "optdeskButtonColor";
const char* const kInTheMoneyKey = "tc_clr_priceT_actual_value_background";
const char* const kOutOfTheMoneyKey = "tc_clr_priceT_null_value_background";

CExchangeClient* exchange() { return utils::CManualSingletonT<CExchangeClient>::instance(); }
CQuoteClient* quotes() { return utils::CManualSingletonT<CQuoteClient>::instance(); }

// The number a strike text stands for, an adjusted contract's trailing "A" aside.
bool strikeValue(QString text, double& value)
{
    if (text.endsWith(QLatin1Char('A'))) {
        text.chop(1);
    }
    return WG::CTableSortProxy::parseNumber(text, value);
}

}  // namespace

COptionPriceTTable::COptionPriceTTable(QWidget* parent) : WG::COddEvenRowTable(1000, parent, WG::BTMF_ALL)
{
    writes.reserve(32);
    // Adjusted strikes ("2.8000A") sort among the plain ones by their number.
    proxy()->setCustomCompare(
        [this](int leftRow, int rightRow, int column) { return strikeCompare(leftRow, rightRow, column); });
    // A scroll of the trader's own ends the centring until the next set or underlying.
    connect(tableView()->horizontalScrollBar(), &QAbstractSlider::actionTriggered, this,
            [this](int) { strikeCentred = false; });
    // The view narrows when its vertical bar comes: the range changes, the middle moves.
    connect(tableView()->horizontalScrollBar(), &QAbstractSlider::rangeChanged, this,
            [this](int, int) { centreStrikeColumn(); });
    resetTable();
}

void COptionPriceTTable::centreStrikeColumn()
{
    if (!strikeCentred || strikeColumn < 0) {
        return;
    }
    QTableView* view = tableView();
    const QHeaderView* header = view->horizontalHeader();
    QScrollBar* bar = view->horizontalScrollBar();
    if (header->isSectionHidden(strikeColumn)) {
        return;
    }
    // Calls left, puts right: when the set is wider than the view, the strike
    // stands in the middle and both sides lose their outer columns alike.
    const int centre = header->sectionPosition(strikeColumn) + header->sectionSize(strikeColumn) / 2;
    const int value = std::clamp(centre - view->viewport()->width() / 2, bar->minimum(), bar->maximum());
    if (value != bar->value()) {
        bar->setValue(value);
    }
}

void COptionPriceTTable::resizeEvent(QResizeEvent* event)
{
    WG::COddEvenRowTable::resizeEvent(event);
    centreStrikeColumn();
}

COptionPriceTTable::~COptionPriceTTable() = default;

int COptionPriceTTable::strikeCompare(int leftRow, int rightRow, int column) const
{
    if (column != strikeColumn || strikeColumn < 0) {
        return 0;
    }
    double left = 0.0;
    double right = 0.0;
    if (!strikeValue(model()->cellText(leftRow, column), left) ||
        !strikeValue(model()->cellText(rightRow, column), right)) {
        return 0;
    }
    return left < right ? -1 : (right < left ? 1 : 0);
}

void COptionPriceTTable::setInstrument(QStringList codes)
{
    CExchangeClient* client = exchange();
    if (client == nullptr) {
        return;
    }
    for (const QString& code : codes) {
        const std::shared_ptr<nqservice::CInstrumentDetail> detail = client->getCodeInfo(code);
        if (!detail) {
            continue;
        }
        const bool adjusted = CPriceTRowBuilder::isAdjusted(*detail);
        const double strike = detail->getDoubleField(nqservice::IF_EXERCISE_PRICE);
        bool placed = false;
        for (auto row = rowCodes.begin(); row != rowCodes.end() && !placed; ++row) {
            if (row.value().contains(code)) {
                placed = true;
                break;
            }
            for (const QString& other : row.value()) {
                const std::shared_ptr<nqservice::CInstrumentDetail> otherDetail = client->getCodeInfo(other);
                if (!otherDetail) {
                    continue;
                }
                if (utils::isWithinTolerance(strike, otherDetail->getDoubleField(nqservice::IF_EXERCISE_PRICE)) &&
                    adjusted == CPriceTRowBuilder::isAdjusted(*otherDetail)) {
                    if (client->isCall(detail)) {
                        row.value().prepend(code);
                    } else {
                        row.value().append(code);
                    }
                    placed = true;
                    break;
                }
            }
        }
        if (!placed) {
            const int row = appendRow();
            rowCodes[row] = QStringList{code};
        }
    }
    rebuildCodeRows();
}

void COptionPriceTTable::rebuildCodeRows()
{
    codeRows.clear();
    for (auto row = rowCodes.constBegin(); row != rowCodes.constEnd(); ++row) {
        for (const QString& code : row.value()) {
            if (!codeRows.contains(code)) {
                codeRows.insert(code, row.key());  // the first row in ascending order wins
            }
        }
    }
}

void COptionPriceTTable::setTableType(TC::EPriceTTableType type)
{
    if (type == tableType) {
        return;
    }
    tableType = type;
    resetTable();
    updateAllTable();
}

void COptionPriceTTable::setTradeType(nqservice::EVqTraderType type)
{
    traderType = type;
    resetTable();
    updateAllTable();
}

void COptionPriceTTable::resetTable()
{
    layoutLoaded = false;
    strikeCentred = true;
    boldColumns.clear();
    flashColumns.clear();
    numberColumns.clear();
    totalColumns.clear();
    strikeColumn = -1;

    clearColumns();
    const QVector<CPriceTColumn>& set = CPriceTTableSchema::columns(tableType, traderType);
    const int strike = CPriceTTableSchema::strikeColumn(tableType, traderType);
    setColumnCount(set.size());
    for (const CPriceTColumn& column : set) {
        setColumnHeader(column.column, column.header);
        if (column.bold) {
            boldColumns.insert(column.column);
        }
        if (column.flash) {
            flashColumns.insert(column.column);
        }
        if (column.number) {
            numberColumns.insert(column.column);
        }
        if (column.total) {
            totalColumns.insert(column.column);
        }
        if (column.column == strike) {
            strikeColumn = strike;
        }
    }
    for (int viewColumn = 0; viewColumn < columnCount(); ++viewColumn) {
        const int column = columnID(viewColumn);
        setColumnBoldFont(column, boldColumns.contains(column));
        setColumnFlashChange(column, flashColumns.contains(column));
        setColumnVisible(column, true);
        setColListVisible(column, true);
    }

    CTradeSetting fallback;
    const CTradeSetting* setting = &fallback;
    if (CUserConfig* config = getUserConfig()) {
        if (const void* address = config->getUserDataAddress(UM_TRADE_SETTING)) {
            setting = static_cast<const CTradeSetting*>(address);
        }
    }
    if (!setting->autoImportExGreeks && tableType == PTT_RISK) {
        for (int column : CPriceTTableSchema::externalGreekColumns()) {
            setColumnVisible(column, false);
        }
    }
    adjustColumnWidth();
    fitButtonColumns();
}

void COptionPriceTTable::updateExGreeksData()
{
    if (tableType == PTT_RISK) {
        updateAllTable();
    }
}

void COptionPriceTTable::updateExGreeksVisible()
{
    const CUserConfig* config = getUserConfig();
    const void* address = config != nullptr ? config->getUserDataAddress(UM_TRADE_SETTING) : nullptr;
    if (address == nullptr || !static_cast<const CTradeSetting*>(address)->autoImportExGreeks || tableType != PTT_RISK) {
        return;
    }
    for (int column : CPriceTTableSchema::externalGreekColumns()) {
        setColumnVisible(column, true);
    }
}

void COptionPriceTTable::doClear()
{
    clear();
    rowCodes.clear();
    codeRows.clear();
}

QString COptionPriceTTable::getSelectStockCode(int row, int column)
{
    const int codeColumn = CPriceTTableSchema::selectCodeColumn(tableType, traderType, column);
    if (codeColumn < 0) {
        return QString();
    }
    return itemText(row, codeColumn);
}

WG::CWidgetList* COptionPriceTTable::createButton(int id, TC::ButtonColor color, QWidget* parent)
{
    if (id < 0) {
        return nullptr;
    }
    QString a;
    QString b;
    switch (color) {
    case BC_COVERED:
        a = QStringLiteral("clr_global_fall");
        b = QStringLiteral("clr_global_rise");
        break;
    case BC_BUY:
        a = QStringLiteral("clr_global_rise");
        b = a;
        break;
    case BC_SELL:
        a = QStringLiteral("clr_global_fall");
        b = a;
        break;
    default:
        break;
    }
    auto* list = new WG::CWidgetList(Qt::Horizontal, parent);
    list->setMargin(0, 0, 0, 0);
    list->setSpacing(0);
    list->setFixedWidth(50);
    // The toolkit's button draws an image as an icon beside its text, so the face
    // of "tc_img_btn_order_mode" is given as the theme's cell button colours.
    WG::CButtonColor face;
    face.normal = QStringLiteral("clr_table_button_background");
    face.hover = QStringLiteral("clr_button_hover");
    face.active = QStringLiteral("clr_button_checked");
    face.border = QStringLiteral("clr_table_button_border");
    auto* open = new WG::CPushButton(QString(), id, 1, 1, 24, 21, 0, list);
    open->setText(QStringLiteral("开"));
    open->setHorizontalText(true);
    open->setButtonColor(face);
    open->setTextColorKey(a, a, a, a);
    auto* close = new WG::CPushButton(QString(), id + 1, 1, 1, 24, 21, 0, list);
    close->setText(QStringLiteral("平"));
    close->setHorizontalText(true);
    close->setButtonColor(face);
    close->setTextColorKey(b, a, a, a);
    list->addFixedWidget(open, WG::WA_CENTER, false);
    list->addFixedWidget(close, WG::WA_CENTER, false);
    list->updateWidgetLength();
    list->setProperty(kButtonIdProperty, id);
    list->setProperty(kButtonColorProperty, static_cast<int>(color));
    ++buttonListsMadeCount;
    return list;
}

void COptionPriceTTable::placeButtons(int row, int column, int id, TC::ButtonColor color)
{
    // A fresh pair per update would show exactly what the cell shows already; keeping
    // it spares the widget churn of every tick and keeps a press under way alive.
    if (QWidget* present = itemWidget(row, column)) {
        if (present->property(kButtonIdProperty).toInt() == id &&
            present->property(kButtonColorProperty).toInt() == static_cast<int>(color)) {
            return;
        }
    }
    setItemWidget(row, column, createButton(id, color, this), WG::AL_CENTER, true);
}

void COptionPriceTTable::applyWrites(int row, const TPriceTCellWrites& cellWrites)
{
    for (const CPriceTCellWrite& write : cellWrites) {
        switch (write.kind) {
        case CPriceTCellWrite::CW_TEXT:
            setItemText(row, write.column, write.text, true);
            break;
        case CPriceTCellWrite::CW_DOUBLE:
            setItemDouble(row, write.column, write.value, write.decimals, write.flags, true);
            break;
        case CPriceTCellWrite::CW_INT:
            setItemInt(row, write.column, write.intValue, write.flags, write.intArg);
            break;
        case CPriceTCellWrite::CW_TEXT_COLOR:
            setItemTextColorKey(row, write.column, write.key, true);
            break;
        case CPriceTCellWrite::CW_BUTTONS:
            placeButtons(row, write.column, write.buttonId, static_cast<TC::ButtonColor>(write.buttonColor));
            break;
        case CPriceTCellWrite::CW_NET:
            // operator[] enters an empty sum for a new code: it counts 0.
            setItemInt(row, write.column, rowCode2Net[write.text].sum(), 0, true);
            break;
        }
    }
}

void COptionPriceTTable::updateRow(int row, const boost::shared_ptr<TC::CPriceData>& data, TC::EPriceTTableType set,
                                   RowBuilder build)
{
    // A row function writes only while its own column set is shown.
    if (!data || tableType != set) {
        return;
    }
    if (build(row, data, traderType, writes)) {
        applyWrites(row, writes);
    }
}

void COptionPriceTTable::updateQuoteTable(int row, boost::shared_ptr<TC::CPriceData> data)
{
    updateRow(row, data, PTT_QUOTE, &CPriceTRowBuilder::buildQuote);
}

void COptionPriceTTable::updateInfoTable(int row, boost::shared_ptr<TC::CPriceData> data)
{
    updateRow(row, data, PTT_INFO, &CPriceTRowBuilder::buildInfo);
}

void COptionPriceTTable::updatePriceTable(int row, boost::shared_ptr<TC::CPriceData> data)
{
    updateRow(row, data, PTT_PRICE, &CPriceTRowBuilder::buildPrice);
}

void COptionPriceTTable::updateRiskTable(int row, boost::shared_ptr<TC::CPriceData> data)
{
    updateRow(row, data, PTT_RISK, &CPriceTRowBuilder::buildRisk);
}

void COptionPriceTTable::updateTargetTable(int row, boost::shared_ptr<TC::CPriceData> data)
{
    updateRow(row, data, PTT_TARGET, &CPriceTRowBuilder::buildTarget);
}

double COptionPriceTTable::calcForecastMargin(const std::shared_ptr<nqservice::CInstrumentDetail>& option)
{
    return CPriceTRowBuilder::calcForecastMargin(option);
}

void COptionPriceTTable::updateTableByPrice(boost::shared_ptr<TC::CPriceData> data)
{
    if (!data) {
        return;
    }
    CExchangeClient* client = exchange();
    if (client == nullptr) {
        return;
    }
    const QString code = WG::sToQs(utils::vqStockKey(data->market, data->code));
    if (!client->getCodeInfo(code)) {
        return;
    }
    const int row = codeRows.value(code, -1);
    if (row < 0) {
        return;
    }
    rowsWritten = true;
    switch (tableType) {
    case PTT_QUOTE:
        updateQuoteTable(row, data);
        break;
    case PTT_INFO:
        updateInfoTable(row, data);
        break;
    case PTT_PRICE:
        updatePriceTable(row, data);
        break;
    case PTT_RISK:
        updateRiskTable(row, data);
        break;
    case PTT_TARGET:
        updateTargetTable(row, data);
        break;
    default:
        break;
    }
}

void COptionPriceTTable::updateAllTable()
{
    setRowCount(rowCodes.size());
    CExchangeClient* client = exchange();
    CQuoteClient* quoteClient = quotes();
    if (client != nullptr && quoteClient != nullptr) {
        for (auto row = rowCodes.constBegin(); row != rowCodes.constEnd(); ++row) {
            for (const QString& code : row.value()) {
                const boost::shared_ptr<CPriceData> data = quoteClient->getStockPrice(code);
                const std::shared_ptr<nqservice::CInstrumentDetail> detail = client->getCodeInfo(code);
                if (!data || !detail) {
                    continue;
                }
                switch (tableType) {
                case PTT_QUOTE:
                    updateQuoteTable(row.key(), data);
                    break;
                case PTT_INFO:
                    updateInfoTable(row.key(), data);
                    break;
                case PTT_PRICE:
                    updatePriceTable(row.key(), data);
                    break;
                case PTT_RISK:
                    updateRiskTable(row.key(), data);
                    break;
                case PTT_TARGET:
                    updateTargetTable(row.key(), data);
                    break;
                default:
                    break;
                }
                resetBackgroundColor(row.key(), detail);
            }
            resetFrontgroundColor(row.key());
        }
    }
    // The literal strike columns of the sets: 16, 14, 15, 19, 13, 4.
    const int sortColumn = CPriceTTableSchema::strikeColumn(tableType, traderType);
    if (sortColumn >= 0) {
        sortByColumn(sortColumn, WG::TSO_ASCENDING);
    }
    applyTraderTypeHiding();
    // Widths follow the content until a saved layout gives them.
    if (!layoutLoaded && !rowCodes.isEmpty()) {
        adjustColumnWidth();
        fitButtonColumns();
    }
    // Quotes that come after the refresh may be wider than what it found.
    contentFitsLeft = 3;
    rowsWritten = false;
    QWidget::update();
}

void COptionPriceTTable::updateTable()
{
    WG::COddEvenRowTable::updateTable();
    if (rowsWritten && contentFitsLeft > 0) {
        --contentFitsLeft;
        if (!layoutLoaded) {
            adjustColumnWidth();
            fitButtonColumns();
        }
    }
    rowsWritten = false;
    // Widths and the view's size settle over the first ticks; the strike follows them.
    centreStrikeColumn();
}

void COptionPriceTTable::fitButtonColumns()
{
    // Text widths know nothing of the cells' button pairs; give those columns room for them.
    const int needed = 54;
    for (const CPriceTColumn& column : CPriceTTableSchema::columns(tableType, traderType)) {
        if (column.header == QStringLiteral("备兑") || column.header == QStringLiteral("卖出") ||
            column.header == QStringLiteral("买入")) {
            if (columnWidth(column.column) < needed) {
                setColumnWidth(column.column, needed);
            }
        }
    }
}

void COptionPriceTTable::loadConfigStr(QString config)
{
    // A layout of the other trader type is not ours to apply: the table keeps its own.
    if (!CPriceTTableSchema::layoutBelongsTo(config, traderType)) {
        return;
    }
    WG::COddEvenRowTable::loadConfigStr(config);
    layoutLoaded = true;
}

void COptionPriceTTable::applyTraderTypeHiding()
{
    bool fromList = false;
    const QVector<int> hidden = CPriceTTableSchema::hiddenColumns(tableType, traderType, fromList);
    for (int column : hidden) {
        if (fromList) {
            setColListVisible(column, false);
        }
        setColumnVisible(column, false);
    }
}

void COptionPriceTTable::resetBackgroundColor(int row, const std::shared_ptr<nqservice::CInstrumentDetail>& detail)
{
    CExchangeClient* client = exchange();
    CQuoteClient* quoteClient = quotes();
    if (!detail || client == nullptr || quoteClient == nullptr) {
        return;
    }
    const QString undlKey = WG::sToQs(utils::vqStockKey(detail->getTextField(nqservice::IF_UNDERLYING_MARKET),
                                                        detail->getTextField(nqservice::IF_UNDERLYING_CODE)));
    const boost::shared_ptr<CPriceData> undl = quoteClient->getStockPrice(undlKey);
    if (!undl) {
        return;
    }
    const double S = undl->lastPrice;
    const double K = detail->getDoubleField(nqservice::IF_EXERCISE_PRICE);
    int first = 0;
    int last = -1;
    const char* key = kOutOfTheMoneyKey;
    if (client->isCall(detail)) {
        // An absent last price is the largest double: a call then shades as in the money.
        if (K - S < -utils::kPriceTolerance) {
            key = kInTheMoneyKey;
        }
        CPriceTTableSchema::leftBlock(tableType, traderType, first, last);
    } else {
        if (K - S > utils::kPriceTolerance) {
            key = kInTheMoneyKey;
        }
        CPriceTTableSchema::rightBlock(tableType, traderType, first, last);
    }
    for (int column = first; column <= last; ++column) {
        setItemBackgroundColorKey(row, column, key, true);
    }
}

void COptionPriceTTable::resetFrontgroundColor(int row)
{
    for (int column : numberColumns) {
        setItemTextColorKey(row, column, "tc_clr_priceT_number", true);
    }
    for (int column : totalColumns) {
        setItemTextColorKey(row, column, "tc_clr_priceT_total", true);
    }
    if (strikeColumn >= 0) {
        setItemTextColorKey(row, strikeColumn, "tc_clr_pricet_exercise_price", true);
    }
}

void COptionPriceTTable::themeChanged()
{
    WG::COddEvenRowTable::themeChanged();
    CExchangeClient* client = exchange();
    CQuoteClient* quoteClient = quotes();
    if (client == nullptr || quoteClient == nullptr) {
        return;
    }
    for (auto row = rowCodes.constBegin(); row != rowCodes.constEnd(); ++row) {
        for (const QString& code : row.value()) {
            const boost::shared_ptr<CPriceData> data = quoteClient->getStockPrice(code);
            const std::shared_ptr<nqservice::CInstrumentDetail> detail = client->getCodeInfo(code);
            if (!data || !detail) {
                continue;
            }
            const CPriceTSideColours colours =
                CPriceTTableSchema::themeColours(tableType, traderType, client->isCall(detail));
            if (colours.bidColumn >= 0) {
                setItemTextColorKey(row.key(), colours.bidColumn, getStockColorKey(data->bidPrice1, data->preClose),
                                    true);
            }
            if (colours.askColumn >= 0) {
                setItemTextColorKey(row.key(), colours.askColumn, getStockColorKey(data->askPrice1, data->preClose),
                                    true);
            }
            const char* rise = getStockColorKey(data->changeAmount, 0);
            for (int column : colours.riseColumns) {
                setItemTextColorKey(row.key(), column, rise, true);
            }
            resetBackgroundColor(row.key(), detail);
        }
        resetFrontgroundColor(row.key());
    }
}

bool COptionPriceTTable::handleEvent(int code, int id, int arg, QString text, void* data)
{
    // The clicks of the cells' order buttons belong to the table: their ids
    // (row * 100 + operationIndex) must not reach the panel, whose own buttons
    // use small ids too.
    if (code == WG::UE_BUTTON_CLICKED) {
        lastOrderButtonId = id;
        openOrderDialog(id);
        return true;
    }
    return WG::COddEvenRowTable::handleEvent(code, id, arg, text, data);
}

void COptionPriceTTable::openOrderDialog(int id)
{
    if (orderDialog == nullptr) {
        orderDialog = new COptionOrderDialog(this);
    }
    CUserConfig* config = getUserConfig();
    if (config == nullptr) {
        return;
    }
    const int role = config->getUserDataInt(UM_USER_ROLE);
    if (role == 200 || role == 102) {
        return;
    }
    const auto* accounts =
        static_cast<const QVector<boost::shared_ptr<CAccount>>*>(config->getUserDataAddress(UM_ACCOUNT_LIST));
    if (accounts == nullptr || accounts->isEmpty()) {
        return;
    }
    QScreen* screen = this->screen();
    const QRect available = screen != nullptr ? screen->availableGeometry() : QRect(0, 0, 1920, 1080);
    orderDialog->setViewInfo(id, rowCodes, traderType, defaultAccount.toStdString());
    orderDialog->adjustSize();
    QPoint point = QCursor::pos();
    if (orderDialog->width() + point.x() > available.x() + available.width()) {
        point.rx() -= orderDialog->width();
    }
    if (orderDialog->height() + point.y() > available.y() + available.height()) {
        point.ry() -= orderDialog->height();
    }
    // The dialog is a window of its own: global coordinates are its place.
    orderDialog->move(point);
    orderDialog->show();
    orderDialog->raise();
}

void COptionPriceTTable::slotDoOperation()
{
    if (orderDialog != nullptr) {
        order = orderDialog->getResult();
    }
    orderDialog = nullptr;  // it deletes itself on close
    if (!order.stockCode.isEmpty()) {
        doOperation();
    }
}

void COptionPriceTTable::slotSetDefaultAccount(QString accountKey) { defaultAccount = accountKey; }

void COptionPriceTTable::updateRowCode2NetMap(const QString& code, const std::string& recordKey, int net)
{
    rowCode2Net[code].update(utils::hash(recordKey), net);
}

void COptionPriceTTable::updatePositionStatics(const QString& code, const std::string& recordKey, int net)
{
    updateRowCode2NetMap(code, recordKey, net);
    int row = -1;
    for (auto it = rowCodes.constBegin(); it != rowCodes.constEnd(); ++it) {
        if (it.value().contains(code)) {
            row = it.key();
            break;
        }
    }
    CExchangeClient* client = exchange();
    const std::shared_ptr<nqservice::CInstrumentDetail> detail =
        client != nullptr ? client->getCodeInfo(code) : nullptr;
    if (row < 0 || !detail) {
        return;
    }
    const bool call = detail->call;
    int column = -1;
    switch (tableType) {
    case PTT_QUOTE:
        column = traderType == nqservice::VQ_TRADER_TYPE_STOCK_OPTION ? (call ? 14 : 18) : (call ? 12 : 16);
        break;
    case PTT_TARGET:
        column = call ? 14 : 16;
        break;
    case PTT_RISK:
        column = call ? 18 : 20;
        break;
    case PTT_INFO:
        column = call ? 12 : 14;
        break;
    default:
        return;  // the price set has no such cell: the net shows when the set changes
    }
    setItemInt(row, column, rowCode2Net[code].sum(), 0, true);
}

void COptionPriceTTable::updateOrderAccounts()
{
    if (orderDialog != nullptr) {
        orderDialog->loadAccounts(traderType, defaultAccount.toStdString());
    }
}

void COptionPriceTTable::doOperation()
{
    std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>> params;
    QString error;
    QString remark;
    if (!fillStockParams(params, order, error, remark)) {
        if (CMsgService* messages = utils::CManualSingletonT<CMsgService>::instance()) {
            messages->showQsMsg(error, static_cast<EMsgTypeDef>(4), static_cast<nqservice::MsgLevel>(1), false, false);
        }
        return;
    }
    std::map<std::string, double> weights;
    weights[order.accountKey.toStdString()] = 1.0;
    CUserConfig* config = getUserConfig();
    const int role = config != nullptr ? config->getUserDataInt(UM_USER_ROLE) : 0;
    static const int kSendingRoles[] = {90, 91, 101, 100, 400, 80};
    if (std::find(std::begin(kSendingRoles), std::end(kSendingRoles), role) == std::end(kSendingRoles)) {
        return;
    }
    utils::writeLog(utils::kLogLevelInfo, fmt::format("{0}", static_cast<const void*>(this)),
                    "TC::COptionPriceTTable::doOperation", "placeCommands: [manual] option speculation.");
    if (traderType != nqservice::VQ_TRADER_TYPE_STOCK_OPTION && traderType != nqservice::VQ_TRADER_TYPE_FUTURE_OPTION) {
        return;
    }
    COvCommandCenter* commands = utils::CManualSingletonT<COvCommandCenter>::instance();
    if (commands == nullptr) {
        return;
    }
    commands->createCommand(traderType, static_cast<nqservice::EVqHedgeType>(0), params, weights,
                            static_cast<nqservice::EVqStopLossType>(0), false, true, COvCommandCenter::CommandCallback(),
                            bson::BSONObj(), "", static_cast<nqservice::ETradePlatform>(0), bson::BSONObj(),
                            static_cast<nqservice::EVqLimitedPriceType>(0), bson::BSONObj(), remark, false,
                            bson::BSONObj(), 0, static_cast<nqservice::EtfHedgeStatus>(-1), bson::BSONObj(),
                            bson::BSONObj());
}

bool COptionPriceTTable::fillStockParams(std::vector<boost::shared_ptr<nqservice::CCodeOrderParam>>& params,
                                         const orderValue& value, QString& error, QString&)
{
    // Kept as the system has it: no trader type that reaches here is 3001, so a zero price passes.
    if (!(value.price > utils::kPriceTolerance) && value.priceType != 12 && static_cast<int>(traderType) == 3001 &&
        !nqservice::isMarketPrice(value.priceType)) {
        error = QStringLiteral("委托价 ") + QString::number(value.price, 'g', 6) + QStringLiteral(" 错误, 无法下单");
        return false;
    }
    params.clear();
    CExchangeClient* client = exchange();
    const std::shared_ptr<nqservice::CInstrumentDetail> detail =
        client != nullptr ? client->getCodeInfo(value.stockCode) : nullptr;
    nqservice::CStockInfo stockInfo;
    if (detail) {
        stockInfo.market = detail->market;
        stockInfo.code = detail->code;
        stockInfo.textField2 = detail->getTextField(2);
        stockInfo.name = detail->name;
    }
    CUserConfig* config = getUserConfig();
    std::vector<boost::shared_ptr<nqservice::CAccountInfo>> accounts;
    const boost::shared_ptr<CAccount> account =
        config != nullptr ? config->getAccountData(value.accountKey) : boost::shared_ptr<CAccount>();
    accounts.push_back(account ? account->toInfo() : boost::shared_ptr<nqservice::CAccountInfo>());
    const std::vector<double> weights{1.0};
    auto splitError = boost::make_shared<utils::NQError>();
    std::vector<long long> volumes;
    if (CTradeClient* trade = utils::CManualSingletonT<CTradeClient>::instance()) {
        volumes = trade->splitEntrusts(value.volume, value.price, value.priceType, accounts, weights,
                                       static_cast<nqservice::EPositionType>(1), stockInfo.market, stockInfo.code,
                                       value.operationType, static_cast<nqservice::EHedge_Flag_Type>(49), splitError,
                                       false, true);
    }
    auto param = boost::make_shared<nqservice::CCodeOrderParam>();
    param->operationType = value.operationType;
    param->userName = config != nullptr ? config->getUserDataString(UM_USER_NAME).toStdString() : std::string();
    param->hedgeFlag = static_cast<nqservice::EHedge_Flag_Type>(49);
    param->orderKind = 5;
    param->stockInfo = stockInfo;
    param->account = accounts.front();
    param->price = value.price;
    param->priceType = value.priceType;
    if (!volumes.empty()) {
        param->volume = volumes.front();
    }
    if (!detail) {
        error = QStringLiteral("合约 ") + value.stockCode + QStringLiteral(" 错误, 无法下单");
        return false;
    }
    if (!COrderFormHelper::checkOrderLimit(*detail, param->volume, value.priceType, error)) {
        return false;
    }
    params.push_back(param);
    return true;
}

}  // namespace TC
