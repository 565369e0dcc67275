// A dialog around one inner widget, with the toolkit's title bar: the frame the
// panels put their settings and order forms into.
#pragma once

#include "toolkit/cbasedialog.h"

#include <QPointer>

namespace WG {

class CCommonDialog : public CBaseDialog {
    Q_OBJECT
public:
    explicit CCommonDialog(QWidget* parent);
    ~CCommonDialog() override;

    // Takes the widget (the dialog owns it) and replaces the previous one, which is deleted.
    void setInnerWidget(QWidget* widget);
    QWidget* innerWidget() const { return m_inner; }

private:
    QPointer<QWidget> m_inner;
};

}  // namespace WG
