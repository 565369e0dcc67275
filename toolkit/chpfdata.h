// A row of an IData table: the record, its BSON form taken once when the row is
// made (a changed record comes as a new row), and a fixed text colour key.
// Fields are read by the columns' field names; computed columns come from the
// model's extra data.
#pragma once

#include "seam/idata.h"
#include "toolkit/ibasehpftabledata.h"

namespace TC {

class CHpfDataColumnProperty;
class CHpfDataModel;

class CHpfData : public WG::IBaseHpfTableData {
public:
    CHpfData(const nqservice::IDataPtr& data, const CHpfDataModel* model, const QString& colorKey = QString());
    ~CHpfData() override;

    const nqservice::IDataPtr& getIData() const { return m_data; }
    QString colorKey() const { return m_colorKey; }

    QString displayText(int column) const override;
    QString textValue(int column) const override;
    int intValue(int column) const override;
    double doubleValue(int column) const override;
    long long longLongValue(int column) const override;
    const QColor* textColor(int column) const override;
    std::string keyString() const override { return m_key; }
    int getIndexFromName(const QString& name) const override;
    // The number in the record's field of this name; absent when it is none.
    double numberField(const std::string& name) const;

private:
    bson::BSONElement field(int column) const;
    bson::BSONElement field(const CHpfDataColumnProperty& property) const;

    nqservice::IDataPtr m_data;
    const CHpfDataModel* m_model;
    QString m_colorKey;
    std::string m_key;
    QString m_qsKey;
    bson::BSONObj m_bson;
};

}  // namespace TC
