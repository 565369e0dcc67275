#include "positions/coptionstrategypositiontable.h"

#include "seam/user.h"
#include "toolkit/cbasetablecolumncheckboxdelegate.h"
#include "toolkit/cbasetablecolumnsimpletextdelegate.h"
#include "toolkit/chpfdata.h"

#include <QStringList>

namespace TC {

namespace {

const char* const kTextColour = "clr_text_default";

// The roles that get the check-box column, and so may release.
bool roleHasCheckBox(int role)
{
    static const int s_roles[] = {90, 91, 200, 400, 80, 100, 101};
    for (int allowed : s_roles) {
        if (role == allowed) {
            return true;
        }
    }
    return false;
}

}  // namespace

COptionStrategyPositionTable::COptionStrategyPositionTable(int id, QWidget* parent)
    : CHpfDataTable(id, nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION, parent, false,
                    static_cast<nqservice::EVqTraderType>(1)),
      model(boost::make_shared<CHpfOptionStrategyPositionModel>())
{
    model->setColumns({nqservice::VQ_DATA_TYPE_STK_OPT_COMB_POSITION});
    setDataModel(model.get());
    buildExtraColumns();
}

COptionStrategyPositionTable::~COptionStrategyPositionTable()
{
    // The table lets go of the model before the model (and its worker) goes.
    setDataModel(nullptr);
    model.reset();
}

void COptionStrategyPositionTable::buildExtraColumns()
{
    model->getExtraDataModel()->clearColumn();
    CUserConfig* config = getUserConfig();
    const int role = config != nullptr ? config->getUserDataInt(UM_USER_ROLE) : 0;
    if (roleHasCheckBox(role)) {
        CHpfDataColumnProperty property(QStringLiteral("选择"), 0, 132);
        const int column = addColumn(property, false, true, QString(), 2, 0);
        auto* delegate = new WG::CBaseTableColumnCheckBoxDelegate(column, nullptr);
        delegate->setExclusive(true);
        setColumnDelegate(column, delegate);
        model->setCheckColumn(column, delegate);
        CHpfOptionStrategyPositionModel* rows = model.get();
        connect(delegate, &WG::CBaseTableColumnCheckBoxDelegate::sigItemCheckChanged, this,
                [rows](const QString& key, bool checked) { rows->setKeyChecked(key, checked); });
    }
    const QStringList figures = {QStringLiteral("delta"), QStringLiteral("gamma"), QStringLiteral("theta"),
                                 QStringLiteral("vega"),  QStringLiteral("rho"),   QStringLiteral("时间价值")};
    const QString legs[] = {QStringLiteral("合约一"), QStringLiteral("合约二")};
    for (int leg = 0; leg < 2; ++leg) {
        for (int figure = 0; figure < CHpfOptionStrategyPositionModel::LF_COUNT; ++figure) {
            CHpfDataColumnProperty property(legs[leg] + figures.at(figure), QVariant::Double, 132);
            const int column = addColumn(property, false, true, QString(), 2, 0);
            auto* delegate = new WG::CBaseTableColumnSimpleTextDelegate(column, nullptr);
            setColumnDelegate(column, delegate);
            model->setLegColumn(leg, static_cast<CHpfOptionStrategyPositionModel::ELegFigure>(figure), column,
                                delegate);
        }
    }
}

bool COptionStrategyPositionTable::handleEvent(int code, int id, int arg, QString text, void* data)
{
    return CHpfDataTable::handleEvent(code, id, arg, text, data);
}

void COptionStrategyPositionTable::onPositionDetail(const boost::shared_ptr<nqservice::IData>& data)
{
    if (model) {
        model->onPositionDetail(data);
    }
}

void COptionStrategyPositionTable::requestAccount(const std::string& key)
{
    if (getPanel() == nullptr || !model) {
        return;
    }
    requestedKeys.insert(key, true);
    const int sortColumn = getSortColumn();
    const QPair<WG::EFilterType, QSet<QString>> filter(WG::FLT_NONE, QSet<QString>());
    CHpfOptionStrategyPositionModel* rows = model.get();
    rows->postJob([rows, key, sortColumn, filter] { rows->reloadAccount(key, sortColumn, filter); });
}

void COptionStrategyPositionTable::setSearchText(const QString& text)
{
    if (model) {
        model->setSearchText(text);
    }
}

boost::shared_ptr<nqservice::CStkOptCombPositionDetail> COptionStrategyPositionTable::detailOfRow(int row) const
{
    const auto data = boost::dynamic_pointer_cast<CHpfData>(rowData(row));
    return data ? boost::dynamic_pointer_cast<nqservice::CStkOptCombPositionDetail>(data->getIData())
                : boost::shared_ptr<nqservice::CStkOptCombPositionDetail>();
}

void COptionStrategyPositionTable::checkedRows(QVector<boost::shared_ptr<nqservice::CStkOptCombPositionDetail>>& out)
{
    WG::CBaseTableColumnCheckBoxDelegate* delegate = model ? model->checkDelegate() : nullptr;
    if (delegate == nullptr) {
        return;
    }
    for (int position = 0; position < realRowCount(); ++position) {
        const int row = rowID(position);
        const std::string key = rowKey(row);
        if (!key.empty() && delegate->itemChecked(key)) {
            if (const auto detail = detailOfRow(row)) {
                out.append(detail);
            }
        }
    }
}

void COptionStrategyPositionTable::checkAll()
{
    WG::CBaseTableColumnCheckBoxDelegate* delegate = model ? model->checkDelegate() : nullptr;
    if (delegate == nullptr) {
        return;
    }
    for (int row = 0; row < rowCount(); ++row) {
        delegate->setItemChecked(rowKey(row), true, true, true);
    }
}

void COptionStrategyPositionTable::invertChecks()
{
    WG::CBaseTableColumnCheckBoxDelegate* delegate = model ? model->checkDelegate() : nullptr;
    if (delegate == nullptr) {
        return;
    }
    for (int row = 0; row < rowCount(); ++row) {
        const std::string key = rowKey(row);
        delegate->setItemChecked(key, !delegate->itemChecked(key), true, true);
    }
}

void COptionStrategyPositionTable::refreshExtraColumns()
{
    if (!model) {
        return;
    }
    std::vector<std::string> checkKeys;
    CHpfOptionStrategyPositionModel::LegFiguresCache figures;
    for (const WG::IBaseHpfTableDataPtr& row : model->getAllDatas()) {
        const auto* data = dynamic_cast<const CHpfData*>(row.get());
        const auto detail = data != nullptr
                                ? boost::dynamic_pointer_cast<nqservice::CStkOptCombPositionDetail>(data->getIData())
                                : boost::shared_ptr<nqservice::CStkOptCombPositionDetail>();
        if (!detail) {
            continue;
        }
        model->fillExtraColumns(*detail, checkKeys, &figures);
        model->updateDataFixColorForSortTime(detail, QString::fromLatin1(kTextColour));
    }
    model->applyCheckBoxes(checkKeys);
    updateUiData();
}

}  // namespace TC
