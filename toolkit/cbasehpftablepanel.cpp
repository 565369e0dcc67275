#include "toolkit/cbasehpftablepanel.h"

namespace WG {

CBaseHpfTablePanel::CBaseHpfTablePanel(IBaseTable* table) : CTableView(table, nullptr) {}

CBaseHpfTablePanel::~CBaseHpfTablePanel() = default;

}  // namespace WG
