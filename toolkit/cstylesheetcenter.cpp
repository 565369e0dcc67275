#include "toolkit/cstylesheetcenter.h"

#include "toolkit/cuiresource.h"

#include <QFont>

namespace WG {

namespace {
QString color(const QString& key) { return CUiResource::get()->getColor(key)->name(QColor::HexArgb); }

QString fontRule(const QString& key)
{
    const QFont* font = CUiResource::get()->getFont(key);
    return QStringLiteral("font-family: \"%1\"; font-size: %2px; font-weight: %3;")
        .arg(font->family())
        .arg(font->pixelSize() > 0 ? font->pixelSize() : 12)
        .arg(font->bold() ? QStringLiteral("bold") : QStringLiteral("normal"));
}

QString pick(const QString& wanted, const char* fallback)
{
    return wanted.isEmpty() ? QString::fromLatin1(fallback) : wanted;
}

QString scrollBarStyle()
{
    return QStringLiteral(
               "QScrollBar:vertical { background: %1; width: 10px; margin: 0; border: none; }"
               "QScrollBar:horizontal { background: %1; height: 10px; margin: 0; border: none; }"
               "QScrollBar::handle { background: %2; border-radius: 3px; min-width: 20px; min-height: 20px; margin: 2px; }"
               "QScrollBar::handle:hover { background: %3; }"
               "QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; border: none; }"
               "QScrollBar::add-page, QScrollBar::sub-page { background: none; }")
        .arg(color(QStringLiteral("clr_table_background")), color(QStringLiteral("clr_button_checked")),
             color(QStringLiteral("clr_button_text_disabled")));
}
}  // namespace

QString CStyleSheetCenter::imageUrl(const QString& imageName)
{
    return QStringLiteral(":/optdesk/images/%1/%2.svg").arg(CUiResource::get()->themeName(), imageName);
}

QString CStyleSheetCenter::getStyle(const SS_ControlType& type, void* data)
{
    CStyleSheetOption defaults;
    const CStyleSheetOption& option = data != nullptr ? *static_cast<const CStyleSheetOption*>(data) : defaults;
    const QString font = fontRule(pick(option.fontKey, "fnt_default_normal_fix"));
    const QString background = color(pick(option.backgroundKey, "clr_edit_background"));
    const QString text = color(pick(option.textKey, "clr_text_default"));
    const QString border = option.frame ? color(QStringLiteral("clr_edit_border")) : QStringLiteral("transparent");
    const QString focus = option.frame ? color(QStringLiteral("clr_edit_border_focus")) : QStringLiteral("transparent");
    const QString disabled = color(QStringLiteral("clr_button_text_disabled"));
    const QString selection = color(QStringLiteral("clr_table_background_selected"));
    const QString popup = color(QStringLiteral("clr_dialog_background"));
    const QString frameLine = color(QStringLiteral("clr_operation_frame_line_color"));

    switch (type) {
    case SS_COMBOBOX:
        return QStringLiteral(
                   "QComboBox { background: %1; color: %2; border: 1px solid %3; border-radius: 2px;"
                   " padding: 0px 18px 0px 6px; min-height: 18px; %4 }"
                   "QComboBox:hover, QComboBox:focus { border-color: %5; }"
                   "QComboBox:disabled { color: %6; }"
                   "QComboBox::drop-down { subcontrol-origin: padding; subcontrol-position: center right;"
                   " width: 16px; border: none; }"
                   "QComboBox::down-arrow { image: url(%7); width: 8px; height: 8px; }"
                   "QComboBox QAbstractItemView { background: %8; color: %2; border: 1px solid %9;"
                   " selection-background-color: %10; selection-color: %2; outline: 0; }")
                   .arg(background, text, border, font, focus, disabled, imageUrl(QStringLiteral("img_combo_arrow")),
                        popup, frameLine)
                   .arg(selection) +
               scrollBarStyle();
    case SS_LINEEDIT:
        return QStringLiteral(
                   "QLineEdit { background: %1; color: %2; border: 1px solid %3; border-radius: 2px;"
                   " padding: 0px 4px; min-height: 18px; selection-background-color: %4; %5 }"
                   "QLineEdit:focus { border-color: %6; }"
                   "QLineEdit:disabled { color: %7; }"
                   "QLineEdit[invalid=\"true\"] { border-color: %8; }")
            .arg(background, text, border, selection, font, focus, disabled,
                 color(QStringLiteral("clr_edit_border_invalid")));
    case SS_SCROLLBAR:
        return scrollBarStyle();
    case SS_MENU:
        return QStringLiteral(
                   "QMenu { background: %1; color: %2; border: 1px solid %3; padding: 2px; %4 }"
                   "QMenu::item { padding: 3px 18px 3px 12px; }"
                   "QMenu::item:selected { background: %5; }"
                   "QMenu::item:disabled { color: %6; }"
                   "QMenu::separator { height: 1px; background: %3; margin: 2px 4px; }")
            .arg(popup, text, frameLine, font, selection, disabled);
    case SS_TOOLTIP:
        return QStringLiteral("QToolTip { background: %1; color: %2; border: 1px solid %3; padding: 3px; %4 }")
            .arg(color(QStringLiteral("clr_tip_background")), color(QStringLiteral("clr_tip_text")), frameLine, font);
    case SS_SPINBOX:
        return QStringLiteral(
                   "QAbstractSpinBox { background: %1; color: %2; border: 1px solid %3; border-radius: 2px;"
                   " padding: 0px 2px; min-height: 18px; selection-background-color: %4; %5 }"
                   "QAbstractSpinBox:focus { border-color: %6; }"
                   "QAbstractSpinBox:disabled { color: %7; }"
                   "QAbstractSpinBox::up-button, QAbstractSpinBox::down-button { width: 14px; border: none;"
                   " background: %8; }")
            .arg(background, text, border, selection, font, focus, disabled,
                 color(QStringLiteral("clr_button_background")));
    case SS_DIALOG:
        return QStringLiteral("QDialog { background: %1; color: %2; %3 } QLabel { color: %2; background: transparent; }")
                   .arg(color(QStringLiteral("clr_dialog_background")), text, font) +
               scrollBarStyle();
    case SS_TEXTEDIT:
        return QStringLiteral(
                   "QTextEdit, QPlainTextEdit { background: %1; color: %2; border: 1px solid %3;"
                   " selection-background-color: %4; %5 }")
                   .arg(background, text, border, selection, font) +
               scrollBarStyle();
    case SS_TABWIDGET:
        return QStringLiteral(
                   "QTabWidget::pane { border: 1px solid %1; background: %2; }"
                   "QTabBar::tab { background: %3; color: %4; padding: 3px 12px; border: none; %5 }"
                   "QTabBar::tab:selected { background: %2; color: %6; border-bottom: 2px solid %7; }"
                   "QTabBar::tab:hover { color: %6; }")
            .arg(frameLine, color(QStringLiteral("clr_table_background")), color(QStringLiteral("clr_tab_header")),
                 color(QStringLiteral("clr_table_header_text")), font, text, color(QStringLiteral("clr_accent")));
    case SS_TREEWIDGET:
        return QStringLiteral(
                   "QTreeView { background: %1; color: %2; border: none; outline: 0; %3 }"
                   "QTreeView::item { height: 26px; }"
                   "QTreeView::item:selected, QTreeView::item:selected:active { background: %4; }"
                   "QTreeView::item:hover { background: %5; }")
                   .arg(color(QStringLiteral("clr_table_background")), text, font, selection,
                        color(QStringLiteral("clr_button_hover"))) +
               scrollBarStyle();
    }
    return QString();
}

}  // namespace WG
