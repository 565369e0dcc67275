// Event codes of the controls' event channel, and the tick flags of the host.
#pragma once

#include <QFlags>

namespace WG {

// Codes are plain integers: a handler acts on those it knows and passes the rest on.
// Codes private to one subsystem are declared beside the handler that reads them.
enum EUiEventCode {
    UE_BUTTON_CLICKED = 5,
    UE_ACCOUNT_SELECTED = 7,
    UE_TABLE_HSCROLL = 17,
    UE_COLUMN_RESIZED = 21,
    UE_CELL_PRIMARY = 47,
    UE_CELL_EDITING = 51,         // a cell edit before commit; data is a WG::CTableEditRecord*
    UE_CELL_EDIT_COMMITTED = 52,  // a cell edit was committed; data is a WG::CTableEditRecord*
    UE_CELL_ACTIVATED = 49,
    UE_CELL_SECONDARY = 54,
    UE_CHECK_CLICKED = 69,
    UE_CHECK_TOGGLED = 70,
    UE_COMBO_CHANGED = 73,
    UE_VALUE_COMMITTED = 105,
    UE_TEXT_CHANGED = 106,
    UE_SPIN_CHANGED = 119,
    UE_SPIN_VALUE_CHANGED = 123,
    UE_TEXT_FILTER_CHANGED = 172,
    UE_DELEGATE_CHECK_CHANGED = 232,  // a check box cell changed
    UE_DELEGATE_BUTTON_CLICKED = 235,  // a push button cell was pressed
    UE_DELEGATE_COMBO_CHANGED = 236,  // a combo cell chose another item; arg the index
    UE_DELEGATE_SPIN_CHANGED = 237,   // a spin box cell took a new value; text is the key
    UE_ADD_INSTRUMENT = 1032,  // a code was looked up; text is its stock key
    UE_SET_PRICE_TYPE = 1128,
    UE_SET_LIMIT_PRICE = 1129,
    UE_SET_VOLUME_UNITS = 1130,
    UE_ACCOUNTS_CHANGED = 1168,
};

}  // namespace WG

namespace TC {

// Values are the host's own; no panel looks at them.
enum ETimerUpdateFlag {
    TUF_NONE = 0x0,
    TUF_QUOTE = 0x1,
    TUF_ACCOUNT = 0x2,
};
Q_DECLARE_FLAGS(ETimerUpdateFlags, ETimerUpdateFlag)

}  // namespace TC

Q_DECLARE_OPERATORS_FOR_FLAGS(TC::ETimerUpdateFlags)
