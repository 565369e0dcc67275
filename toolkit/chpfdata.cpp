#include "toolkit/chpfdata.h"

#include "seam/common.h"
#include "seam/formatters.h"
#include "seam/tradinghelpers.h"
#include "toolkit/chpfdatamodel.h"
#include "toolkit/cuiresource.h"

namespace TC {

CHpfData::CHpfData(const nqservice::IDataPtr& data, const CHpfDataModel* model, const QString& colorKey)
    : m_data(data), m_model(model), m_colorKey(colorKey)
{
    if (m_data) {
        m_key = m_data->getKey();
        m_bson = m_data->toBsonWithBson();
    }
    m_qsKey = QString::fromStdString(m_key);
}

CHpfData::~CHpfData() = default;

bson::BSONElement CHpfData::field(int column) const
{
    if (m_model == nullptr) {
        return bson::BSONElement();
    }
    return field(m_model->columnProperty(column));
}

bson::BSONElement CHpfData::field(const CHpfDataColumnProperty& property) const
{
    return property.fieldName.empty() ? bson::BSONElement() : m_bson.getField(property.fieldName);
}

double CHpfData::numberField(const std::string& name) const
{
    const bson::BSONElement element = m_bson.getField(name);
    return element.isNumber() ? element.numberDouble() : utils::kAbsentDouble;
}

QString CHpfData::displayText(int column) const
{
    if (m_model != nullptr && m_model->getExtraDataModel()->exist(column)) {
        const QVariant value = m_model->getExtraDataModel()->value(m_qsKey, column);
        if (value.type() == QVariant::Double) {
            return WG::formatDoubleNumber(value.toDouble(), 4, utils::FNF_SEGMENTED, false, QStringLiteral("-"));
        }
        return value.toString();
    }
    if (m_model == nullptr) {
        return QString();
    }
    // Asked once: a paint asks every shown cell.
    const CHpfDataColumnProperty property = m_model->columnProperty(column);
    const bson::BSONElement element = field(property);
    if (element.eoo()) {
        return QString();
    }
    switch (element.type()) {
    case bson::String:
        return QString::fromStdString(element.str());
    case bson::NumberDouble:
        return WG::formatDoubleNumber(element.numberDouble(), property.decimals, utils::FNF_SEGMENTED, false,
                                      QStringLiteral("-"));
    case bson::NumberInt:
        // An enum's items show by name; sorting keeps the number.
        if (!property.enumName.empty()) {
            return QString::fromStdString(nqservice::TypeManager::instance()->getEnumItemName(
                property.enumName, element.numberInt(), m_model->traderType()));
        }
        return WG::formatIntNumber(element.numberInt(), 0, utils::FNF_NONE);
    case bson::NumberLong:
        return WG::formatLongLongNumber(element.numberLong(), 0, utils::FNF_NONE);
    case bson::Bool:
        return element.boolean() ? QStringLiteral("是") : QStringLiteral("否");
    case bson::Object: {
        // An embedded record (the account of a position) shows its first text
        // that is set: the account's key rather than an empty cell.
        bson::BSONObjIterator it(element.embeddedObject());
        while (it.more()) {
            const bson::BSONElement inner = it.next();
            if (inner.type() == bson::String && !inner.str().empty()) {
                return QString::fromStdString(inner.str());
            }
        }
        return QString();
    }
    default:
        return QString();
    }
}

QString CHpfData::textValue(int column) const
{
    const bson::BSONElement element = field(column);
    return element.type() == bson::String ? QString::fromStdString(element.str()) : displayText(column);
}

int CHpfData::intValue(int column) const
{
    const bson::BSONElement element = field(column);
    return element.isNumber() ? element.numberInt() : utils::kAbsentInt;
}

double CHpfData::doubleValue(int column) const
{
    if (m_model != nullptr && m_model->getExtraDataModel()->exist(column)) {
        bool ok = false;
        const double value = m_model->getExtraDataModel()->value(m_qsKey, column).toDouble(&ok);
        return ok ? value : utils::kAbsentDouble;
    }
    const bson::BSONElement element = field(column);
    return element.isNumber() ? element.numberDouble() : utils::kAbsentDouble;
}

long long CHpfData::longLongValue(int column) const
{
    const bson::BSONElement element = field(column);
    return element.isNumber() ? element.numberLong() : utils::kAbsentLongLong;
}

const QColor* CHpfData::textColor(int column) const
{
    if (m_model != nullptr) {
        if (const QColor* own = m_model->getExtraDataModel()->color(m_qsKey, column)) {
            return own;
        }
    }
    return m_colorKey.isEmpty() ? nullptr : WG::CUiResource::get()->getColor(m_colorKey);
}

int CHpfData::getIndexFromName(const QString& name) const
{
    if (m_model == nullptr) {
        return -1;
    }
    const std::string wanted = name.toStdString();
    for (int column = 0; column < m_model->columnCount(); ++column) {
        if (m_model->columnProperty(column).fieldName == wanted) {
            return column;
        }
    }
    return -1;
}

}  // namespace TC
