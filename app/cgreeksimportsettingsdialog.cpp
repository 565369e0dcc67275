#include "app/cgreeksimportsettingsdialog.h"

#include "seam/trading.h"
#include "seam/user.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace desk {

namespace {

TC::CTradeSetting* tradeSettingAddress()
{
    TC::CUserConfig* config = TC::getUserConfig();
    return config != nullptr ? static_cast<TC::CTradeSetting*>(config->getUserDataAddress(TC::UM_TRADE_SETTING))
                             : nullptr;
}

}  // namespace

CGreeksImportSettingsDialog::CGreeksImportSettingsDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("greeksImportSettingsDialog"));
    setWindowTitle(QStringLiteral("外部希腊值导入"));

    enableBox = new QCheckBox(QStringLiteral("自动导入外部希腊值"), this);
    enableBox->setObjectName(QStringLiteral("enableBox"));
    directoryEdit = new QLineEdit(this);
    directoryEdit->setObjectName(QStringLiteral("directoryEdit"));
    directoryEdit->setMinimumWidth(320);
    browseButton = new QPushButton(QStringLiteral("浏览..."), this);
    browseButton->setObjectName(QStringLiteral("browseButton"));
    auto* note = new QLabel(QStringLiteral("每秒读取目录中的 *.json 文件，读取后删除。"), this);
    note->setWordWrap(true);
    buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(QStringLiteral("确定"));
    buttons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("取消"));

    auto* grid = new QGridLayout();
    grid->addWidget(enableBox, 0, 0, 1, 3);
    grid->addWidget(new QLabel(QStringLiteral("目录"), this), 1, 0);
    grid->addWidget(directoryEdit, 1, 1);
    grid->addWidget(browseButton, 1, 2);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(note);
    layout->addWidget(buttons);

    connect(browseButton, &QPushButton::clicked, this, &CGreeksImportSettingsDialog::slotBrowse);
    connect(enableBox, &QCheckBox::toggled, this, &CGreeksImportSettingsDialog::slotEnabledChanged);
    connect(buttons, &QDialogButtonBox::accepted, this, &CGreeksImportSettingsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CGreeksImportSettingsDialog::reject);

    const TC::CTradeSetting* setting = tradeSettingAddress();
    const TC::CTradeSetting present = setting != nullptr ? *setting : TC::CTradeSetting();
    enableBox->setChecked(present.autoImportExGreeks);
    directoryEdit->setText(QDir::toNativeSeparators(present.autoImportExGreeksDir));
    slotEnabledChanged();
}

bool CGreeksImportSettingsDialog::importEnabled() const { return enableBox->isChecked(); }

void CGreeksImportSettingsDialog::setImportEnabled(bool enabled) { enableBox->setChecked(enabled); }

QString CGreeksImportSettingsDialog::directory() const
{
    return QDir::fromNativeSeparators(directoryEdit->text().trimmed());
}

void CGreeksImportSettingsDialog::setDirectory(const QString& directory)
{
    directoryEdit->setText(QDir::toNativeSeparators(directory));
}

bool CGreeksImportSettingsDialog::apply()
{
    TC::CUserConfig* config = TC::getUserConfig();
    TC::CTradeSetting* setting = tradeSettingAddress();
    if (config == nullptr || setting == nullptr) {
        return false;
    }
    setting->autoImportExGreeks = importEnabled();
    setting->autoImportExGreeksDir = directory();
    config->setModifyFlag();
    if (TC::CTradeClient* client = utils::CManualSingletonT<TC::CTradeClient>::instance()) {
        emit client->sigAutoImportExGreeksChanged();
    }
    return true;
}

void CGreeksImportSettingsDialog::accept()
{
    if (importEnabled() && directory().isEmpty()) {
        directoryEdit->setFocus();
        directoryEdit->setPlaceholderText(QStringLiteral("请选择目录"));
        return;
    }
    apply();
    QDialog::accept();
}

void CGreeksImportSettingsDialog::slotBrowse()
{
    const QString chosen = QFileDialog::getExistingDirectory(this, QStringLiteral("选择外部希腊值目录"), directory());
    if (!chosen.isEmpty()) {
        setDirectory(chosen);
    }
}

void CGreeksImportSettingsDialog::slotEnabledChanged()
{
    const bool enabled = enableBox->isChecked();
    directoryEdit->setEnabled(enabled);
    browseButton->setEnabled(enabled);
}

}  // namespace desk
