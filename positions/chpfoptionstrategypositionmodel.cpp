#include "positions/chpfoptionstrategypositionmodel.h"

#include "positions/ccomblegfigures.h"
#include "positions/ccombpositionrules.h"
#include "seam/common.h"
#include "seam/trading.h"
#include "seam/tradinghelpers.h"
#include "seam/user.h"
#include "toolkit/cbasetablecolumncheckboxdelegate.h"
#include "toolkit/cbasetablecolumnsimpletextdelegate.h"
#include "toolkit/chpfdata.h"

#include <QMetaObject>

namespace TC {

namespace {

const char* const kTextColour = "clr_text_default";

const nqservice::CStkOptCombPositionDetail* detailOf(const WG::IBaseHpfTableDataPtr& row)
{
    const auto* data = dynamic_cast<const CHpfData*>(row.get());
    return data != nullptr ? dynamic_cast<const nqservice::CStkOptCombPositionDetail*>(data->getIData().get())
                           : nullptr;
}

int formatFlags()
{
    CUserConfig* config = getUserConfig();
    return config != nullptr ? static_cast<int>(config->getSegmentedFormatFlag()) : 0;
}

}  // namespace

CHpfOptionStrategyPositionModel::CHpfOptionStrategyPositionModel()
    : CHpfThreadDataModel(nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION, nqservice::VQ_TRADER_TYPE_STOCK_OPTION),
      m_guiThread(std::this_thread::get_id())
{
    legColumns.fill(-1);
    legDelegates.fill(nullptr);
}

CHpfOptionStrategyPositionModel::~CHpfOptionStrategyPositionModel() = default;

void CHpfOptionStrategyPositionModel::setColumns(const std::vector<int>& dataTypes)
{
    std::vector<CHpfDataColumnProperty> properties;
    {
        std::lock_guard<std::mutex> lock(m_stateMutex);
        fieldColumns.clear();
        const nqservice::TypeManager* types = nqservice::TypeManager::instance();
        const std::vector<nqservice::FieldDes> fields =
            types->getAllFields(dataTypes, nqservice::VQ_TRADER_TYPE_STOCK_OPTION);
        for (const nqservice::FieldDes& field : fields) {
            const int alignment = field.getProperty(nqservice::FP_ALIGN_LEFT)     ? 129
                                  : field.getProperty(nqservice::FP_ALIGN_CENTER) ? 132
                                                                                   : 130;
            CHpfDataColumnProperty property(
                QString::fromStdString(types->getFieldChsNameByType(field, nqservice::VQ_TRADER_TYPE_STOCK_OPTION)),
                dataTypeToQtType(field.type), alignment);
            property.stat = field.getProperty(nqservice::FP_STAT);
            property.flags = field.getProperty(nqservice::FP_DISPLAY);
            property.secondFlags = field.getProperty(nqservice::FP_KEY);
            property.fieldName = field.name;
            property.enumName = field.enumName;
            fieldColumns.insert(QString::fromStdString(field.name), static_cast<int>(properties.size()));
            properties.push_back(property);
        }
    }
    clearColumnProperties();
    for (std::size_t n = 0; n < properties.size(); ++n) {
        const int column = addColumnProperty(properties[n]);
        setColumnStatEnable(column, properties[n].stat);
    }
}

void CHpfOptionStrategyPositionModel::setCheckColumn(int column, WG::CBaseTableColumnCheckBoxDelegate* delegate)
{
    std::lock_guard<std::mutex> lock(m_stateMutex);
    checkBoxColumn = column;
    checkBox = delegate;
}

void CHpfOptionStrategyPositionModel::setLegColumn(int leg, ELegFigure figure, int column,
                                                   WG::CBaseTableColumnSimpleTextDelegate* delegate)
{
    if (leg < 0 || leg > 1 || figure < 0 || figure >= LF_COUNT) {
        return;
    }
    std::lock_guard<std::mutex> lock(m_stateMutex);
    legColumns[static_cast<std::size_t>(leg * LF_COUNT + figure)] = column;
    legDelegates[static_cast<std::size_t>(leg * LF_COUNT + figure)] = delegate;
}

int CHpfOptionStrategyPositionModel::legColumn(int leg, ELegFigure figure) const
{
    if (leg < 0 || leg > 1 || figure < 0 || figure >= LF_COUNT) {
        return -1;
    }
    std::lock_guard<std::mutex> lock(m_stateMutex);
    return legColumns[static_cast<std::size_t>(leg * LF_COUNT + figure)];
}

int CHpfOptionStrategyPositionModel::fieldColumn(const std::string& fieldName) const
{
    std::lock_guard<std::mutex> lock(m_stateMutex);
    return fieldColumns.value(QString::fromStdString(fieldName), -1);
}

void CHpfOptionStrategyPositionModel::setSearchText(const QString& text)
{
    std::lock_guard<std::mutex> lock(m_stateMutex);
    searchText = CCombPositionRules::searchKey(text);
}

std::string CHpfOptionStrategyPositionModel::getSearchText() const
{
    std::lock_guard<std::mutex> lock(m_stateMutex);
    return searchText;
}

void CHpfOptionStrategyPositionModel::setKeyChecked(const QString& key, bool checked)
{
    std::lock_guard<std::mutex> lock(m_stateMutex);
    if (checked) {
        checkedKeys.insert(key, true);
    } else {
        checkedKeys.remove(key);
    }
}

bool CHpfOptionStrategyPositionModel::isKeyChecked(const QString& key) const
{
    std::lock_guard<std::mutex> lock(m_stateMutex);
    return checkedKeys.contains(key);
}

void CHpfOptionStrategyPositionModel::fillExtraColumns(const nqservice::CStkOptCombPositionDetail& detail,
                                                       std::vector<std::string>& checkKeys, LegFiguresCache* cache)
{
    const std::string key = detail.getKey();
    std::array<int, kLegColumns> columns;
    std::array<WG::CBaseTableColumnSimpleTextDelegate*, kLegColumns> delegates;
    bool hasCheckBox = false;
    {
        std::lock_guard<std::mutex> lock(m_stateMutex);
        columns = legColumns;
        delegates = legDelegates;
        hasCheckBox = checkBoxColumn >= 0 && checkBox != nullptr;
    }
    if (hasCheckBox) {
        checkKeys.push_back(key);
    }
    for (int column : columns) {
        if (column < 0 || !getExtraDataModel()->exist(column)) {
            return;
        }
    }
    const QString qsKey = QString::fromStdString(key);
    const int flags = formatFlags();
    // The cells take the row's colour key, resolved at paint time, so that a
    // theme change recolours them too.
    const QColor* colour = nullptr;
    const std::string* codes[2] = {&detail.legOneCode, &detail.legTwoCode};
    for (int leg = 0; leg < 2; ++leg) {
        const std::size_t first = static_cast<std::size_t>(leg * LF_COUNT);
        CCombLegFigures figures;
        if (!codes[leg]->empty()) {
            const std::string stockKey = utils::vqStockKey(detail.market, *codes[leg]);
            auto known = cache != nullptr ? cache->find(stockKey) : LegFiguresCache::iterator();
            if (cache != nullptr && known != cache->end()) {
                figures = known->second;
            } else {
                figures = CCombLegFigures::of(stockKey);
                if (cache != nullptr) {
                    cache->emplace(stockKey, figures);
                }
            }
        }
        if (figures.hasGreeks) {
            const double greeks[] = {figures.delta, figures.gamma, figures.theta, figures.vega, figures.rho};
            for (std::size_t g = 0; g < 5; ++g) {
                getExtraDataModel()->addData(qsKey, columns[first + g], CCombLegFigures::greekText(greeks[g], flags),
                                             delegates[first + g], colour);
            }
        }
        getExtraDataModel()->addData(qsKey, columns[first + LF_TIME_VALUE],
                                     CCombLegFigures::timeValueText(figures.timeValue, flags),
                                     delegates[first + LF_TIME_VALUE], colour);
    }
}

void CHpfOptionStrategyPositionModel::applyCheckBoxes(const std::vector<std::string>& keys)
{
    if (keys.empty()) {
        return;
    }
    if (std::this_thread::get_id() != m_guiThread) {
        applyOnGui([this, keys] { applyCheckBoxes(keys); });
        return;
    }
    WG::CBaseTableColumnCheckBoxDelegate* delegate = nullptr;
    QHash<QString, bool> ticked;
    {
        std::lock_guard<std::mutex> lock(m_stateMutex);
        delegate = checkBox;
        ticked = checkedKeys;
    }
    if (delegate == nullptr) {
        return;
    }
    for (const std::string& key : keys) {
        delegate->setItemVisible(key, true, false);
        delegate->setItemEnabled(key, true, false);
        const bool checked = ticked.contains(QString::fromStdString(key));
        if (checked != delegate->itemChecked(key)) {
            delegate->setItemChecked(key, checked, false, false);
        }
    }
}

void CHpfOptionStrategyPositionModel::reloadAccount(const std::string& accountKey, int sortColumn,
                                                    QPair<WG::EFilterType, QSet<QString>> filter)
{
    // A reload replaces the rows of its account and leaves the others.
    std::vector<std::string> stale;
    for (const WG::IBaseHpfTableDataPtr& row : getAllDatas()) {
        const nqservice::CStkOptCombPositionDetail* detail = detailOf(row);
        if (detail != nullptr && detail->account && detail->account->getKey() == accountKey) {
            stale.push_back(row->keyString());
        }
    }
    if (!stale.empty()) {
        removeDatasByKeys(stale);
    }
    const boost::shared_ptr<nqservice::TraderCenter> center = nqservice::TraderCenter::instance();
    const boost::shared_ptr<nqservice::IDataCenter> dataCenter =
        center ? center->getDataCenter() : boost::shared_ptr<nqservice::IDataCenter>();
    const boost::shared_ptr<nqservice::CAccountData> account =
        dataCenter ? dataCenter->getAccountData(utils::hash(accountKey)) : boost::shared_ptr<nqservice::CAccountData>();
    if (!account) {
        return;
    }
    std::vector<boost::shared_ptr<nqservice::IData>> records;
    account->getVector(nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION, records);
    const std::string search = getSearchText();
    QList<QPair<boost::shared_ptr<nqservice::IData>, QString>> batch;
    batch.reserve(static_cast<int>(records.size()));
    std::vector<std::string> checkKeys;
    LegFiguresCache figures;
    for (const boost::shared_ptr<nqservice::IData>& record : records) {
        const auto* detail = dynamic_cast<const nqservice::CStkOptCombPositionDetail*>(record.get());
        if (detail == nullptr || !CCombPositionRules::passesSearch(detail, search) ||
            !CCombPositionRules::isVisible(*detail)) {
            continue;
        }
        fillExtraColumns(*detail, checkKeys, &figures);
        batch.append(qMakePair(record, QString::fromLatin1(kTextColour)));
    }
    doAddDatas(batch, sortColumn, filter);
    applyCheckBoxes(checkKeys);
}

void CHpfOptionStrategyPositionModel::onPositionDetail(const boost::shared_ptr<nqservice::IData>& data)
{
    const auto* detail = dynamic_cast<const nqservice::CStkOptCombPositionDetail*>(data.get());
    if (detail == nullptr || !CCombPositionRules::passesSearch(detail, getSearchText())) {
        return;
    }
    if (CCombPositionRules::isVisible(*detail)) {
        std::vector<std::string> checkKeys;
        fillExtraColumns(*detail, checkKeys);
        updateDataFixColorForSortTime(data, QString::fromLatin1(kTextColour));
        applyCheckBoxes(checkKeys);
    } else {
        // A combination released to 0 leaves the table.
        removeDataByKey(data->getKey());
    }
}

}  // namespace TC
