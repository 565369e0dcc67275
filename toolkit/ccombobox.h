// A themed combo box that delivers UE_COMBO_CHANGED (arg: the new index) when
// its current item changes, by the user or by code.
#pragma once

#include "toolkit/ceventwidgett.h"

namespace WG {

class CComboBox : public CEventWidgetT<QComboBox> {
    Q_OBJECT
public:
    CComboBox(int id, QWidget* parent);
    ~CComboBox() override;

    int id() const { return m_id; }
    void setFontKey(const QString& key);
    void themeChanged() override;

private:
    void applyStyle();

    int m_id;
    QString m_fontKey;
};

}  // namespace WG
