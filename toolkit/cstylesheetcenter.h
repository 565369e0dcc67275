// Qt style sheets for the standard controls, built from theme keys. A style
// sheet is a derived value: widgets that use one rebuild it in themeChanged().
#pragma once

#include <QString>

namespace WG {

enum SS_ControlType {
    SS_COMBOBOX = 0,
    SS_LINEEDIT = 1,
    SS_SCROLLBAR = 2,
    SS_MENU = 3,
    SS_TOOLTIP = 4,
    SS_SPINBOX = 5,
    SS_DIALOG = 6,
    SS_TEXTEDIT = 7,
    SS_TABWIDGET = 8,
    SS_TREEWIDGET = 14,  // the basket tree of the strategy workbench
};

// Optional overrides for getStyle's data argument; empty members keep the defaults.
struct CStyleSheetOption {
    QString fontKey;
    QString backgroundKey;
    QString textKey;
    bool frame = true;
};

class CStyleSheetCenter {
public:
    // data: null, or a CStyleSheetOption*.
    static QString getStyle(const SS_ControlType& type, void* data = nullptr);
    // The file of a themed image for use in a style sheet's url().
    static QString imageUrl(const QString& imageName);
};

}  // namespace WG
