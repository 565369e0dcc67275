#include "app/cwinnersettingsdialog.h"

#include "seam/cexchangeclient.h"
#include "seam/cinstrumentdetail.h"
#include "seam/user.h"

#include <QComboBox>
#include <QDateEdit>
#include <QDateTime>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace desk {

namespace {

const char* const kForecasts[] = {"看涨", "看跌", "突破", "盘整"};

QDoubleSpinBox* levelBox(const QString& name, QWidget* parent)
{
    auto* box = new QDoubleSpinBox(parent);
    box->setObjectName(name);
    box->setDecimals(3);
    box->setRange(0.0, 100000.0);
    box->setSingleStep(0.05);
    return box;
}

QDateEdit* dateBox(const QString& name, QWidget* parent)
{
    auto* box = new QDateEdit(parent);
    box->setObjectName(name);
    box->setCalendarPopup(true);
    box->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    return box;
}

QDate tradingDate()
{
    TC::CExchangeClient* exchange = utils::CManualSingletonT<TC::CExchangeClient>::instance();
    const QDate date = exchange != nullptr
                           ? QDate::fromString(QString::fromStdString(exchange->getTradingDate()), QStringLiteral("yyyyMMdd"))
                           : QDate();
    return date.isValid() ? date : QDate::currentDate();
}

// The window is kept as the start of each day in local time: the winner reads it back as that date.
unsigned secondsOf(const QDate& date) { return static_cast<unsigned>(QDateTime(date, QTime(0, 0)).toSecsSinceEpoch()); }
QDate dateOf(unsigned seconds) { return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(seconds)).date(); }

}  // namespace

CWinnerSettingsDialog::CWinnerSettingsDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("winnerSettingsDialog"));
    setWindowTitle(QStringLiteral("稳稳胜设置"));
    underlyingCombo = new QComboBox(this);
    underlyingCombo->setObjectName(QStringLiteral("winnerUnderlying"));
    directionCombo = new QComboBox(this);
    directionCombo->setObjectName(QStringLiteral("winnerDirection"));
    for (int direction = 0; direction < 4; ++direction) {
        directionCombo->addItem(QString::fromUtf8(kForecasts[direction]), direction);
    }
    if (TC::CExchangeClient* exchange = utils::CManualSingletonT<TC::CExchangeClient>::instance()) {
        QMap<QString, QMap<QString, QStringList>> map;
        exchange->getStockOptionMap(map);
        for (auto it = map.constBegin(); it != map.constEnd(); ++it) {
            const auto detail = exchange->getCodeInfo(it.key());
            const QString name = detail ? QString::fromStdString(detail->name) : QString();
            underlyingCombo->addItem(name.isEmpty() ? it.key() : QStringLiteral("%1 %2").arg(it.key(), name), it.key());
        }
    }
    levelOne = levelBox(QStringLiteral("winnerLevelOne"), this);
    levelTwo = levelBox(QStringLiteral("winnerLevelTwo"), this);
    startDate = dateBox(QStringLiteral("winnerStartDate"), this);
    endDate = dateBox(QStringLiteral("winnerEndDate"), this);
    hint = new QLabel(this);
    hint->setObjectName(QStringLiteral("winnerHint"));
    hint->setWordWrap(true);
    error = new QLabel(this);
    error->setObjectName(QStringLiteral("winnerError"));
    error->setStyleSheet(QStringLiteral("color: #e0443e;"));
    error->setWordWrap(true);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Apply | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(QStringLiteral("确定"));
    buttons->button(QDialogButtonBox::Apply)->setText(QStringLiteral("应用"));
    buttons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("取消"));

    auto* grid = new QGridLayout();
    grid->addWidget(new QLabel(QStringLiteral("期权标的"), this), 0, 0);
    grid->addWidget(underlyingCombo, 0, 1);
    grid->addWidget(new QLabel(QStringLiteral("涨跌预测"), this), 1, 0);
    grid->addWidget(directionCombo, 1, 1);
    grid->addWidget(new QLabel(QStringLiteral("价位一"), this), 2, 0);
    grid->addWidget(levelOne, 2, 1);
    grid->addWidget(new QLabel(QStringLiteral("价位二"), this), 3, 0);
    grid->addWidget(levelTwo, 3, 1);
    grid->addWidget(new QLabel(QStringLiteral("到期日晚于"), this), 4, 0);
    grid->addWidget(startDate, 4, 1);
    grid->addWidget(new QLabel(QStringLiteral("到期日不晚于"), this), 5, 0);
    grid->addWidget(endDate, 5, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(hint);
    layout->addWidget(error);
    layout->addWidget(buttons);

    connect(buttons, &QDialogButtonBox::accepted, this, &CWinnerSettingsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CWinnerSettingsDialog::reject);
    connect(buttons->button(QDialogButtonBox::Apply), &QPushButton::clicked, this, [this] { apply(); });
    connect(underlyingCombo, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] { loadChoice(); });
    connect(directionCombo, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] { loadChoice(); });
    for (QDoubleSpinBox* box : {levelOne, levelTwo}) {
        connect(box, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, [this] { keepEdit(); });
    }
    for (QDateEdit* box : {startDate, endDate}) {
        connect(box, &QDateEdit::dateChanged, this, [this] { keepEdit(); });
    }
    const int fifty = underlyingCombo->findData(QStringLiteral("510050.SH"));
    if (fifty >= 0) {
        underlyingCombo->setCurrentIndex(fifty);
    }
    loadChoice();
}

