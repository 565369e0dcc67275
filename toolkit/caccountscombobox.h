// The account selector of the order forms: the user's accounts that serve the
// trade type, and optionally their groups. A change delivers UE_ACCOUNT_SELECTED
// with arg the TC::ESelectedAccountType and text the account key or group name.
#pragma once

#include "seam/tradingenums.h"
#include "seam/userrecords.h"
#include "toolkit/ccombobox.h"

#include <QPair>

namespace TC {

class CAccountsComboBox : public WG::CComboBox {
    Q_OBJECT
public:
    CAccountsComboBox(int id, QWidget* parent);
    ~CAccountsComboBox() override;

    // Lists again for the trade type; showGroups adds the groups of its broker type.
    void setTraderType(nqservice::EVqTraderType type, bool showGroups);
    nqservice::EVqTraderType traderType() const { return m_traderType; }
    // Reads the accounts and groups again, keeping the choice when it still exists.
    void reload();
    // Whether an account or a group is chosen, and its key (account) or name (group); an empty key when none.
    QPair<TC::ESelectedAccountType, QString> getSelection() const;
    // Chooses an item; false when the list has none such.
    bool setSelection(TC::ESelectedAccountType type, const QString& key);

private:
    nqservice::EVqTraderType m_traderType = nqservice::VQ_TRADER_TYPE_STOCK_OPTION;
    bool m_showGroups = false;
};

}  // namespace TC
