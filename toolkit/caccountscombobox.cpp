#include "toolkit/caccountscombobox.h"

#include "seam/tradinghelpers.h"
#include "seam/uievents.h"
#include "seam/user.h"

#include <QVector>

namespace TC {

namespace {
// Item data: the type in UserRole, the key in UserRole + 1.
constexpr int kTypeRole = Qt::UserRole;
constexpr int kKeyRole = Qt::UserRole + 1;

int brokerTypeOf(nqservice::EVqTraderType type)
{
    return type == nqservice::VQ_TRADER_TYPE_FUTURE_OPTION ? nqservice::VQ_BROKER_TYPE_FUTURE_OPTION
                                                           : nqservice::VQ_BROKER_TYPE_STOCK_OPTION;
}
}  // namespace

CAccountsComboBox::CAccountsComboBox(int id, QWidget* parent) : WG::CComboBox(id, parent)
{
    // The base reports index changes as UE_COMBO_CHANGED; this selector speaks of accounts instead.
    disconnect(this, QOverload<int>::of(&QComboBox::currentIndexChanged), this, nullptr);
    connect(this, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this](int) {
        const QPair<ESelectedAccountType, QString> selection = getSelection();
        deliverEvent(WG::UE_ACCOUNT_SELECTED, this->id(), selection.first, selection.second, nullptr);
    });
    reload();
}

CAccountsComboBox::~CAccountsComboBox() = default;

void CAccountsComboBox::setTraderType(nqservice::EVqTraderType type, bool showGroups)
{
    m_traderType = type;
    m_showGroups = showGroups;
    reload();
}

void CAccountsComboBox::reload()
{
    const QPair<ESelectedAccountType, QString> before = getSelection();
    {
        const QSignalBlocker blocker(this);
        clear();
        CUserConfig* config = getUserConfig();
        if (config != nullptr) {
            if (const auto* accounts = static_cast<const QVector<boost::shared_ptr<CAccount>>*>(
                    static_cast<const CUserConfig*>(config)->getUserDataAddress(UM_ACCOUNT_LIST))) {
                for (const auto& account : *accounts) {
                    if (!account || !isBrokerTypeMatchTradeType(account->accountType, m_traderType) ||
                        config->isAccountFilter(account->key())) {
                        continue;
                    }
                    const QString shown = account->displayName.isEmpty() ? account->key() : account->displayName;
                    addItem(shown);
                    setItemData(count() - 1, SAT_ACCOUNT, kTypeRole);
                    setItemData(count() - 1, account->key(), kKeyRole);
                }
            }
            const auto* groups = m_showGroups ? static_cast<const QVector<CAccountGroup>*>(
                                                    static_cast<const CUserConfig*>(config)->getUserDataAddress(UM_ACCOUNT_GROUPS))
                                              : nullptr;
            if (groups != nullptr) {
                bool separated = false;
                for (const CAccountGroup& group : *groups) {
                    if (group.brokerType != brokerTypeOf(m_traderType)) {
                        continue;
                    }
                    if (!separated && count() > 0) {
                        insertSeparator(count());
                    }
                    separated = true;
                    addItem(QStringLiteral("[组] ") + group.name);
                    setItemData(count() - 1, SAT_GROUP, kTypeRole);
                    setItemData(count() - 1, group.name, kKeyRole);
                }
            }
        }
        if (!before.second.isEmpty()) {
            setSelection(before.first, before.second);
        }
    }
    const QPair<ESelectedAccountType, QString> after = getSelection();
    if (after != before) {
        deliverEvent(WG::UE_ACCOUNT_SELECTED, id(), after.first, after.second, nullptr);
    }
}

QPair<ESelectedAccountType, QString> CAccountsComboBox::getSelection() const
{
    const int index = currentIndex();
    if (index < 0 || !itemData(index, kKeyRole).isValid()) {
        return qMakePair(SAT_ACCOUNT, QString());
    }
    return qMakePair(static_cast<ESelectedAccountType>(itemData(index, kTypeRole).toInt()), itemData(index, kKeyRole).toString());
}

bool CAccountsComboBox::setSelection(ESelectedAccountType type, const QString& key)
{
    for (int i = 0; i < count(); ++i) {
        if (itemData(i, kKeyRole).toString() == key && itemData(i, kTypeRole).toInt() == type) {
            setCurrentIndex(i);
            return true;
        }
    }
    return false;
}

}  // namespace TC
