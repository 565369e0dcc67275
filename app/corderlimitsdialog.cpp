#include "app/corderlimitsdialog.h"

#include "seam/tradingrecords.h"
#include "seam/user.h"
#include "services/user/cusersettingsstore.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace desk {

namespace {

int permission(const char* key, int fallback)
{
    TC::CUserConfig* config = TC::getUserConfig();
    const auto info = config != nullptr ? config->getPermissionInfoPtr() : nullptr;
    if (!info || info->intMap.find(key) == info->intMap.end()) {
        return fallback;
    }
    return info->getInt(key);
}

QSpinBox* limitBox(const QString& name, QWidget* parent)
{
    auto* box = new QSpinBox(parent);
    box->setObjectName(name);
    // The exchanges' own ceilings are far below this; a larger figure would only
    // move the refusal from here to the broker.
    box->setRange(1, 1000);
    box->setSuffix(QStringLiteral(" 张"));
    return box;
}

}  // namespace

COrderLimitsDialog::COrderLimitsDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("orderLimitsDialog"));
    setWindowTitle(QStringLiteral("下单限制"));
    fixLimit = limitBox(QStringLiteral("fixLimit"), this);
    fixSplit = new QCheckBox(QStringLiteral("超出时询问是否自动拆单"), this);
    fixSplit->setObjectName(QStringLiteral("fixSplit"));
    marketLimit = limitBox(QStringLiteral("marketLimit"), this);
    marketSplit = new QCheckBox(QStringLiteral("超出时询问是否自动拆单"), this);
    marketSplit->setObjectName(QStringLiteral("marketSplit"));
    auto* note = new QLabel(QStringLiteral("股票期权每笔委托的数量上限; 上交所限价委托每笔最多50张, 市价委托每笔最多10张。"), this);
    note->setWordWrap(true);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(QStringLiteral("确定"));
    buttons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("取消"));

    auto* grid = new QGridLayout();
    grid->addWidget(new QLabel(QStringLiteral("限价委托每笔上限"), this), 0, 0);
    grid->addWidget(fixLimit, 0, 1);
    grid->addWidget(fixSplit, 0, 2);
    grid->addWidget(new QLabel(QStringLiteral("市价委托每笔上限"), this), 1, 0);
    grid->addWidget(marketLimit, 1, 1);
    grid->addWidget(marketSplit, 1, 2);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(note);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &COrderLimitsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &COrderLimitsDialog::reject);

    fixLimit->setValue(permission(nqservice::kPermStkOptFixPriceMaxOrderLimit, 50));
    fixSplit->setChecked(permission(nqservice::kPermStkOptFixPriceSplitAllowance, 1) != 0);
    marketLimit->setValue(permission(nqservice::kPermStkOptMarketPriceMaxOrderLimit, 10));
    marketSplit->setChecked(permission(nqservice::kPermStkOptMarketPriceSplitAllowance, 1) != 0);
}

int COrderLimitsDialog::fixPriceLimit() const { return fixLimit->value(); }
void COrderLimitsDialog::setFixPriceLimit(int limit) { fixLimit->setValue(limit); }
bool COrderLimitsDialog::fixPriceSplit() const { return fixSplit->isChecked(); }
void COrderLimitsDialog::setFixPriceSplit(bool allowed) { fixSplit->setChecked(allowed); }
int COrderLimitsDialog::marketPriceLimit() const { return marketLimit->value(); }
void COrderLimitsDialog::setMarketPriceLimit(int limit) { marketLimit->setValue(limit); }
bool COrderLimitsDialog::marketPriceSplit() const { return marketSplit->isChecked(); }
void COrderLimitsDialog::setMarketPriceSplit(bool allowed) { marketSplit->setChecked(allowed); }

bool COrderLimitsDialog::apply()
{
    auto* store = dynamic_cast<TC::CUserSettingsStore*>(TC::getUserConfig());
    if (store == nullptr) {
        return false;
    }
    store->setPermission(QString::fromLatin1(nqservice::kPermStkOptFixPriceMaxOrderLimit), fixPriceLimit());
    store->setPermission(QString::fromLatin1(nqservice::kPermStkOptFixPriceSplitAllowance), fixPriceSplit() ? 1 : 0);
    store->setPermission(QString::fromLatin1(nqservice::kPermStkOptMarketPriceMaxOrderLimit), marketPriceLimit());
    store->setPermission(QString::fromLatin1(nqservice::kPermStkOptMarketPriceSplitAllowance), marketPriceSplit() ? 1 : 0);
    return store->save();
}

void COrderLimitsDialog::accept()
{
    apply();
    QDialog::accept();
}

}  // namespace desk
