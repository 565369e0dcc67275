// The desk's editor of the option winner's settings: for each underlying and
// forecast, the two price levels and the expiry window that the winner's
// candidates must fit. Edits of several choices are kept until 确定 or 应用,
// which check them all and write none while one is wrong; the store then
// announces each change and a winner showing that choice builds afresh.
#pragma once

#include "seam/userrecords.h"

#include <QDialog>
#include <QMap>
#include <QPair>

class QComboBox;
class QDateEdit;
class QDoubleSpinBox;
class QLabel;

namespace desk {

class CWinnerSettingsDialog : public QDialog {
    Q_OBJECT
public:
    // Shows the settings of the first underlying (50ETF when listed) and 看涨.
    explicit CWinnerSettingsDialog(QWidget* parent = nullptr);

    // Chooses what the fields show; false when the underlying is not listed.
    bool choose(const QString& underlying, int direction);
    QString underlying() const;
    int direction() const;
    // The fields' present setting.
    TC::CWinnerSetting shownSetting() const;
    void showSetting(const TC::CWinnerSetting& setting);
    // The error shown, "" when none.
    QString errorText() const;

    // Checks every edited choice and writes them all; false (nothing written,
    // the first error shown) when one is wrong or no user settings are installed.
    bool apply();
    // What is wrong with a setting for a forecast, "" when nothing.
    static QString check(const TC::CWinnerSetting& setting, int direction);

public slots:
    void accept() override;

private:
    using Choice = QPair<QString, int>;
    void keepEdit();
    void fillFields(const TC::CWinnerSetting& setting);
    void loadChoice();
    void updateHint();

    QComboBox* underlyingCombo = nullptr;
    QComboBox* directionCombo = nullptr;
    QDoubleSpinBox* levelOne = nullptr;
    QDoubleSpinBox* levelTwo = nullptr;
    QDateEdit* startDate = nullptr;
    QDateEdit* endDate = nullptr;
    QLabel* hint = nullptr;
    QLabel* error = nullptr;
    QMap<Choice, TC::CWinnerSetting> edits;  // changed, not yet written
    Choice shown;
    bool loading = false;
};

}  // namespace desk
