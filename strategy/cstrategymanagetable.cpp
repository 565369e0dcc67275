#include "strategy/cstrategymanagetable.h"

#include "seam/cexchangeclient.h"
#include "seam/cquoteclient.h"
#include "seam/formatters.h"
#include "seam/tradinghelpers.h"
#include "seam/uievents.h"
#include "seam/user.h"
#include "strategy/cstrategybaskets.h"
#include "strategy/cstrategylegfigures.h"
#include "strategy/cstrategystatistics.h"
#include "toolkit/cbasetablecolumncheckboxdelegate.h"
#include "toolkit/cbasetablecolumnpushbuttondelegate.h"
#include "toolkit/cdoublevalidator.h"
#include "toolkit/clineedit.h"
#include "toolkit/tableenums.h"

#include <QKeyEvent>
#include <QMetaObject>
#include <QSet>

#include <mutex>

namespace TC {

namespace {

const QString kInvalidText = QStringLiteral("非法值");

// The live tables of the process and their lock: a quote callback may outlive its table.
std::recursive_mutex& liveMutex()
{
    static std::recursive_mutex mutex;
    return mutex;
}

QSet<const CStrategyManageTable*>& liveTables()
{
    static QSet<const CStrategyManageTable*> tables;
    return tables;
}

CExchangeClient* exchange() { return utils::CManualSingletonT<CExchangeClient>::instance(); }

std::shared_ptr<nqservice::CInstrumentDetail> instrumentOf(const QString& key)
{
    CExchangeClient* client = exchange();
    return client != nullptr ? client->getCodeInfo(key) : nullptr;
}

std::shared_ptr<nqservice::CInstrumentDetail> instrumentOf(const std::string& market, const std::string& code)
{
    return instrumentOf(QString::fromStdString(utils::vqStockKey(market, code)));
}

}  // namespace

CStrategyManageTable::CStrategyManageTable(int extra, QWidget* parent)
    : WG::COddEvenRowTable(0, parent, WG::EBaseTableMenuFlags(511)), m_extra(extra)
{
    setObjectName(QStringLiteral("strategyManageTable"));
    createColumns();
    std::lock_guard<std::recursive_mutex> lock(liveMutex());
    liveTables().insert(this);
}

CStrategyManageTable::~CStrategyManageTable()
{
    {
        std::lock_guard<std::recursive_mutex> lock(liveMutex());
        liveTables().remove(this);
    }
    // Dropped outside the lock: a callback in flight takes it and is waited for.
    m_rowByKey.clear();
    m_quoteRequests.clear();
}

bool CStrategyManageTable::isLive(const CStrategyManageTable* table)
{
    std::lock_guard<std::recursive_mutex> lock(liveMutex());
    return liveTables().contains(table);
}

int CStrategyManageTable::liveCount()
{
    std::lock_guard<std::recursive_mutex> lock(liveMutex());
    return liveTables().size();
}

void CStrategyManageTable::createColumns()
{
    static const char* const headers[COL_COUNT] = {"选择", "代码", "名称", "类别", "方向", "相对权重",
                                                   "绝对权重", "数量", "最新价", "成交量", "保证金", "delta",
                                                   "gamma", "theta", "vega", "rho"};
    for (int column = 0; column < COL_COUNT; ++column) {
        addColumn();
        setColumnHeader(column, QString::fromUtf8(headers[column]));
    }
    m_check = new WG::CBaseTableColumnCheckBoxDelegate(COL_CHECK, nullptr);
    setColumnDelegate(COL_CHECK, m_check);
    m_direction = new WG::CBaseTableColumnPushButtonDelegate(COL_DIRECTION, nullptr);
    m_direction->setTextColor(QStringLiteral("clr_global_white"));
    setColumnDelegate(COL_DIRECTION, m_direction);

    auto* weightEdit = new WG::CLineEdit(COL_WEIGHT, this);
    weightEdit->setValidator(new WG::CDoubleValidator(0.0, 100.0, 3, weightEdit));
    setColumnEditor(COL_WEIGHT, weightEdit);
    setColumnEditable(COL_WEIGHT, true);
    auto* quantityEdit = new WG::CLineEdit(COL_QUANTITY, this);
    quantityEdit->setValidator(new WG::CDoubleValidator(0.0, 1e9, 0, quantityEdit));
    setColumnEditor(COL_QUANTITY, quantityEdit);
    setColumnEditable(COL_QUANTITY, true);
}

bool CStrategyManageTable::basketHasLegs() const
{
    const TStrategyMap baskets = CStrategyBaskets::copy();
    auto it = baskets.constFind(m_currentBasket);
    return it != baskets.constEnd() && !it->legs.isEmpty();
}

bool CStrategyManageTable::modifyBasket(const std::function<void(CStrategySetting&)>& change)
{
    TStrategyMap baskets = CStrategyBaskets::copy();
    auto it = baskets.find(m_currentBasket);
    if (it == baskets.end()) {
        return false;
    }
    if (change) {
        change(*it);
    }
    return CStrategyBaskets::write(baskets);
}

void CStrategyManageTable::setDirectionButton(int row, nqservice::EOperationType operation)
{
    const nqservice::EOperationType side = getBuyOrSellType(operation);
    m_direction->setItemEnabled(key(row), true);
    m_direction->setItemVisible(key(row), true);
    m_direction->setItemText(key(row), QString::fromStdString(operationToString(side)));
    m_direction->setItemType(key(row), side == nqservice::OT_BUY ? WG::NBT_PRIMARY : WG::NBT_CRITICAL);
}

void CStrategyManageTable::fillRow(int row, const CStrategyStockData& leg, bool tellPanel)
{
    m_check->setItemVisible(key(row), true);
    m_check->setItemEnabled(key(row), true);
    m_check->setItemChecked(key(row), leg.checked, false);
    if (tellPanel) {
        tell(UE_LEG_SELECTED, leg.checked ? 2 : 0, leg.code);
    }
    setItemText(row, COL_CODE, leg.code);
    setItemText(row, COL_NAME, leg.name);
    setItemText(row, COL_KIND, CStrategyLegFigures::isCallByName(leg.name) ? QStringLiteral("认购")
                                                                             : QStringLiteral("认沽"));
    setItemText(row, COL_DIRECTION, QString::fromStdString(nqservice::operationValueToString(leg.operation)));
    if (tellPanel) {
        tell(UE_LEG_BS_CHANGED, getBuyOrSellType(leg.operation), leg.code);
    }
    setItemDouble(row, COL_WEIGHT, leg.weight, 3);
    setItemLongLong(row, COL_QUANTITY, leg.quantity);
    setDirectionButton(row, leg.operation);
    m_rowByKey.insert(CStrategyBaskets::legKey(leg), row);
}

void CStrategyManageTable::subscribe(const QString& stockKey)
{
    auto request = CQuoteRequest::makeRequest(
        stockKey, [this](boost::shared_ptr<CPriceData>& price) { onQuote(price); }, ST_DEFAULT);
    // Replacing an entry drops the old subscription here, outside any lock.
    m_quoteRequests.insert(stockKey, request);
}

void CStrategyManageTable::addKey(const QString& stockKey)
{
    if (!CStrategyBaskets::contains(m_currentBasket)) {
        return;
    }
    const auto instrument = instrumentOf(stockKey);
    if (!instrument || instrument->code.empty()) {
        return;
    }
    CStrategyStockData leg;
    leg.code = QString::fromStdString(instrument->code);
    leg.name = QString::fromStdString(instrument->name);
    leg.market = QString::fromStdString(instrument->market);
    leg.weight = 0.0;
    leg.quantity = 0;
    bool duplicate = false;
    modifyBasket([&](CStrategySetting& basket) {
        duplicate = CStrategyBaskets::hasKey(basket, CStrategyBaskets::legKey(leg));
        if (!duplicate) {
            basket.addLeg(leg);
        }
    });
    if (duplicate) {
        return;
    }
    const int row = appendRow();
    fillRow(row, leg, false);
    updateAbsoluteWeights();
    updateStatistics();
    adjustColumnWidth();
    if (CQuoteClient* quotes = utils::CManualSingletonT<CQuoteClient>::instance()) {
        if (const auto price = quotes->getStockPrice(stockKey)) {
            applyQuote(*price, true);
        }
    }
    subscribe(stockKey);
    tell(UE_LEGS_CHANGED, 0, QString());
}

void CStrategyManageTable::loadBasket(const QString& name)
{
    m_rowByKey.clear();
    clear();
    const TStrategyMap baskets = CStrategyBaskets::copy();
    auto it = baskets.constFind(name);
    if (it == baskets.constEnd()) {
        m_currentBasket.clear();
        return;
    }
    m_currentBasket = name;
    const CStrategySetting& basket = *it;
    if (!basket.legs.isEmpty()) {
        setRowCount(basket.legs.size());
        CQuoteClient* quotes = utils::CManualSingletonT<CQuoteClient>::instance();
        for (int row = 0; row < basket.legs.size(); ++row) {
            const CStrategyStockData* leg = basket.legs.at(row);
            if (leg == nullptr) {
                continue;
            }
            fillRow(row, *leg, true);
            const QString stockKey = CStrategyBaskets::legKey(*leg);
            if (quotes != nullptr) {
                if (const auto price = quotes->getStockPrice(stockKey)) {
                    applyQuote(*price, true);
                }
            }
            subscribe(stockKey);
        }
    }
    updateAbsoluteWeights();
    updateStatistics();
    adjustColumnWidth();
}

void CStrategyManageTable::clear()
{
    WG::COddEvenRowTable::clear();
    for (int column = 0; column < COL_COUNT; ++column) {
        setStatText(column, QString());
    }
}

void CStrategyManageTable::updateAbsoluteWeights()
{
    if (!basketHasLegs()) {
        return;
    }
    QVector<double> weights;
    for (int row = 0; row < rowCount(); ++row) {
        weights.push_back(itemDouble(row, COL_WEIGHT));
    }
    const QVector<double> shares = CStrategyStatistics::absoluteWeights(weights);
    for (int row = 0; row < shares.size(); ++row) {
        setItemDouble(row, COL_ABS_WEIGHT, shares.at(row), 2, utils::FNF_PERCENT);
    }
}

void CStrategyManageTable::updateStatistics()
{
    QVector<CStrategyRowValues> rows;
    rows.reserve(rowCount());
    for (int row = 0; row < rowCount(); ++row) {
        CStrategyRowValues values;
        values.quantity = itemInt(row, COL_QUANTITY);
        values.volume = itemInt(row, COL_VOLUME);
        values.margin = itemDouble(row, COL_MARGIN);
        values.weight = itemDouble(row, COL_WEIGHT);
        for (int i = 0; i < 5; ++i) {
            values.greeks[i] = itemDouble(row, COL_DELTA + i);
        }
        rows.push_back(values);
    }
    const CStrategyStatRow stat = CStrategyStatistics::sum(rows);
    const auto number = [](double value, int decimals) {
        return WG::formatDoubleNumber(value, decimals, WG::FormatFlags(), false, kInvalidText);
    };
    setStatText(COL_QUANTITY, WG::formatIntNumber(stat.quantity, 0));
    setStatText(COL_VOLUME, WG::formatIntNumber(stat.volume, 0));
    setStatText(COL_MARGIN, number(stat.margin, 4));
    setStatText(COL_WEIGHT, number(stat.weight, 3));
    for (int i = 0; i < 5; ++i) {
        setStatText(COL_DELTA + i, number(stat.greeks[i], 4));
    }
}

void CStrategyManageTable::updateRowFigures(int row, const std::shared_ptr<nqservice::CInstrumentDetail>& instrument,
                                            int benchmark, double optionLastPrice)
{
    const double marginParameter = instrument->getDoubleField(nqservice::IF_MARGIN_PARAMETER);
    setItemDouble(row, COL_MARGIN, CStrategyStatistics::legMargin(marginParameter, itemInt(row, COL_QUANTITY)), 4);
    const CStrategyLegGreeks greeks =
        CStrategyLegFigures::compute(CStrategyLegFigures::inputFor(instrument, optionLastPrice, benchmark));
    if (!greeks.valid) {
        return;
    }
    for (int i = 0; i < 5; ++i) {
        setItemDouble(row, COL_DELTA + i, greeks.values[i], 4);
    }
}

std::shared_ptr<nqservice::CInstrumentDetail> CStrategyManageTable::instrumentOfRow(int row) const
{
    // Column 1 holds the code alone; the leg of that code knows its market.
    const TStrategyMap baskets = CStrategyBaskets::copy();
    auto it = baskets.constFind(m_currentBasket);
    const QString code = const_cast<CStrategyManageTable*>(this)->itemText(row, COL_CODE);
    if (it != baskets.constEnd()) {
        if (const CStrategyStockData* leg = CStrategyBaskets::findLegByCode(*it, code)) {
            return instrumentOf(CStrategyBaskets::legKey(*leg));
        }
    }
    return nullptr;
}

void CStrategyManageTable::updateGreek()
{
    CUserConfig* config = getUserConfig();
    const int benchmark = config != nullptr ? config->getUserDataInt(UM_GREEK_BENCHMARK) : 0;
    for (int row = 0; row < rowCount(); ++row) {
        const auto instrument = instrumentOfRow(row);
        if (instrument) {
            updateRowFigures(row, instrument, benchmark, utils::kAbsentDouble);
        }
    }
}

void CStrategyManageTable::applyQuote(const CPriceData& price, bool statistics)
{
    const QString code = QString::fromStdString(price.code);
    std::shared_ptr<nqservice::CInstrumentDetail> instrument;
    bool looked = false;
    for (int row = 0; row < rowCount(); ++row) {
        if (itemText(row, COL_CODE) != code) {
            continue;
        }
        setItemDouble(row, COL_LAST, price.lastPrice, 4);
        setItemDouble(row, COL_VOLUME, static_cast<double>(price.volume), 0);
        if (!looked) {
            instrument = instrumentOf(price.market, price.code);
            looked = true;
        }
        if (instrument) {
            // The quote path always reckons per one per cent (benchmark 1).
            updateRowFigures(row, instrument, 1, price.lastPrice);
        }
    }
    if (statistics) {
        updateStatistics();
    }
}

void CStrategyManageTable::onQuote(const boost::shared_ptr<CPriceData>& price)
{
    if (!price) {
        return;
    }
    std::lock_guard<std::recursive_mutex> lock(liveMutex());
    if (!liveTables().contains(this)) {
        return;
    }
    if (m_pending.store(price)) {
        QMetaObject::invokeMethod(this, "applyPendingQuotes", Qt::QueuedConnection);
    }
}

void CStrategyManageTable::applyPendingQuotes()
{
    const CStrategyQuoteBuffer::TPending pending = m_pending.take();
    if (pending.isEmpty()) {
        return;
    }
    for (const auto& price : pending) {
        if (price) {
            applyQuote(*price, false);
        }
    }
    updateStatistics();
}

void CStrategyManageTable::deleteChecked()
{
    for (int row = 0; row < rowCount(); ++row) {
        if (!m_check->itemChecked(key(row))) {
            continue;
        }
        const QString code = itemText(row, COL_CODE);
        removeRow(row);
        QString market;
        modifyBasket([&](CStrategySetting& basket) {
            for (int i = 0; i < basket.legs.size(); ++i) {
                CStrategyStockData* leg = basket.legs.at(i);
                if (leg != nullptr && leg->code == code) {
                    market = leg->market;
                    delete basket.legs.takeAt(i);
                    break;
                }
            }
        });
        const QString stockKey = QString::fromStdString(utils::vqStockKey(market.toStdString(), code.toStdString()));
        m_rowByKey.remove(stockKey);
        // Later rows moved up by one.
        for (auto it = m_rowByKey.begin(); it != m_rowByKey.end(); ++it) {
            if (it.value() > row) {
                --it.value();
            }
        }
        updateAbsoluteWeights();
        updateStatistics();
        tell(UE_LEG_SELECTED, 0, stockKey);
        --row;  // the next row took this place
    }
    modifyBasket(nullptr);
    tell(UE_LEGS_CHANGED, 0, QString());
}

void CStrategyManageTable::checkAll()
{
    for (int row = 0; row < rowCount(); ++row) {
        if (!m_check->itemChecked(key(row))) {
            // With notification: the tick arrives as event 232, which the curve hears of.
            m_check->setItemChecked(key(row), true, true);
        }
    }
    modifyBasket([this](CStrategySetting& basket) {
        for (int row = 0; row < rowCount(); ++row) {
            if (CStrategyStockData* leg = CStrategyBaskets::findLegByCode(basket, itemText(row, COL_CODE))) {
                leg->checked = true;
            }
        }
    });
}

void CStrategyManageTable::invertChecked()
{
    for (int row = 0; row < rowCount(); ++row) {
        m_check->setItemChecked(key(row), !m_check->itemChecked(key(row)), true);
    }
    modifyBasket([this](CStrategySetting& basket) {
        for (int row = 0; row < rowCount(); ++row) {
            if (CStrategyStockData* leg = CStrategyBaskets::findLegByCode(basket, itemText(row, COL_CODE))) {
                leg->checked = m_check->itemChecked(key(row));
            }
        }
    });
}

void CStrategyManageTable::getCheckedLegs(QList<CStrategyStockData*>& out) const
{
    out.clear();
    const TStrategyMap baskets = CStrategyBaskets::copy();
    auto it = baskets.constFind(m_currentBasket);
    if (it == baskets.constEnd()) {
        return;
    }
    for (const CStrategyStockData* leg : it->legs) {
        if (leg != nullptr && leg->checked) {
            out.append(new CStrategyStockData(*leg));
        }
    }
}

bool CStrategyManageTable::handleEvent(int code, int id, int arg, QString text, void* data)
{
    if (!basketHasLegs()) {
        return true;  // nothing to act on: every event ends here
    }
    switch (code) {
    case WG::UE_CELL_EDITING: {
        auto* record = static_cast<WG::CTableEditRecord*>(data);
        if (record == nullptr) {
            return true;
        }
        if (record->column == COL_WEIGHT) {
            record->text = WG::formatDoubleNumber(record->text.toDouble(), 3, WG::FormatFlags(), false, kInvalidText);
        } else if (record->column == COL_QUANTITY) {
            record->text = WG::formatIntNumber(record->text.toInt(nullptr, 10), 0);
            record->flag = true;
        }
        return true;
    }
    case WG::UE_CELL_EDIT_COMMITTED: {
        auto* record = static_cast<WG::CTableEditRecord*>(data);
        if (record == nullptr) {
            return true;
        }
        const int row = record->row;
        const QString legCode = itemText(row, COL_CODE);
        QString market;
        const double weight = itemDouble(row, COL_WEIGHT);
        const long long quantity = itemLonglong(row, COL_QUANTITY);
        modifyBasket([&](CStrategySetting& basket) {
            if (CStrategyStockData* leg = CStrategyBaskets::findLegByCode(basket, legCode)) {
                leg->weight = weight;
                leg->quantity = quantity;
                market = leg->market;
            }
        });
        const auto instrument = instrumentOf(market.toStdString(), legCode.toStdString());
        if (instrument && CStrategyStatistics::isValid(instrument->getDoubleField(nqservice::IF_MARGIN_PARAMETER))) {
            setItemDouble(row, COL_MARGIN,
                          CStrategyStatistics::legMargin(instrument->getDoubleField(nqservice::IF_MARGIN_PARAMETER),
                                                         quantity),
                          4);
        }
        updateAbsoluteWeights();
        updateStatistics();
        tell(UE_LEGS_CHANGED, 0, QString());
        return true;
    }
    case WG::UE_DELEGATE_CHECK_CHANGED: {
        const int row = text.toInt();
        const QString legCode = itemText(row, COL_CODE);
        bool found = false;
        QString stockKey;
        nqservice::EOperationType operation = nqservice::OT_NONE;
        modifyBasket([&](CStrategySetting& basket) {
            if (CStrategyStockData* leg = CStrategyBaskets::findLegByCode(basket, legCode)) {
                found = true;
                stockKey = CStrategyBaskets::legKey(*leg);
                leg->checked = arg == 2;
                operation = leg->operation;
            }
        });
        if (found) {
            tell(UE_LEG_SELECTED, arg, stockKey);
            tell(UE_LEG_BS_CHANGED, getBuyOrSellType(operation), stockKey);
        }
        return true;
    }
    case WG::UE_DELEGATE_BUTTON_CLICKED: {
        if (id != COL_DIRECTION) {
            return true;
        }
        const int row = text.toInt();
        const QString legCode = itemText(row, COL_CODE);
        bool found = false;
        nqservice::EOperationType operation = nqservice::OT_NONE;
        modifyBasket([&](CStrategySetting& basket) {
            if (CStrategyStockData* leg = CStrategyBaskets::findLegByCode(basket, legCode)) {
                found = true;
                leg->operation = swapOperationType(leg->operation);
                operation = leg->operation;
            }
        });
        if (found) {
            setDirectionButton(row, operation);
            setItemText(row, COL_DIRECTION, QString::fromStdString(nqservice::operationValueToString(operation)));
        }
        tell(UE_LEG_BS_CHANGED, getBuyOrSellType(operation), legCode);
        return true;
    }
    default:
        return WG::CStandardTable::handleEvent(code, id, arg, text, data);
    }
}

void CStrategyManageTable::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_W && (event->modifiers() & Qt::ShiftModifier)) {
        event->ignore();  // the window above acts on Shift+W
        return;
    }
    if (event->key() == Qt::Key_Delete) {
        deleteChecked();
        event->accept();
        return;
    }
    WG::COddEvenRowTable::keyPressEvent(event);
}

}  // namespace TC
