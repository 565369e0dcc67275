#include "toolkit/ibasehpftabledata.h"

#include "seam/common.h"

namespace WG {

IBaseHpfTableData::~IBaseHpfTableData() = default;

QString IBaseHpfTableData::textValue(int column) const { return displayText(column); }

int IBaseHpfTableData::intValue(int) const { return utils::kAbsentInt; }

double IBaseHpfTableData::doubleValue(int) const { return utils::kAbsentDouble; }

long long IBaseHpfTableData::longLongValue(int) const { return utils::kAbsentLongLong; }

const QColor* IBaseHpfTableData::textColor(int) const { return nullptr; }

unsigned long long IBaseHpfTableData::hashKey() const { return utils::hash(keyString()); }

QString IBaseHpfTableData::qsKey() const { return QString::fromStdString(keyString()); }

QString IBaseHpfTableData::getFilterQString(int column) const { return displayText(column); }

QString IBaseHpfTableData::getDisplayUnit(int) const { return QString(); }

int IBaseHpfTableData::getIndexFromName(const QString&) const { return -1; }

QString IBaseHpfTableData::getItemIconKey(int) const { return QString(); }

QString IBaseHpfTableData::getItemIconTip(int) const { return QString(); }

const QColor* IBaseHpfTableData::getBackgroundColor(int) const { return nullptr; }

double IBaseHpfTableData::getChangedValue(int) const { return utils::kAbsentDouble; }

bool IBaseHpfTableData::isFlashChange(int) const { return false; }

}  // namespace WG
