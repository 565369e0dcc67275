#include "toolkit/ceventwidgett.h"

namespace WG {

template class CEventWidgetT<QWidget>;
template class CEventWidgetT<QDialog>;
template class CEventWidgetT<QComboBox>;
template class CEventWidgetT<QTreeWidget>;

}  // namespace WG
