// One row of a high-performance table. The table keeps no cell text: it asks
// the row for text, values, colour and change state of a cell when it paints,
// so these calls must be cheap and allocate nothing beyond what they return.
#pragma once

#include <QColor>
#include <QString>

#include <boost/shared_ptr.hpp>

#include <string>

namespace WG {

class IBaseHpfTableData {
public:
    virtual ~IBaseHpfTableData();
    virtual QString displayText(int column) const = 0;
    virtual QString textValue(int column) const;
    virtual int intValue(int column) const;          // the absent marker when none
    virtual double doubleValue(int column) const;    // the absent marker when none
    virtual long long longLongValue(int column) const;
    virtual const QColor* textColor(int column) const;  // null: the table's default
    virtual std::string keyString() const = 0;
    virtual unsigned long long hashKey() const;      // utils::hash of the key
    virtual QString qsKey() const;
    // The text a column filter compares; the display text by default.
    virtual QString getFilterQString(int column) const;
    virtual QString getDisplayUnit(int column) const;
    // The column of a field name, -1 when the row has none by that name.
    virtual int getIndexFromName(const QString& name) const;
    virtual QString getItemIconKey(int column) const;
    virtual QString getItemIconTip(int column) const;
    virtual const QColor* getBackgroundColor(int column) const;  // null: the row's colour
    // When the cell last changed, in utils::clockMSec() milliseconds; the absent marker when unknown.
    virtual double getChangedValue(int column) const;
    // Whether the cell shows a change now.
    virtual bool isFlashChange(int column) const;
};

typedef boost::shared_ptr<IBaseHpfTableData> IBaseHpfTableDataPtr;

}  // namespace WG
