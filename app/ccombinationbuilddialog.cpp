#include "app/ccombinationbuilddialog.h"

#include "app/cpositionstablemodel.h"

#include "seam/common.h"
#include "seam/logger.h"
#include "seam/trading.h"
#include "seam/user.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace desk {

CCombinationBuildDialog::CCombinationBuildDialog(std::vector<CCombinationCommand::Leg> legs, QWidget* parent)
    : QDialog(parent), m_legs(std::move(legs))
{
    setObjectName(QStringLiteral("combinationBuildDialog"));
    setWindowTitle(QStringLiteral("构建组合"));
    m_strategy = new QComboBox(this);
    m_strategy->setObjectName(QStringLiteral("combinationStrategy"));
    for (const QString& code : CCombinationCommand::strategyCodes()) {
        m_strategy->addItem(QStringLiteral("%1 (%2)").arg(CCombinationCommand::strategyName(code), code), code);
    }
    m_legOne = new QComboBox(this);
    m_legOne->setObjectName(QStringLiteral("combinationLegOne"));
    m_legTwo = new QComboBox(this);
    m_legTwo->setObjectName(QStringLiteral("combinationLegTwo"));
    for (QComboBox* box : {m_legOne, m_legTwo}) {
        for (const CCombinationCommand::Leg& leg : m_legs) {
            box->addItem(QStringLiteral("%1  %2 %3 %4  可用 %5")
                             .arg(QString::fromStdString(leg.account->displayName.empty() ? leg.account->getKey()
                                                                                           : leg.account->displayName),
                                  QString::fromStdString(leg.code), QString::fromStdString(leg.name),
                                  CPositionsTableModel::directionText(leg.direction))
                             .arg(leg.available));
        }
    }
    if (m_legTwo->count() > 1) {
        m_legTwo->setCurrentIndex(1);
    }
    m_volume = new QSpinBox(this);
    m_volume->setObjectName(QStringLiteral("combinationVolume"));
    m_volume->setRange(1, 10000);
    m_volume->setSuffix(QStringLiteral(" 组"));
    m_reason = new QLabel(this);
    m_reason->setObjectName(QStringLiteral("combinationReason"));
    m_reason->setWordWrap(true);
    if (m_legs.size() < 2) {
        m_reason->setText(QStringLiteral("没有可组合的期权持仓: 构建组合需要同一账号的两个持仓合约"));
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(QStringLiteral("确定"));
    buttons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("取消"));

    auto* grid = new QGridLayout();
    grid->addWidget(new QLabel(QStringLiteral("组合策略"), this), 0, 0);
    grid->addWidget(m_strategy, 0, 1);
    grid->addWidget(new QLabel(QStringLiteral("合约一"), this), 1, 0);
    grid->addWidget(m_legOne, 1, 1);
    grid->addWidget(new QLabel(QStringLiteral("合约二"), this), 2, 0);
    grid->addWidget(m_legTwo, 2, 1);
    grid->addWidget(new QLabel(QStringLiteral("组合数量"), this), 3, 0);
    grid->addWidget(m_volume, 3, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(m_reason);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &CCombinationBuildDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CCombinationBuildDialog::reject);
}

boost::shared_ptr<nqservice::COrderComandParam> CCombinationBuildDialog::command()
{
    const int one = m_legOne->currentIndex();
    const int two = m_legTwo->currentIndex();
    if (one < 0 || two < 0) {
        m_reason->setText(QStringLiteral("请选择两个持仓合约"));
        return nullptr;
    }
    TC::CUserConfig* user = TC::getUserConfig();
    QString why;
    auto command = CCombinationCommand::build(m_strategy->currentData().toString(), m_legs[static_cast<std::size_t>(one)],
                                              m_legs[static_cast<std::size_t>(two)], m_volume->value(),
                                              user != nullptr ? user->getUserDataString(TC::UM_USER_NAME).toStdString() : std::string(), &why);
    m_reason->setText(why);
    return command;
}

void CCombinationBuildDialog::accept()
{
    const auto built = command();
    if (!built) {
        return;
    }
    TC::COvCommandCenter* commands = utils::CManualSingletonT<TC::COvCommandCenter>::instance();
    if (commands == nullptr) {
        m_reason->setText(QStringLiteral("未连接交易通道, 无法构建组合"));
        return;
    }
    NQ_LOG_INFO("combination build " + built->params.front()->stockInfo.textField2 + " " +
                built->params.front()->stockInfo.code);
    // The broker's refusal, if any, reaches the message area of the desk.
    commands->createCommand(built, TC::COvCommandCenter::CommandCallback(), true, 0);
    QDialog::accept();
}

}  // namespace desk
