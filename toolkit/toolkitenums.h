// Small enumerations shared by the toolkit's widgets, tables and trade controls.
// Seam-free, so any toolkit header can include it.
#pragma once

#include <QFlags>

namespace WG {

// Where a widget or tip sits relative to its cell or anchor. The panels pass
// AL_BOTTOM (64) to showTip: the tip appears below the control; and item widgets
// as plain numbers: 132 (centred), 129 (left) and 130 (right), each AL_VCENTER
// with a horizontal place.
enum EAlign {
    AL_NONE = 0x0,
    AL_LEFT = 0x1,
    AL_RIGHT = 0x2,
    AL_HCENTER = 0x4,
    AL_TOP = 0x20,
    AL_BOTTOM = 0x40,
    AL_VCENTER = 0x80,
    AL_CENTER = AL_HCENTER | AL_VCENTER,
};
Q_DECLARE_FLAGS(EAligns, EAlign)

// How a widget in a CWidgetList sits across the list's direction.
enum EWidgetAnchor {
    WA_CENTER = 0,
    WA_LEADING = 1,   // top of a horizontal list, left of a vertical one
    WA_TRAILING = 2,  // bottom of a horizontal list, right of a vertical one
    WA_FILL = 3,      // takes the whole breadth
};

// The look of the small styled buttons, of CAutoButton and of button cells.
enum ENormalButtonType {
    NBT_NORMAL = 0,    // neutral action
    NBT_CRITICAL = 1,  // red: buy, delete, confirm something that costs
    NBT_SAFE = 2,      // green: sell
    NBT_PRIMARY = 3,   // accent: the default action of a dialog
};

}  // namespace WG

Q_DECLARE_OPERATORS_FOR_FLAGS(WG::EAligns)

namespace TC {

// Which order parameter widget a trade control belongs to; it picks the
// defaults and the look of the control.
enum EOpParamWidgetID {
    OPWID_NONE = 0,
    OPWID_NORMAL_ORDER = 1,  // the order widget and dialogs
    OPWID_QUICK_ORDER = 2,   // the price ladder of one-click orders
    OPWID_MULTI_ORDER = 3,   // multi-leg orders
};

}  // namespace TC
