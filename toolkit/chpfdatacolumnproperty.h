// What a column of an IData table shows: header, value type, alignment, flags
// and the record field it reads ("" for a column the table computes itself).
#pragma once

#include <QString>
#include <QVariant>

#include <string>

namespace TC {

class CHpfDataColumnProperty {
public:
    CHpfDataColumnProperty() = default;
    CHpfDataColumnProperty(const QString& header, int qtType, int alignment, int flags = 0)
        : header(header), qtType(qtType), alignment(alignment), flags(flags)
    {
    }

    QString header;
    int qtType = QVariant::String;  // QVariant::Type
    int alignment = 0x82;           // Qt::AlignRight | Qt::AlignVCenter
    int flags = 0;
    int secondFlags = 0;
    bool stat = false;              // summed in the statistics row
    int decimals = 2;               // for double fields
    std::string fieldName;          // BSON name of the field; "" for a computed column
    std::string enumName;           // the field's enum, whose items show by name; "" for none
};

}  // namespace TC
