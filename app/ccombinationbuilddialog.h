// "构建组合": a strategy, two held legs of one stock-option account and a
// volume; accept sends the build command (operation 1090) to the command
// centre. A build the input cannot make is told in the dialog, which stays open.
#pragma once

#include "app/ccombinationcommand.h"

#include <QDialog>

#include <vector>

class QComboBox;
class QLabel;
class QSpinBox;

namespace desk {

class CCombinationBuildDialog : public QDialog {
    Q_OBJECT
public:
    // legs: the held positions offered as legs.
    explicit CCombinationBuildDialog(std::vector<CCombinationCommand::Leg> legs, QWidget* parent = nullptr);

    QComboBox* strategyBox() const { return m_strategy; }
    QComboBox* legOneBox() const { return m_legOne; }
    QComboBox* legTwoBox() const { return m_legTwo; }
    QSpinBox* volumeBox() const { return m_volume; }
    QLabel* reasonLabel() const { return m_reason; }
    // The command of the present choice; null with the reason shown when there is none.
    boost::shared_ptr<nqservice::COrderComandParam> command();

public slots:
    // Sends the command and closes; stays open with the reason when it cannot.
    void accept() override;

private:
    std::vector<CCombinationCommand::Leg> m_legs;
    QComboBox* m_strategy = nullptr;
    QComboBox* m_legOne = nullptr;
    QComboBox* m_legTwo = nullptr;
    QSpinBox* m_volume = nullptr;
    QLabel* m_reason = nullptr;
};

}  // namespace desk
