// Joins a Qt widget class with the event channel and the theme notification.
// Exists for QWidget, QDialog, QComboBox and QTreeWidget.
#pragma once

#include "toolkit/ceventdeliverer.h"
#include "toolkit/cuiresourcechangehandler.h"

#include <QComboBox>
#include <QDialog>
#include <QTreeWidget>
#include <QWidget>

#include <utility>

namespace WG {

template <typename QtBase>
class CEventWidgetT : public QtBase, public CEventDeliverer, public CUiResourceChangeHandler {
public:
    explicit CEventWidgetT(QWidget* parent = nullptr) : QtBase(parent) {}
    // An explicit parent deliverer, for controls whose events go elsewhere than up the widget tree.
    CEventWidgetT(QWidget* parent, CEventDeliverer* parentDeliverer) : QtBase(parent), CEventDeliverer(parentDeliverer) {}

protected:
    QWidget* delivererWidget() const override { return const_cast<CEventWidgetT*>(this); }
};

extern template class CEventWidgetT<QWidget>;
extern template class CEventWidgetT<QDialog>;
extern template class CEventWidgetT<QComboBox>;
extern template class CEventWidgetT<QTreeWidget>;

}  // namespace WG