QString CWinnerSettingsDialog::underlying() const { return underlyingCombo->currentData().toString(); }
int CWinnerSettingsDialog::direction() const { return directionCombo->currentData().toInt(); }
QString CWinnerSettingsDialog::errorText() const { return error->text(); }

bool CWinnerSettingsDialog::choose(const QString& undl, int forecast)
{
    const int index = underlyingCombo->findData(undl);
    if (index < 0 || forecast < 0 || forecast > 3) {
        return false;
    }
    underlyingCombo->setCurrentIndex(index);
    directionCombo->setCurrentIndex(forecast);
    return true;
}

TC::CWinnerSetting CWinnerSettingsDialog::shownSetting() const
{
    TC::CWinnerSetting setting;
    setting.levelOne = levelOne->value();
    setting.levelTwo = levelTwo->value();
    setting.startTime = secondsOf(startDate->date());
    setting.endTime = secondsOf(endDate->date());
    return setting;
}

void CWinnerSettingsDialog::showSetting(const TC::CWinnerSetting& setting)
{
    fillFields(setting);
    keepEdit();
}

void CWinnerSettingsDialog::fillFields(const TC::CWinnerSetting& setting)
{
    loading = true;
    levelOne->setValue(setting.levelOne);
    levelTwo->setValue(setting.levelTwo);
    // Nothing stored yet: the next three months, as a start.
    const bool empty = setting.startTime == 0 && setting.endTime == 0;
    startDate->setDate(empty ? tradingDate() : dateOf(setting.startTime));
    endDate->setDate(empty ? tradingDate().addMonths(3) : dateOf(setting.endTime));
    loading = false;
}

void CWinnerSettingsDialog::keepEdit()
{
    if (loading || shown.first.isEmpty()) {
        return;
    }
    edits.insert(shown, shownSetting());
    error->clear();
}

void CWinnerSettingsDialog::loadChoice()
{
    shown = Choice(underlying(), direction());
    updateHint();
    if (shown.first.isEmpty()) {
        return;
    }
    TC::CWinnerSetting setting;
    if (edits.contains(shown)) {
        setting = edits.value(shown);
    } else if (TC::CUserConfig* config = TC::getUserConfig()) {
        config->getWinnerSetting(shown.first, static_cast<TC::EWinnerPredictDirection>(shown.second), setting);
    }
    fillFields(setting);
}

void CWinnerSettingsDialog::updateHint()
{
    static const char* const hints[] = {
        "看涨: 买入行权价低于价位一的认购。",
        "看跌: 买入行权价不低于价位二的认沽。",
        "突破: 买入行权价不低于价位一的认购, 与同一到期日行权价不高于价位二的认沽配对。",
        "盘整: 卖出行权价不低于价位二的认购, 与同一到期日行权价不高于价位一的认沽配对。",
    };
    const int forecast = direction();
    hint->setText(forecast >= 0 && forecast < 4 ? QString::fromUtf8(hints[forecast]) : QString());
    levelOne->setEnabled(forecast != TC::WPD_FALL);
    levelTwo->setEnabled(forecast != TC::WPD_RISE);
}

QString CWinnerSettingsDialog::check(const TC::CWinnerSetting& setting, int forecast)
{
    if (forecast != TC::WPD_FALL && !(setting.levelOne > 0.0)) {
        return QStringLiteral("价位一须大于0");
    }
    if (forecast != TC::WPD_RISE && !(setting.levelTwo > 0.0)) {
        return QStringLiteral("价位二须大于0");
    }
    if (!(dateOf(setting.startTime) < dateOf(setting.endTime))) {
        return QStringLiteral("到期日的截止日须晚于起始日");
    }
    return QString();
}

bool CWinnerSettingsDialog::apply()
{
    TC::CUserConfig* config = TC::getUserConfig();
    if (config == nullptr) {
        error->setText(QStringLiteral("用户设置不可用, 未保存"));
        return false;
    }
    for (auto it = edits.constBegin(); it != edits.constEnd(); ++it) {
        const QString why = check(it.value(), it.key().second);
        if (!why.isEmpty()) {
            // Show the wrong choice itself, its edits kept.
            choose(it.key().first, it.key().second);
            error->setText(QStringLiteral("%1 %2: %3")
                               .arg(it.key().first, QString::fromUtf8(kForecasts[it.key().second]), why));
            return false;
        }
    }
    for (auto it = edits.constBegin(); it != edits.constEnd(); ++it) {
        TC::CWinnerSetting stored;
        const auto forecast = static_cast<TC::EWinnerPredictDirection>(it.key().second);
        config->getWinnerSetting(it.key().first, forecast, stored);
        if (!(stored == it.value())) {
            config->setWinnerSetting(it.key().first, forecast, it.value());
        }
    }
    edits.clear();
    error->clear();
    return true;
}

void CWinnerSettingsDialog::accept()
{
    if (apply()) {
        QDialog::accept();
    }
}

}  // namespace desk
